#pragma once

#include "FiscalMemory.h"
#include "FiscalReceipt.h"
#include "Machine.h"
#include "ModelSwitches.h"
#include "OutputQueue.h"
#include "Paper.h"
#include "Peripherals.h"
#include "PropertyRouter.h"

#include <QDateTime>
#include <QMap>
#include <QObject>

#include <memory>
#include <optional>

namespace sim {
struct DebugCommand;
// UnifiedPOS 1.11's "day end required": outside the bench's table of extended codes.
inline constexpr int32_t kDayEndRequired = 224;
// The printer's serial number, printed under its fiscal logo.
inline constexpr char kSerialNumber[] = "99ZS000123";
} // namespace sim

// The in-process fiscal printer: an Italian-style printer with an electronic journal and a
// customer display behind the control interface. It keeps the control's interface and the order
// of checks; the work is done by its parts: the machine (sensors, power, clock, injected failures),
// the output queue, the event gate, the receipt rules, the fiscal memory, the report builders, the
// rolls and the peripherals. Its fiscal state lives in the object, like in the hardware: it
// survives Close and Open of the same model.
class SimulatedFiscalPrinter : public QObject, public PropertyRouter {
    Q_OBJECT
public:
    using PaperLevel = sim::PaperLevel;

    explicit SimulatedFiscalPrinter(QObject* parent = nullptr);
    ~SimulatedFiscalPrinter() override;

    void SetEventSink(IFiscalPrinterEvents* sink) override { m_sink = sink; }

    // Where a model's fiscal memory comes from: asked at the next Open, and again at each Open of
    // the other model. Without one, each model starts a fresh memory in the process. A memory that
    // still holds a document begun and never ended (the bench was killed in the middle of it) is
    // taken as after a power cut: the printer ends that document by itself at Open.
    void SetFiscalMemoryFactory(sim::FiscalMemoryFactory factory);
    // Why the fiscal memory can't be replaced now (a document open, output queued), else empty.
    QString FiscalMemoryBusy() const;
    // Hands the current model's fiscal memory to `swap` and goes on with what it leaves. With a new
    // memory the receipt kept for a duplicate and VAT rates not yet set go with the old one; the
    // printer's own settings, training mode and paper stay. Refused, with `refusal` and nothing
    // touched, while busy.
    bool ReplaceFiscalMemory(const sim::FiscalMemorySwap& swap, QString* refusal = nullptr);

#define FPU_SIM_DECLARE_METHOD(name, params, args) int32_t name params override;
    FPU_METHODS(FPU_SIM_DECLARE_METHOD)
#undef FPU_SIM_DECLARE_METHOD

    QVariant ReadProperty(Prop id) override;
    void WriteProperty(Prop id, const QVariant& value) override;

    // Faults. Sensor changes raise their status events while the device is enabled. They change
    // behaviour only through the printer's rules.
    void SetCoverOpen(bool open);
    void SetReceiptPaper(PaperLevel level);
    void SetJournalPaper(PaperLevel level);
    void SetOffline(bool offline);
    // Off loses the queued output; on again counts a restart and voids a receipt left open.
    void SetPowerOff(bool off);
    // The next call of `method` (a method name, or "Set" + a property name for a write) fails.
    void FailNextCall(const QString& method, int32_t code, int32_t extended = 0);
    void SetPrintTimePerLineMs(int ms) {
        m_queue.SetPrintTimePerLineMs(ms);
    }
    // False, and the clock unchanged, when it would run back behind the last fiscal document.
    bool SetClockOffsetSeconds(qint64 seconds);
    void SetRemainingFiscalMemory(int records);
    void OpenDrawer() {
        m_drawer.Open();
    }
    void CloseDrawer() {
        m_drawer.Close();
    }

    // Observation.
    bool IsCoverOpen() const {
        return m_machine.CoverOpen();
    }
    PaperLevel ReceiptPaper() const {
        return m_machine.ReceiptPaper();
    }
    PaperLevel JournalPaper() const {
        return m_machine.JournalPaper();
    }
    bool IsOffline() const {
        return m_machine.Offline();
    }
    bool IsPowerOff() const {
        return m_machine.PowerOff();
    }
    int PrintTimePerLineMs() const {
        return m_queue.PrintTimePerLineMs();
    }
    qint64 ClockOffsetSeconds() const {
        return m_machine.ClockOffsetSeconds();
    }
    QDateTime Now() const {
        return m_machine.Now();
    }
    const sim::Machine& Hardware() const {
        return m_machine;
    }
    const sim::OutputQueue& Queue() const {
        return m_queue;
    }
    const sim::EventGate& Events() const {
        return m_events;
    }
    const sim::PaperRoll& ReceiptRoll() const {
        return m_receiptRoll;
    }
    const sim::PaperRoll& JournalRoll() const {
        return m_journalRoll;
    }
    const sim::CustomerDisplay& Display() const {
        return m_display;
    }
    sim::CashDrawer& Drawer() {
        return m_drawer;
    }
    const sim::BitmapStore& Bitmaps() const {
        return m_bitmaps;
    }
    const sim::IFiscalMemory& Memory() const {
        return *m_memory;
    }
    const sim::FiscalReceipt* CurrentReceipt() const {
        return m_doc.receipt ? &*m_doc.receipt : nullptr;
    }
    const sim::ModelSwitches& Model() const {
        return m_model;
    }
    // The open receipt, or the last document, as plain text.
    QString ReceiptText() const;
    int PendingJobs() const {
        return m_queue.Pending();
    }
    QString DepartmentLinks() const;
    int PollingTimeMs() const {
        return m_pollingMs;
    }
    int TrainingReceipts() const {
        return m_trainingReceipts;
    }
    // The one-line state dump of DirectIO 9999.
    QString StateDump() const;

signals:
    void printerStateChanged(int32_t state);
    // A commit reached the fiscal memory: totals, counters, journal, Z records or settings.
    void fiscalMemoryChanged();
    // Open, claimed, enabled or the session properties changed.
    void sessionChanged();

private:
    // What the application set since Open: back to these at every Open.
    struct Session {
        bool asyncMode = false, checkTotal = false, flagWhenIdle = false, duplicateReceipt = false;
        QString additionalHeader, additionalTrailer, changeDue, preLine, postLine, checkHealthText;
        int32_t binaryConversion = 0, dateType = 4, messageType = 1, powerNotify = 0, totalizerType = 2;
        int32_t fiscalReceiptType = 4, fiscalReceiptStation = 1;
        int32_t outputId = 0, errorLevel = 1, errorOutId = 0, errorState = 0, errorStation = 0;
    };
    // The document being printed.
    struct Document {
        std::optional<sim::FiscalReceipt> receipt;
        bool voided = false; // voided, waiting for EndFiscalReceipt
        bool nonFiscal = false;
        int number = 0;
        QString creditNoteNumber;
        QDateTime begunAt;
        QStringList text;                // as the receipt station printed it, one line per element
        QList<sim::PrintedLine> printed; // the same, with attributes: what a duplicate copies
    };
    // How a call is checked.
    enum Flag : unsigned {
        AlwaysSync = 1,  // never queued: output on paper when it returns, 113 while output is queued
        DayClosed = 2,   // 114/207 while the fiscal day is open
        NotTraining = 4, // 114/207 in training mode
        Debug = 8,       // the simulator's own API: no 108, no lock, no 113
        NewDay = 16,     // opens a fiscal document: 114/224 once the day must end
    };
    static constexpr unsigned In(int32_t state) {
        return 1u << state;
    }

    // Checks and results
    int32_t Result(int32_t code, int32_t extended = 0, const QString& text = {});
    int32_t Ok() {
        return Result(0);
    }
    int32_t Refuse(const sim::Refusal& r) {
        return Result(r.code, r.extended, r.text);
    }
    enum class Need { Open, Claimed, Enabled };
    // The first checks of every call: an injected failure, then closed (101), not claimed (103) and
    // not enabled (105), as far as `need` goes.
    int32_t CheckSession(const char* method, Need need);
    // The common order of checks; 0 when the call may go on, else the result already set.
    int32_t Check(const char* method, unsigned legalStates, int stations, unsigned flags = 0);
    int32_t ResolveVat(int32_t vatInfo, int* rate);
    int32_t CheckDescription(const QString& text);
    int32_t CheckPrintedText(const QString& text, int maxLength);
    int32_t CheckItemArguments(const QString& description, int32_t vatInfo, int32_t quantity, Amount price,
                               Amount unitPrice, int* vat);
    int32_t EffectivePrinterState() const;
    // The fiscal day is open: in the fiscal memory, or by the first receipt of the day now printing.
    bool DayOpen() const {
        return m_memory->DayOpened() || (m_doc.receipt && !m_training);
    }
    bool Queues(int stations, unsigned flags) const;

    // Printing
    void Emit(int station, const QString& textWithSequences, sim::PrintAttributes base = {});
    void EmitLine(int station, const sim::PrintedLine& line);
    void EmitMoney(int station, const QString& label, Amount amount);
    void EmitPreLine();
    void EmitPostLine();
    // Ends the call's output: queued when the call may be, else on paper at once.
    int32_t Flush(unsigned flags = 0);
    void Apply(const sim::Outputs& lines);
    // The receipt paper is cut below the last line of the current call's output.
    void CutPaper();
    // The fiscal logo with the serial number: the foot of every fiscal document.
    void EmitFiscalLogo();
    void ShowOnDisplay(const QString& top, Amount amount);

    // Events
    void Deliver(std::function<void()> event);
    void RaiseStatus(int32_t status);
    void OnJobFaulted(int32_t id, int stations, const sim::Refusal& fault);
    void CheckIdle();

    // Documents
    void EnterState(int32_t state);
    void StartReceipt(int32_t type, const QString& creditNoteNumber);
    void PrintReceiptHead();
    // Prints the receipt's end and commits it to the fiscal memory, voided when m_doc.voided.
    void FinishReceipt();
    void FinishNonFiscal();
    void AfterPowerCut();
    // A document left open in a memory just attached ends as after a power cut.
    void EndUnfinishedDocument(const sim::OpenDocument& unfinished);
    void CommitNotice() {
        emit fiscalMemoryChanged();
    }
    int32_t ItemAdjustment(const char* method, int32_t type, const QString& description, Amount amount,
                           int32_t vatInfo, bool isVoid);
    int32_t RefundLine(const char* method, const QString& description, Amount amount, int32_t vatInfo,
                       bool isVoid);
    // The total check of the models that have one: a mismatch cancels the receipt.
    bool CancelledByTotalCheck(Amount total);
    // A fiscal report (the Z report) ends with the fiscal logo.
    int32_t PrintReportDocument(const QString& title, const QStringList& lines, QStringList* text = nullptr,
                                bool fiscal = false);

    // DirectIO
    int32_t DirectIOCommand(int32_t command, DirectIOData& data, QString& text);
    int32_t RunDebugCommand(const sim::DebugCommand& command);
    int32_t WriteReport(const QString& name, int fileMode, const QStringList& lines, QString& text);

    IFiscalPrinterEvents* m_sink = nullptr;

    // The session with the application
    bool m_open = false, m_claimed = false, m_enabled = false;
    QString m_deviceName;
    int32_t m_resultCode = 0, m_resultExtended = 0;
    QString m_errorString;
    Session m_session;

    // The printer's own state: survives Close and Open
    sim::ModelSwitches m_model;
    std::unique_ptr<sim::IFiscalMemory> m_memory;
    sim::FiscalMemoryFactory m_memoryFactory;
    bool m_memoryFromFactory = false;
    QMap<int, int32_t> m_pendingVat;
    QString m_posId, m_cashierId;
    int32_t m_printerState = 1;
    bool m_training = false;
    int m_trainingReceipts = 0;
    Document m_doc;
    QStringList m_lastDocText;
    std::optional<QList<sim::PrintedLine>> m_kept; // for PrintDuplicateReceipt
    int m_pollingMs = 1000;

    // The machine and its parts
    sim::Machine m_machine;
    sim::PaperRoll m_receiptRoll, m_journalRoll;
    sim::CustomerDisplay m_display;
    sim::CashDrawer m_drawer;
    sim::BitmapStore m_bitmaps;
    sim::OutputQueue m_queue;
    sim::EventGate m_events;
    sim::Outputs m_out; // the current call's output
};
