#include "ShellBench.h"
#include "ShellPickers.h"
#include "TestRow.h"
#include "clsLogView.h"

#include <QClipboard>
#include <QFileDialog>
#include <QScreen>
#include <QScrollBar>
#include <QTemporaryDir>

#include <optional>

static QByteArray ReadAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

namespace {

// Line `i` of a test log: as long as a usual line, each one different.
QString LogLine(int i) {
    return QStringLiteral("PrintRecItem(\"Articolo %1\", 1.00, 1000, 1, 0.00, \"Kg\")     -> OposSuccess(0)")
        .arg(i);
}

// The log window on its own over a log of its own, shown at a fixed size.
struct LogWindow {
    clsBenchLog log;
    frmLog window{log};
    clsLogView& view = *window.txtOposLog;

    LogWindow() {
        window.resize(600, 400);
        window.show();
    }
    void Append(int from, int count) {
        for (int i = from; i < from + count; ++i)
            log.Append(LogLine(i));
    }
    QPoint At(qsizetype line) const { return view.LineRect(line).center(); }
};

} // namespace

class LogTest : public QObject {
    Q_OBJECT
private slots:
    void init() { QVERIFY(m_dir.emplace().isValid()); }
    void hiddenLogKeepsAndTakesLines() {
        ShellBench bench;
        frmLog* log = bench.window->Log();
        QPushButton* toggle = bench.window->Toolbar()->cmdLogWindow;
        log->Clear();
        clsBenchLog& lines = bench.window->Core().Log();
        lines.Append(QStringLiteral("before"));
        toggle->click();
        log->cmdMinimize->click();
        QVERIFY(!log->isVisible());
        lines.Append(QStringLiteral("while hidden"));
        QCOMPARE(log->txtOposLog->ShownLineCount(), 1);
        toggle->click();
        QVERIFY(log->isVisible());
        QCOMPARE(log->txtOposLog->ShownLineCount(), 2); // taken in as it is shown
        QEvent deactivate(QEvent::WindowDeactivate);    // losing the focus hides it too
        QCoreApplication::sendEvent(log, &deactivate);
        QVERIFY(!log->isVisible());
        toggle->click();
        toggle->click();
        QVERIFY(!log->isVisible());
        QCOMPARE(bench.LogLines(), QStringList({"before", "while hidden"}));
        log->cmdClearLog->click();
        QVERIFY(bench.LogLines().isEmpty());
        QCOMPARE(log->txtOposLog->ShownLineCount(), 0);
        QCOMPARE(log->txtOposLog->SelectedText(), QString());
    }
    // New lines come in at the next frame; the view then follows the end only if it was there. A
    // change of size keeps the last line in sight if it was, and the first line otherwise.
    void followsTheEndOrKeepsItsLine_data() {
        QTest::addColumn<QList<int>>("scrolls"); // values the scroll bar is set to; -1 its maximum
        QTest::addColumn<int>("height");         // of the window afterwards; 0 unchanged
        QTest::addColumn<int>("first");          // the first line in sight afterwards; -1 the end
        Row("left at the end: follows", QList<int>{}, 0, -1);
        Row("scrolled up: keeps its line", QList<int>{100}, 0, 100);
        Row("scrolled to the top: stays there", QList<int>{0}, 0, 0);
        Row("up and back to the end: follows", QList<int>{100, -1}, 0, -1);
        Row("at the end, made smaller: follows", QList<int>{}, 200, -1);
        Row("scrolled up, made taller: keeps its line", QList<int>{100}, 700, 100);
    }
    void followsTheEndOrKeepsItsLine() {
        QFETCH(QList<int>, scrolls);
        QFETCH(int, height);
        QFETCH(int, first);
        LogWindow w;
        QVERIFY(QTest::qWaitForWindowExposed(&w.window));
        QScrollBar* bar = w.view.verticalScrollBar();
        w.Append(0, 500);
        QTRY_COMPARE(w.view.ShownLineCount(), 500);
        qsizetype visible = w.view.VisibleLineCount();
        QVERIFY(visible > 5 && visible < 100);
        QCOMPARE(w.view.FirstVisibleLine(), 500 - visible);
        QTRY_COMPARE(bar->maximum(), 500 - visible); // the bar catches up within its own interval
        QCOMPARE(bar->value(), bar->maximum());
        for (int to : scrolls)
            bar->setValue(to < 0 ? bar->maximum() : to);
        if (height) {
            w.window.resize(600, height);
            QTRY_COMPARE(w.window.height(), height);
            visible = w.view.VisibleLineCount();
            QCOMPARE(w.view.FirstVisibleLine(), first < 0 ? 500 - visible : first);
            QCOMPARE(bar->value(), w.view.FirstVisibleLine());
        }
        w.Append(500, 50);
        QCOMPARE(w.view.ShownLineCount(), 500); // not line by line
        QTRY_COMPARE(w.view.ShownLineCount(), 550);
        QCOMPARE(w.view.FirstVisibleLine(), first < 0 ? 550 - visible : first);
        QCOMPARE(w.view.FollowsEnd(), first < 0);
        QTRY_COMPARE(bar->value(), w.view.FirstVisibleLine());
        QCOMPARE(w.view.LineAt(w.At(w.view.FirstVisibleLine())), w.view.FirstVisibleLine());
    }

    // What the view leaves on screen while it follows, moving old lines and drawing new ones, is
    // what it draws from scratch.
    void followingDrawsWhatAFullPaintDraws_data() {
        QTest::addColumn<int>("perTurn");
        Row("one a turn", 1);
        Row("a few a turn", 7);
        Row("more than a screen a turn", 90);
    }
    void followingDrawsWhatAFullPaintDraws() {
        QFETCH(int, perTurn);
        LogWindow w;
        QVERIFY(QTest::qWaitForWindowExposed(&w.window));
        const auto onScreen = [&] {
            QCoreApplication::processEvents();
            const QImage shot = w.window.screen()->grabWindow(w.window.winId()).toImage();
            const QRect area(w.view.viewport()->mapTo(&w.window, QPoint(0, 0)), w.view.viewport()->size());
            return shot.copy(area);
        };
        for (int i = 0; i < 1000; i += perTurn) {
            w.Append(i, perTurn);
            QTest::qWait(2);
        }
        QTRY_COMPARE(w.view.ShownLineCount(), w.log.LineCount());
        QVERIFY(w.view.FollowsEnd());
        const QImage followed = onScreen();
        w.view.viewport()->repaint();
        const QImage full = onScreen();
        QVERIFY(!full.isNull());
        QVERIFY(followed == full);
    }

    // Whole lines are selected by the mouse and the keys; Copy puts them on the clipboard, each
    // with its line feed.
    void copiesTheSelectedLines_data() {
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QList<int>>("copied"); // first and last line; none: the clipboard is untouched
        Row("a click", QStringList{"click 3"}, QList<int>{3, 3});
        Row("shift-click below", QStringList{"click 3", "shift-click 5"}, QList<int>{3, 5});
        Row("shift-click above", QStringList{"click 5", "shift-click 3"}, QList<int>{3, 5});
        Row("drag", QStringList{"press 2", "drag 6", "release 6"}, QList<int>{2, 6});
        Row("shift and arrows", QStringList{"click 2", "shift-down", "shift-down"}, QList<int>{2, 4});
        Row("an arrow moves the line", QStringList{"click 2", "down"}, QList<int>{3, 3});
        Row("select all", QStringList{"select all"}, QList<int>{0, 9});
        Row("nothing selected", QStringList{}, QList<int>{});
    }
    void copiesTheSelectedLines() {
        QFETCH(QStringList, steps);
        QFETCH(QList<int>, copied);
        LogWindow w;
        QVERIFY(QTest::qWaitForWindowExposed(&w.window));
        w.Append(0, 10);
        w.view.FlushPending();
        QWidget* viewport = w.view.viewport();
        const auto mouse = [&](QEvent::Type type, int line, Qt::MouseButtons buttons) {
            QMouseEvent e(type, w.At(line), viewport->mapToGlobal(w.At(line)), Qt::LeftButton, buttons, {});
            QCoreApplication::sendEvent(viewport, &e);
        };
        for (const QString& step : steps) {
            const int line = step.section(u' ', -1).toInt();
            if (step.startsWith("click"))
                QTest::mouseClick(viewport, Qt::LeftButton, {}, w.At(line));
            else if (step.startsWith("shift-click"))
                QTest::mouseClick(viewport, Qt::LeftButton, Qt::ShiftModifier, w.At(line));
            else if (step.startsWith("press"))
                mouse(QEvent::MouseButtonPress, line, Qt::LeftButton);
            else if (step.startsWith("drag"))
                mouse(QEvent::MouseMove, line, Qt::LeftButton);
            else if (step.startsWith("release"))
                mouse(QEvent::MouseButtonRelease, line, Qt::NoButton);
            else if (step == "shift-down")
                QTest::keyClick(&w.view, Qt::Key_Down, Qt::ShiftModifier);
            else if (step == "down")
                QTest::keyClick(&w.view, Qt::Key_Down);
            else if (step == "select all")
                w.view.actSelectAll->trigger();
        }
        QGuiApplication::clipboard()->setText(QStringLiteral("untouched"));
        w.view.actCopy->trigger();
        QString expected = QStringLiteral("untouched");
        if (!copied.isEmpty()) {
            expected.clear();
            for (int i = copied.first(); i <= copied.last(); ++i)
                expected += LogLine(i) + u'\n';
        }
        QCOMPARE(QGuiApplication::clipboard()->text(), expected);
    }

    // A million lines of all kinds through the window's Save, asked where with the log's own
    // filter: the file is the log's saved form, byte for byte.
    void savesAMillionLines() {
        ShellBench bench;
        frmLog* log = bench.window->Log();
        log->cmdClearLog->click();
        bench.window->Toolbar()->cmdLogWindow->click();
        clsBenchLog& lines = bench.window->Core().Log();
        QByteArray expected = "\"";
        for (int i = 0; i < 1000000; ++i) {
            QString line = LogLine(i);
            QByteArray saved = line.toUtf8();
            if (i % 1000 == 7) {
                line = QStringLiteral(u"PrintNormal(2, Caff\u00e8 \u20ac %1\r\n\x1b|2C)").arg(i);
                saved =
                    QStringLiteral(u"PrintNormal(2, Caff\u00e8 \u20ac %1[CR][LF][ESC]|2C)").arg(i).toUtf8();
            }
            lines.Append(line);
            expected += saved + "\r\n";
        }
        expected += "\"\r\n";
        log->FlushPending();
        QCOMPARE(log->txtOposLog->ShownLineCount(), 1000000);
        bench.savePath = m_dir->filePath("million.log");
        log->cmdSaveLog2File->click();
        QCOMPARE(bench.saveCalls,
                 QList<QStringList>({{"Log files|*.log", "Select the output log file", ""}}));
        QCOMPARE(bench.LogMark(), 1000000); // saving changes nothing in the log
        const QByteArray saved = ReadAll(bench.savePath);
        QCOMPARE(saved.size(), expected.size());
        QVERIFY(saved == expected);
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
