#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QMetaObject>

#include <functional>

class QSocketNotifier;
class QTextStream;

// The runner's standard output. A line per call written and flushed one by one costs more than
// the call, so lines gather here and go out a block at a time, and whenever someone might be
// waiting for them: before the event loop blocks (a delay, a wait for the device) and whenever
// the owner calls Flush, as it does before writing to the error stream and at the end.
class BlockOutput {
public:
    static constexpr qsizetype BlockBytes = 32 * 1024;

    // `blocks` false writes every line through at once, as a reference for the block writes.
    BlockOutput(QTextStream& out, bool blocks);
    ~BlockOutput();
    BlockOutput(const BlockOutput&) = delete;
    BlockOutput& operator=(const BlockOutput&) = delete;

    // One line, UTF-8, without its line end.
    void WriteLine(QByteArrayView utf8);
    void Flush();

private:
    QTextStream& m_out;
    bool m_blocks;
    QByteArray m_pending;
    QMetaObject::Connection m_beforeWait;
};

// While in place, SIGINT, SIGTERM and SIGHUP run `flush` on the event loop's next turn and then
// end the program as the signal would have. A no-op where there are no such signals.
class FlushOnSignal {
public:
    explicit FlushOnSignal(std::function<void()> flush);
    ~FlushOnSignal();
    FlushOnSignal(const FlushOnSignal&) = delete;
    FlushOnSignal& operator=(const FlushOnSignal&) = delete;

private:
    void OnSignal();

    std::function<void()> m_flush;
    QSocketNotifier* m_notifier = nullptr;
};
