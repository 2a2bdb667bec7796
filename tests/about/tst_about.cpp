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

// What a modal message box showed before the watcher pressed its OK button.
struct SeenBox {
    bool seen = false;
    QString text;
    QMessageBox::StandardButtons buttons;
};

// Watches, from inside whatever modal loop runs, for a message box to come up;
// records it and presses OK. Stops with `context`.
void answerNextMessageBox(QObject *context, SeenBox &seen) {
    auto *timer = new QTimer(context);
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, &seen] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box)
            return;
        timer->stop();
        seen.seen = true;
        seen.text = box->text();
        seen.buttons = box->standardButtons();
        if (QAbstractButton *ok = box->button(QMessageBox::Ok))
            ok->click();
        else
            box->reject();
    });
    timer->start();
}

// A starter that records what it is asked to start, starting nothing.
struct StarterLog {
    QStringList started;
    bool result = true;
    ProgramStarter starter() {
        return [this](const QString &program) {
            started.append(program);
            return result;
        };
    }
};

QString disclaimerFr() {
    return QStringLiteral("Avertissement:\r\nUtiliser cette application uniquement avec les "
                          "satellites NorVale Corvatek.");
}
QString disclaimerEn() {
    return QStringLiteral("Caution:\r\nUse Corvatek Norvale system");
}
QString version() {
    return QStringLiteral("%1.%2.%3")
        .arg(NORVALE_VERSION_MAJOR)
        .arg(NORVALE_VERSION_MINOR)
        .arg(NORVALE_VERSION_PATCH);
}

// A registry file with one value of every kind the tests read, and lines that must
// be skipped without disturbing the rest.
QByteArray sampleRegistry() {
    QByteArray bytes = "REGEDIT4\r\n"
                       "\r\n"
                       "\"Orphan\"=\"before any key\"\r\n"
                       "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Test]\r\n"
                       "\"Text\"=\"C:\\\\Tools\\\\say \\\"hi\\\"\"\r\n"
                       "\"Empty\"=\"\"\r\n"
                       "\"Mixed Case\"=\"found\"\r\n"
                       "@=\"default\"\r\n"
                       "\"D1a\"=dword:0000001a\r\n"
                       "\"D1234\"=dword:01020304\r\n"
                       "\"DSmall\"=dword:0a0b0c0d\r\n"
                       "\"DZero\"=dword:00000000\r\n"
                       "\"DAll\"=dword:ffffffff\r\n"
                       "\"DShort\"=dword:1a\r\n"
                       "\"DOneByte\"=hex(4):1a\r\n"
                       "\"Binary\"=hex:01,02,03\r\n"
                       "\"Expand\"=hex(2):41,42,00\r\n"
                       "\"QWord\"=hex(b):01,00,00,00,00,00,00,00\r\n"
                       "\"HexText\"=hex(1):41,42,00\r\n"
                       "\"HexTextBare\"=hex(1):41,42\r\n"
                       "\"HexTextTwoZeros\"=hex(1):41,00,00\r\n"
                       "\"Continued\"=hex(1):41,\\\r\n"
                       "  42,00\r\n"
                       "\"Deleted\"=\"x\"\r\n"
                       "\"Deleted\"=-\r\n"
                       "; a comment\r\n"
                       "\"Unterminated\"=\"abc\r\n"
                       "\"BadEscape\"=\"a\\qb\"\r\n"
                       "\"LongDword\"=dword:123456789\r\n"
                       "\"NotHex\"=dword:xyz\r\n"
                       "\"BadByte\"=hex:01,zz\r\n"
                       "\"Junk\"=\"x\" trailing\r\n"
                       "\"NoEquals\" \"x\"\r\n"
                       "\"After\"=\"still read\"\r\n"
                       "[HKEY_NOWHERE\\SOFTWARE\\Test]\r\n"
                       "\"Lost\"=\"x\"\r\n"
                       "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Gone\\Sub]\r\n"
                       "\"V\"=\"x\"\r\n"
                       "[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Gone]\r\n"
                       "[hkey_local_machine\\software\\test]\r\n"
                       "\"Merged\"=\"lower-case section\"\r\n";
    bytes += "\"Size1024\"=\"" + QByteArray(1023, 'x') + "\"\r\n";
    bytes += "\"Size1025\"=\"" + QByteArray(1024, 'x') + "\"\r\n";
    return bytes;
}

} // namespace

class tst_About : public QObject {
    Q_OBJECT

private:
    LanguageTable table_;

private slots:
    void dialogTexts_data() {
        QTest::addColumn<QString>("language");
        QTest::addColumn<int>("languageBase");
        QTest::addColumn<QString>("caption");
        QTest::addColumn<QString>("versionText");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("disclaimer");
        QTest::addColumn<QString>("sysInfo");
        const QString en = QStringLiteral("Release ") + version();
        QTest::newRow("French") << "FR" << 0 << QStringLiteral("À propos de Norvale Setup")
                                << QStringLiteral("Version ") + version() << "Configuration NorVale"
                                << disclaimerFr() << QStringLiteral("Infos système...");
        QTest::newRow("English") << "US" << 100 << "Norvale Setup" << en << "Norvale Configuration"
                                 << disclaimerEn() << "System Info...";
        // Any language but "FR" gives the English texts; the button follows the base.
        QTest::newRow("other language, French base")
            << "DE" << 0 << "Norvale Setup" << en << "Norvale Configuration" << disclaimerEn()
            << QStringLiteral("Infos système...");
        QTest::newRow("lower-case fr")
            << "fr" << 100 << "Norvale Setup" << en << "Norvale Configuration" << disclaimerEn()
            << "System Info...";
    }
    void dialogTexts() {
        QFETCH(QString, language);
        QFETCH(int, languageBase);
        Globale g;
        g.CurrentLanguage = language;
        g.LanguageBase = qint16(languageBase);
        const Texts texts(table_, g);
        frmAbout dialog(g, texts);

        QCOMPARE(dialog.objectName(), QStringLiteral("frmAbout"));
        QTEST(dialog.windowTitle(), "caption");
        QTEST(dialog.findChild<QLabel *>("lblVersion")->text(), "versionText");
        QTEST(dialog.findChild<QLabel *>("lblTitle")->text(), "title");
        QTEST(dialog.findChild<QLabel *>("lblDisclaimer")->text(), "disclaimer");
        QTEST(dialog.findChild<QPushButton *>("cmdSysInfo")->text(), "sysInfo");
        QVERIFY(dialog.findChild<QPushButton *>("cmdOK"));
    }

    void textsAppliedAgainOnPaint() {
        Globale g;
        g.LanguageBase = 100;
        const Texts texts(table_, g);
        frmAbout dialog(g, texts, nullptr, [](const QString &) { return true; });
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        auto *title = dialog.findChild<QLabel *>("lblTitle");
        auto *versionLabel = dialog.findChild<QLabel *>("lblVersion");

        g.CurrentLanguage = QStringLiteral("FR");
        g.LanguageBase = 0;
        versionLabel->setText(QStringLiteral("changed"));
        dialog.repaint();
        QCOMPARE(dialog.windowTitle(), QStringLiteral("À propos de Norvale Setup"));
        QCOMPARE(title->text(), QStringLiteral("Configuration NorVale"));
        QCOMPARE(versionLabel->text(), QStringLiteral("Version ") + version());
        QCOMPARE(dialog.findChild<QLabel *>("lblDisclaimer")->text(), disclaimerFr());
        // The button's caption is set once, when the dialog is made.
        QCOMPARE(dialog.findChild<QPushButton *>("cmdSysInfo")->text(),
                 QStringLiteral("System Info..."));

        g.CurrentLanguage = QStringLiteral("US");
        dialog.repaint();
        QCOMPARE(title->text(), QStringLiteral("Norvale Configuration"));
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Norvale Setup"));
    }

    void menuShowsModalDialogAndOkClosesIt() {
        ProgramFolder folder;
        Globale g;
        g.ProgramFolder = folder.path();
        g.CurrentLanguage = QStringLiteral("FR");
        const Texts texts(table_, g);
        QWidget window;
        StarterLog log;
        About about(g, texts, &window, log.starter());

        QString seenTitle;
        bool wasModal = false;
        QObject context;
        auto *timer = new QTimer(&context);
        timer->setInterval(10);
        connect(timer, &QTimer::timeout, timer, [&] {
            auto *dialog = qobject_cast<frmAbout *>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            timer->stop();
            wasModal = dialog->isModal() && dialog->parentWidget() == &window;
            seenTitle = dialog->windowTitle();
            dialog->findChild<QPushButton *>("cmdOK")->click();
        });
        timer->start();
        about.m_apropos_Click(); // returns once OK has closed the dialog

        QCOMPARE(seenTitle, QStringLiteral("À propos de Norvale Setup"));
        QVERIFY(wasModal);
        QVERIFY(window.findChildren<frmAbout *>().isEmpty());
        QVERIFY(log.started.isEmpty());
    }

    void sysInfoUnavailable_data() {
        QTest::addColumn<QByteArray>("registry"); // empty: no Registry.reg at all
        QTest::addColumn<bool>("starterResult");
        QTest::addColumn<QStringList>("started");
        const QStringList none;
        QTest::newRow("no registry file") << QByteArray() << true << none;
        QTest::newRow("location folder without MSINFO32.EXE")
            << QByteArray("REGEDIT4\r\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Shared Tools "
                          "Location]\r\n\"MSINFO\"=\"@FOLDER@\"\r\n")
            << true << none;
        QTest::newRow("file without header")
            << QByteArray("[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Shared Tools\\MSINFO]\r\n"
                          "\"PATH\"=\"/usr/bin/tool\"\r\n")
            << true << none;
        QTest::newRow("binary junk")
            << QByteArray("\x00\xff\xfe\x01REGEDIT4\x00\n[\n\"=", 18) << true << none;
        QTest::newRow("malformed PATH line")
            << QByteArray("REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Shared Tools\\"
                          "MSINFO]\n\"PATH\"=\"/usr/bin/tool\n")
            << true << none;
        QTest::newRow("PATH under another root")
            << QByteArray("REGEDIT4\n[HKEY_CURRENT_USER\\SOFTWARE\\Microsoft\\Shared Tools\\"
                          "MSINFO]\n\"PATH\"=\"/usr/bin/tool\"\n")
            << true << none;
        QTest::newRow("program does not start")
            << QByteArray("REGEDIT4\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Shared Tools\\"
                          "MSINFO]\n\"PATH\"=\"/usr/bin/tool\"\n")
            << false << QStringList{QStringLiteral("/usr/bin/tool")};
    }
    void sysInfoUnavailable() {
        QFETCH(QByteArray, registry);
        QFETCH(bool, starterResult);
        ProgramFolder folder;
        if (!registry.isEmpty())
            folder.write(RegistryFile::fileName(),
                         registry.replace("@FOLDER@", folder.path().toUtf8()));
        for (const QString &language : {QStringLiteral("FR"), QStringLiteral("US")}) {
            Globale g;
            g.ProgramFolder = folder.path();
            g.CurrentLanguage = language;
            const Texts texts(table_, g);
            StarterLog log;
            log.result = starterResult;
            frmAbout dialog(g, texts, nullptr, log.starter());
            dialog.show();

            QObject context;
            SeenBox box;
            answerNextMessageBox(&context, box);
            dialog.findChild<QPushButton *>("cmdSysInfo")->click();

            QVERIFY(box.seen);
            QCOMPARE(box.text, QStringLiteral("Les informations système ne sont pas disponibles "
                                              "actuellement"));
            QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
            QTEST(log.started, "started");
            QVERIFY(dialog.isVisible()); // the About box stays open
        }
    }

    void sysInfoStarts_data() {
        QTest::addColumn<QByteArray>("registry");
        QTest::addColumn<QString>("started");
        const QByteArray path =
            "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Shared Tools\\MSINFO]\r\n"
            "\"PATH\"=\"/opt/sys \\\"info\\\"\\\\tool\"\r\n";
        const QByteArray location =
            "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Shared Tools Location]\r\n"
            "\"MSINFO\"=\"@FOLDER@/tools\"\r\n";
        QTest::newRow("PATH") << "REGEDIT4\r\n" + path << "/opt/sys \"info\"\\tool";
        QTest::newRow("PATH before the location")
            << "Windows Registry Editor Version 5.00\r\n" + location + path
            << "/opt/sys \"info\"\\tool";
        QTest::newRow("names in any case")
            << QByteArray("REGEDIT4\n[hkey_local_machine\\software\\microsoft\\shared tools\\"
                          "msinfo]\n\"path\"=\"/usr/bin/hardinfo\"\n")
            << "/usr/bin/hardinfo";
        // The folder and the file name are joined with a backslash; a file of
        // exactly that name is found.
        QTest::newRow("location with MSINFO32.EXE")
            << "REGEDIT4\r\n" + location << "@FOLDER@/tools\\MSINFO32.EXE";
    }
    void sysInfoStarts() {
        QFETCH(QByteArray, registry);
        QFETCH(QString, started);
        ProgramFolder folder;
        folder.write(RegistryFile::fileName(),
                     registry.replace("@FOLDER@", folder.path().toUtf8()));
        folder.write(QStringLiteral("tools\\MSINFO32.EXE"), "#!/bin/sh\n");
        Globale g;
        g.ProgramFolder = folder.path();
        const Texts texts(table_, g);
        StarterLog log;
        frmAbout dialog(g, texts, nullptr, log.starter());
        dialog.show();

        QObject context;
        SeenBox box;
        answerNextMessageBox(&context, box);
        dialog.findChild<QPushButton *>("cmdSysInfo")->click();

        QVERIFY(!box.seen);
        QCOMPARE(log.started,
                 QStringList{started.replace(QStringLiteral("@FOLDER@"), folder.path())});
    }

    void defaultStarterFailsOnMissingProgram() {
        QVERIFY(!startDetachedProgram(QString()));
        ProgramFolder folder;
        QVERIFY(!startDetachedProgram(folder.file(QStringLiteral("no-such-tool"))));
    }

    void getKeyValue_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("before");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QString>("after");
        const QString key = QStringLiteral("SOFTWARE\\Test");
        auto row = [&](const char *tag, const QString &name, const QString &before, bool ok,
                       const QString &after) {
            QTest::newRow(tag) << key << name << before << ok << after;
        };
        row("string with escapes", "Text", "old", true, "C:\\Tools\\say \"hi\"");
        row("empty string", "Empty", "old", true, "");
        row("name in another case", "MIXED case", "", true, "found");
        row("default value", "", "", true, "default");
        row("dword 1a", "D1a", "", true, "26");
        // Bytes 04 03 02 01 read last to first, one digit each: &h1234.
        row("dword 01020304", "D1234", "", true, "4660");
        row("dword bytes below 16", "DSmall", "", true, QString::number(0xABCD));
        row("dword zero", "DZero", "", true, "0");
        row("dword all ones", "DAll", "", true, "-1");
        row("dword of few digits", "DShort", "", true, "26");
        row("dword of one byte", "DOneByte", "", true, "26");
        // The text is not cleared first: its digits lead the number.
        row("dword after hex text", "D1a", "F", true, QString::number(0xF001A));
        row("dword past 32 bits", "DAll", "FFFF", true, "281474976710655");
        row("dword past 15 digits", "DAll", "FFFFFFFFFFFF", true, "1.20892581961463E+24");
        row("binary keeps the text", "Binary", "keep", true, "keep");
        row("expandable string keeps the text", "Expand", "keep", true, "keep");
        row("qword keeps the text", "QWord", "keep", true, "keep");
        row("string as bytes", "HexText", "", true, "AB");
        row("string without its zero", "HexTextBare", "", true, "AB");
        row("only one zero dropped", "HexTextTwoZeros", "", true, QStringLiteral("A") + QChar(0));
        row("continued byte list", "Continued", "", true, "AB");
        row("1024 bytes fit", "Size1024", "", true, QString(1023, u'x'));
        row("1025 bytes do not", "Size1025", "old", false, "");
        row("missing value", "Nothing", "old", false, "");
        row("deleted value", "Deleted", "old", false, "");
        row("unterminated string", "Unterminated", "old", false, "");
        row("unknown escape", "BadEscape", "old", false, "");
        row("nine-digit dword", "LongDword", "old", false, "");
        row("dword not hex", "NotHex", "old", false, "");
        row("bad byte", "BadByte", "old", false, "");
        row("junk after the string", "Junk", "old", false, "");
        row("no equals sign", "NoEquals", "old", false, "");
        row("after malformed lines", "After", "", true, "still read");
        row("second section of the same key", "Merged", "", true, "lower-case section");
        QTest::newRow("missing key") << "SOFTWARE\\Nothing"
                                     << "Text"
                                     << "old" << false << "";
        QTest::newRow("parent of a key") << "SOFTWARE"
                                         << "Text"
                                         << "old" << false << "";
        QTest::newRow("deleted key") << "SOFTWARE\\Gone\\Sub"
                                     << "V"
                                     << "old" << false << "";
        QTest::newRow("empty path part") << "SOFTWARE\\\\Test"
                                         << "Text"
                                         << "old" << false << "";
    }
    void getKeyValue() {
        QFETCH(QString, key);
        QFETCH(QString, name);
        QFETCH(QString, before);
        const RegistryFile registry = RegistryFile::fromBytes(sampleRegistry());
        QString text = before;
        QTEST(GetKeyValue(registry, Root::LocalMachine, key, name, text), "ok");
        QTEST(text, "after");
    }

    void getKeyValueOfNonHexTextRaises() {
        const RegistryFile registry = RegistryFile::fromBytes(sampleRegistry());
        QString text = QStringLiteral("xyz");
        QVERIFY_THROWS_EXCEPTION(
            RuntimeError, GetKeyValue(registry, Root::LocalMachine, "SOFTWARE\\Test", "D1a", text));
    }

    void registryValueBytes() {
        const RegistryFile registry = RegistryFile::fromBytes(sampleRegistry());
        const auto *dword = registry.value(Root::LocalMachine, "SOFTWARE\\Test", "D1234");
        QVERIFY(dword);
        QCOMPARE(dword->type, quint32(RegistryFile::REG_DWORD));
        QCOMPARE(dword->data, QByteArray("\x04\x03\x02\x01", 4));
        const auto *text = registry.value(Root::LocalMachine, "software\\test", "EMPTY");
        QVERIFY(text);
        QCOMPARE(text->type, quint32(RegistryFile::REG_SZ));
        QCOMPARE(text->data, QByteArray(1, '\0'));
        QVERIFY(!registry.value(Root::LocalMachine, "", "Orphan"));
        QVERIFY(registry.hasKey(Root::LocalMachine, "SOFTWARE"));
        QVERIFY(!registry.hasKey(Root::LocalMachine, "SOFTWARE\\Gone"));

        // Too small a buffer: the size needed, and the buffer as it was.
        RegistryFile::Key key;
        QCOMPARE(registry.openKey(Root::LocalMachine, "SOFTWARE\\Test", key),
                 RegistryFile::Success);
        QByteArray buffer(2, 'z');
        quint32 size = 2;
        quint32 type = 0;
        QCOMPARE(key.queryValue("Text", type, buffer, size), RegistryFile::MoreData);
        QCOMPARE(size, quint32(QByteArray("C:\\Tools\\say \"hi\"").size() + 1));
        QCOMPARE(buffer, QByteArray("zz"));
        key.close();
        size = 1024;
        QCOMPARE(key.queryValue("Text", type, buffer, size), RegistryFile::FileNotFound);
    }

    void registryFileEncodings_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<QString>("text");
        const QString accented = QStringLiteral("/opt/système");
        const QString body = QStringLiteral("[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Shared "
                                            "Tools\\MSINFO]\r\n\"PATH\"=\"%1\"\r\n");
        QByteArray utf16("\xff\xfe", 2);
        const QString v5 =
            QStringLiteral("Windows Registry Editor Version 5.00\r\n\r\n") + body.arg(accented);
        for (QChar c : v5) {
            utf16.append(char(c.unicode() & 0xff));
            utf16.append(char(c.unicode() >> 8));
        }
        QTest::newRow("UTF-16 version 5 export") << utf16 << true << accented;
        QTest::newRow("UTF-8") << ("REGEDIT4\n" + body.arg(accented).toUtf8()) << true << accented;
        QTest::newRow("Latin-1") << ("REGEDIT4\n" + body.arg(accented).toLatin1()) << true
                                 << accented;
        QTest::newRow("UTF-8 with mark")
            << ("\xef\xbb\xbfREGEDIT4\n" + body.arg(accented).toUtf8()) << true << accented;
        // In a version 5 export, strings written as bytes are in UTF-16.
        QTest::newRow("version 5 string bytes")
            << QByteArray("Windows Registry Editor Version 5.00\n[HKEY_LOCAL_MACHINE\\SOFTWARE\\"
                          "Microsoft\\Shared Tools\\MSINFO]\n\"PATH\"=hex(1):2f,00,78,00,00,00\n")
            << true << "/x";
        QTest::newRow("empty file") << QByteArray() << false << "";
        QTest::newRow("header only") << QByteArray("REGEDIT4\r\n") << false << "";
        QTest::newRow("other header")
            << ("REGEDIT5\n" + body.arg(accented).toUtf8()) << false << "";
    }
    void registryFileEncodings() {
        QFETCH(QByteArray, bytes);
        ProgramFolder folder;
        folder.write(RegistryFile::fileName(), bytes);
        const RegistryFile registry(folder.file(RegistryFile::fileName()));
        QString text;
        QTEST(GetKeyValue(registry, Root::LocalMachine, "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO",
                          "PATH", text),
              "ok");
        QTEST(text, "text");
    }

    void shippedRegistryNamesTheTool() {
        const RegistryFile registry(
            QStringLiteral(NORVALE_REFERENCE_DIR "/../../resources/Registry.reg"));
        QString text;
        QVERIFY(GetKeyValue(registry, Root::LocalMachine,
                            "SOFTWARE\\Microsoft\\Shared Tools\\MSINFO", "PATH", text));
        QCOMPARE(text, QStringLiteral("/usr/bin/hardinfo"));
    }
};

QTEST_MAIN(tst_About)
#include "tst_about.moc"
