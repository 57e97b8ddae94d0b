#include "RunnerOutput.h"

#include <QAbstractEventDispatcher>
#include <QFileDevice>
#include <QSocketNotifier>
#include <QTextStream>

#ifdef Q_OS_UNIX
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#endif

BlockOutput::BlockOutput(QTextStream& out, bool blocks) : m_out(out), m_blocks(blocks) {
    if (!m_blocks)
        return;
    m_pending.reserve(BlockBytes + 1024);
    if (QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance())
        m_beforeWait =
            QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, [this] { Flush(); });
}

BlockOutput::~BlockOutput() {
    QObject::disconnect(m_beforeWait);
    Flush();
}

void BlockOutput::WriteLine(QByteArrayView utf8) {
    m_pending += utf8;
    m_pending += '\n';
    if (!m_blocks || m_pending.size() >= BlockBytes)
        Flush();
}

void BlockOutput::Flush() {
    if (m_pending.isEmpty())
        return;
    // Whatever the stream holds already goes first, and the bytes go to its device as they are:
    // no round trip through UTF-16 for text that is UTF-8 already.
    m_out.flush();
    QIODevice* device = m_out.device();
    if (device) {
        device->write(m_pending);
        if (auto* file = qobject_cast<QFileDevice*>(device))
            file->flush();
    } else {
        m_out << QString::fromUtf8(m_pending);
        m_out.flush();
    }
    m_pending.resize(0);
}

#ifdef Q_OS_UNIX

namespace {

// The write end that the signal handler reaches; one FlushOnSignal at a time.
int g_signalPipe[2] = {-1, -1};
constexpr int CaughtSignals[] = {SIGINT, SIGTERM, SIGHUP};
struct sigaction g_previous[std::size(CaughtSignals)];

void OnSignalCaught(int signal) {
    const unsigned char byte = static_cast<unsigned char>(signal);
    [[maybe_unused]] const ssize_t written = ::write(g_signalPipe[1], &byte, 1);
}

} // namespace

FlushOnSignal::FlushOnSignal(std::function<void()> flush) : m_flush(std::move(flush)) {
    if (g_signalPipe[0] >= 0 || ::pipe2(g_signalPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    m_notifier = new QSocketNotifier(g_signalPipe[0], QSocketNotifier::Read);
    QObject::connect(m_notifier, &QSocketNotifier::activated, [this] { OnSignal(); });
    struct sigaction action = {};
    action.sa_handler = OnSignalCaught;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (size_t i = 0; i < std::size(CaughtSignals); ++i)
        ::sigaction(CaughtSignals[i], &action, &g_previous[i]);
}

FlushOnSignal::~FlushOnSignal() {
    if (!m_notifier)
        return;
    for (size_t i = 0; i < std::size(CaughtSignals); ++i)
        ::sigaction(CaughtSignals[i], &g_previous[i], nullptr);
    delete m_notifier;
    ::close(g_signalPipe[0]);
    ::close(g_signalPipe[1]);
    g_signalPipe[0] = g_signalPipe[1] = -1;
}

void FlushOnSignal::OnSignal() {
    unsigned char signal = 0;
    if (::read(g_signalPipe[0], &signal, 1) != 1)
        return;
    m_flush();
    // Ends the program the way the signal would have, exit status included.
    ::signal(signal, SIG_DFL);
    ::raise(signal);
}

#else

FlushOnSignal::FlushOnSignal(std::function<void()> flush) : m_flush(std::move(flush)) {}
FlushOnSignal::~FlushOnSignal() = default;
void FlushOnSignal::OnSignal() {}

#endif
