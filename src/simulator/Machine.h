#pragma once

#include "FiscalTotals.h"

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QString>

#include <optional>

namespace sim {

enum class PaperLevel { Ok, NearEnd, Empty };

// The printer as hardware: cover and paper sensors, the line to the host, power, its clock, and
// the failures a test asks for. Changes nothing of the fiscal state by itself;
// announces every change so that a window can show the lamps.
class Machine : public QObject {
    Q_OBJECT
public:
    explicit Machine(QObject* parent = nullptr) : QObject(parent) {}

    // Each setter answers whether the value changed.
    bool SetCoverOpen(bool open);
    bool SetReceiptPaper(PaperLevel level);
    bool SetJournalPaper(PaperLevel level);
    bool SetOffline(bool offline);
    bool SetPowerOff(bool off);
    void SetClockOffsetSeconds(qint64 seconds);
    // The next call of `method` (a method name, or "Set" + a property name for a write) fails.
    void FailNextCall(const QString& method, int32_t code, int32_t extended);
    // The failure waiting for `method`, taken away; nullopt when none waits.
    std::optional<Refusal> TakeFailure(const QString& method);

    bool CoverOpen() const { return m_coverOpen; }
    PaperLevel ReceiptPaper() const { return m_receipt; }
    PaperLevel JournalPaper() const { return m_journal; }
    bool Offline() const { return m_offline; }
    bool PowerOff() const { return m_powerOff; }
    qint64 ClockOffsetSeconds() const { return m_clockOffset; }
    QDateTime Now() const { return QDateTime::currentDateTime().addSecs(m_clockOffset); }
    const QHash<QString, std::pair<int32_t, int32_t>>& PendingFailures() const { return m_failNext; }
    // The fault a printing call on `stations` (FPTR_S_ bits) meets first: cover, receipt, journal.
    std::optional<Refusal> PhysicalFault(int stations) const;

signals:
    void changed();

private:
    bool m_coverOpen = false;
    PaperLevel m_receipt = PaperLevel::Ok, m_journal = PaperLevel::Ok;
    bool m_offline = false;
    bool m_powerOff = false;
    qint64 m_clockOffset = 0;
    QHash<QString, std::pair<int32_t, int32_t>> m_failNext;
};

} // namespace sim
