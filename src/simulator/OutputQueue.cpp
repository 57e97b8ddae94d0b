#include "OutputQueue.h"

#include "OposAll.h"

namespace sim {

OutputQueue::OutputQueue(QObject* parent) : QObject(parent) {
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &OutputQueue::RunFront);
}

int OutputQueue::JobTimeMs(const Outputs& lines, int msPerLine) {
    qint64 paper = 0;
    for (const Output& o : lines) {
        paper += o.line.PaperLines();
        if (paper >= kMaxJobMs)
            break; // no job takes longer, however much it feeds
    }
    const qint64 ms = qMax<qint64>(paper, 1) * qMax(msPerLine, 0);
    return static_cast<int>(qBound<qint64>(1, ms, kMaxJobMs));
}

void OutputQueue::SetPrintTimePerLineMs(int ms) {
    m_msPerLine = ms < 0 ? 0 : ms;
}

int32_t OutputQueue::Submit(Outputs lines) {
    int stations = 0;
    for (const Output& o : lines)
        stations |= o.station;
    const int32_t id = ++m_nextId;
    m_jobs.push_back({id, stations ? stations : OposAll::FPTR_S_JOURNAL_RECEIPT, std::move(lines)});
    if (m_jobs.size() == 1)
        StartNext();
    emit changed();
    return id;
}

void OutputQueue::StartNext() {
    if (m_jobs.empty() || m_inError)
        return;
    m_timer.start(JobTimeMs(m_jobs.front().lines, m_msPerLine));
}

void OutputQueue::RunFront() {
    if (m_jobs.empty() || m_inError)
        return;
    const Job& front = m_jobs.front();
    if (const auto fault = faultOf ? faultOf(front.stations) : std::nullopt) {
        m_inError = true;
        emit changed();
        if (faulted)
            faulted(front.id, front.stations, *fault);
        return;
    }
    Job done = std::move(m_jobs.front());
    m_jobs.pop_front();
    if (print)
        print(done.lines);
    emit changed();
    if (completed)
        completed(done.id);
    StartNext();
    if (m_jobs.empty() && drained)
        drained();
}

void OutputQueue::Retry() {
    if (!m_inError)
        return;
    m_inError = false;
    emit changed();
    StartNext();
}

void OutputQueue::Clear() {
    m_timer.stop();
    const bool had = !m_jobs.empty() || m_inError;
    m_jobs.clear();
    m_inError = false;
    if (had) {
        emit changed();
        if (drained)
            drained();
    }
}

void EventGate::Deliver(std::function<void()> event) {
    // While earlier events wait, a new one queues behind them even after a thaw.
    if (m_frozen || !m_held.empty()) {
        m_held.push_back(std::move(event));
        emit heldChanged(Held());
        Release();
        return;
    }
    event();
}

void EventGate::SetFrozen(bool frozen) {
    m_frozen = frozen;
    Release();
}

void EventGate::Release() {
    while (!m_frozen && !m_held.empty()) {
        auto event = std::move(m_held.front());
        m_held.pop_front();
        emit heldChanged(Held());
        event();
    }
}

void EventGate::Clear() {
    if (m_held.empty())
        return;
    m_held.clear();
    emit heldChanged(0);
}

} // namespace sim
