#pragma once

#include "FiscalTotals.h"
#include "PrintControl.h"

#include <QList>
#include <QObject>
#include <QTimer>

#include <deque>
#include <functional>
#include <optional>

namespace sim {

// One printed element and the stations it goes to (FPTR_S_ bits: 1 journal, 2 receipt).
struct Output {
    int station;
    PrintedLine line;
};
using Outputs = QList<Output>;

// The asynchronous output of the printer: queued jobs printed one after the other on the event
// loop, each taking a simulated print time, and the error state a physical fault puts it in.
// It knows nothing of receipts; its owner tells it how to find a fault and how to print.
class OutputQueue : public QObject {
    Q_OBJECT
public:
    static constexpr qint64 kMaxJobMs = 5000;

    explicit OutputQueue(QObject* parent = nullptr);

    // The fault a job on these stations meets now, if any.
    std::function<std::optional<Refusal>(int stations)> faultOf;
    // Puts a finished job's lines on paper.
    std::function<void(const Outputs&)> print;
    // A job is done; its id.
    std::function<void(int32_t id)> completed;
    // A job met a fault: the queue waits in its error state until Retry() or Clear().
    std::function<void(int32_t id, int stations, const Refusal& fault)> faulted;
    // The queue has become empty.
    std::function<void()> drained;

    // Queues one job and answers its output id.
    int32_t Submit(Outputs lines);
    void Retry();
    // Drops every job and leaves the error state.
    void Clear();
    // Output ids start again from 1.
    void ResetIds() { m_nextId = 0; }

    void SetPrintTimePerLineMs(int ms);
    int PrintTimePerLineMs() const { return m_msPerLine; }
    bool Empty() const { return m_jobs.empty(); }
    int Pending() const { return static_cast<int>(m_jobs.size()); }
    bool InError() const { return m_inError; }
    // What printing `lines` takes: every line of paper (a feed counts its lines) at `msPerLine`,
    // at least 1 ms, at most kMaxJobMs.
    static int JobTimeMs(const Outputs& lines, int msPerLine);

signals:
    // Pending jobs or the error state changed.
    void changed();

private:
    struct Job {
        int32_t id;
        int stations;
        Outputs lines;
    };
    void StartNext();
    void RunFront();

    std::deque<Job> m_jobs;
    QTimer m_timer;
    int m_msPerLine = 20;
    int32_t m_nextId = 0;
    bool m_inError = false;
};

// Events on their way to the application: held while frozen, then delivered in their order.
class EventGate : public QObject {
    Q_OBJECT
public:
    explicit EventGate(QObject* parent = nullptr) : QObject(parent) {}

    void Deliver(std::function<void()> event);
    // Thawing delivers what was held.
    void SetFrozen(bool frozen);
    bool Frozen() const { return m_frozen; }
    int Held() const { return static_cast<int>(m_held.size()); }
    void Clear();

signals:
    void heldChanged(int held);

private:
    void Release();

    bool m_frozen = false;
    std::deque<std::function<void()>> m_held;
};

} // namespace sim
