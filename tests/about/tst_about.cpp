#include "about/AboutDialog.h"
#include "about/SysInfo.h"
#include "config/Globale.h"
#include "platform/LanguageTable.h"
#include "platform/RegistryFile.h"
#include "platform/RuntimeError.h"
#include "support/TestSupport.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

namespace {

using Root = RegistryFile::Root;

// From inside whatever modal loop runs, hands each modal widget to `act` until it
// returns true. Stops with `context`.
void whenModal(QObject *context, std::function<bool(QWidget *)> act) {
    auto *timer = new QTimer(context);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, act = std::move(act)] {
        if (QWidget *modal = QApplication::activeModalWidget(); modal && act(modal))
            timer->stop();
    });
    timer->start(10);
}

const QString Version = QStringLiteral("%1.%2.%3")
                            .arg(NORVALE_VERSION_MAJOR)
                            .arg(NORVALE_VERSION_MINOR)
                            .arg(NORVALE_VERSION_PATCH);
const QString DisclaimerFr = QStringLiteral("Avertissement:\r\nUtiliser cette application "
                                            "uniquement avec les satellites NorVale Corvatek.");
const QByteArray Location =
    "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Shared Tools Location]\n\"MSINFO\"=\"@FOLDER@\"\n";

} // namespace

class tst_About : public QObject {
    Q_OBJECT

    LanguageTable table_;

private slots:
    // Only "FR" gives the French texts, set again on every paint; the button follows
    // the language base and is set once, when the dialog is made.
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
        frmAbout dialog(g, texts);
        const auto text = [&](const char *name) {
            return dialog.findChild<QWidget *>(name)->property("text").toString();
        };
        const auto shown = [&] {
            return QStringList{dialog.windowTitle(), text("lblVersion"), text("lblTitle"),
                               text("lblDisclaimer"), text("cmdSysInfo")};
        };
        const QString button = languageBase == 0 ? QStringLiteral("Infos système...")
                                                 : QStringLiteral("System Info...");
        const QStringList fr{QStringLiteral("À propos de Norvale Setup"), "Version " + Version,
                             "Configuration NorVale", DisclaimerFr, button};
        const QStringList en{"Norvale Setup", "Release " + Version, "Norvale Configuration",
                             "Caution:\r\nUse Corvatek Norvale system", button};
        QCOMPARE(shown(), french ? fr : en);

        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        g.CurrentLanguage = french ? "US" : "FR";
        g.LanguageBase = qint16(100 - languageBase);
        dialog.findChild<QLabel *>("lblVersion")->setText(QStringLiteral("changed"));
        dialog.repaint();
        QCOMPARE(shown(), french ? en : fr);
    }

    void menuShowsModalDialogAndOkClosesIt() {
        Globale g;
        g.CurrentLanguage = QStringLiteral("FR");
        const Texts texts(table_, g);
        QWidget window;
        About about(g, texts, &window, [](const QString &) { return true; });
        QString seen;
        QObject context;
        whenModal(&context, [&](QWidget *modal) {
            auto *dialog = qobject_cast<frmAbout *>(modal);
            if (!dialog)
                return false;
            if (dialog->isModal() && dialog->parentWidget() == &window)
                seen = dialog->windowTitle();
            dialog->findChild<QPushButton *>("cmdOK")->click();
            return true;
        });
        about.m_apropos_Click(); // returns once OK has closed the dialog
        QCOMPARE(seen, QStringLiteral("À propos de Norvale Setup"));
        QVERIFY(window.findChildren<frmAbout *>().isEmpty());
    }

    // The message, the same in both languages, when no tool could be started.
    void sysInfo_data() {
        QTest::addColumn<QByteArray>("registry"); // empty: no Registry.reg at all
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("started"); // what the starter is asked to start, if anything
        QTest::addColumn<bool>("starts");     // and whether it can
        const auto row = [](const char *tag, const QByteArray &registry, const char *language,
                            const char *started, bool starts = true) {
            QTest::newRow(tag) << registry << language << started << starts;
        };
        const QByteArray path = "REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Shared "
                                "Tools\\MSINFO]\n\"PATH\"=\"/opt/sys \\\"info\\\"\\\\tool\"\n";
        const char *tool = "/opt/sys \"info\"\\tool";
        row("no registry file", {}, "FR", "");
        row("PATH before the location", path + Location, "US", tool);
        row("program does not start", path, "FR", tool, false);
        // The folder and the file name are joined with a backslash; a file of exactly
        // that name is found.
        row("location with MSINFO32.EXE",
            "REGEDIT4\n" + QByteArray(Location).replace("@FOLDER@", "@FOLDER@/tools"), "FR",
            "@FOLDER@/tools\\MSINFO32.EXE");
        row("location without MSINFO32.EXE", "REGEDIT4\n" + Location, "US", "");
    }
    void sysInfo() {
        QFETCH(QByteArray, registry);
        QFETCH(QString, language);
        QFETCH(QString, started);
        QFETCH(bool, starts);
        ProgramFolder folder;
        if (!registry.isEmpty())
            folder.write(RegistryFile::fileName(),
                         registry.replace("@FOLDER@", folder.path().toUtf8()));
        folder.write(QStringLiteral("tools\\MSINFO32.EXE"), "#!/bin/sh\n");
        Globale g;
        g.ProgramFolder = folder.path();
        g.CurrentLanguage = language;
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
            modal->close();
            return true;
        });
        dialog.findChild<QPushButton *>("cmdSysInfo")->click();
        QCOMPARE(asked, started.isEmpty() ? QStringList() : QStringList{started});
        QCOMPARE(message, started.isEmpty() || !starts
                              ? QStringLiteral("Les informations système ne sont pas "
                                               "disponibles actuellement")
                              : QString());
        QVERIFY(dialog.isVisible());
    }

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
        row("empty string", V("\"\""), "old", true, "");
        row("name in another case", T + "\"Mixed Case\"=\"found\"", "", true, "found",
            "MIXED case");
        // Bytes 04 03 02 01 read last to first, one digit each: &h1234.
        row("dword 01020304", V("dword:01020304"), "", true, "4660");
        row("dword all ones", V("dword:ffffffff"), "", true, "-1");
        // The text is not cleared first: its digits lead the number.
        row("dword after hex text", V("dword:0000001a"), "F", true, "983066");
        row("dword after other text", V("dword:0000001a"), "xyz", false, "raised");
        row("dword past 32 bits", V("dword:ffffffff"), "FFFF", true, "281474976710655");
        row("dword past 15 digits", V("dword:ffffffff"), "FFFFFFFFFFFF", true,
            "1.20892581961463E+24");
        row("expandable string keeps the text", V("hex(2):41,42,00"), "keep", true, "keep");
        row("only one zero dropped", V("hex(1):41,00,00"), "", true,
            QStringLiteral("A") + QChar(0));
        row("continued byte list", V("hex(1):41,\\\n  42,00"), "", true, "AB");
        row("1024 bytes fit", V('"' + QByteArray(1023, 'x') + '"'), "", true, QString(1023, u'x'));
        row("1025 bytes do not", V('"' + QByteArray(1024, 'x') + '"'), "old", false, "");
        row("missing value", T + "\"W\"=\"x\"", "old", false, "");
        row("deleted value", V("\"x\"\n\"V\"=-"), "old", false, "");
        row("unterminated string", V("\"abc"), "old", false, "");
        row("after malformed lines", V("\"abc\n; a comment\n\"V\"=dword:123456789\n\"V\"=\"read\""),
            "", true, "read");
        row("under another root", H + "[HKEY_CURRENT_USER\\SOFTWARE\\Test]\n\"V\"=\"x\"", "old",
            false, "");
        row("section name in another case", H + "[hkey_local_machine\\software\\test]\n\"V\"=\"x\"",
            "", true, "x");
        row("second section of the same key",
            V("\"first\"\n[HKEY_USERS\\X]\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Test]\n\"W\"=\"x\""), "",
            true, "first");
        row("deleted key",
            H + "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Gone\\Sub]\n\"V\"=\"x\"\n"
                "[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Gone]",
            "old", false, "", "V", "SOFTWARE\\Gone\\Sub");

        // Encodings: a byte-order mark, else UTF-8, else Latin-1.
        const QString accented = QStringLiteral("/opt/système");
        const QString v5 = QStringLiteral("Windows Registry Editor Version 5.00\r\n");
        const QString body = T.sliced(H.size()) + "\"V\"=\"" + accented + '"';
        QByteArray utf16("\xff\xfe", 2);
        for (QChar c : v5 + body)
            utf16.append(char(c.unicode() & 0xff)).append(char(c.unicode() >> 8));
        row("UTF-16 version 5 export", utf16, "", true, accented);
        row("UTF-8", H + body.toUtf8(), "", true, accented);
        row("Latin-1", H + body.toLatin1(), "", true, accented);
        // In a version 5 export, strings written as bytes are in UTF-16.
        row("version 5 string bytes",
            v5.toLatin1() + V("hex(1):2f,00,78,00,00,00").sliced(H.size()), "", true, "/x");
        row("the file shipped", referenceFile("../../resources/Registry.reg"), "", true,
            "/usr/bin/hardinfo", "PATH", "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO");
    }
    void getKeyValue() {
        QFETCH(QByteArray, file);
        QFETCH(QString, key);
        QFETCH(QString, name);
        QFETCH(QString, before);
        // Read from a file, as the program does.
        ProgramFolder folder;
        folder.write(RegistryFile::fileName(), file);
        const RegistryFile registry(folder.file(RegistryFile::fileName()));
        QString text = before;
        bool ok = false;
        try {
            ok = GetKeyValue(registry, Root::LocalMachine, key, name, text);
        } catch (const RuntimeError &) {
            text = QStringLiteral("raised");
        }
        QTEST(ok, "ok");
        QTEST(text, "after");
    }
};

QTEST_MAIN(tst_About)
#include "tst_about.moc"
