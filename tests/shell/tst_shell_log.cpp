#include "ShellBench.h"
#include "ShellPickers.h"
#include "clsLogView.h"

#include <QClipboard>
#include <QElapsedTimer>
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

// Counts the paints of a widget.
struct PaintCounter : QObject {
    int paints = 0;
    bool eventFilter(QObject*, QEvent* e) override {
        paints += e->type() == QEvent::Paint;
        return false;
    }
};

} // namespace

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
        QCOMPARE(log->txtOposLog->ShownLineCount(), 1);
        toggle->click();
        QVERIFY(log->isVisible());
        QCOMPARE(log->txtOposLog->ShownLineCount(), 2); // taken in as it is shown
        log->txtOposLog->selectAll();
        QCOMPARE(log->txtOposLog->SelectedText(), QStringLiteral("before\nwhile hidden\n"));
        QEvent deactivate(QEvent::WindowDeactivate); // losing the focus hides it too
        QCoreApplication::sendEvent(log, &deactivate);
        QVERIFY(!log->isVisible());
        toggle->click();
        toggle->click();
        QVERIFY(!log->isVisible());
        QCOMPARE(bench.LogLines(), QStringList({"before", "while hidden"}));
        // Clear empties the window but not the debug output.
        log->cmdClearLog->click();
        QVERIFY(bench.LogLines().isEmpty());
        QCOMPARE(log->txtOposLog->ShownLineCount(), 0);
        QCOMPARE(log->txtOposLog->SelectedText(), QString());
        SetDebugOutputHandler(previous);
        QCOMPARE(debug, QStringList({"before\r\n", "while hidden\r\n"}));
    }
    // New lines come in at the next frame; the view then follows the end only if it was there.
    void followsTheEndOrKeepsItsLine_data() {
        QTest::addColumn<QList<int>>("scrolls"); // values the scroll bar is set to; -1 its maximum
        QTest::addColumn<int>("first");          // the first line in sight afterwards; -1 the end
        QTest::newRow("left at the end: follows") << QList<int>{} << -1;
        QTest::newRow("scrolled up: keeps its line") << QList<int>{100} << 100;
        QTest::newRow("scrolled to the top: stays there") << QList<int>{0} << 0;
        QTest::newRow("up and back to the end: follows") << QList<int>{100, -1} << -1;
    }
    void followsTheEndOrKeepsItsLine() {
        QFETCH(QList<int>, scrolls);
        QFETCH(int, first);
        LogWindow w;
        QVERIFY(QTest::qWaitForWindowExposed(&w.window));
        QScrollBar* bar = w.view.verticalScrollBar();
        w.Append(0, 500);
        QTRY_COMPARE(w.view.ShownLineCount(), 500);
        const qsizetype visible = w.view.VisibleLineCount();
        QVERIFY(visible > 5 && visible < 100);
        QCOMPARE(w.view.FirstVisibleLine(), 500 - visible);
        QTRY_COMPARE(bar->maximum(), 500 - visible); // the bar catches up within its own interval
        QCOMPARE(bar->value(), bar->maximum());
        for (int to : scrolls)
            bar->setValue(to < 0 ? bar->maximum() : to);
        w.Append(500, 50);
        QCOMPARE(w.view.ShownLineCount(), 500); // not line by line
        QTRY_COMPARE(w.view.ShownLineCount(), 550);
        QCOMPARE(w.view.FirstVisibleLine(), first < 0 ? 550 - visible : first);
        QCOMPARE(w.view.FollowsEnd(), first < 0);
        QTRY_COMPARE(bar->value(), w.view.FirstVisibleLine());
        QCOMPARE(w.view.LineAt(w.At(w.view.FirstVisibleLine())), w.view.FirstVisibleLine());
    }

    // A change of size keeps the last line in sight if it was, and the first line otherwise.
    void resizeKeepsTheEndOrTheLine_data() {
        QTest::addColumn<int>("scrollTo"); // -1: left at the end
        QTest::addColumn<int>("height");
        QTest::newRow("at the end, smaller") << -1 << 200;
        QTest::newRow("at the end, taller") << -1 << 700;
        QTest::newRow("scrolled up, smaller") << 100 << 200;
        QTest::newRow("scrolled up, taller") << 100 << 700;
    }
    void resizeKeepsTheEndOrTheLine() {
        QFETCH(int, scrollTo);
        QFETCH(int, height);
        LogWindow w;
        QVERIFY(QTest::qWaitForWindowExposed(&w.window));
        w.Append(0, 500);
        w.view.FlushPending();
        if (scrollTo >= 0)
            w.view.verticalScrollBar()->setValue(scrollTo);
        w.window.resize(600, height);
        QTRY_COMPARE(w.window.height(), height);
        const qsizetype visible = w.view.VisibleLineCount();
        QCOMPARE(w.view.FirstVisibleLine(), scrollTo < 0 ? 500 - visible : scrollTo);
        QCOMPARE(w.view.verticalScrollBar()->value(), w.view.FirstVisibleLine());
    }

    // However fast lines come, one per turn of the event loop as in a replay, the view takes
    // them in and paints at most once a frame, its scroll bar a few times a second; a hidden
    // view doesn't take them in at all.
    void paintsAtMostOnceAFrame() {
        LogWindow w;
        QVERIFY(QTest::qWaitForWindowExposed(&w.window));
        PaintCounter counter, bar;
        w.view.viewport()->installEventFilter(&counter);
        w.view.verticalScrollBar()->installEventFilter(&bar);
        QElapsedTimer clock;
        clock.start();
        for (int i = 0; i < 3000; ++i) {
            w.log.Append(LogLine(i));
            QCoreApplication::processEvents();
        }
        const qint64 elapsed = clock.elapsed();
        QTRY_COMPARE(w.view.ShownLineCount(), 3000);
        QVERIFY2(counter.paints >= 1 && counter.paints <= elapsed / 10 + 3,
                 qPrintable(QStringLiteral("%1 paints in %2 ms").arg(counter.paints).arg(elapsed)));
        QVERIFY2(bar.paints <= elapsed / (clsLogView::ScrollBarMs / 2) + 3,
                 qPrintable(QStringLiteral("%1 scroll bar paints in %2 ms").arg(bar.paints).arg(elapsed)));
        w.window.hide();
        w.Append(3000, 10);
        QTest::qWait(3 * clsLogView::FrameMs);
        QCOMPARE(w.view.ShownLineCount(), 3000);
    }

    // What the view leaves on screen while it follows, moving old lines and drawing new ones, is
    // what it draws from scratch.
    void followingDrawsWhatAFullPaintDraws_data() {
        QTest::addColumn<int>("perTurn");
        QTest::newRow("one a turn") << 1;
        QTest::newRow("a few a turn") << 7;
        QTest::newRow("more than a screen a turn") << 90;
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
        QElapsedTimer clock;
        clock.start();
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
        QTest::newRow("a click") << QStringList{"click 3"} << QList<int>{3, 3};
        QTest::newRow("shift-click below") << QStringList{"click 3", "shift-click 5"} << QList<int>{3, 5};
        QTest::newRow("shift-click above") << QStringList{"click 5", "shift-click 3"} << QList<int>{3, 5};
        QTest::newRow("drag") << QStringList{"press 2", "drag 6", "release 6"} << QList<int>{2, 6};
        QTest::newRow("shift and arrows")
            << QStringList{"click 2", "shift-down", "shift-down"} << QList<int>{2, 4};
        QTest::newRow("an arrow moves the line") << QStringList{"click 2", "down"} << QList<int>{3, 3};
        QTest::newRow("select all") << QStringList{"select all"} << QList<int>{0, 9};
        QTest::newRow("nothing selected") << QStringList{} << QList<int>{};
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

    // A million lines of all kinds through the window's Save: the file is the log's saved form,
    // byte for byte.
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
