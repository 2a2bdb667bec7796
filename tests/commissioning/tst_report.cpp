#include "commissioning/PdfModule.h"
#include "commissioning/Report.h"
#include "support/MainHarness.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>
#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

namespace {

using Row = CommissioningReport::Row;

// Sat IDs 11, 22, 33, 44, 55 in each state in turn, then `more` duplicates.
CommissioningReport everyState(int more = 0) {
    CommissioningReport r;
    r.kind = CommissioningReport::Kind::Test;
    r.when = QDateTime(QDate(2025, 3, 14), QTime(10, 42, 7), Qt::OffsetFromUTC, 3600);
    r.baudRate = QStringLiteral("38400");
    r.rounds = 5;
    for (int i = 0; i < 5 + more; ++i) {
        Row row;
        row.position = i < 3 ? i + 1 : 0;
        row.satId = qint16(11 * (i + 1));
        row.state = Row::State(std::min(i, 4));
        row.expectedInterface = row.foundInterface = QStringLiteral("RS-485");
        row.foundEnabled = row.rxFree = QStringLiteral("1");
        if (i > 0)
            row.differences = {QStringLiteral("Difference <%1> of %2").arg(i).arg(row.satId)};
        r.rows.push_back(row);
    }
    r.rows[2].foundInterface.clear();
    r.notes = {QStringLiteral("Sat ID 55 twice")};
    r.health = {{11, 10, 9, 1, 38'500'000, 61'000'000, 4'100'000'000}, {33, 3, 0, 3, -1, -1, -1}};
    return r;
}

// The painter of PDF reports, loaded as the command line loads it.
struct LoadedPdfModule : PdfModule {
    LoadedPdfModule()
        : PdfModule(QStringLiteral(NORVALE_PDF_MODULE_DIR)) {
        QString error;
        if (!load(error))
            qFatal("%s", qPrintable(error));
    }
};

// The report as written in a scratch folder; empty when it was not.
QByteArray written(const QString &name, OwnTexts::Language language, int more = 0) {
    ProgramFolder folder;
    QString error;
    const LoadedPdfModule pdf;
    return writeReport(everyState(more), folder.file(name), language, error, &pdf)
               ? folder.read(name)
               : QByteArray();
}

} // namespace

Q_DECLARE_METATYPE(OwnTexts::Language)

class tst_Report : public QObject {
    Q_OBJECT

private slots:
    void json_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QJsonValue>("expected");
        // clang-format off
        const std::pair<const char *, QJsonValue> rows[] = {
            {"schema", "norvale-report/1"}, {"when", "2025-03-14T09:42:07Z"}, {"kind", "test"},
            {"baudRate", 38400}, {"rounds", 5}, {"clean", false}, {"summary/satellites", 5},
            {"summary/duplicate", 1}, {"summary/missing", 1}, {"satellites/4/satId", 55},
            {"satellites/4/state", "duplicate"}, {"satellites/3/state", "unexpected"},
            {"satellites/3/position", QJsonValue()}, {"satellites/2/foundInterface", QJsonValue()},
            {"satellites/0/rxFreeKB", 1}, {"satellites/0/foundEnabled", 1},
            {"satellites/0/expectedEnabled", QJsonValue()}, {"notes/0", "Sat ID 55 twice"},
            {"satellites/2/differences/0", "Difference <2> of 33"},
            {"health/0/medianLatencyMs", 38.5}, {"health/0/lastSeenMs", 4100},
            {"health/1/missed", 3}, {"health/1/worstLatencyMs", QJsonValue()}};
        // clang-format on
        for (const auto &[path, expected] : rows)
            QTest::newRow(path) << QString::fromLatin1(path) << expected;
    }
    void json() {
        QFETCH(QString, path);
        QFETCH(QJsonValue, expected);
        QJsonValue value = QJsonDocument::fromJson(written("r.json", OwnTexts::French)).object();
        for (const QString &step : path.split(u'/'))
            value = value.isArray() ? value[step.toInt()] : value[step];
        QCOMPARE(value.type(), expected.type()); // 1 and "1" are not the same
        QCOMPARE(value, expected);
    }

    void pdfPages_data() {
        QTest::addColumn<int>("more");
        QTest::addColumn<int>("fewest");
        QTest::addColumn<int>("most");
        QTest::newRow("one page") << 0 << 1 << 1;
        QTest::newRow("a table running over pages") << 60 << 2 << 5;
    }
    void pdfPages() {
        QFETCH(int, more);
        QFETCH(int, fewest);
        QFETCH(int, most);
        const QByteArray pdf = written("r.PDF", OwnTexts::English, more);
        QVERIFY(pdf.startsWith("%PDF-"));
        const qsizetype pages = pdf.count("/Type /Page\n") + pdf.count("/Type /Page ");
        QVERIFY2(pages >= fewest && pages <= most, QByteArray::number(pages));
    }

    void html_data() {
        QTest::addColumn<OwnTexts::Language>("language");
        QTest::addColumn<QString>("words"); // "!" before one that must not be there
        QTest::newRow("English") << OwnTexts::English
                                 << "live test|>matches<|>differs<|>missing<|>duplicate<|38.5|"
                                    "!Rapport|!src=|!http";
        QTest::newRow("French") << OwnTexts::French
                                << "test en direct|>conforme<|>absent<|>inattendu<|>en double<|"
                                   "38,5|!>missing<|!Rounds|!never|!38.5";
    }
    void html() {
        QFETCH(OwnTexts::Language, language);
        QFETCH(QString, words);
        QStringList all = words.split(u'|') << "Sat ID 55 twice";
        for (int i = 0; i < 5; ++i) { // every satellite, every difference
            all << QStringLiteral(">%1<").arg(11 * (i + 1));
            if (i > 0)
                all << QStringLiteral("Difference &lt;%1&gt; of %2").arg(i).arg(11 * (i + 1));
        }
        const QString html = QString::fromUtf8(written("r.html", language));
        for (const QString &word : all)
            QVERIFY2(html.contains(word.mid(word.startsWith(u'!'))) != word.startsWith(u'!'),
                     qPrintable(word));
    }

    // A write that fails leaves the report already there as it was, and no stray file.
    void failedWrites_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        const char *rows[][2] = {{"old.txt", ".html, .pdf or .json"},
                                 {"gone/old.json", "gone"}, // no such folder
                                 {"old.pdf", "old.pdf"},    // the disk full half-way
                                 {"old.html", "folder"}};   // a read-only folder
        for (const auto &[name, reason] : rows)
            if (geteuid() != 0 || !QByteArray(name).endsWith(".html")) // root writes anywhere
                QTest::newRow(name) << QString::fromLatin1(name) << QString::fromLatin1(reason);
    }
    void failedWrites() {
        QFETCH(QString, name);
        QFETCH(QString, reason);
        ProgramFolder folder;
        const QString old = name.section(u'/', -1);
        folder.write(old, "the report of yesterday");
        const QStringList before = QDir(folder.path()).entryList(QDir::Files);
        rlimit limit{};
        getrlimit(RLIMIT_FSIZE, &limit);
        const rlimit full{name.endsWith(".pdf") ? 1000 : limit.rlim_cur, limit.rlim_max};
        const auto handler = std::signal(SIGXFSZ, SIG_IGN); // EFBIG rather than death
        setrlimit(RLIMIT_FSIZE, &full);
        if (name.endsWith(".html"))
            QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::ExeOwner);
        QString error;
        const LoadedPdfModule pdf;
        const bool done =
            writeReport(everyState(), folder.file(name), OwnTexts::English, error, &pdf);
        QFile::setPermissions(folder.path(),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        setrlimit(RLIMIT_FSIZE, &limit);
        std::signal(SIGXFSZ, handler);
        QVERIFY(!done);
        QVERIFY2(error.contains(reason), qPrintable(error));
        QCOMPARE(folder.read(old), "the report of yesterday");
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files), before);
    }
};

QTEST_MAIN(tst_Report)
#include "tst_report.moc"
