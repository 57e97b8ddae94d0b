#pragma once

#include "PanelContext.h"

#include <QWidget>

#include <functional>

class QGroupBox;
class QLineEdit;
class QPushButton;
class QTimer;

// The scripted tests: the continuous fiscal ticket test, synchronous and asynchronous, and four
// fixed tickets. The repetitions still to do live in txtNumberOfTests, and the pause between two
// repetitions in the armed timer.
//
// One run at a time: a press or a timer tick that comes in while a test of this panel is running
// (from an event pass of the continuous test, or from the event loop of a message box) starts
// nothing. The press is dropped; the tick arms its timer again, so the repetition follows the run.
// A press of either continuous button stops both timers: that run is the repetition that was due.
class frmAutoTests : public QWidget {
    Q_OBJECT
public:
    explicit frmAutoTests(PanelContext& ctx, QWidget* parent = nullptr);

    static constexpr int RepetitionPauseMs = 2000;
    // Shortens the pause between repetitions; only the benchmark, which times the tickets and not
    // the pauses, uses it.
    void SetRepetitionPause(int ms);

    bool IsRunning() const { return m_running; }

    // Fiscal tests (AUTO)
    QGroupBox* fraAutoFiscal;
    QPushButton* cmdAutoPrintTicket;
    QPushButton* cmdPrintTicketA;
    QLineEdit* txtNumberOfLines;
    QLineEdit* txtNumberOfTests;

    // Fisacal tests
    QGroupBox* fraFiscal;
    QPushButton* cmdFullFiscalTicket;
    QPushButton* cmdFullCreditNote;

    // Non fiscal tests
    QGroupBox* fraNonFiscal;
    QPushButton* cmdNonFiscalTicket;
    QPushButton* cmdFullNonFiscalTicket;

    QTimer* tmrTest;
    QTimer* tmrTestA;

private:
    enum class Continuous { Sync, Async };
    void RunContinuous(Continuous kind);
    void RunScript(QPushButton* button, const std::function<void()>& script);
    void TimerTick(QTimer* timer, Continuous kind);

    void cmdAutoPrintTicket_Click();
    void cmdPrintTicketA_Click();
    void tmrTest_Timer();
    void tmrTestA_Timer();
    void cmdFullFiscalTicket_Click();
    void cmdFullCreditNote_Click();
    void cmdNonFiscalTicket_Click();
    void cmdFullNonFiscalTicket_Click();

    PanelContext& m_ctx;
    bool m_running = false;
};
