#include "frmMacro.h"

#include "Seams.h"
#include "Tools.h"
#include "clsMacroEngine.h"
#include "panel_util.h"

#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QStringListModel>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace panel;

namespace {

// A list view that follows its current row at most every RefreshMs. During a replay the row moves
// with every line, a thousand times a second; scrolling and repainting for each move would cost
// more than the line itself, and nobody can read that fast. While it is off screen the engine
// needn't move the row at all.
class FollowingListView : public QListView {
public:
    static constexpr int RefreshMs = 100;

    FollowingListView(QWidget* parent, clsMacroEngine& engine) : QListView(parent), m_engine(engine) {
        m_refresh.setSingleShot(true);
        connect(&m_refresh, &QTimer::timeout, this, [this] { Refresh(); });
        m_sinceRefresh.start();
    }

protected:
    void currentChanged(const QModelIndex&, const QModelIndex&) override { ScheduleRefresh(); }
    void selectionChanged(const QItemSelection&, const QItemSelection&) override { ScheduleRefresh(); }
    void showEvent(QShowEvent* e) override {
        QListView::showEvent(e);
        m_engine.SetListFollowed(true);
        ScheduleRefresh();
    }
    void hideEvent(QHideEvent* e) override {
        QListView::hideEvent(e);
        m_engine.SetListFollowed(false);
    }

private:
    void ScheduleRefresh() {
        if (m_refresh.isActive())
            return;
        m_refresh.start(int(std::max<qint64>(0, RefreshMs - m_sinceRefresh.elapsed())));
    }
    void Refresh() {
        m_sinceRefresh.restart();
        const QModelIndex current = currentIndex();
        if (current.isValid())
            scrollTo(current);
        viewport()->update();
    }

    clsMacroEngine& m_engine;
    QTimer m_refresh;
    QElapsedTimer m_sinceRefresh;
};

} // namespace

frmMacro::frmMacro(PanelContext& ctx, QWidget* parent) : QWidget(parent), m_ctx(ctx) {
    setObjectName(QStringLiteral("frmMacro"));
    clsMacroEngine& engine = m_ctx.macro;

    // The view shows the engine's own list and selection: no copy of the lines, and the selected
    // row is always the next line to play.
    lstMacroCode = new FollowingListView(this, engine);
    lstMacroCode->setObjectName(QStringLiteral("lstMacroCode"));
    lstMacroCode->setModel(engine.lstMacroCode());
    QItemSelectionModel* own = lstMacroCode->selectionModel();
    lstMacroCode->setSelectionModel(engine.lstMacroCodeSelection());
    delete own;
    lstMacroCode->setSelectionMode(QAbstractItemView::SingleSelection);
    lstMacroCode->setEditTriggers(QAbstractItemView::NoEditTriggers);
    // Every line is one line of text: one height for all keeps the layout of a long macro cheap.
    lstMacroCode->setUniformItemSizes(true);
    lstMacroCode->viewport()->installEventFilter(this);

    cmdExecuteMacro = Button(this, "cmdExecuteMacro", QStringLiteral("Run"));
    cmdPause = Button(this, "cmdPause", PauseCaption);
    cmdPause->setEnabled(false);
    cmdStop = Button(this, "cmdStop", QStringLiteral("Stop"));
    cmdStep = Button(this, "cmdStep", QStringLiteral("One Line Step"));
    cmdClear = Button(this, "cmdClear", QStringLiteral("Clear"));
    cmdLoadMacro = Button(this, "cmdLoadMacro", QStringLiteral("Load Macro"));
    cmdSaveMacro = Button(this, "cmdSaveMacro", QStringLiteral("Save Macro"));

    fraOptions = new QGroupBox(QStringLiteral("Options"), this);
    fraOptions->setObjectName(QStringLiteral("fraOptions"));
    cbSpeed = new QComboBox(fraOptions);
    cbSpeed->setObjectName(QStringLiteral("cbSpeed"));
    chkStopOnError = new QCheckBox(QStringLiteral("Stop on error"), fraOptions);
    chkStopOnError->setObjectName(QStringLiteral("chkStopOnError"));
    auto* options = new QGridLayout(fraOptions);
    options->addWidget(Label(fraOptions, QStringLiteral("Delay betwen commands (ms)"), "lblSpeed"), 0, 0);
    options->addWidget(cbSpeed, 0, 1);
    options->addWidget(chkStopOnError, 1, 0, 1, 2);

    auto* buttons = new QVBoxLayout;
    for (QPushButton* b : {cmdExecuteMacro, cmdPause, cmdStop, cmdStep})
        buttons->addWidget(b);
    buttons->addSpacing(12);
    buttons->addWidget(cmdClear);
    buttons->addSpacing(12);
    buttons->addWidget(cmdLoadMacro);
    buttons->addWidget(cmdSaveMacro);
    buttons->addSpacing(12);
    buttons->addWidget(fraOptions);
    buttons->addStretch(1);
    auto* top = new QHBoxLayout(this);
    top->addWidget(lstMacroCode, 1);
    top->addLayout(buttons);

    tmrMacroExecution = new QTimer(this);
    tmrMacroExecution->setObjectName(QStringLiteral("tmrMacroExecution"));
    tmrMacroExecution->setSingleShot(true);
    tmrDelayForMacroCls = engine.tmrDelayForMacroCls();

    connect(tmrMacroExecution, &QTimer::timeout, this, &frmMacro::tmrMacroExecution_Timer);
    connect(cmdExecuteMacro, &QPushButton::clicked, this, &frmMacro::cmdExecuteMacro_Click);
    connect(cmdPause, &QPushButton::clicked, this, &frmMacro::cmdPause_Click);
    connect(cmdStop, &QPushButton::clicked, this, &frmMacro::cmdStop_Click);
    connect(cmdStep, &QPushButton::clicked, this, &frmMacro::cmdStep_Click);
    connect(cmdClear, &QPushButton::clicked, this, &frmMacro::cmdClear_Click);
    connect(cmdLoadMacro, &QPushButton::clicked, this, &frmMacro::cmdLoadMacro_Click);
    connect(cmdSaveMacro, &QPushButton::clicked, this, &frmMacro::cmdSaveMacro_Click);

    Form_Load();
}

void frmMacro::Form_Load() {
    cbSpeed->clear();
    cbSpeed->addItems({QStringLiteral("0"), QStringLiteral("10"), QStringLiteral("50"), QStringLiteral("100"),
                       QStringLiteral("500"), QStringLiteral("1000"), QStringLiteral("2000"),
                       QStringLiteral("5000")});
    cbSpeed->setCurrentIndex(0);
}

bool frmMacro::eventFilter(QObject* watched, QEvent* event) {
    // Anywhere in the list, on a line or below the last one: the list's selection decides.
    if (watched == lstMacroCode->viewport() && event->type() == QEvent::MouseButtonDblClick) {
        lstMacroCode_DblClick();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void frmMacro::ApplyDelay() {
    const double ms = Tools::LeadingNumber(cbSpeed->currentText());
    const double capped = std::min(std::max(ms, 0.0), double(std::numeric_limits<int>::max()));
    int interval = static_cast<int>(std::nearbyint(capped));
    if (interval == 0)
        interval = 1;
    tmrMacroExecution->setInterval(interval);
}

int32_t frmMacro::PlayLine() {
    m_lineInProgress = true;
    const int32_t result = m_ctx.macro.PlayLineMacro();
    m_lineInProgress = false;
    return result;
}

void frmMacro::cmdExecuteMacro_Click() {
    ++m_overrides;
    cmdPause->setText(PauseCaption);
    cmdPause->setEnabled(true);
    m_ctx.macro.StartSavedMacro();
    ApplyDelay();
    tmrMacroExecution->start();
}

void frmMacro::tmrMacroExecution_Timer() {
    tmrMacroExecution->stop();
    if (m_lineInProgress) {
        // A Continue or a Step let the timer run while an F_Delay line waits: try again shortly,
        // so that lines never overlap.
        if (m_ctx.macro.IsRunningMacro() && cmdPause->text() == PauseCaption)
            tmrMacroExecution->start();
        return;
    }
    const quint64 overrides = m_overrides;
    const int32_t result = PlayLine();
    // Run, Stop, Clear or Load pressed while the line ran have put the replay where the operator
    // wanted it; what this line returned no longer concerns that replay.
    if (overrides != m_overrides)
        return;
    if (chkStopOnError->isChecked() && result != 0) {
        cmdPause_Click();
        ShowMessage(ErrorMessage);
    }
    if (m_ctx.macro.IsRunningMacro() && cmdPause->text() == PauseCaption)
        tmrMacroExecution->start();
}

void frmMacro::cmdPause_Click() {
    if (cmdPause->text() == PauseCaption) {
        cmdPause->setText(ContinueCaption);
        tmrMacroExecution->stop();
        return;
    }
    cmdPause->setText(PauseCaption);
    ApplyDelay();
    tmrMacroExecution->start();
}

void frmMacro::cmdStop_Click() {
    ++m_overrides;
    tmrMacroExecution->stop();
    cmdPause->setEnabled(false);
    m_ctx.macro.StartSavedMacro();
}

void frmMacro::cmdStep_Click() {
    // The line in progress is the step: the cursor hasn't moved past it yet.
    if (m_lineInProgress)
        return;
    const int32_t result = PlayLine();
    if (chkStopOnError->isChecked() && result != 0)
        ShowMessage(ErrorMessage);
}

void frmMacro::cmdClear_Click() {
    ++m_overrides;
    m_ctx.macro.Construct();
    tmrMacroExecution->stop();
}

void frmMacro::cmdLoadMacro_Click() {
    ++m_overrides;
    const QString path = PickOpenFile(this, FileFilter, FileTitle, QString());
    if (!path.isEmpty())
        m_ctx.macro.LoadFromFile(path);
    tmrMacroExecution->stop();
}

void frmMacro::cmdSaveMacro_Click() {
    const QString path = PickSaveFile(this, FileFilter, FileTitle, QString());
    if (!path.isEmpty())
        m_ctx.macro.SaveToFile(path);
}

void frmMacro::lstMacroCode_DblClick() {
    const QModelIndexList selected = lstMacroCode->selectionModel()->selectedIndexes();
    int16_t line = selected.isEmpty() ? int16_t(-1) : static_cast<int16_t>(selected.first().row());
    m_ctx.macro.SetLineMacro(line);
}
