#include "ShellBench.h"
#include "ShellPickers.h"
#include <QFileDialog>
#include <QTemporaryDir>
#include <optional>

static QByteArray ReadAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

class LogTest : public QObject {
    Q_OBJECT
private slots:
    void init() { QVERIFY(m_dir.emplace().isValid()); }
    // The format is the log's own; the window asks where and leaves the log as it was.
    void save_data() {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<QString>("target");      // what the picker answers; empty: cancelled
        QTest::addColumn<QByteArray>("expected"); // in old.log afterwards
        const QByteArray old(1000, 'x');
        const QString item =
            "PrintRecItem(\"Articolo test 1\", 1.00, 1, 0, 0.00, \"Kg\")     -> OposSuccess(0)";
        QTest::newRow("quotes kept") << QStringList{item, "State = 2 (OPOS_S_IDLE)"} << "old.log"
                                     << "\"" + item.toLatin1() + "\r\nState = 2 (OPOS_S_IDLE)\r\n\"\r\n";
        QTest::newRow("cancelled") << QStringList{"a"} << "" << old;
        QTest::newRow("unwritable") << QStringList{"a"} << "no/such/folder/out.log" << old;
    }
    void save() {
        QFETCH(QStringList, lines);
        QFETCH(QString, target);
        QFETCH(QByteArray, expected);
        QFile old(m_dir->filePath("old.log"));
        QVERIFY(old.open(QIODevice::WriteOnly) && old.write(QByteArray(1000, 'x')) == 1000);
        old.close();
        ShellBench bench;
        bench.window->Log()->cmdClearLog->click();
        for (const QString& line : lines)
            bench.window->Core().Log().Append(line);
        bench.savePath = target.isEmpty() ? QString() : m_dir->filePath(target);
        bench.window->Log()->cmdSaveLog2File->click();

        QCOMPARE(bench.saveCalls,
                 QList<QStringList>({{"Log files|*.log", "Select the output log file", ""}}));
        QCOMPARE(ReadAll(old.fileName()), expected);
        QCOMPARE(QDir(m_dir->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList{"old.log"});
        QCOMPARE(bench.LogLines(), lines); // saving or failing to changes nothing in the window
        QVERIFY(bench.boxes.isEmpty());
    }
    void hiddenLogKeepsAndTakesLines() {
        ShellBench bench;
        frmLog* log = bench.window->Log();
        QPushButton* toggle = bench.window->Toolbar()->cmdLogWindow;
        QStringList debug;
        auto previous = SetDebugOutputHandler([&](const QString& l) { debug.append(l); });
        log->Clear();
        clsBenchLog& lines = bench.window->Core().Log();
        lines.Append(QStringLiteral("before"));
        toggle->click();
        log->cmdMinimize->click();
        QVERIFY(!log->isVisible());
        lines.Append(QStringLiteral("while hidden"));
        toggle->click();
        QVERIFY(log->isVisible());
        QCoreApplication::processEvents();
        QCOMPARE(log->txtOposLog->toPlainText(), QStringLiteral("before\nwhile hidden"));
        QEvent deactivate(QEvent::WindowDeactivate); // losing the focus hides it too
        QCoreApplication::sendEvent(log, &deactivate);
        QVERIFY(!log->isVisible());
        toggle->click();
        toggle->click();
        QVERIFY(!log->isVisible());
        QCOMPARE(bench.LogLines(), QStringList({"before", "while hidden"}));
        // Clear empties the window but not the debug output.
        log->cmdClearLog->click();
        QVERIFY(bench.LogLines().isEmpty() && log->txtOposLog->toPlainText().isEmpty());
        SetDebugOutputHandler(previous);
        QCOMPARE(debug, QStringList({"before\r\n", "while hidden\r\n"}));
    }
    void fileDialogsAsConfigured() {
        QCOMPARE(ShellPickers::NameFilters("Log files|*.log|"), QStringList{"Log files (*.log)"});
        QCOMPARE(ShellPickers::NameFilters("Opos Test Macro Commands (*.oposcmd)|*.oposcmd|All files|*.*"),
                 QStringList({"Opos Test Macro Commands (*.oposcmd) (*.oposcmd)", "All files (*.*)"}));
        QCOMPARE(ShellPickers::NameFilters("Pictures|*.gif;*.bmp|"), QStringList{"Pictures (*.gif *.bmp)"});
        QFileDialog save, open, folder;
        ShellPickers::ConfigureFileDialog(save, ShellPickers::FileMode::Save, "Log files|*.log", "t",
                                          m_dir->path());
        QCOMPARE(save.acceptMode(), QFileDialog::AcceptSave);
        QVERIFY(!save.testOption(QFileDialog::DontConfirmOverwrite)); // asks before overwriting
        QCOMPARE(save.nameFilters(), QStringList{"Log files (*.log)"});
        QCOMPARE(save.directory().absolutePath(), QDir(m_dir->path()).absolutePath());
        ShellPickers::ConfigureFileDialog(open, ShellPickers::FileMode::Open, "All files|*.*", "t", {});
        QCOMPARE(open.acceptMode(), QFileDialog::AcceptOpen);
        QCOMPARE(open.fileMode(), QFileDialog::ExistingFile); // only existing files
        ShellPickers::ConfigureFolderDialog(folder, m_dir->path(), {});
        QCOMPARE(folder.fileMode(), QFileDialog::Directory);
        QVERIFY(folder.testOption(QFileDialog::ShowDirsOnly));
    }

private:
    std::optional<QTemporaryDir> m_dir;
};

QTEST_MAIN(LogTest)
#include "tst_shell_log.moc"
