#pragma once

#include "FiscalMemory.h"
#include "FiscalReceipt.h"
#include "ModelSwitches.h"
#include "Paper.h"
#include "Peripherals.h"
#include "PropertyRouter.h"

#include <QDateTime>
#include <QHash>
#include <QMap>
#include <QObject>
#include <QTimer>

#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace sim {
enum class PaperLevel { Ok, NearEnd, Empty };
}

// The in-process fiscal printer: an Italian-style printer with an electronic journal and a
// customer display behind the control interface. Its fiscal state lives in the object, like
// in the hardware: it survives Close and Open of the same model.
class SimulatedFiscalPrinter : public QObject, public PropertyRouter {
    Q_OBJECT
public:
    using PaperLevel = sim::PaperLevel;

    explicit SimulatedFiscalPrinter(QObject* parent = nullptr);
    ~SimulatedFiscalPrinter() override;

    void SetEventSink(IFiscalPrinterEvents* sink) override { m_sink = sink; }

#define FPU_SIM_DECLARE_METHOD(name, params, args) int32_t name params override;
    FPU_METHODS(FPU_SIM_DECLARE_METHOD)
#undef FPU_SIM_DECLARE_METHOD

    QVariant ReadProperty(Prop id) override;
    void WriteProperty(Prop id, const QVariant& value) override;

    // Faults. Sensor changes raise their status events while the device is enabled.
    void SetCoverOpen(bool open);
    void SetReceiptPaper(PaperLevel level);
    void SetJournalPaper(PaperLevel level);
    void SetOffline(bool offline);
    void SetPowerOff(bool off);
    // The next call of `method` (a method name, or "Set" + a property name for a write) fails.
    void FailNextCall(const QString& method, int32_t code, int32_t extended = 0);
    void SetPrintTimePerLineMs(int ms) {
        m_printMsPerLine = ms < 0 ? 0 : ms;
    }
    void SetClockOffsetSeconds(qint64 seconds) {
        m_clockOffset = seconds;
    }
    void SetRemainingFiscalMemory(int records);
    void OpenDrawer() {
        m_drawer->Open();
    }
    void CloseDrawer() {
        m_drawer->Close();
    }

    // Observation.
    bool IsCoverOpen() const {
        return m_coverOpen;
    }
    PaperLevel ReceiptPaper() const {
        return m_recPaper;
    }
    PaperLevel JournalPaper() const {
        return m_jrnPaper;
    }
    bool IsOffline() const {
        return m_offline;
    }
    bool IsPowerOff() const {
        return m_powerOff;
    }
    int PrintTimePerLineMs() const {
        return m_printMsPerLine;
    }
    qint64 ClockOffsetSeconds() const {
        return m_clockOffset;
    }
    QDateTime Now() const;
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
        return *m_drawer;
    }
    const sim::BitmapStore& Bitmaps() const {
        return m_bitmaps;
    }
    const sim::IFiscalMemory& Memory() const {
        return *m_memory;
    }
    const sim::FiscalReceipt* CurrentReceipt() const {
        return m_receipt ? &*m_receipt : nullptr;
    }
    const sim::ModelSwitches& Model() const {
        return m_model;
    }
    // The open receipt, or the last one, as plain text.
    QString ReceiptText() const;
    int PendingJobs() const {
        return static_cast<int>(m_queue.size());
    }
    QString DepartmentLinks() const;
    int PollingTimeMs() const {
        return m_pollingMs;
    }

signals:
    // Something the simulator's window shows has changed.
    void changed();

private:
    struct Output {
        int station; // 1 journal, 2 receipt, 3 both
        sim::PrintedLine line;
    };
    struct Job {
        int32_t id;
        int station;
        QList<Output> lines;
        std::function<void()> onDone;
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
    // The common order of checks; 0 when the call may go on, else the result already set.
    int32_t Check(const char* method, unsigned legalStates, int stations, bool dayMustBeClosed = false,
                  bool capable = true);
    bool ConsumeFailure(const QString& name);
    std::optional<sim::Refusal> PhysicalFault(int stations) const;
    int32_t ResolveVat(int32_t vatInfo, int* rate);
    int32_t CheckDescription(const QString& text);
    // The first checks of every call: an injected failure, then closed (101), not claimed (103) and
    // not enabled (105), as far as `need` goes. Clears the output of the previous call.
    enum class Session { Open, Claimed, Enabled };
    int32_t CheckSession(const char* method, Session need);
    int32_t CheckItemArguments(const QString& description, int32_t vatInfo, int32_t quantity,
                               Amount unitPrice, int* vat);
    int32_t ItemAdjustment(const char* method, int32_t type, const QString& description, Amount amount,
                           int32_t vatInfo, bool isVoid);
    int32_t RefundLine(const char* method, const QString& description, Amount amount, int32_t vatInfo,
                       bool isVoid);
    bool Async() const {
        return m_asyncMode;
    }

    // Printing
    void Emit(int station, const QString& textWithSequences, sim::PrintAttributes base = {});
    void EmitLine(int station, const sim::PrintedLine& line);
    void EmitAmountLine(int station, const QString& text, Amount amount);
    void EmitPreLine();
    void EmitPostLine();
    int32_t Flush(std::function<void()> onDone = {});
    void Apply(const QList<Output>& lines);
    void StartNextJob();
    void RunJob();
    void ClearQueue();
    void CheckIdle();

    // Events
    void Deliver(std::function<void()> event);
    void RaiseStatus(int32_t status);
    void ReleaseHeld();

    // Fiscal documents
    void ResetFiscalState(const sim::ModelSwitches& model);
    void EnterState(int32_t state);
    int32_t EffectivePrinterState() const;
    void PrintReceiptHead();
    void FinishReceipt(bool voided);
    void PrintDayTotals(const sim::Totals& t, const sim::Counters& c);
    QStringList XReportLines() const;
    QString TenderName(int tender) const;
    bool ParseDate(const QString& text, QDateTime* out) const;
    int32_t BeginReceiptOfType(int32_t type, const QString& creditNoteNumber);
    // Opens a receipt of `type` on paper and in the printer state, without queueing anything.
    void StartReceipt(int32_t type, const QString& creditNoteNumber);
    int32_t EndReceipt();
    void ShowOnDisplay(const QString& top, Amount amount);

    // DirectIO
    int32_t DirectIOCommand(int32_t command, DirectIOData& data, QString& text);
    int32_t WriteReport(const QString& name, int fileMode, const QStringList& lines, QString& text);
    QStringList JournalReportLines(const DirectIOData& data) const;
    QStringList FiscalMemorySummary() const;

    IFiscalPrinterEvents* m_sink = nullptr;

    // Session: set at Open
    bool m_open = false;
    bool m_claimed = false;
    bool m_enabled = false;
    QString m_deviceName;
    int32_t m_resultCode = 0;
    int32_t m_resultExtended = 0;
    QString m_errorString;
    bool m_asyncMode = false;
    bool m_checkTotal = false;
    bool m_flagWhenIdle = false;
    bool m_freezeEvents = false;
    bool m_duplicateReceipt = false;
    QString m_additionalHeader, m_additionalTrailer, m_changeDue, m_preLine, m_postLine;
    int32_t m_binaryConversion = 0, m_dateType = 4, m_messageType = 1, m_powerNotify = 0, m_totalizerType = 2;
    int32_t m_fiscalReceiptType = 4, m_fiscalReceiptStation = 1;
    int32_t m_outputId = 0, m_errorLevel = 1, m_errorOutId = 0, m_errorState = 0, m_errorStation = 0;
    QString m_checkHealthText;

    // The printer's fiscal state
    sim::ModelSwitches m_model;
    std::unique_ptr<sim::IFiscalMemory> m_memory;
    QList<int32_t> m_vatRates;
    QMap<int, int32_t> m_pendingVat;
    struct HeadLine {
        QString text;
        bool doubleWidth = false;
    };
    QList<HeadLine> m_header, m_trailer;
    QString m_posId, m_cashierId;
    bool m_dayOpened = false;
    int32_t m_printerState = 1;
    bool m_training = false;
    std::optional<sim::FiscalReceipt> m_receipt;
    bool m_receiptVoided = false;
    int m_receiptNumber = 0;
    QString m_creditNoteNumber;
    QStringList m_docLines; // the open document's receipt text
    QList<sim::PrintedLine> m_docPrinted;
    QStringList m_lastReceiptLines;
    QList<sim::PrintedLine> m_kept; // for PrintDuplicateReceipt
    bool m_hasKept = false;
    QMap<int, int> m_departments; // department -> rate
    int m_pollingMs = 1000;

    // The machine
    sim::PaperRoll m_receiptRoll, m_journalRoll;
    sim::CustomerDisplay m_display;
    sim::CashDrawer* m_drawer;
    sim::BitmapStore m_bitmaps;
    bool m_coverOpen = false;
    PaperLevel m_recPaper = PaperLevel::Ok, m_jrnPaper = PaperLevel::Ok;
    bool m_offline = false;
    bool m_powerOff = false;
    qint64 m_clockOffset = 0;
    int m_printMsPerLine = 20;
    QHash<QString, std::pair<int32_t, int32_t>> m_failNext;

    // Output
    QList<Output> m_out;
    std::deque<Job> m_queue;
    int32_t m_nextOutputId = 0;
    bool m_inError = false;
    QTimer m_jobTimer;
    std::deque<std::function<void()>> m_held;
};
