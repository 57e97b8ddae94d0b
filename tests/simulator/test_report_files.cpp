#include "ReportFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace sim;

namespace {
QString Content(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromUtf8(f.readAll()) : QStringLiteral("<unreadable>");
}
} // namespace

// Report files stay inside the report folder, however the name tries to leave it.
class TestReportFiles : public QObject {
    Q_OBJECT
    QTemporaryDir m_outside;

private slots:
    void initTestCase() {
        QVERIFY(m_outside.isValid());
        // Outside ctest nobody set a private data folder: never write into the user's.
        if (qEnvironmentVariableIsEmpty("XDG_DATA_HOME"))
            qputenv("XDG_DATA_HOME", m_outside.filePath(QStringLiteral("xdg-data")).toLocal8Bit());
        const QString folder = ReportFolder();
        QDir(folder).mkpath(QStringLiteral("sub"));
        // Links inside the folder: one out of it, one to a folder inside it, one to nowhere.
        QFile::remove(folder + QStringLiteral("/out"));
        QFile::remove(folder + QStringLiteral("/in"));
        QFile::remove(folder + QStringLiteral("/gone"));
        QVERIFY(QFile::link(m_outside.path(), folder + QStringLiteral("/out")));
        QVERIFY(QFile::link(folder + QStringLiteral("/sub"), folder + QStringLiteral("/in")));
        QVERIFY(
            QFile::link(m_outside.filePath(QStringLiteral("nothing.txt")), folder + QStringLiteral("/gone")));
    }

    void reportPath_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("expected"); // relative to the report folder; empty: refused
        const QString folder = ReportFolder();
        const auto row = [](const char* name, const QString& in, const QString& out) {
            QTest::newRow(name) << in << out;
        };
        row("bare name", "reportEJ.txt", "reportEJ.txt");
        row("below a sub-folder", "sub/report.txt", "sub/report.txt");
        row("absolute inside", folder + "/report.txt", "report.txt");
        row("absolute elsewhere", QDir::tempPath() + "/report.txt", "");
        row("parent", "../report.txt", "");
        row("parent deeper", "a/../../report.txt", "");
        row("backslash parent", "..\\report.txt", "");
        row("absolute with parent", folder + "/../report.txt", "");
        row("empty", "", "");
        row("a folder", "sub", "");
        row("through a link out of the folder", "out/report.txt", "");
        row("through a link inside the folder", "in/report.txt", "sub/report.txt");
        row("a link to nowhere", "gone", "");
        row("NUL inside", QStringLiteral("report") + QChar(0) + QStringLiteral(".txt"), "");
        row("line feed inside", "report\n.txt", "");
        row("tab inside", "report\t.txt", "");
        row("DEL inside", QStringLiteral("report") + QChar(0x7f), "");
    }
    void reportPath() {
        QFETCH(QString, name);
        QFETCH(QString, expected);
        const std::optional<QString> path = ResolveReportPath(name);
        if (expected.isEmpty()) {
            QVERIFY2(!path.has_value(), qPrintable(path.value_or(QString())));
            return;
        }
        QVERIFY(path.has_value());
        QCOMPARE(*path, QFileInfo(ReportFolder()).canonicalFilePath() + u'/' + expected);
    }

    void writeAppendAndCreate() {
        const QString folder = ReportFolder(); // in the private data folder
        QVERIFY2(folder.startsWith(QDir::cleanPath(qEnvironmentVariable("XDG_DATA_HOME")) + u'/'),
                 qPrintable(folder));
        QVERIFY(folder.endsWith(QStringLiteral("/fpubench/reports")) && QFileInfo(folder).isDir());
        const std::optional<QString> path = ResolveReportPath(QStringLiteral("report.txt"));
        QVERIFY(path.has_value());
        QVERIFY(WriteReportFile(*path, 1, {"first", "second"}));
        QCOMPARE(Content(*path), QStringLiteral("first\nsecond\n"));
        QVERIFY(WriteReportFile(*path, 0, {"third"}));
        QCOMPARE(Content(*path), QStringLiteral("first\nsecond\nthird\n"));
        QVERIFY(WriteReportFile(*path, 1, {"fresh"}));
        QCOMPARE(Content(*path), QStringLiteral("fresh\n"));
        QVERIFY(!WriteReportFile(*path, 2, {"printed instead"}));
        QCOMPARE(Content(*path), QStringLiteral("fresh\n"));
        // Written aside and renamed: a second name of the old file keeps the old report.
        const QString twin = folder + QStringLiteral("/twin.txt");
        QFile::remove(twin);
        QVERIFY(::link(QFile::encodeName(*path).constData(), QFile::encodeName(twin).constData()) == 0);
        QVERIFY(WriteReportFile(*path, 1, {"newer"}));
        QCOMPARE(Content(*path), QStringLiteral("newer\n"));
        QCOMPARE(Content(twin), QStringLiteral("fresh\n"));
        QFile::remove(twin);
        QVERIFY(WriteReportFile(*path, 1, {"fresh"}));
        // Nothing of the way is left behind.
        const QStringList files = QDir(folder).entryList(QDir::Files | QDir::Hidden);
        QVERIFY2(files.filter(QStringLiteral("report.txt")).size() == 1, qPrintable(files.join(u' ')));
        // Appending to a file that doesn't exist yet creates it.
        const std::optional<QString> other = ResolveReportPath(QStringLiteral("appended.txt"));
        QVERIFY(other.has_value());
        QFile::remove(*other);
        QVERIFY(WriteReportFile(*other, 0, {"only"}));
        QCOMPARE(Content(*other), QStringLiteral("only\n"));
    }
};

QTEST_GUILESS_MAIN(TestReportFiles)
#include "test_report_files.moc"
