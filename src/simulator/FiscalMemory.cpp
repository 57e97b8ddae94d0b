#include "FiscalMemory.h"

namespace sim {

Amount InMemoryFiscalMemory::DayTender(int tender) const {
    return tender >= 1 && tender < static_cast<int>(m_tenders.size()) ? m_tenders[tender] : 0;
}

void InMemoryFiscalMemory::AddReceipt(const Totals& receipt, const std::array<Amount, 23>& tenders) {
    m_day.Add(receipt);
    m_grand.Add(receipt);
    for (size_t i = 0; i < m_tenders.size(); ++i)
        m_tenders[i] += tenders[i];
}

bool InMemoryFiscalMemory::CloseDay(const QDateTime& when) {
    if (m_remaining <= 0)
        return false;
    ZRecord z;
    z.number = static_cast<int>(m_z.size()) + 1;
    z.when = when;
    z.day = m_day;
    z.counters = m_dayCounters;
    z.counters.zReports = z.number;
    z.grandNet = m_grand.Sum(TotalKind::Net);
    m_z.append(z);
    --m_remaining;
    ++m_grandCounters.zReports;
    ResetDay();
    return true;
}

void InMemoryFiscalMemory::ResetDay() {
    m_day = {};
    const int restarts = m_dayCounters.restarts;
    m_dayCounters = {};
    m_dayCounters.restarts = restarts;
    m_tenders = {};
    m_dayVoided = 0;
}

} // namespace sim
