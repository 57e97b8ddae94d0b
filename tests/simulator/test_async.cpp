#include "SimTestSupport.h"

using namespace OposAll;
using namespace t;

namespace {
constexpr Amount M(int cents) {
    return Amount{cents} * 100;
}
} // namespace

class TestSimulatedAsync : public QObject {
    Q_OBJECT
private slots:
    void completesInOrder() {
        SimulatedFiscalPrinter p;
        RecordingSink sink;
        p.SetEventSink(&sink);
        Ready(p);
        p.SetPrintTimePerLineMs(1);
        p.SetAsyncMode(true);
        QCOMPARE(Begin(p), 0);
        const int32_t first = p.OutputID();
        QCOMPARE(Item(p, QStringLiteral("A"), M(100)), 0);
        const int32_t second = p.OutputID();
        QCOMPARE(Item(p, QStringLiteral("B"), M(200)), 0);
        const int32_t third = p.OutputID();
        QVERIFY(second != first && third != second);
        QCOMPARE(p.State(), OPOS_S_BUSY);
        // State and argument errors answer at once, without a queued job.
        QCOMPARE(Item(p, QStringLiteral("C"), M(100), 77), OPOS_E_EXTENDED);
        QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_BAD_VAT);
        QCOMPARE(End(p), OPOS_E_EXTENDED);
        QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_WRONG_STATE);
        QVERIFY(QTest::qWaitFor([&] { return p.State() == OPOS_S_IDLE; }, 5000));
        QCOMPARE(sink.completed, (QList<int32_t>{first, second, third}));
        QVERIFY(p.ReceiptRoll().PlainText().contains(QStringLiteral("B")));
        QCOMPARE(Data(p, FPTR_GD_CURRENT_TOTAL), QStringLiteral("300"));
    }

    void rollFilledOnlyWhenJobEnds() {
        SimulatedFiscalPrinter p;
        Ready(p);
        p.SetPrintTimePerLineMs(5);
        p.SetAsyncMode(true);
        QCOMPARE(Begin(p), 0);
        QCOMPARE(Item(p, QStringLiteral("LATE"), M(100)), 0);
        QVERIFY(!p.ReceiptRoll().PlainText().contains(QStringLiteral("LATE")));
        QVERIFY(QTest::qWaitFor([&] { return p.PendingJobs() == 0; }, 5000));
        QVERIFY(p.ReceiptRoll().PlainText().contains(QStringLiteral("LATE")));
    }

    void errorRetried() {
        SimulatedFiscalPrinter p;
        RecordingSink sink;
        p.SetEventSink(&sink);
        Ready(p);
        p.SetPrintTimePerLineMs(1);
        // The operator puts paper in, then answers retry.
        sink.respond = [&](int) {
            p.SetReceiptPaper(PaperLevel::Ok);
            return OPOS_ER_RETRY;
        };
        p.SetAsyncMode(true);
        QCOMPARE(Begin(p), 0);
        const int32_t id = p.OutputID();
        p.SetReceiptPaper(PaperLevel::Empty);
        QVERIFY(QTest::qWaitFor([&] { return !sink.completed.isEmpty(); }, 5000));
        QCOMPARE(sink.errors.size(), 1);
        QCOMPARE(sink.errors[0].code, OPOS_E_EXTENDED);
        QCOMPARE(sink.errors[0].extended, OPOS_EFPTR_REC_EMPTY);
        QCOMPARE(sink.errors[0].locus, OPOS_EL_OUTPUT);
        QCOMPARE(sink.completed, QList<int32_t>{id});
        QCOMPARE(p.State(), OPOS_S_IDLE);
        QCOMPARE(p.ErrorOutID(), id);
        QCOMPARE(p.ErrorStation(), FPTR_S_JOURNAL_RECEIPT);
    }

    void errorCleared() {
        SimulatedFiscalPrinter p;
        RecordingSink sink;
        p.SetEventSink(&sink);
        Ready(p);
        p.SetPrintTimePerLineMs(1);
        sink.respond = [](int) { return OPOS_ER_CLEAR; };
        p.SetAsyncMode(true);
        QCOMPARE(Begin(p), 0);
        QCOMPARE(Item(p, QStringLiteral("A"), M(100)), 0);
        p.SetCoverOpen(true);
        QVERIFY(QTest::qWaitFor([&] { return !sink.errors.isEmpty(); }, 5000));
        QCOMPARE(sink.errors[0].extended, OPOS_EFPTR_COVER_OPEN);
        QCOMPARE(p.State(), OPOS_S_IDLE);
        QCOMPARE(p.PendingJobs(), 0);
        QVERIFY(sink.completed.isEmpty());
        QCOMPARE(p.ReceiptRoll().Count(), 0);
    }

    void errorStateWhileUnanswered() {
        SimulatedFiscalPrinter p;
        RecordingSink sink;
        p.SetEventSink(&sink);
        Ready(p);
        p.SetPrintTimePerLineMs(1);
        p.SetAsyncMode(true);
        p.SetCoverOpen(true);
        p.SetFreezeEvents(true);
        QCOMPARE(Begin(p), 0);
        QVERIFY(QTest::qWaitFor([&] { return p.State() == OPOS_S_ERROR; }, 5000));
        QCOMPARE(p.ErrorLevel(), FPTR_EL_RECOVERABLE);
        QVERIFY(sink.errors.isEmpty());
        sink.respond = [&](int) {
            p.SetCoverOpen(false);
            return OPOS_ER_RETRY;
        };
        p.SetFreezeEvents(false);
        QCOMPARE(sink.errors.size(), 1);
        QVERIFY(QTest::qWaitFor([&] { return p.State() == OPOS_S_IDLE; }, 5000));
        QCOMPARE(sink.completed.size(), 1);
    }

    void flagWhenIdleFiresOnce() {
        SimulatedFiscalPrinter p;
        RecordingSink sink;
        p.SetEventSink(&sink);
        Ready(p);
        p.SetPrintTimePerLineMs(1);
        p.SetFlagWhenIdle(true); // already idle
        QCOMPARE(sink.statuses, QList<int32_t>{OPOS_SUE_IDLE});
        QVERIFY(!p.FlagWhenIdle());
        sink.statuses.clear();
        p.SetAsyncMode(true);
        QCOMPARE(Begin(p), 0);
        QCOMPARE(Item(p, QStringLiteral("A"), M(100)), 0);
        p.SetFlagWhenIdle(true);
        QVERIFY(sink.statuses.isEmpty());
        QVERIFY(QTest::qWaitFor([&] { return p.State() == OPOS_S_IDLE; }, 5000));
        QCOMPARE(sink.statuses, QList<int32_t>{OPOS_SUE_IDLE});
        QCOMPARE(sink.order.last(), QStringLiteral("S1001"));
        QVERIFY(!p.FlagWhenIdle());
        QCOMPARE(Item(p, QStringLiteral("B"), M(100)), 0);
        QVERIFY(QTest::qWaitFor([&] { return p.State() == OPOS_S_IDLE; }, 5000));
        QCOMPARE(sink.statuses.size(), 1);
    }

    void frozenEventsDeliveredOnThaw() {
        SimulatedFiscalPrinter p;
        RecordingSink sink;
        p.SetEventSink(&sink);
        Ready(p);
        p.SetPrintTimePerLineMs(1);
        p.SetFreezeEvents(true);
        p.SetCoverOpen(true);
        p.SetCoverOpen(false);
        p.SetAsyncMode(true);
        QCOMPARE(Begin(p), 0);
        QVERIFY(QTest::qWaitFor([&] { return p.State() == OPOS_S_IDLE; }, 5000));
        QVERIFY(sink.order.isEmpty());
        p.SetFreezeEvents(false);
        QCOMPARE(sink.order, (QStringList{QStringLiteral("S11"), QStringLiteral("S12"),
                                          QStringLiteral("O%1").arg(p.OutputID())}));
    }

    void sensorEvents_data() {
        QTest::addColumn<int>("sensor"); // 0 cover, 1 receipt, 2 journal
        QTest::addColumn<QList<int32_t>>("expected");
        QTest::newRow("cover") << 0 << QList<int32_t>{FPTR_SUE_COVER_OPEN, FPTR_SUE_COVER_OK};
        QTest::newRow("receipt") << 1
                                 << QList<int32_t>{FPTR_SUE_REC_NEAREMPTY, FPTR_SUE_REC_EMPTY,
                                                   FPTR_SUE_REC_PAPEROK};
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
        auto cycle = [&] {
            if (sensor == 0) {
                p.SetCoverOpen(true);
                p.SetCoverOpen(false);
            } else {
                auto set = [&](PaperLevel l) { sensor == 1 ? p.SetReceiptPaper(l) : p.SetJournalPaper(l); };
                set(PaperLevel::NearEnd);
                set(PaperLevel::Empty);
                set(PaperLevel::Ok);
            }
        };
        cycle(); // not enabled: no events
        QVERIFY(sink.statuses.isEmpty());
        p.SetDeviceEnabled(true);
        cycle();
        QCOMPARE(sink.statuses, expected);
    }

    void powerEventsWhenNotified() {
        SimulatedFiscalPrinter p;
        RecordingSink sink;
        p.SetEventSink(&sink);
        QCOMPARE(Open(p), 0);
        QCOMPARE(Claim(p), 0);
        p.SetPowerNotify(OPOS_PN_ENABLED);
        QCOMPARE(p.ResultCode(), 0);
        p.SetDeviceEnabled(true);
        p.SetPowerNotify(OPOS_PN_DISABLED); // not while enabled
        QCOMPARE(p.ResultCode(), OPOS_E_ILLEGAL);
        p.SetPowerOff(true);
        p.SetPowerOff(false);
        QCOMPARE(sink.statuses, (QList<int32_t>{OPOS_SUE_POWER_OFF_OFFLINE, OPOS_SUE_POWER_ONLINE}));
    }

    void reportStateWhilePrinting() {
        SimulatedFiscalPrinter p;
        Ready(p);
        p.SetPrintTimePerLineMs(2);
        p.SetAsyncMode(true);
        QCOMPARE(p.PrintXReport(), 0);
        QCOMPARE(p.PrinterState(), FPTR_PS_REPORT);
        QVERIFY(QTest::qWaitFor([&] { return p.PrinterState() == FPTR_PS_MONITOR; }, 5000));
        QCOMPARE(p.State(), OPOS_S_IDLE);
    }
};

QTEST_GUILESS_MAIN(TestSimulatedAsync)
#include "test_async.moc"
