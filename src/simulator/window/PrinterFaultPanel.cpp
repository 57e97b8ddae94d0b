#include "PrinterPanels.h"

#include "IFiscalPrinter.h"
#include "Tools.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>

namespace {

constexpr int32_t kExtended = 114;

QStringList MethodNames() {
    QStringList names;
#define FPU_WINDOW_METHOD_NAME(name, params, args) names << QStringLiteral(#name);
    FPU_METHODS(FPU_WINDOW_METHOD_NAME)
#undef FPU_WINDOW_METHOD_NAME
    names.sort();
    return names;
}

QComboBox* PaperChoice(const char* name, QWidget* parent) {
    auto* cb = new QComboBox(parent);
    cb->setObjectName(QLatin1String(name));
    cb->addItem(QStringLiteral("ok"), int(sim::PaperLevel::Ok));
    cb->addItem(QStringLiteral("near end"), int(sim::PaperLevel::NearEnd));
    cb->addItem(QStringLiteral("empty"), int(sim::PaperLevel::Empty));
    return cb;
}

QCheckBox* Check(const QString& text, const char* name, QWidget* parent) {
    auto* c = new QCheckBox(text, parent);
    c->setObjectName(QLatin1String(name));
    return c;
}

void SelectData(QComboBox* cb, int value) {
    const QSignalBlocker quiet(cb);
    cb->setCurrentIndex(cb->findData(value));
}

} // namespace

PrinterFaultPanel::PrinterFaultPanel(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("PrinterFaultPanel"));
    chkCoverOpen = Check(QStringLiteral("Cover open"), "chkCoverOpen", this);
    chkOffline = Check(QStringLiteral("Offline"), "chkOffline", this);
    chkPowerOff = Check(QStringLiteral("Power off"), "chkPowerOff", this);
    cbReceiptPaper = PaperChoice("cbReceiptPaper", this);
    cbJournalPaper = PaperChoice("cbJournalPaper", this);

    cbFailMethod = new QComboBox(this);
    cbFailMethod->setObjectName(QStringLiteral("cbFailMethod"));
    cbFailMethod->addItems(MethodNames());
    cbFailCode = new QComboBox(this);
    cbFailCode->setObjectName(QStringLiteral("cbFailCode"));
    for (int32_t code = 101; code <= 115; ++code)
        cbFailCode->addItem(QStringLiteral("%1 (%2)").arg(Tools::ResultCodeName(code)).arg(code), code);
    cbFailCode->setCurrentIndex(cbFailCode->findData(kExtended));
    cbFailExtended = new QComboBox(this);
    cbFailExtended->setObjectName(QStringLiteral("cbFailExtended"));
    for (int32_t ext = 1; ext <= 400; ++ext) {
        const QString name = Tools::ResultCodeExtendedName(ext);
        if (!name.isEmpty())
            cbFailExtended->addItem(QStringLiteral("%1 (%2)").arg(name).arg(ext), ext);
    }
    cbFailExtended->addItem(QStringLiteral("day end required (224)"), 224);
    cmdFailNext = new QPushButton(QStringLiteral("Fail next call"), this);
    cmdFailNext->setObjectName(QStringLiteral("cmdFailNext"));
    lblFailPending = new QLabel(this);
    lblFailPending->setObjectName(QStringLiteral("lblFailPending"));
    lblFailPending->setWordWrap(true);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(chkCoverOpen, 0, 0);
    grid->addWidget(chkOffline, 0, 1);
    grid->addWidget(chkPowerOff, 0, 2);
    grid->addWidget(new QLabel(QStringLiteral("Receipt paper"), this), 1, 0);
    grid->addWidget(cbReceiptPaper, 1, 1, 1, 2);
    grid->addWidget(new QLabel(QStringLiteral("Journal paper"), this), 2, 0);
    grid->addWidget(cbJournalPaper, 2, 1, 1, 2);
    grid->addWidget(new QLabel(QStringLiteral("Fail the next"), this), 3, 0);
    grid->addWidget(cbFailMethod, 3, 1, 1, 2);
    grid->addWidget(new QLabel(QStringLiteral("with code"), this), 4, 0);
    grid->addWidget(cbFailCode, 4, 1, 1, 2);
    grid->addWidget(new QLabel(QStringLiteral("extended"), this), 5, 0);
    grid->addWidget(cbFailExtended, 5, 1, 1, 2);
    grid->addWidget(cmdFailNext, 6, 2);
    grid->addWidget(lblFailPending, 7, 0, 1, 3);
    grid->setColumnStretch(1, 1);

    const auto level = [](QComboBox* cb) { return sim::PaperLevel(cb->currentData().toInt()); };
    connect(chkCoverOpen, &QCheckBox::toggled, this, &PrinterFaultPanel::coverRequested);
    connect(chkOffline, &QCheckBox::toggled, this, &PrinterFaultPanel::offlineRequested);
    connect(chkPowerOff, &QCheckBox::toggled, this, &PrinterFaultPanel::powerOffRequested);
    connect(cbReceiptPaper, &QComboBox::currentIndexChanged, this,
            [this, level] { emit receiptPaperRequested(level(cbReceiptPaper)); });
    connect(cbJournalPaper, &QComboBox::currentIndexChanged, this,
            [this, level] { emit journalPaperRequested(level(cbJournalPaper)); });
    connect(cbFailCode, &QComboBox::currentIndexChanged, this, &PrinterFaultPanel::UpdateExtendedChoice);
    connect(cmdFailNext, &QPushButton::clicked, this, [this] {
        const int32_t code = cbFailCode->currentData().toInt();
        emit failNextRequested(cbFailMethod->currentText(), code,
                               code == kExtended ? cbFailExtended->currentData().toInt() : 0);
    });
    UpdateExtendedChoice();
}

// An extended code goes with 114 only.
void PrinterFaultPanel::UpdateExtendedChoice() {
    cbFailExtended->setEnabled(cbFailCode->currentData().toInt() == kExtended);
}

void PrinterFaultPanel::Show(const sim::Machine& machine) {
    for (auto [box, on] :
         {std::pair{chkCoverOpen, machine.CoverOpen()}, std::pair{chkOffline, machine.Offline()},
          std::pair{chkPowerOff, machine.PowerOff()}}) {
        const QSignalBlocker quiet(box);
        box->setChecked(on);
    }
    SelectData(cbReceiptPaper, int(machine.ReceiptPaper()));
    SelectData(cbJournalPaper, int(machine.JournalPaper()));
    QStringList pending;
    const auto& failures = machine.PendingFailures();
    for (auto it = failures.cbegin(); it != failures.cend(); ++it)
        pending << QStringLiteral("%1 → %2%3")
                       .arg(it.key())
                       .arg(it.value().first)
                       .arg(it.value().second ? QStringLiteral("/%1").arg(it.value().second) : QString());
    pending.sort();
    lblFailPending->setText(pending.isEmpty()
                                ? QStringLiteral("No call set to fail.")
                                : QStringLiteral("Waiting to fail: ") + pending.join(QStringLiteral(", ")));
}
