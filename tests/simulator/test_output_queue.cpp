#include "Machine.h"
#include "OutputQueue.h"

#include "OposAll.h"

#include <QSignalSpy>
#include <QTest>

using namespace sim;
using namespace OposAll;

namespace {
Output Text(int station = FPTR_S_JOURNAL_RECEIPT) {
    return {station, PrintedLine::Plain(QStringLiteral("x"))};
}
Output Feed(int lines) {
    PrintedLine feed;
    feed.kind = PrintedLine::Kind::Feed;
    feed.feedLines = lines;
    return {FPTR_S_RECEIPT, feed};
}

// A queue wired to a record of what it did.
struct Bench {
    OutputQueue queue;
    std::optional<Refusal> fault;
    QStringList log; // "P<lines>", "C<id>", "F<id>:<stations>:<extended>", "D"
    Bench() {
        queue.SetPrintTimePerLineMs(1);
        queue.faultOf = [this](int) { return fault; };
        queue.print = [this](const Outputs& lines) { log << QStringLiteral("P%1").arg(lines.size()); };
        queue.completed = [this](int32_t id) { log << QStringLiteral("C%1").arg(id); };
        queue.faulted = [this](int32_t id, int stations, const Refusal& r) {
            log << QStringLiteral("F%1:%2:%3").arg(id).arg(stations).arg(r.extended);
        };
        queue.drained = [this] { log << QStringLiteral("D"); };
    }
    bool WaitIdle() {
        return QTest::qWaitFor([this] { return queue.Empty() || queue.InError(); }, 5000);
    }
};
} // namespace

// The output queue, the event gate and the machine, each on its own.
class TestOutputQueue : public QObject {
    Q_OBJECT

private slots:
    // At most 5 s of simulated print time per job, however much it feeds.
    void jobTime_data() {
        QTest::addColumn<Outputs>("lines");
        QTest::addColumn<int>("msPerLine");
        QTest::addColumn<int>("ms");
        QTest::newRow("one line") << Outputs{Text()} << 20 << 20;
        QTest::newRow("three lines") << Outputs{Text(), Text(), Text()} << 20 << 60;
        QTest::newRow("a feed counts its lines") << Outputs{Feed(3)} << 20 << 60;
        QTest::newRow("300 lines stop at 5 s") << Outputs(300, Text()) << 20 << 5000;
        QTest::newRow("a feed of two billion") << Outputs{Feed(2000000000)} << 20 << 5000;
        QTest::newRow("two billion at the slowest speed")
            << Outputs{Feed(2000000000), Feed(2000000000)} << 2147483647 << 5000;
        QTest::newRow("no time per line still takes 1 ms") << Outputs{Text()} << 0 << 1;
    }
    void jobTime() {
        QFETCH(Outputs, lines);
        QFETCH(int, msPerLine);
        QFETCH(int, ms);
        QCOMPARE(OutputQueue::JobTimeMs(lines, msPerLine), ms);
    }

    void jobsInOrder() {
        Bench b;
        QSignalSpy changed(&b.queue, &OutputQueue::changed);
        QCOMPARE(b.queue.Submit({Text()}), 1);
        QCOMPARE(b.queue.Submit({Text(), Text()}), 2);
        QCOMPARE(b.queue.Pending(), 2);
        QVERIFY(b.log.isEmpty()); // nothing printed before its time
        QVERIFY(b.WaitIdle());
        QCOMPARE(b.log, (QStringList{"P1", "C1", "P2", "C2", "D"}));
        QVERIFY(changed.count() >= 4);
        b.queue.ResetIds();
        QCOMPARE(b.queue.Submit({Text()}), 1);
    }

    void faultAnswered_data() {
        QTest::addColumn<bool>("retry");
        QTest::newRow("retried") << true;
        QTest::newRow("cleared") << false;
    }
    void faultAnswered() {
        QFETCH(bool, retry);
        Bench b;
        b.fault = Refusal{OPOS_E_EXTENDED, OPOS_EFPTR_REC_EMPTY, {}};
        b.queue.Submit({Text(FPTR_S_RECEIPT)});
        b.queue.Submit({Text()});
        QVERIFY(b.WaitIdle());
        QVERIFY(b.queue.InError());
        QCOMPARE(b.log, QStringList{"F1:2:203"});
        b.queue.Submit({Text()}); // waits behind the error
        QTest::qWait(20);
        QCOMPARE(b.log.size(), 1);
        b.fault.reset();
        retry ? b.queue.Retry() : b.queue.Clear();
        QVERIFY(QTest::qWaitFor([&] { return b.queue.Empty(); }, 5000));
        QVERIFY(!b.queue.InError());
        const QStringList expected = retry ? QStringList{"F1:2:203", "P1", "C1", "P1", "C2", "P1", "C3", "D"}
                                           : QStringList{"F1:2:203", "D"};
        QCOMPARE(b.log, expected);
    }

    void eventsHeldWhileFrozen() {
        EventGate gate;
        QSignalSpy held(&gate, &EventGate::heldChanged);
        QStringList order;
        gate.Deliver([&] { order << "1"; });
        gate.SetFrozen(true);
        gate.Deliver([&] { order << "2"; });
        // An event that raises another while it is delivered: the new one queues behind.
        gate.Deliver([&] {
            order << "3";
            gate.Deliver([&] { order << "5"; });
        });
        gate.Deliver([&] { order << "4"; });
        QCOMPARE(order, QStringList{"1"});
        QCOMPARE(gate.Held(), 3);
        gate.SetFrozen(false);
        QCOMPARE(order, (QStringList{"1", "2", "3", "4", "5"}));
        QCOMPARE(gate.Held(), 0);
        QCOMPARE(held.last().at(0).toInt(), 0);
        gate.SetFrozen(true);
        gate.Deliver([&] { order << "dropped"; });
        gate.Clear();
        gate.SetFrozen(false);
        QCOMPARE(order.size(), 5);
    }

    void physicalFaults_data() {
        QTest::addColumn<QString>("faults"); // C cover, R receipt empty, J journal empty, N receipt near end
        QTest::addColumn<int>("stations");
        QTest::addColumn<int>("extended"); // 0: no fault
        QTest::newRow("none") << "" << FPTR_S_JOURNAL_RECEIPT << 0;
        QTest::newRow("near end prints") << "N" << FPTR_S_RECEIPT << 0;
        QTest::newRow("receipt paper, journal only") << "R" << FPTR_S_JOURNAL << 0;
        QTest::newRow("journal paper, journal only") << "RJ" << FPTR_S_JOURNAL << 202;
    }
    void physicalFaults() {
        QFETCH(QString, faults);
        QFETCH(int, stations);
        QFETCH(int, extended);
        Machine m;
        QSignalSpy changed(&m, &Machine::changed);
        QVERIFY(m.SetCoverOpen(faults.contains(u'C')) == faults.contains(u'C'));
        m.SetReceiptPaper(faults.contains(u'R')   ? PaperLevel::Empty
                          : faults.contains(u'N') ? PaperLevel::NearEnd
                                                  : PaperLevel::Ok);
        m.SetJournalPaper(faults.contains(u'J') ? PaperLevel::Empty : PaperLevel::Ok);
        QCOMPARE(changed.count(), faults.size()); // one announcement per change, none for no change
        const auto fault = m.PhysicalFault(stations);
        QCOMPARE(fault ? fault->extended : 0, extended);
    }
};

QTEST_GUILESS_MAIN(TestOutputQueue)
#include "test_output_queue.moc"
