#include "about/AboutDialog.h"
#include "about/SysInfo.h"
#include "config/Globale.h"
#include "platform/LanguageTable.h"
#include "platform/RegistryFile.h"
#include "platform/RuntimeError.h"
#include "support/MainHarness.h"

#include <QMessageBox>
#include <QPushButton>

namespace {

// From inside whatever modal loop runs, hands each modal widget to `act`, then
// closes it.
void whenModal(QObject *context, std::function<void(QWidget *)> act) {
    auto *timer = new QTimer(context);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, act = std::move(act)] {
        if (QWidget *modal = QApplication::activeModalWidget()) {
            timer->stop();
            act(modal);
            modal->close();
        }
    });
    timer->start(10);
}

const QString Version = QStringLiteral("%1.%2.%3")
                            .arg(NORVALE_VERSION_MAJOR)
                            .arg(NORVALE_VERSION_MINOR)
                            .arg(NORVALE_VERSION_PATCH);
const QByteArray Location =
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Shared Tools Location]\n\"MSINFO\"=\"@FOLDER@\"\n";

} // namespace

class tst_About : public QObject {
    Q_OBJECT

    LanguageTable table_;

private slots:
    // Shown modally over the window from the menu; only "FR" gives the French texts,
    // set again on every paint, the button follows the language base.
    void dialogTexts_data() {
        QTest::addColumn<QString>("language");
        QTest::addColumn<int>("languageBase");
        QTest::addColumn<bool>("french");
        QTest::newRow("French") << "FR" << 0 << true;
        QTest::newRow("English") << "US" << 100 << false;
        QTest::newRow("lower-case fr, French base") << "fr" << 0 << false;
    }
    void dialogTexts() {
        QFETCH(QString, language);
        QFETCH(int, languageBase);
        QFETCH(bool, french);
        Globale g;
        g.CurrentLanguage = language;
        g.LanguageBase = qint16(languageBase);
        const Texts texts(table_, g);
        const QString button = languageBase == 0 ? QStringLiteral("Infos système...")
                                                 : QStringLiteral("System Info...");
        const QStringList fr{"À propos de Norvale Setup", "Version " + Version,
                             "Configuration NorVale",
                             "Avertissement:\r\nUtiliser cette application uniquement avec les "
                             "satellites NorVale Corvatek.",
                             button};
        const QStringList en{"Norvale Setup", "Release " + Version, "Norvale Configuration",
                             "Caution:\r\nUse Corvatek Norvale system", button};
        QWidget window;
        About about(g, texts, &window, [](const QString &) { return true; });
        QObject context;
        whenModal(&context, [&](QWidget *modal) {
            auto *dialog = qobject_cast<frmAbout *>(modal);
            QVERIFY(dialog && dialog->isModal() && dialog->parentWidget() == &window);
            const auto shown = [&] {
                QStringList texts{dialog->windowTitle()};
                for (const char *name : {"lblVersion", "lblTitle", "lblDisclaimer", "cmdSysInfo"})
                    texts << dialog->findChild<QWidget *>(name)->property("text").toString();
                return texts;
            };
            QCOMPARE(shown(), french ? fr : en);
            g.CurrentLanguage = french ? "US" : "FR";
            g.LanguageBase = qint16(100 - languageBase);
            dialog->findChild<QLabel *>("lblVersion")->setText(QStringLiteral("changed"));
            QVERIFY(QTest::qWaitForWindowExposed(dialog));
            dialog->repaint();
            QCOMPARE(shown().mid(0, 4), (french ? en : fr).mid(0, 4));
            dialog->findChild<QPushButton *>("cmdOK")->click();
        });
        about.m_apropos_Click(); // returns once the dialog has closed
        QVERIFY(window.findChildren<frmAbout *>().isEmpty());
    }

    // The message, the same in both languages, when no tool could be started.
    void sysInfo_data() {
        QTest::addColumn<QByteArray>("registry"); // empty: no Registry.reg at all
        QTest::addColumn<QString>("started");     // what the starter is asked to start, if anything
        QTest::addColumn<bool>("starts");         // and whether it can
        const auto row = [](const char *tag, const QByteArray &registry, const char *started,
                            bool starts = true) {
            QTest::newRow(tag) << registry << started << starts;
        };
        const QByteArray path = "REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Shared "
                                "Tools\\MSINFO]\n\"PATH\"=\"/opt/sys \\\"info\\\"\\\\tool\"\n";
        const char *tool = "/opt/sys \"info\"\\tool";
        row("no registry file", {}, "");
        row("PATH before the location", path + Location, tool);
        row("program does not start", path, tool, false);
        // The folder and the file name are joined with a backslash; a file of exactly
        // that name is found.
        row("location with MSINFO32.EXE",
            "REGEDIT4\n" + QByteArray(Location).replace("@FOLDER@", "@FOLDER@/tools"),
            "@FOLDER@/tools\\MSINFO32.EXE");
        row("location without MSINFO32.EXE", "REGEDIT4\n" + Location, "");
    }
    void sysInfo() {
        QFETCH(QByteArray, registry);
        QFETCH(QString, started);
        QFETCH(bool, starts);
        ProgramFolder folder;
        if (!registry.isEmpty())
            folder.write(RegistryFile::fileName(),
                         registry.replace("@FOLDER@", folder.path().toUtf8()));
        folder.write(QStringLiteral("tools\\MSINFO32.EXE"), "#!/bin/sh\n");
        Globale g;
        g.ProgramFolder = folder.path();
        const Texts texts(table_, g);
        QStringList asked;
        frmAbout dialog(g, texts, nullptr, [&](const QString &program) {
            asked << QString(program).replace(folder.path(), QStringLiteral("@FOLDER@"));
            return starts;
        });
        dialog.show();
        QObject context;
        QString message;
        whenModal(&context, [&](QWidget *modal) {
            auto *box = qobject_cast<QMessageBox *>(modal);
            message = box && box->standardButtons() == QMessageBox::Ok
                          ? box->text()
                          : QStringLiteral("another modal window");
        });
        dialog.findChild<QPushButton *>("cmdSysInfo")->click();
        QCOMPARE(asked, started.isEmpty() ? QStringList() : QStringList{started});
        QCOMPARE(message, started.isEmpty() || !starts
                              ? QStringLiteral("Les informations système ne sont pas "
                                               "disponibles actuellement")
                              : QString());
        QVERIFY(dialog.isVisible());
    }

    // Value "V" of HKEY_LOCAL_MACHINE\SOFTWARE\Test unless the row says otherwise, read
    // into a text that held "before".
    void getKeyValue_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("before");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QString>("after");
        const QByteArray H = "REGEDIT4\r\n", T = H + "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Test]\r\n";
        const auto V = [&](const QByteArray &value) { return T + "\"V\"=" + value; };
        auto row = [](const char *tag, const QByteArray &file, const QString &before, bool ok,
                      const QString &after, const QString &name = "V",
                      const QString &key = "SOFTWARE\\Test") {
            QTest::newRow(tag) << file << key << name << before << ok << after;
        };
        row("string with escapes", V("\"C:\\\\Tools\\\\say \\\"hi\\\"\""), "old", true,
            "C:\\Tools\\say \"hi\"");
        row("name in another case", T + "\"Mixed Case\"=\"found\"", "", true, "found",
            "MIXED case");
        // Bytes 04 03 02 01 read last to first, one digit each: &h1234.
        row("dword 01020304", V("dword:01020304"), "", true, "4660");
        row("dword all ones", V("dword:ffffffff"), "", true, "-1");
        // The text is not cleared first: its digits lead the number.
        row("dword after hex text", V("dword:0000001a"), "F", true, "983066");
        row("dword after other text", V("dword:0000001a"), "xyz", false, "raised");
        row("dword past 32 bits", V("dword:ffffffff"), "FFFF", true, "281474976710655");
        row("expandable string keeps the text", V("hex(2):41,42,00"), "keep", true, "keep");
        row("only one zero dropped", V("hex(1):41,00,00"), "", true,
            QStringLiteral("A") + QChar(0));
        row("1025 bytes do not", V('"' + QByteArray(1024, 'x') + '"'), "old", false, "");

        // Encodings: a byte-order mark, else UTF-8.
        const QString accented = QStringLiteral("/opt/système");
        const QString v5 = QStringLiteral("Windows Registry Editor Version 5.00\r\n");
        const QString body = T.sliced(H.size()) + "\"V\"=\"" + accented + '"';
        QByteArray utf16("\xff\xfe", 2);
        for (QChar c : v5 + body)
            utf16.append(char(c.unicode() & 0xff)).append(char(c.unicode() >> 8));
        row("UTF-16 version 5 export", utf16, "", true, accented);
        row("UTF-8", H + body.toUtf8(), "", true, accented);
        row("the file shipped", referenceFile("../../resources/Registry.reg"), "", true,
            "/usr/bin/hardinfo", "PATH", "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO");
    }
    void getKeyValue() {
        QFETCH(QByteArray, file);
        QFETCH(QString, key);
        QFETCH(QString, name);
        QFETCH(QString, before);
        QString text = before;
        bool ok = false;
        try {
            ok = GetKeyValue(RegistryFile::fromBytes(file), RegistryFile::Root::LocalMachine, key,
                             name, text);
        } catch (const RuntimeError &) {
            text = QStringLiteral("raised");
        }
        QTEST(ok, "ok");
        QTEST(text, "after");
    }
};

QTEST_MAIN(tst_About)
#include "tst_about.moc"
