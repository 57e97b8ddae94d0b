#include "SimTestSupport.h"

using namespace OposAll;
using namespace t;

namespace {
// Ready, events recorded by `sink`, 1 ms per printed line.
void Start(SimulatedFiscalPrinter& p, RecordingSink& sink) {
    p.SetEventSink(&sink);
    Ready(p);
    p.SetPrintTimePerLineMs(1);
}
bool WaitIdle(SimulatedFiscalPrinter& p) {
    return QTest::qWaitFor([&] { return p.State() == OPOS_S_IDLE; }, 5000);
}
} // namespace

class TestSimulatedAsync : public QObject {
    Q_OBJECT
private slots:
    void completesInOrder() {
        SimulatedFiscalPrinter p;
        RecordingSink sink;
        Start(p, sink);
        p.SetAsyncMode(true);
        QCOMPARE(Begin(p), 0); // never queued
        QCOMPARE(p.OutputID(), 0);
        QCOMPARE(Item(p, QStringLiteral("A"), M(100)), 0);
        const int32_t first = p.OutputID();
        QCOMPARE(Item(p, QStringLiteral("LATE"), M(200)), 0);
        const int32_t second = p.OutputID();
        QVERIFY(second != first);
        QCOMPARE(p.State(), OPOS_S_BUSY);
        QVERIFY(!p.ReceiptRoll().PlainText().contains(QStringLiteral("LATE")));
        // Argument errors answer at once, without a queued job.
        QCOMPARE(Item(p, QStringLiteral("C"), M(100), 77), OPOS_E_EXTENDED);
        QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_BAD_VAT);
        QVERIFY(WaitIdle(p));
        QCOMPARE(sink.completed, (QList<int32_t>{first, second}));
        QVERIFY(p.ReceiptRoll().PlainText().contains(QStringLiteral("LATE")));
        QCOMPARE(Data(p, FPTR_GD_CURRENT_TOTAL), QStringLiteral("300"));
    }

    void errorAnswered_data() {
        QTest::addColumn<bool>("retry"); // retry once the operator fixed the paper, or clear the queue
        QTest::newRow("retried") << true;
        QTest::newRow("cleared") << false;
    }
    void errorAnswered() {
        QFETCH(bool, retry);
        SimulatedFiscalPrinter p;
        RecordingSink sink;
        Start(p, sink);
        sink.respond = [&] {
            p.SetReceiptPaper(PaperLevel::Ok);
            return retry ? OPOS_ER_RETRY : OPOS_ER_CLEAR;
        };
        QCOMPARE(Begin(p), 0);
        const qsizetype head = p.ReceiptRoll().Count();
        p.SetAsyncMode(true);
        QCOMPARE(Item(p, QStringLiteral("A"), M(100)), 0);
        const int32_t first = p.OutputID();
        QCOMPARE(Item(p, QStringLiteral("B"), M(100)), 0);
        const int32_t second = p.OutputID();
        p.SetReceiptPaper(PaperLevel::Empty);
        QVERIFY(QTest::qWaitFor([&] { return p.PendingJobs() == 0 && p.State() == OPOS_S_IDLE; }, 5000));
        QCOMPARE(sink.errors.size(), 1);
        QCOMPARE(sink.errors[0].code, OPOS_E_EXTENDED);
        QCOMPARE(sink.errors[0].extended, OPOS_EFPTR_REC_EMPTY);
        QCOMPARE(sink.errors[0].locus, OPOS_EL_OUTPUT);
        QCOMPARE(p.ErrorOutID(), first);
        QCOMPARE(p.ErrorStation(), FPTR_S_JOURNAL_RECEIPT);
        QCOMPARE(sink.completed, (retry ? QList<int32_t>{first, second} : QList<int32_t>{}));
        QCOMPARE(p.ReceiptRoll().Count() > head, retry);
    }

    void errorStateWhileFrozen() {
        SimulatedFiscalPrinter p;
        RecordingSink sink;
        Start(p, sink);
        QCOMPARE(Begin(p), 0);
        p.SetAsyncMode(true);
        p.SetCoverOpen(true);
        p.SetFreezeEvents(true);
        QCOMPARE(Item(p, QStringLiteral("A"), M(100)), 0);
        QVERIFY(QTest::qWaitFor([&] { return p.State() == OPOS_S_ERROR; }, 5000));
        QCOMPARE(p.ErrorLevel(), FPTR_EL_RECOVERABLE);
        QVERIFY(sink.errors.isEmpty());
        sink.respond = [&] {
            p.SetCoverOpen(false);
            return OPOS_ER_RETRY;
        };
        p.SetFreezeEvents(false);
        QCOMPARE(sink.errors.size(), 1);
        QVERIFY(WaitIdle(p));
        QCOMPARE(sink.completed.size(), 1);
    }

    void flagWhenIdleFiresOnce() {
        SimulatedFiscalPrinter p;
        RecordingSink sink;
        Start(p, sink);
        p.SetFlagWhenIdle(true); // already idle
        QCOMPARE(sink.statuses, QList<int32_t>{OPOS_SUE_IDLE});
        QVERIFY(!p.FlagWhenIdle());
        sink.statuses.clear();
        QCOMPARE(Begin(p), 0);
        p.SetAsyncMode(true);
        QCOMPARE(Item(p, QStringLiteral("A"), M(100)), 0);
        p.SetFlagWhenIdle(true);
        QVERIFY(sink.statuses.isEmpty());
        QVERIFY(WaitIdle(p));
        QCOMPARE(sink.statuses, QList<int32_t>{OPOS_SUE_IDLE});
        QCOMPARE(sink.order.last(), QStringLiteral("S1001"));
        QVERIFY(!p.FlagWhenIdle());
        QCOMPARE(Item(p, QStringLiteral("B"), M(100)), 0);
        QVERIFY(WaitIdle(p));
        QCOMPARE(sink.statuses.size(), 1);
    }

    void frozenEventsDeliveredOnThaw() {
        SimulatedFiscalPrinter p;
        RecordingSink sink;
        Start(p, sink);
        p.SetFreezeEvents(true);
        p.SetCoverOpen(true);
        p.SetCoverOpen(false);
        QCOMPARE(Begin(p), 0);
        p.SetAsyncMode(true);
        QCOMPARE(Item(p, QStringLiteral("A"), M(100)), 0);
        QVERIFY(WaitIdle(p));
        QVERIFY(sink.order.isEmpty());
        p.SetFreezeEvents(false);
        QCOMPARE(sink.order, (QStringList{QStringLiteral("S11"), QStringLiteral("S12"),
                                          QStringLiteral("O%1").arg(p.OutputID())}));
    }

    void sensorEvents_data() {
        QTest::addColumn<int>("sensor"); // 0 cover, 1 receipt, 2 journal, 3 power
        QTest::addColumn<QList<int32_t>>("expected");
        QTest::newRow("cover") << 0 << QList<int32_t>{FPTR_SUE_COVER_OPEN, FPTR_SUE_COVER_OK};
        QTest::newRow("receipt") << 1
                                 << QList<int32_t>{FPTR_SUE_REC_NEAREMPTY, FPTR_SUE_REC_EMPTY,
                                                   FPTR_SUE_REC_PAPEROK};
        QTest::newRow("power") << 3 << QList<int32_t>{OPOS_SUE_POWER_OFF_OFFLINE, OPOS_SUE_POWER_ONLINE};
        QTest::newRow("journal") << 2
                                 << QList<int32_t>{FPTR_SUE_JRN_NEAREMPTY, FPTR_SUE_JRN_EMPTY,
                                                   FPTR_SUE_JRN_PAPEROK};
    }
    void sensorEvents() {
        QFETCH(int, sensor);
        QFETCH(QList<int32_t>, expected);
        SimulatedFiscalPrinter p;
        RecordingSink sink;
        p.SetEventSink(&sink);
        QCOMPARE(Open(p), 0);
        QCOMPARE(Claim(p), 0);
        const auto cycle = [&] {
            if (sensor == 0 || sensor == 3) {
                sensor == 0 ? p.SetCoverOpen(true) : p.SetPowerOff(true);
                sensor == 0 ? p.SetCoverOpen(false) : p.SetPowerOff(false);
                return;
            }
            for (PaperLevel l : {PaperLevel::NearEnd, PaperLevel::Empty, PaperLevel::Ok})
                sensor == 1 ? p.SetReceiptPaper(l) : p.SetJournalPaper(l);
        };
        p.SetPowerNotify(OPOS_PN_ENABLED); // only before enabling
        QCOMPARE(p.ResultCode(), 0);
        cycle(); // not enabled: no events
        QVERIFY(sink.statuses.isEmpty());
        p.SetDeviceEnabled(true);
        p.SetPowerNotify(OPOS_PN_DISABLED);
        QCOMPARE(p.ResultCode(), OPOS_E_ILLEGAL);
        cycle();
        QCOMPARE(sink.statuses, expected);
    }
};

QTEST_GUILESS_MAIN(TestSimulatedAsync)
#include "test_async.moc"
