#include "Machine.h"

#include "OposAll.h"

using namespace OposAll;

namespace sim {

namespace {
template <typename T> bool Change(T& field, T value, Machine* m) {
    if (field == value)
        return false;
    field = value;
    emit m->changed();
    return true;
}
} // namespace

bool Machine::SetCoverOpen(bool open) {
    return Change(m_coverOpen, open, this);
}

bool Machine::SetReceiptPaper(PaperLevel level) {
    return Change(m_receipt, level, this);
}

bool Machine::SetJournalPaper(PaperLevel level) {
    return Change(m_journal, level, this);
}

bool Machine::SetOffline(bool offline) {
    return Change(m_offline, offline, this);
}

bool Machine::SetPowerOff(bool off) {
    return Change(m_powerOff, off, this);
}

void Machine::SetClockOffsetSeconds(qint64 seconds) {
    Change(m_clockOffset, seconds, this);
}

void Machine::FailNextCall(const QString& method, int32_t code, int32_t extended) {
    m_failNext.insert(method, {code, extended});
    emit changed();
}

std::optional<Refusal> Machine::TakeFailure(const QString& method) {
    const auto it = m_failNext.find(method);
    if (it == m_failNext.end())
        return std::nullopt;
    const auto [code, extended] = it.value();
    m_failNext.erase(it);
    emit changed();
    return Refusal{code, extended, QStringLiteral("Simulated failure")};
}

std::optional<Refusal> Machine::PhysicalFault(int stations) const {
    if (m_coverOpen)
        return Refusal{OPOS_E_EXTENDED, OPOS_EFPTR_COVER_OPEN, QStringLiteral("Cover open")};
    if ((stations & FPTR_S_RECEIPT) && m_receipt == PaperLevel::Empty)
        return Refusal{OPOS_E_EXTENDED, OPOS_EFPTR_REC_EMPTY, QStringLiteral("Receipt paper empty")};
    if ((stations & FPTR_S_JOURNAL) && m_journal == PaperLevel::Empty)
        return Refusal{OPOS_E_EXTENDED, OPOS_EFPTR_JRN_EMPTY, QStringLiteral("Journal paper empty")};
    return std::nullopt;
}

} // namespace sim
