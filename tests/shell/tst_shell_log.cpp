#include "ShellBench.h"
#include "ShellPickers.h"
#include "Tools.h"

#include <QFileDialog>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QByteArray ReadAll(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return f.readAll();
}

} // namespace

class LogTest : public QObject {
    Q_OBJECT
private slots:
    void init();
    void windowControls();
    void emptyLogSavesFourBytes();
    void savedLogIsOneQuotedValue();
    void saveReplacesAnExistingFile();
    void cancelledSaveWritesNothing();
    void unwritableFileLeavesLogIntact();
    void clearEmptiesLogButNotDebugOutput();
    void hiddenLogKeepsAndTakesLines();
    void linesReachTheTextBoxInOrder();
    void millionLinesSave();
    void hideButtonAndFocusLossHide();
    void nameFilters_data();
    void nameFilters();
    void fileDialogsAsConfigured();

private:
    std::unique_ptr<QTemporaryDir> m_dir;
};

void LogTest::init() {
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void LogTest::windowControls() {
    ShellBench bench;
    frmLog* log = bench.window->Log();
    QCOMPARE(log->windowTitle(), QStringLiteral("Opos Test Log Form"));
    QCOMPARE(log->cmdClearLog->text(), QStringLiteral("&Clear"));
    QCOMPARE(log->cmdMinimize->text(), QStringLiteral("Hide"));
    QCOMPARE(log->cmdSaveLog2File->text(), QStringLiteral("SaveLog2File"));
    QVERIFY(QFontInfo(log->txtOposLog->font()).fixedPitch());
}

void LogTest::emptyLogSavesFourBytes() {
    ShellBench bench;
    bench.window->Log()->cmdClearLog->click();
    bench.savePath = m_dir->filePath("empty.log");
    bench.window->Log()->cmdSaveLog2File->click();
    QCOMPARE(bench.saveCalls.size(), 1);
    QCOMPARE(bench.saveCalls.at(0).title, QStringLiteral("Select the output log file"));
    QCOMPARE(bench.saveCalls.at(0).filter, QStringLiteral("Log files|*.log"));
    QCOMPARE(bench.saveCalls.at(0).folder, QString());
    QCOMPARE(ReadAll(bench.savePath), QByteArray("\"\"\r\n"));
}

void LogTest::savedLogIsOneQuotedValue() {
    ShellBench bench;
    bench.window->Log()->Clear();
    const QString first = QStringLiteral("PrintRecItem(\"Articolo test 1\", 1.00, 1, 0, 0.00, \"Kg\")     -> "
                                         "OposSuccess(0)");
    const QString second = QStringLiteral("State = 2 (OPOS_S_IDLE)");
    Tools::WriteLog(first);
    Tools::WriteLog(second);
    bench.savePath = m_dir->filePath("two.log");
    bench.window->Log()->cmdSaveLog2File->click();
    const QByteArray expected = "\"" + first.toLatin1() + "\r\n" + second.toLatin1() + "\r\n\"\r\n";
    QCOMPARE(ReadAll(bench.savePath), expected);
    // Saving changes nothing in the window.
    QCOMPARE(bench.LogLines(), QStringList({first, second}));
}

void LogTest::saveReplacesAnExistingFile() {
    ShellBench bench;
    bench.window->Log()->Clear();
    bench.savePath = m_dir->filePath("old.log");
    {
        QFile f(bench.savePath);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write(QByteArray(1000, 'x'));
    }
    Tools::WriteLog(QStringLiteral("a"));
    bench.window->Log()->cmdSaveLog2File->click();
    QCOMPARE(ReadAll(bench.savePath), QByteArray("\"a\r\n\"\r\n"));
}

void LogTest::cancelledSaveWritesNothing() {
    ShellBench bench;
    bench.savePath.clear();
    bench.window->Log()->cmdSaveLog2File->click();
    QCOMPARE(bench.saveCalls.size(), 1);
    QVERIFY(QDir(m_dir->path()).entryList(QDir::Files).isEmpty());
}

void LogTest::unwritableFileLeavesLogIntact() {
    ShellBench bench;
    Tools::WriteLog(QStringLiteral("must survive"));
    const QString before = bench.window->Log()->LogText();
    bench.savePath = m_dir->filePath("no/such/folder/out.log");
    bench.window->Log()->cmdSaveLog2File->click();
    QVERIFY(!QFile::exists(bench.savePath));
    QCOMPARE(bench.window->Log()->LogText(), before);
    QVERIFY(bench.boxes.isEmpty());
}

void LogTest::clearEmptiesLogButNotDebugOutput() {
    ShellBench bench;
    QStringList debug;
    auto previous = SetDebugOutputHandler([&](const QString& l) { debug.append(l); });
    Tools::WriteLog(QStringLiteral("one"));
    bench.window->Log()->cmdClearLog->click();
    QVERIFY(bench.LogLines().isEmpty());
    QVERIFY(bench.window->Log()->txtOposLog->toPlainText().isEmpty());
    QCOMPARE(debug, QStringList({"one\r\n"}));
    Tools::WriteLog(QStringLiteral("two"));
    QCOMPARE(bench.LogLines(), QStringList({"two"}));
    SetDebugOutputHandler(previous);
}

void LogTest::hiddenLogKeepsAndTakesLines() {
    ShellBench bench;
    frmLog* log = bench.window->Log();
    log->Clear();
    Tools::WriteLog(QStringLiteral("before"));
    bench.window->ToggleLogWindow();
    QVERIFY(log->isVisible());
    log->cmdMinimize->click();
    QVERIFY(!log->isVisible());
    Tools::WriteLog(QStringLiteral("while hidden"));
    bench.window->ToggleLogWindow();
    QVERIFY(log->isVisible());
    QCoreApplication::processEvents();
    QCOMPARE(log->txtOposLog->toPlainText(), QStringLiteral("before\nwhile hidden"));
}

void LogTest::linesReachTheTextBoxInOrder() {
    ShellBench bench;
    frmLog* log = bench.window->Log();
    log->Clear();
    bench.window->ToggleLogWindow();
    QStringList expected;
    for (int i = 0; i < 2000; ++i) {
        expected.append(QStringLiteral("line %1").arg(i));
        Tools::WriteLog(expected.constLast());
    }
    QCoreApplication::processEvents();
    QCOMPARE(log->txtOposLog->blockCount(), 2000);
    QCOMPARE(log->txtOposLog->toPlainText().split(QLatin1Char('\n')), expected);
    QCOMPARE(bench.LogLines(), expected);
}

void LogTest::millionLinesSave() {
    ShellBench bench;
    bench.window->Log()->Clear();
    const QString line = QStringLiteral("State = 2 (OPOS_S_IDLE)");
    constexpr int count = 1000000;
    for (int i = 0; i < count; ++i)
        Tools::WriteLog(line);
    bench.savePath = m_dir->filePath("big.log");
    bench.window->Log()->cmdSaveLog2File->click();
    const QByteArray saved = ReadAll(bench.savePath);
    QCOMPARE(saved.size(), qsizetype(1 + count * (line.size() + 2) + 3));
    QVERIFY(saved.startsWith("\"" + line.toLatin1() + "\r\n"));
    QVERIFY(saved.endsWith(line.toLatin1() + "\r\n\"\r\n"));
}

void LogTest::hideButtonAndFocusLossHide() {
    ShellBench bench;
    frmLog* log = bench.window->Log();
    bench.window->ToggleLogWindow();
    QVERIFY(log->isVisible());
    QEvent deactivate(QEvent::WindowDeactivate);
    QCoreApplication::sendEvent(log, &deactivate);
    QVERIFY(!log->isVisible());
}

void LogTest::nameFilters_data() {
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("log") << "Log files|*.log" << QStringList{"Log files (*.log)"};
    QTest::newRow("closing bar") << "Log files|*.log|" << QStringList{"Log files (*.log)"};
    QTest::newRow("macro") << "Opos Test Macro Commands (*.oposcmd)|*.oposcmd|All files|*.*"
                           << QStringList{"Opos Test Macro Commands (*.oposcmd) (*.oposcmd)",
                                          "All files (*.*)"};
    QTest::newRow("two patterns") << "Pictures|*.gif;*.bmp|" << QStringList{"Pictures (*.gif *.bmp)"};
    QTest::newRow("empty") << "" << QStringList{};
}

void LogTest::nameFilters() {
    QFETCH(QString, filter);
    QFETCH(QStringList, expected);
    QCOMPARE(ShellPickers::NameFilters(filter), expected);
}

void LogTest::fileDialogsAsConfigured() {
    QFileDialog save;
    ShellPickers::ConfigureFileDialog(save, ShellPickers::FileMode::Save, "Log files|*.log",
                                      "Select the output log file", m_dir->path());
    QCOMPARE(save.acceptMode(), QFileDialog::AcceptSave);
    QVERIFY(!save.testOption(QFileDialog::DontConfirmOverwrite)); // asks before overwriting
    QCOMPARE(save.windowTitle(), QStringLiteral("Select the output log file"));
    QCOMPARE(save.nameFilters(), QStringList{"Log files (*.log)"});
    QCOMPARE(save.directory().absolutePath(), QDir(m_dir->path()).absolutePath());
    QVERIFY(save.defaultSuffix().isEmpty());

    QFileDialog open;
    ShellPickers::ConfigureFileDialog(open, ShellPickers::FileMode::Open, "All files|*.*", "t", {});
    QCOMPARE(open.acceptMode(), QFileDialog::AcceptOpen);
    QCOMPARE(open.fileMode(), QFileDialog::ExistingFile); // only existing files

    QFileDialog folder;
    ShellPickers::ConfigureFolderDialog(folder, m_dir->path(), {});
    QCOMPARE(folder.fileMode(), QFileDialog::Directory);
    QVERIFY(folder.testOption(QFileDialog::ShowDirsOnly));
    QCOMPARE(folder.directory().absolutePath(), QDir(m_dir->path()).absolutePath());
}

QTEST_MAIN(LogTest)
#include "tst_shell_log.moc"
