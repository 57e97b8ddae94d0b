#include "ShellBench.h"

#include <QAction>

namespace {

QStringList Split(const char* list) {
    return QString::fromLatin1(list).split(' ', Qt::SkipEmptyParts);
}

// The walk itself is the core's (and tested there); here each button and its shortcut reach it,
// with the device name of the build and the lists that only the window has.
struct Press {
    const char *button, *shortcut, *failing, *calls;
    int vatReads; // NumVatRates lines: the fiscal and the reports panel rebuild their lists
};
const Press kPresses[] = {
    {"cmdOpen", "F2", "", "Open SetFreezeEvents", 0},
    {"cmdClaim", "F3", "", "ClaimDevice", 0},
    {"cmdEnable", "F4", "", "SetDeviceEnabled", 2},
    {"cmdEnable", "F4", "SetDeviceEnabled", "SetDeviceEnabled", 2},
    {"cmdDisable", "Shift+F4", "", "SetDeviceEnabled", 0},
    {"cmdRelease", "Shift+F3", "", "ReleaseDevice", 0},
    {"cmdClose", "Shift+F2", "", "Close", 0},
    {"cmdOCE", "F5", "", "Open SetFreezeEvents ClaimDevice SetDeviceEnabled", 2},
    {"cmdDRC", "Shift+F5", "", "SetDeviceEnabled ReleaseDevice Close", 0},
    {"cmdLogWindow", "F12", "", "", 0},
};

const char* const kOptions[] = {"optSettings", "optFiscal",   "optNonFiscal", "optReports",
                                "optProps",    "optDirectIO", "optAutoTests", "optMacro"};
const char* const kPanels[] = {"frmSettings",   "frmFiscalTicket", "frmNonFiscal", "frmReports",
                               "frmProperties", "frmDirectIO",     "frmAutoTests", "frmMacro"};

void ShowActive(QWidget* w) {
    w->show();
    w->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(w));
}

} // namespace

class ToolbarTest : public QObject {
    Q_OBJECT
private slots:
    void buttonsAndShortcuts_data() {
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("byKey");
        for (int i = 0; i < int(std::size(kPresses)); ++i) {
            const QString tag =
                QString::fromLatin1(kPresses[i].button) + (*kPresses[i].failing ? " refused" : "");
            QTest::addRow("%s clicked", qPrintable(tag)) << i << false;
            QTest::addRow("%s by %s", qPrintable(tag), kPresses[i].shortcut) << i << true;
        }
    }
    void buttonsAndShortcuts() {
        QFETCH(int, row);
        QFETCH(bool, byKey);
        const Press& p = kPresses[row];
        ShellBench bench([](ScriptedPrinter& printer) {
            printer.Set(Prop::State, 2);
            printer.Set(Prop::NumVatRates, 4);
        });
        MDITestFPOPOS* w = bench.window.get();
        w->Logo().lblSOName = QStringLiteral("Tessorim");
        for (const QString& call : Split(p.failing))
            bench.printer->Script(call, 111, 0, "Failure");
        auto* button = w->Toolbar()->findChild<QPushButton*>(p.button);
        const QKeySequence key(QString::fromLatin1(p.shortcut));
        QCOMPARE(button->toolTip(), button->text() + " (" + key.toString(QKeySequence::NativeText) + ")");
        ShowActive(w);
        const auto log = bench.LogMark();
        if (byKey)
            QTest::keySequence(w, key);
        else
            button->click();

        QCOMPARE(bench.printer->CallNames(), Split(p.calls));
        for (const auto& c : bench.printer->CallsOf("Open"))
            QCOMPARE(c.args.at(0).toString(), QStringLiteral("Tessorim"));
        const QStringList lines = bench.LogSince(log);
        QCOMPARE(lines.count("NumVatRates = 4"), p.vatReads);
        if (p.vatReads) // the lists follow the refresh, its box included
            QCOMPARE(lines.indexOf("NumVatRates = 4"), lines.lastIndexOf("State = 2 (OPOS_S_IDLE)") + 1);
        QCOMPARE(bench.boxes.size(), *p.failing ? 1 : 0);
        QCOMPARE(w->Log()->isVisible(), QByteArray(p.button) == "cmdLogWindow");
    }

    // Each option, clicked or by its Ctrl+digit, shows its panel and only that.
    void optionsShowOnlyTheirPanel_data() {
        QTest::addColumn<int>("panel");
        QTest::addColumn<bool>("byKey");
        for (int i = 0; i < frmToolbar::PanelCount; ++i) {
            QTest::addRow("%s clicked", kOptions[i]) << i << false;
            QTest::addRow("%s by Ctrl+%d", kOptions[i], i + 1) << i << true;
        }
    }
    void optionsShowOnlyTheirPanel() {
        QFETCH(int, panel);
        QFETCH(bool, byKey);
        ShellBench bench;
        MDITestFPOPOS* w = bench.window.get();
        ShowActive(w);
        w->Toolbar()->optMacro->click(); // from another panel, so that Settings too has to come back
        auto* option = w->Toolbar()->findChild<QRadioButton*>(kOptions[panel]);
        const QKeySequence key(QStringLiteral("Ctrl+%1").arg(panel + 1));
        QCOMPARE(option->toolTip(), option->text() + " (" + key.toString(QKeySequence::NativeText) + ")");
        if (byKey)
            QTest::keySequence(w, key);
        else
            option->click();
        QVERIFY(option->isChecked());
        QCOMPARE(bench.VisiblePanels(), QStringList{kPanels[panel]});
        QVERIFY(w->App()->isVisibleTo(w) && w->StatusBar()->isVisibleTo(w));
        QVERIFY(w->Log()->isHidden() && bench.printer->calls.isEmpty());
    }
};

QTEST_MAIN(ToolbarTest)
#include "tst_shell_toolbar.moc"
