#include "BenchSettings.h"
#include "ShellBench.h"
#include "ShellPickers.h"
#include "TestRow.h"
#include "frmDirectIO.h"

#include <QSettings>
#include <QTabWidget>
#include <QTemporaryDir>

// What the bench remembers between runs, and the device name it is started on. Settings go to
// this test's private XDG_CONFIG_HOME.
class SettingsTest : public QObject {
    Q_OBJECT

    static QSize DesignSize() {
        ShellBench bench;
        return bench.window->size();
    }

private slots:
    void initTestCase() {
        QCoreApplication::setOrganizationName(QStringLiteral("fpubench-tests"));
        QCoreApplication::setApplicationName(QStringLiteral("tst_shell_settings"));
        QVERIFY2(QSettings().fileName().startsWith(qEnvironmentVariable("XDG_CONFIG_HOME")),
                 qPrintable(QSettings().fileName()));
    }
    void init() { QSettings().clear(); }

    void usableGeometry_data() {
        QTest::addColumn<QRect>("geometry");
        QTest::addColumn<bool>("screens"); // false: no screen at all
        QTest::addColumn<bool>("usable");
        Row("on the first screen", QRect(100, 100, 800, 600), true, true);
        QTest::newRow("hanging off a side, title bar on a screen")
            << QRect(1500, 100, 800, 600) << true << true;
        Row("on the second screen", QRect(2000, 50, 600, 400), true, true);
        Row("across both", QRect(1600, 0, 800, 600), true, true);
        Row("title bar above the screens", QRect(100, -40, 800, 600), true, false);
        Row("under the shorter screen", QRect(2000, 1030, 600, 40), true, false);
        Row("left of the screens", QRect(-900, 100, 800, 600), true, false);
        Row("no size", QRect(100, 100, 0, 0), true, false);
        Row("nothing saved", QRect(), true, false);
        Row("no screen", QRect(100, 100, 800, 600), false, false);
    }
    void usableGeometry() {
        QFETCH(QRect, geometry);
        QFETCH(bool, screens);
        const QList<QRect> areas =
            screens ? QList<QRect>{QRect(0, 0, 1920, 1080), QRect(1920, 0, 1280, 1024)} : QList<QRect>{};
        QTEST(UsableGeometry(geometry, areas), "usable");
    }

    // Closing the frame keeps both windows' places for the next start.
    void windowsComeBackWhereTheyWere() {
        const QSize design = DesignSize();
        const QRect main(QPoint(30, 40), design + QSize(24, 16));
        const QRect log(200, 150, 420, 260);
        {
            ShellBench bench;
            WindowMemory memory(*bench.window);
            bench.window->show();
            bench.window->setGeometry(main);
            bench.window->Toolbar()->cmdLogWindow->click();
            bench.window->Log()->setGeometry(log);
            bench.window->Toolbar()->cmdLogWindow->click(); // hidden again, where it stood
            QTRY_COMPARE(bench.window->geometry(), main);
            bench.window->close();
        }
        ShellBench bench;
        WindowMemory memory(*bench.window);
        QCOMPARE(bench.window->geometry(), main);
        QCOMPARE(bench.window->Log()->geometry(), log);
        QVERIFY(bench.window->Log()->isHidden());
        QVERIFY(!bench.window->isMaximized());
        // Not shown in this run, the log keeps the place it came back to.
        bench.window->close();
        QCOMPARE(QSettings().value("LogWindow/geometry").toRect(), log);
    }

    // A saved place that no screen shows any more is left aside; so is one never made.
    void unusablePlacesAreIgnored_data() {
        QTest::addColumn<QVariant>("saved");
        Row("off every screen", QVariant(QRect(6000, 5000, 900, 700)));
        Row("not a rectangle", QVariant(QStringLiteral("wide and tall")));
    }
    void unusablePlacesAreIgnored() {
        QFETCH(QVariant, saved);
        const QSize design = DesignSize();
        QSettings().setValue("MainWindow/geometry", saved);
        QSettings().setValue("LogWindow/geometry", saved);
        ShellBench bench;
        const QSize logDefault = bench.window->Log()->size();
        WindowMemory memory(*bench.window);
        QCOMPARE(bench.window->size(), design);
        QCOMPARE(bench.window->Log()->size(), logDefault);
    }

    void maximizedComesBackMaximized() {
        const QRect normal(QPoint(20, 20), DesignSize());
        QSettings().setValue("MainWindow/geometry", normal);
        QSettings().setValue("MainWindow/maximized", true);
        ShellBench bench;
        WindowMemory memory(*bench.window);
        QVERIFY(bench.window->windowState() & Qt::WindowMaximized);
        bench.window->show();
        bench.window->close();
        QVERIFY(QSettings().value("MainWindow/maximized").toBool());
        QCOMPARE(QSettings().value("MainWindow/geometry").toRect(), normal);
        QVERIFY(!QSettings().contains("LogWindow/geometry")); // never shown, never saved
    }

    void lastFolderKey_data() {
        QTest::addColumn<bool>("folder");
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("key");
        Row("macros", false, "Opos Test Macro Commands (*.oposcmd)|*.oposcmd|All files|*.*",
            "LastFolder/oposcmd");
        Row("logs", false, "Log files|*.log", "LastFolder/log");
        Row("logs, closing bar", false, "Log files|*.log|", "LastFolder/log");
        Row("pictures", false, "Bitmaps|*.gif;*.bmp", "LastFolder/gif");
        Row("anything", false, "All files|*.*", "LastFolder/files");
        Row("no filter", false, "", "LastFolder/files");
        Row("folders", true, "", "LastFolder/folder");
        Row("folders ignore a filter", true, "Log files|*.log", "LastFolder/folder");
    }
    void lastFolderKey() {
        QFETCH(bool, folder);
        QFETCH(QString, filter);
        using ShellPickers::PickerKind;
        QTEST(ShellPickers::LastFolderKey(folder ? PickerKind::Folder : PickerKind::File, filter), "key");
    }

    // The caller's start folder wins; without one the dialog opens where the last pick was.
    void pickersRememberTheirFolder() {
        using namespace ShellPickers;
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString macros = dir.filePath("macros"), logs = dir.filePath("logs"),
                      gone = dir.filePath("gone");
        for (const QString& f : {macros, logs, gone})
            QVERIFY(QDir().mkpath(f));
        const QString macroKey = LastFolderKey(PickerKind::File, "Macros|*.oposcmd");
        const QString logKey = LastFolderKey(PickerKind::File, "Log files|*.log");
        const QString folderKey = LastFolderKey(PickerKind::Folder, {});

        QStringList starts; // where each dialog opened
        auto pick = [&](const QString& key, PickerKind kind, const QString& given, const QString& answer) {
            return PickRemembering(key, kind, given, [&](const QString& start) {
                starts.append(start);
                return answer;
            });
        };
        QCOMPARE(pick(macroKey, PickerKind::File, {}, macros + "/a.oposcmd"), macros + "/a.oposcmd");
        pick(macroKey, PickerKind::File, {}, {});            // cancelled: nothing changes
        pick(logKey, PickerKind::File, {}, logs + "/b.log"); // each kind of file its own
        pick(macroKey, PickerKind::File, logs, {});          // the caller's folder first
        pick(logKey, PickerKind::File, {}, {});
        pick(folderKey, PickerKind::Folder, {}, gone);
        QVERIFY(QDir(gone).removeRecursively());
        pick(folderKey, PickerKind::Folder, {}, {}); // a folder gone since is not offered
        pick(macroKey, PickerKind::File, {}, {});
        QCOMPARE(starts, (QStringList{"", macros, "", logs, logs, "", "", macros}));
        QCOMPARE(QSettings().value(folderKey).toString(), gone);
    }

    // --device NAME reaches the toolbar's Open and the DirectIO panel's rule for its buttons.
    void deviceName_data() {
        QTest::addColumn<QString>("name"); // empty: the build's
        QTest::addColumn<QString>("opened");
        QTest::addColumn<bool>("deprecatedOffered");
        Row("the build's", "", "ZorvaneFPU", false);
        Row("Tessorim", "Tessorim", "Tessorim", true);
    }
    void deviceName() {
        QFETCH(QString, name);
        frmLOGO logo;
        if (!name.isEmpty())
            logo.lblSOName = name;
        ShellBench bench([](ScriptedPrinter& p) { p.Set(Prop::State, 2); }, logo);
        bench.window->Toolbar()->cmdOpen->click();
        const auto opens = bench.printer->CallsOf(QStringLiteral("Open"));
        QCOMPARE(opens.size(), 1);
        QTEST(opens.first().args.first().toString(), "opened");
        auto* directIO = bench.window->findChild<frmDirectIO*>();
        QWidget* button = directIO->findChild<QWidget*>(QStringLiteral("cmdPrintBitmap"));
        QWidget* tab = nullptr;
        for (int t = 0; t < directIO->SSTabDirectIO->count(); ++t)
            if (directIO->SSTabDirectIO->widget(t)->isAncestorOf(button))
                tab = directIO->SSTabDirectIO->widget(t);
        QVERIFY(tab);
        QTEST(button->isVisibleTo(tab), "deprecatedOffered");
    }
};

QTEST_MAIN(SettingsTest)
#include "tst_shell_settings.moc"
