#include "frmAutoTests.h"

#include "ContinuousTicket.h"
#include "FullCreditNote.h"
#include "FullFiscalTicket.h"
#include "FullNonFiscalTicket.h"
#include "NonFiscalTicket.h"
#include "Tools.h"
#include "panel_util.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

using namespace panel;

namespace {

QTimer* PauseTimer(QObject* parent, const char* name) {
    auto* t = new QTimer(parent);
    t->setObjectName(QLatin1StringView(name));
    t->setInterval(frmAutoTests::RepetitionPauseMs);
    return t;
}

void PassEvents() {
    QCoreApplication::processEvents();
}

// Marks a run of the panel for as long as it lasts.
class RunGuard {
public:
    explicit RunGuard(bool& running) : m_running(running) { m_running = true; }
    ~RunGuard() { m_running = false; }
    RunGuard(const RunGuard&) = delete;
    RunGuard& operator=(const RunGuard&) = delete;

private:
    bool& m_running;
};

} // namespace

frmAutoTests::frmAutoTests(PanelContext& ctx, QWidget* parent) : QWidget(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("frmAutoTests"));
    setWindowTitle(QStringLiteral("frmAutoTests"));

    fraAutoFiscal = new QGroupBox(QStringLiteral("Fiscal tests (AUTO)"), this);
    fraAutoFiscal->setObjectName(QStringLiteral("fraAutoFiscal"));
    cmdAutoPrintTicket =
        Button(fraAutoFiscal, "cmdAutoPrintTicket", QStringLiteral("Continuous Print Fiscal Ticket (Sync)"));
    cmdPrintTicketA =
        Button(fraAutoFiscal, "cmdPrintTicketA", QStringLiteral("Continuous Print Fiscal Ticket (Async)"));
    txtNumberOfLines = LineEdit(fraAutoFiscal, "txtNumberOfLines", QStringLiteral("25"));
    txtNumberOfTests = LineEdit(fraAutoFiscal, "txtNumberOfTests", QStringLiteral("1"));
    txtNumberOfLines->setMaximumWidth(80);
    txtNumberOfTests->setMaximumWidth(80);
    auto* autoGrid = new QGridLayout(fraAutoFiscal);
    autoGrid->addWidget(cmdAutoPrintTicket, 0, 0);
    autoGrid->addWidget(cmdPrintTicketA, 1, 0);
    autoGrid->addWidget(Label(fraAutoFiscal, QStringLiteral("#of lines")), 0, 1);
    autoGrid->addWidget(txtNumberOfLines, 0, 2);
    autoGrid->addWidget(Label(fraAutoFiscal, QStringLiteral("Repetitions")), 1, 1);
    autoGrid->addWidget(txtNumberOfTests, 1, 2);
    autoGrid->setColumnStretch(3, 1);

    fraFiscal = new QGroupBox(QStringLiteral("Fisacal tests"), this);
    fraFiscal->setObjectName(QStringLiteral("fraFiscal"));
    cmdFullFiscalTicket =
        Button(fraFiscal, "cmdFullFiscalTicket", QStringLiteral("Print FULL Fiscal Ticket (Sync)"));
    cmdFullCreditNote =
        Button(fraFiscal, "cmdFullCreditNote", QStringLiteral("Print FULL Credit Note (Sync)"));
    auto* fiscalRow = new QHBoxLayout(fraFiscal);
    fiscalRow->addWidget(cmdFullFiscalTicket);
    fiscalRow->addWidget(cmdFullCreditNote);
    fiscalRow->addStretch(1);

    fraNonFiscal = new QGroupBox(QStringLiteral("Non fiscal tests"), this);
    fraNonFiscal->setObjectName(QStringLiteral("fraNonFiscal"));
    cmdNonFiscalTicket =
        Button(fraNonFiscal, "cmdNonFiscalTicket", QStringLiteral("Print SIMPLE Non Fiscal Ticket (w/o Z)"));
    cmdFullNonFiscalTicket =
        Button(fraNonFiscal, "cmdFullNonFiscalTicket", QStringLiteral("Print FULL Non Fiscal Ticket (w/ Z)"));
    auto* nonFiscalRow = new QHBoxLayout(fraNonFiscal);
    nonFiscalRow->addWidget(cmdNonFiscalTicket);
    nonFiscalRow->addWidget(cmdFullNonFiscalTicket);
    nonFiscalRow->addStretch(1);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(fraAutoFiscal);
    layout->addWidget(fraFiscal);
    layout->addWidget(fraNonFiscal);
    layout->addStretch(1);

    tmrTest = PauseTimer(this, "tmrTest");
    tmrTestA = PauseTimer(this, "tmrTestA");

    connect(cmdAutoPrintTicket, &QPushButton::clicked, this, &frmAutoTests::cmdAutoPrintTicket_Click);
    connect(cmdPrintTicketA, &QPushButton::clicked, this, &frmAutoTests::cmdPrintTicketA_Click);
    connect(tmrTest, &QTimer::timeout, this, &frmAutoTests::tmrTest_Timer);
    connect(tmrTestA, &QTimer::timeout, this, &frmAutoTests::tmrTestA_Timer);
    connect(cmdFullFiscalTicket, &QPushButton::clicked, this, &frmAutoTests::cmdFullFiscalTicket_Click);
    connect(cmdFullCreditNote, &QPushButton::clicked, this, &frmAutoTests::cmdFullCreditNote_Click);
    connect(cmdNonFiscalTicket, &QPushButton::clicked, this, &frmAutoTests::cmdNonFiscalTicket_Click);
    connect(cmdFullNonFiscalTicket, &QPushButton::clicked, this, &frmAutoTests::cmdFullNonFiscalTicket_Click);
}

void frmAutoTests::SetRepetitionPause(int ms) {
    tmrTest->setInterval(ms);
    tmrTestA->setInterval(ms);
}

// ---- continuous tests

void frmAutoTests::RunContinuous(Continuous kind) {
    if (m_running)
        return;
    RunGuard guard(m_running);
    tmrTest->stop();
    tmrTestA->stop();
    cmdAutoPrintTicket->setEnabled(false);
    cmdPrintTicketA->setEnabled(false);

    // Text that is no number, or no 32-bit one, counts as 0.
    const int32_t repetitions = Tools::LeadingInteger(txtNumberOfTests->text()).value_or(0);
    const int32_t lines = Tools::LeadingInteger(txtNumberOfLines->text()).value_or(0);
    const auto drain = kind == Continuous::Async ? AutoScripts::Drain::UntilIdle : AutoScripts::Drain::None;
    AutoScripts::PrintContinuousTicket(m_ctx.wrapper, lines, drain, PassEvents);

    const int64_t left = int64_t{repetitions} - 1;
    if (left > 0) {
        txtNumberOfTests->setText(Tools::NumberText(left));
        (kind == Continuous::Async ? tmrTestA : tmrTest)->start();
    }
    cmdAutoPrintTicket->setEnabled(true);
    cmdPrintTicketA->setEnabled(true);
}

void frmAutoTests::TimerTick(QTimer* timer, Continuous kind) {
    timer->stop();
    if (m_running) {
        timer->start(); // the repetition waits for the run in progress
        return;
    }
    RunContinuous(kind);
}

void frmAutoTests::cmdAutoPrintTicket_Click() {
    RunContinuous(Continuous::Sync);
}

void frmAutoTests::cmdPrintTicketA_Click() {
    RunContinuous(Continuous::Async);
}

void frmAutoTests::tmrTest_Timer() {
    TimerTick(tmrTest, Continuous::Sync);
}

void frmAutoTests::tmrTestA_Timer() {
    TimerTick(tmrTestA, Continuous::Async);
}

// ---- fixed tickets

void frmAutoTests::RunScript(QPushButton* button, const std::function<void()>& script) {
    if (m_running)
        return;
    RunGuard guard(m_running);
    button->setEnabled(false);
    script();
    button->setEnabled(true);
}

void frmAutoTests::cmdFullFiscalTicket_Click() {
    RunScript(cmdFullFiscalTicket, [this] { AutoScripts::PrintFullFiscalTicket(m_ctx.wrapper); });
}

void frmAutoTests::cmdFullCreditNote_Click() {
    RunScript(cmdFullCreditNote, [this] { AutoScripts::PrintFullCreditNote(m_ctx.wrapper); });
}

void frmAutoTests::cmdNonFiscalTicket_Click() {
    RunScript(cmdNonFiscalTicket,
              [this] { AutoScripts::PrintNonFiscalTicket(m_ctx.wrapper, m_ctx.refreshAfterCommand); });
}

void frmAutoTests::cmdFullNonFiscalTicket_Click() {
    RunScript(cmdFullNonFiscalTicket,
              [this] { AutoScripts::PrintFullNonFiscalTicket(m_ctx.wrapper, m_ctx.refreshAfterCommand); });
}
