#include "SimTestSupport.h"

using namespace OposAll;
using namespace t;

namespace {
constexpr Amount M(int cents) {
    return Amount{cents} * 100;
}
} // namespace

class TestSimulatedPrinter : public QObject {
    Q_OBJECT
private slots:
    // ------------------------------------------------ lifecycle and identity
    void lifecycle() {
        SimulatedFiscalPrinter p;
        QCOMPARE(p.State(), OPOS_S_CLOSED);
        QCOMPARE(Claim(p), OPOS_E_CLOSED);
        QCOMPARE(p.Close(), OPOS_E_CLOSED);
        QCOMPARE(p.ReleaseDevice(), OPOS_E_CLOSED);
        QCOMPARE(Open(p, QStringLiteral("NoSuchPrinter")), OPOS_E_NOEXIST);
        QCOMPARE(Open(p), 0);
        QCOMPARE(p.State(), OPOS_S_IDLE);
        QCOMPARE(Open(p), OPOS_E_ILLEGAL);
        p.SetDeviceEnabled(true);
        QCOMPARE(p.ResultCode(), OPOS_E_NOTCLAIMED);
        QCOMPARE(p.ReleaseDevice(), OPOS_E_ILLEGAL);
        QCOMPARE(Claim(p), 0);
        QCOMPARE(Claim(p), 0);
        QVERIFY(p.Claimed());
        p.SetDeviceEnabled(true);
        QCOMPARE(p.ResultCode(), 0);
        QVERIFY(p.DeviceEnabled());
        QCOMPARE(p.PrinterState(), FPTR_PS_MONITOR);
        // Release disables first; Close releases first.
        QCOMPARE(p.ReleaseDevice(), 0);
        QVERIFY(!p.DeviceEnabled());
        QCOMPARE(Claim(p), 0);
        QCOMPARE(p.Close(), 0);
        QVERIFY(!p.Claimed());
        QCOMPARE(p.State(), OPOS_S_CLOSED);
    }

    void closedReadsAreZero() {
        SimulatedFiscalPrinter p;
        QCOMPARE(p.NumVatRates(), 0);
        QCOMPARE(p.DeviceName(), QString());
        QCOMPARE(p.CapCoverSensor(), false);
        QCOMPARE(p.CountryCode(), 0);
        QCOMPARE(p.State(), OPOS_S_CLOSED);
        // A failed write is described by the result properties; reads leave them alone.
        p.SetAsyncMode(true);
        QCOMPARE(p.ResultCode(), OPOS_E_CLOSED);
        QVERIFY(!p.ErrorString().isEmpty());
        (void)p.NumVatRates();
        (void)p.DeviceDescription();
        QCOMPARE(p.ResultCode(), OPOS_E_CLOSED);
    }

    void identity_data() {
        QTest::addColumn<QString>("model");
        QTest::addColumn<int>("vatRates");
        QTest::addColumn<bool>("checkTotal");
        QTest::newRow("ZorvaneFPU") << QStringLiteral("ZorvaneFPU") << 8 << false;
        QTest::newRow("Tessorim") << QStringLiteral("Tessorim") << 4 << true;
    }
    void identity() {
        QFETCH(QString, model);
        QFETCH(int, vatRates);
        QFETCH(bool, checkTotal);
        SimulatedFiscalPrinter p;
        QCOMPARE(Open(p, model), 0);
        QCOMPARE(p.DeviceName(), model);
        QCOMPARE(p.DeviceDescription(), QStringLiteral("Simulated fiscal printer"));
        QCOMPARE(p.ServiceObjectDescription(), QStringLiteral("fpubench simulated fiscal printer service"));
        QCOMPARE(p.ServiceObjectVersion(), 1011000);
        QCOMPARE(p.CountryCode(), 8);
        QCOMPARE(p.ActualCurrency(), 3);
        QCOMPARE(p.AmountDecimalPlaces(), 2);
        QCOMPARE(p.QuantityDecimalPlaces(), 3);
        QCOMPARE(p.QuantityLength(), 10);
        QCOMPARE(p.DescriptionLength(), 38);
        QCOMPARE(p.MessageLength(), 46);
        QCOMPARE(p.NumHeaderLines(), 6);
        QCOMPARE(p.NumTrailerLines(), 3);
        QCOMPARE(p.NumVatRates(), vatRates);
        QCOMPARE(p.PredefinedPaymentLines(), QStringLiteral("0,1,2,3,4,5,6,7,8,9,10"));
        QCOMPARE(p.ReservedWord(), QStringLiteral("TOTALE"));
        QCOMPARE(p.RemainingFiscalMemory(), 1800);
        QCOMPARE(p.CapCheckTotal(), checkTotal);
        QCOMPARE(p.CheckTotal(), checkTotal);
        QVERIFY(p.CapCoverSensor());
        QVERIFY(p.CapSubPercentAdjustment());
        QVERIFY(p.CapTrainingMode());
        QCOMPARE(p.CapPowerReporting(), 1);
        QVERIFY(!p.CapSlpPresent());
        QVERIFY(!p.CapItemList());
        QVERIFY(!p.CapMultiContractor());
        QVERIFY(!p.CapUpdateFirmware());
    }

    // ------------------------------------------------ order of checks
    void orderOfChecks_data() {
        QTest::addColumn<int>("setup");
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("extended");
        QTest::newRow("closed") << 0 << 101 << 0;
        QTest::newRow("not claimed") << 1 << 103 << 0;
        QTest::newRow("not enabled") << 2 << 105 << 0;
        QTest::newRow("offline") << 3 << 108 << 0;
        QTest::newRow("wrong state before cover") << 4 << 114 << 207;
        QTest::newRow("cover open") << 5 << 114 << 201;
        QTest::newRow("cover before receipt paper") << 6 << 114 << 201;
        QTest::newRow("receipt paper empty") << 7 << 114 << 203;
        QTest::newRow("receipt before journal") << 8 << 114 << 203;
        QTest::newRow("journal empty") << 9 << 114 << 202;
        QTest::newRow("paper before arguments") << 10 << 114 << 203;
        QTest::newRow("bad VAT") << 11 << 114 << 217;
        QTest::newRow("long description") << 12 << 114 << 215;
        QTest::newRow("negative quantity") << 13 << 114 << 213;
        QTest::newRow("negative unit price") << 14 << 114 << 218;
        QTest::newRow("reserved word") << 15 << 114 << 215;
        QTest::newRow("unlinked department") << 16 << 114 << 217;
    }
    void orderOfChecks() {
        QFETCH(int, setup);
        QFETCH(int, code);
        QFETCH(int, extended);
        SimulatedFiscalPrinter p;
        if (setup >= 1)
            QCOMPARE(Open(p), 0);
        if (setup >= 2)
            QCOMPARE(Claim(p), 0);
        if (setup >= 3) {
            p.SetDeviceEnabled(true);
            QCOMPARE(p.ResultCode(), 0);
        }
        if (setup == 3)
            p.SetOffline(true);
        if (setup >= 5 && setup != 4)
            QCOMPARE(Begin(p), 0);
        if (setup == 4 || setup == 5 || setup == 6)
            p.SetCoverOpen(true);
        if (setup == 6 || setup == 7 || setup == 8 || setup == 10)
            p.SetReceiptPaper(PaperLevel::Empty);
        if (setup == 8 || setup == 9)
            p.SetJournalPaper(PaperLevel::Empty);
        QString desc = QStringLiteral("Item");
        Amount price = M(100);
        int32_t quantity = 0, vat = 1;
        Amount unitPrice = 0;
        if (setup == 10 || setup == 11)
            vat = 99;
        if (setup == 12)
            desc = QString(39, u'x');
        if (setup == 13)
            quantity = -1;
        if (setup == 14)
            unitPrice = -M(1);
        if (setup == 15)
            desc = QStringLiteral("Totale merce");
        if (setup == 16)
            vat = 10007;
        QString unit;
        QCOMPARE(p.PrintRecItem(desc, price, quantity, vat, unitPrice, unit), code);
        QCOMPARE(p.ResultCode(), code);
        QCOMPARE(p.ResultCodeExtended(), extended);
        QVERIFY(!p.ErrorString().isEmpty());
    }

    void errorStringNamesCause() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(Item(p, QStringLiteral("x"), M(100)), OPOS_E_EXTENDED);
        QCOMPARE(p.ErrorString(), QStringLiteral("Printer not in fiscal receipt state"));
        QCOMPARE(Begin(p), 0);
        QCOMPARE(p.ErrorString(), QString());
        p.SetCoverOpen(true);
        QCOMPARE(Item(p, QStringLiteral("x"), M(100)), OPOS_E_EXTENDED);
        QCOMPARE(p.ErrorString(), QStringLiteral("Cover open"));
    }

    void busyBeforePhysical() {
        SimulatedFiscalPrinter p;
        Ready(p);
        p.SetPrintTimePerLineMs(10000);
        p.SetAsyncMode(true);
        QCOMPARE(Begin(p), 0);
        QCOMPARE(p.State(), OPOS_S_BUSY);
        p.SetCoverOpen(true);
        // A synchronous call while output is pending answers busy.
        QString data;
        int32_t item = FPTR_GD_CURRENT_TOTAL, opt = 0;
        QCOMPARE(p.GetData(item, opt, data), OPOS_E_BUSY);
        p.SetAsyncMode(false);
        QCOMPARE(Item(p, QStringLiteral("x"), M(100)), OPOS_E_BUSY);
        QCOMPARE(p.ClearOutput(), 0);
        QCOMPARE(p.State(), OPOS_S_IDLE);
    }

    void propertyWrites() {
        SimulatedFiscalPrinter p;
        Ready(p);
        p.SetCheckTotal(true); // no such capability on this model
        QCOMPARE(p.ResultCode(), OPOS_E_ILLEGAL);
        p.SetTotalizerType(5);
        QCOMPARE(p.ResultCode(), OPOS_E_ILLEGAL);
        p.SetTotalizerType(4);
        QCOMPARE(p.ResultCode(), 0);
        QCOMPARE(p.TotalizerType(), 4);
        p.SetFiscalReceiptType(8);
        QCOMPARE(p.ResultCode(), OPOS_E_ILLEGAL);
        p.SetSlipSelection(1);
        QCOMPARE(p.ResultCode(), OPOS_E_ILLEGAL);
        QCOMPARE(Begin(p), 0);
        p.SetFiscalReceiptType(7);
        QCOMPARE(p.ResultCode(), OPOS_E_EXTENDED);
        QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_WRONG_STATE);
        p.SetFiscalReceiptStation(1);
        QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_WRONG_STATE);
    }

    // ------------------------------------------------ printer states
    void stateTransitions() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(p.PrinterState(), FPTR_PS_MONITOR);
        QCOMPARE(Begin(p), 0);
        QCOMPARE(p.PrinterState(), FPTR_PS_FISCAL_RECEIPT);
        QCOMPARE(Item(p, QStringLiteral("A"), M(1000)), 0);
        QCOMPARE(Total(p, M(1000), M(400)), 0);
        QCOMPARE(p.PrinterState(), FPTR_PS_FISCAL_RECEIPT_TOTAL);
        QCOMPARE(Total(p, M(1000), M(600)), 0);
        QCOMPARE(p.PrinterState(), FPTR_PS_FISCAL_RECEIPT_ENDING);
        QCOMPARE(Message(p, QStringLiteral("Grazie")), 0);
        QCOMPARE(End(p), 0);
        QCOMPARE(p.PrinterState(), FPTR_PS_MONITOR);
        QCOMPARE(p.BeginNonFiscal(), 0);
        QCOMPARE(p.PrinterState(), FPTR_PS_NONFISCAL);
        QCOMPARE(p.EndNonFiscal(), 0);
        QCOMPARE(p.PrinterState(), FPTR_PS_MONITOR);
        QCOMPARE(p.PrintXReport(), 0);
        QCOMPARE(p.PrinterState(), FPTR_PS_MONITOR);
    }

    void refusedInEachState_data() {
        QTest::addColumn<int>("state");
        QTest::newRow("monitor") << FPTR_PS_MONITOR;
        QTest::newRow("fiscal receipt") << FPTR_PS_FISCAL_RECEIPT;
        QTest::newRow("fiscal receipt total") << FPTR_PS_FISCAL_RECEIPT_TOTAL;
        QTest::newRow("fiscal receipt ending") << FPTR_PS_FISCAL_RECEIPT_ENDING;
        QTest::newRow("non-fiscal") << FPTR_PS_NONFISCAL;
        QTest::newRow("locked") << FPTR_PS_LOCKED;
    }
    void refusedInEachState() {
        QFETCH(int, state);
        SimulatedFiscalPrinter p;
        Ready(p);
        if (state >= FPTR_PS_FISCAL_RECEIPT && state <= FPTR_PS_FISCAL_RECEIPT_ENDING) {
            QCOMPARE(Begin(p), 0);
            QCOMPARE(Item(p, QStringLiteral("A"), M(1000)), 0);
        }
        if (state == FPTR_PS_FISCAL_RECEIPT_TOTAL)
            QCOMPARE(Total(p, M(1000), M(100)), 0);
        if (state == FPTR_PS_FISCAL_RECEIPT_ENDING)
            QCOMPARE(Total(p, M(1000), M(1000)), 0);
        if (state == FPTR_PS_NONFISCAL)
            QCOMPARE(p.BeginNonFiscal(), 0);
        if (state == FPTR_PS_LOCKED)
            p.SetRemainingFiscalMemory(0);
        QCOMPARE(p.PrinterState(), state);

        auto expectWrongState = [&](int32_t rc) {
            QCOMPARE(rc, OPOS_E_EXTENDED);
            QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_WRONG_STATE);
        };
        switch (state) {
        case FPTR_PS_MONITOR:
            expectWrongState(Total(p, 0, 0));
            expectWrongState(End(p));
            expectWrongState(Normal(p, FPTR_S_RECEIPT, QStringLiteral("x")));
            expectWrongState(p.EndNonFiscal());
            break;
        case FPTR_PS_FISCAL_RECEIPT:
            expectWrongState(Begin(p));
            expectWrongState(p.PrintZReport());
            expectWrongState(End(p));
            break;
        case FPTR_PS_FISCAL_RECEIPT_TOTAL:
            expectWrongState(Item(p, QStringLiteral("B"), M(100)));
            expectWrongState(Subtotal(p));
            expectWrongState(End(p));
            break;
        case FPTR_PS_FISCAL_RECEIPT_ENDING:
            expectWrongState(Total(p, M(1000), M(100)));
            expectWrongState(Void(p));
            expectWrongState(Item(p, QStringLiteral("B"), M(100)));
            break;
        case FPTR_PS_NONFISCAL:
            expectWrongState(Begin(p));
            expectWrongState(Message(p, QStringLiteral("x")));
            break;
        case FPTR_PS_LOCKED: {
            expectWrongState(Begin(p));
            QString data;
            int32_t item = FPTR_GD_FIRMWARE, opt = 0;
            expectWrongState(p.GetData(item, opt, data));
            expectWrongState(p.ResetPrinter());
            break;
        }
        }
    }

    void notPaidOnlyAfterTotal() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(Begin(p), 0);
        QCOMPARE(Item(p, QStringLiteral("A"), M(1000)), 0);
        QString d = QStringLiteral("Non pagato");
        Amount a = M(300);
        QCOMPARE(p.PrintRecNotPaid(d, a), OPOS_E_EXTENDED);
        QCOMPARE(Total(p, M(1000), M(700)), 0);
        QCOMPARE(p.PrintRecNotPaid(d, a), 0);
        QCOMPARE(p.PrinterState(), FPTR_PS_FISCAL_RECEIPT_ENDING);
        QCOMPARE(End(p), 0);
        QCOMPARE(Data(p, FPTR_GD_NOT_PAID), QStringLiteral("300"));
    }

    void resetPrinterVoidsOpenReceipt() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(p.BeginTraining(), 0);
        QCOMPARE(Begin(p), 0);
        QCOMPARE(p.ResetPrinter(), 0);
        QVERIFY(!p.TrainingModeActive());
        QCOMPARE(Begin(p), 0);
        QCOMPARE(Item(p, QStringLiteral("A"), M(1000)), 0);
        QCOMPARE(p.ResetPrinter(), 0);
        QCOMPARE(p.PrinterState(), FPTR_PS_MONITOR);
        QCOMPARE(Data(p, FPTR_GD_DAILY_TOTAL), QStringLiteral("0"));
        QCOMPARE(Data(p, FPTR_GD_FISCAL_REC_VOID), QStringLiteral("1"));
        QCOMPARE(Data(p, FPTR_GD_FISCAL_REC), QStringLiteral("0"));
    }

    // ------------------------------------------------ the two models
    void recVoidByModel_data() {
        QTest::addColumn<QString>("model");
        QTest::addColumn<int>("afterVoid");
        QTest::newRow("ZorvaneFPU closes") << QStringLiteral("ZorvaneFPU") << FPTR_PS_MONITOR;
        QTest::newRow("Tessorim waits for the close")
            << QStringLiteral("Tessorim") << FPTR_PS_FISCAL_RECEIPT_ENDING;
    }
    void recVoidByModel() {
        QFETCH(QString, model);
        QFETCH(int, afterVoid);
        SimulatedFiscalPrinter p;
        Ready(p, model);
        QCOMPARE(Begin(p), 0);
        QCOMPARE(Item(p, QStringLiteral("A"), M(1000)), 0);
        QCOMPARE(Void(p), 0);
        QCOMPARE(p.PrinterState(), afterVoid);
        if (afterVoid != FPTR_PS_MONITOR) {
            QCOMPARE(Item(p, QStringLiteral("B"), M(100)), OPOS_E_EXTENDED);
            QCOMPARE(End(p), 0);
        }
        QCOMPARE(p.PrinterState(), FPTR_PS_MONITOR);
        QCOMPARE(Data(p, FPTR_GD_DAILY_TOTAL), QStringLiteral("0"));
        QCOMPARE(Data(p, FPTR_GD_FISCAL_REC_VOID), QStringLiteral("1"));
        QVERIFY(p.ReceiptRoll().PlainText().contains(QStringLiteral("ANNULLATO")));
    }

    void checkTotalByModel() {
        SimulatedFiscalPrinter tess;
        Ready(tess, QStringLiteral("Tessorim"));
        QCOMPARE(Begin(tess), 0);
        QCOMPARE(Item(tess, QStringLiteral("A"), M(1000)), 0);
        QCOMPARE(Total(tess, M(999), M(1000)), OPOS_E_EXTENDED);
        QCOMPARE(tess.ResultCodeExtended(), OPOS_EFPTR_BAD_ITEM_AMOUNT);
        QCOMPARE(tess.PrinterState(), FPTR_PS_FISCAL_RECEIPT);
        // Without the check the printer's own total rules.
        tess.SetCheckTotal(false);
        QCOMPARE(Total(tess, M(999), M(1000)), 0);
        QCOMPARE(tess.PrinterState(), FPTR_PS_FISCAL_RECEIPT_ENDING);

        SimulatedFiscalPrinter zor;
        Ready(zor);
        QCOMPARE(Begin(zor), 0);
        QCOMPARE(Item(zor, QStringLiteral("A"), M(1000)), 0);
        QCOMPARE(Total(zor, M(1), M(500)), 0);
        QCOMPARE(zor.PrinterState(), FPTR_PS_FISCAL_RECEIPT_TOTAL);
    }

    void vatRatesPerModel() {
        SimulatedFiscalPrinter p;
        Ready(p, QStringLiteral("Tessorim"));
        QCOMPARE(Begin(p), 0);
        QCOMPARE(Item(p, QStringLiteral("A"), M(100), 5), OPOS_E_EXTENDED);
        QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_BAD_VAT);
        QCOMPARE(Item(p, QStringLiteral("A"), M(100), 4), 0);
    }

    // ------------------------------------------------ money and data
    void creditNoteScriptTotals() {
        // The bench's full credit note ticket: subtotal 43.00, total 38.00, payments 42.70.
        SimulatedFiscalPrinter p;
        Ready(p);
        p.SetFiscalReceiptType(FPTR_RT_REFUND);
        QCOMPARE(p.ResultCode(), 0);
        p.SetPreLine(QStringLiteral("8953986357"));
        QCOMPARE(Begin(p), 0);
        for (int i = 1; i <= 5; ++i)
            QCOMPARE(Item(p, QStringLiteral("TEST ITEM  %1").arg(i), M(i * 100)), 0);
        QCOMPARE(ItemVoid(p, QStringLiteral("TEST ITEM  5"), M(500)), 0);
        QCOMPARE(Item(p, QStringLiteral("TEST ITEM  6"), M(800)), 0);
        QCOMPARE(Adjust(p, 3, M(2500)), 0);
        QCOMPARE(Item(p, QStringLiteral("TEST ITEM  7"), M(1000), 2), 0);
        QCOMPARE(Adjust(p, 3, M(4000), 2), 0);
        QCOMPARE(AdjustVoid(p, 3, M(4000), 2), 0);
        QCOMPARE(Item(p, QStringLiteral("TEST ITEM  8"), M(500), 5), 0);
        QCOMPARE(Adjust(p, 1, M(200), 5), 0);
        QCOMPARE(Item(p, QStringLiteral("TEST ITEM  9"), M(700), 5), 0);
        QCOMPARE(Adjust(p, 1, M(350), 5), 0);
        QCOMPARE(AdjustVoid(p, 1, M(350), 5), 0);
        QCOMPARE(Item(p, QStringLiteral("TEST ITEM  10"), M(700), 3), 0);
        QCOMPARE(Subtotal(p), 0);
        QCOMPARE(Data(p, FPTR_GD_CURRENT_TOTAL), QStringLiteral("4300"));
        QCOMPARE(SubAdjust(p, 3, M(1000)), 0);
        QCOMPARE(SubAdjust(p, 2, M(430)), 0);
        QCOMPARE(SubAdjust(p, 1, M(400)), 0);
        QCOMPARE(SubAdjust(p, 2, M(400)), 0);
        QCOMPARE(Data(p, FPTR_GD_CURRENT_TOTAL), QStringLiteral("4300"));
        QCOMPARE(SubAdjust(p, 1, M(500)), 0);
        QCOMPARE(Data(p, FPTR_GD_CURRENT_TOTAL), QStringLiteral("3800"));
        QCOMPARE(Total(p, M(3800), 0), 0);
        const int payments[] = {800, 50, 50, 60, 70, 80, 90, 40, 30, 3000};
        for (int i = 0; i < 10; ++i)
            QCOMPARE(Total(p, M(3800), M(payments[i]), QString::number(i)), 0);
        QCOMPARE(p.PrinterState(), FPTR_PS_FISCAL_RECEIPT_ENDING);
        QVERIFY(p.ReceiptText().contains(QStringLiteral("RESTO")));
        QVERIFY(p.ReceiptText().contains(QStringLiteral("4,70")));
        QVERIFY(p.ReceiptText().contains(QStringLiteral("8953986357")));
        QCOMPARE(End(p), 0);
        QCOMPARE(Data(p, FPTR_GD_REFUND), QStringLiteral("3800"));
        QCOMPARE(Data(p, FPTR_GD_DAILY_TOTAL), QStringLiteral("0"));
    }

    void preLineAndPostLineOnce() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(Begin(p), 0);
        p.SetPreLine(QStringLiteral("PRE"));
        p.SetPostLine(QStringLiteral("POST"));
        QCOMPARE(Item(p, QStringLiteral("A"), M(100)), 0);
        QCOMPARE(p.PreLine(), QString());
        QCOMPARE(Item(p, QStringLiteral("B"), M(100)), 0);
        const QStringList lines = p.ReceiptText().split(u'\n');
        const auto pre = lines.indexOf(QStringLiteral("PRE"));
        const auto post = lines.indexOf(QStringLiteral("POST"));
        QVERIFY(pre >= 0 && post > pre + 1);
        QVERIFY(lines[pre + 1].startsWith(u'A'));
        QCOMPARE(lines.count(QStringLiteral("PRE")), 1);
        QCOMPARE(lines.count(QStringLiteral("POST")), 1);
    }

    void totalsAndData() {
        SimulatedFiscalPrinter p;
        Ready(p);
        Sale(p, M(2500), 1);
        QCOMPARE(Begin(p), 0);
        QCOMPARE(Item(p, QStringLiteral("B"), M(1000), 2), 0);
        QCOMPARE(Item(p, QStringLiteral("C"), M(200), 2), 0);
        QCOMPARE(ItemVoid(p, QStringLiteral("C"), M(200), 2), 0);
        QCOMPARE(Message(p, QStringLiteral("hello")), 0);
        QCOMPARE(Data(p, FPTR_GD_LINECOUNT, FPTR_LC_ITEM), QStringLiteral("2"));
        QCOMPARE(Data(p, FPTR_GD_LINECOUNT, FPTR_LC_ITEM_VOID), QStringLiteral("1"));
        QCOMPARE(Data(p, FPTR_GD_LINECOUNT, FPTR_LC_COMMENT), QStringLiteral("1"));
        QCOMPARE(Total(p, M(1000), M(1000), QStringLiteral("1")), 0);
        QCOMPARE(End(p), 0);
        QCOMPARE(Data(p, FPTR_GD_DAILY_TOTAL), QStringLiteral("3500"));
        QCOMPARE(Data(p, FPTR_GD_GRAND_TOTAL), QStringLiteral("3500"));
        QCOMPARE(Data(p, FPTR_GD_FISCAL_REC), QStringLiteral("2"));
        QCOMPARE(Data(p, FPTR_GD_RECEIPT_NUMBER), QStringLiteral("2"));
        QCOMPARE(Data(p, FPTR_GD_TENDER, FPTR_PDL_CASH), QStringLiteral("2500"));
        QCOMPARE(Data(p, FPTR_GD_TENDER, FPTR_PDL_CHEQUE), QStringLiteral("1000"));
        QCOMPARE(Data(p, FPTR_GD_PRINTER_ID), QStringLiteral("99ZS000123"));
        QCOMPARE(Data(p, FPTR_GD_FIRMWARE), QStringLiteral("1.11.0"));
        QCOMPARE(Data(p, FPTR_GD_DESCRIPTION_LENGTH, FPTR_DL_ITEM), QStringLiteral("38"));
        QCOMPARE(Totalizer(p, FPTR_TT_DAY, 0, FPTR_GT_NET), QStringLiteral("3500"));
        QCOMPARE(Totalizer(p, FPTR_TT_DAY, 2, FPTR_GT_NET), QStringLiteral("1000"));
        QCOMPARE(Totalizer(p, FPTR_TT_DAY, 2, FPTR_GT_ITEM_VOID), QStringLiteral("200"));
        QCOMPARE(Totalizer(p, FPTR_TT_DAY, 1, FPTR_GT_VAT), QStringLiteral("451")); // 25.00 * 22 / 122
        QCOMPARE(Totalizer(p, FPTR_TT_GRAND, 0, FPTR_GT_NET), QStringLiteral("3500"));
        QString data;
        int32_t item = 99, opt = 0;
        QCOMPARE(p.GetData(item, opt, data), OPOS_E_ILLEGAL);
        item = FPTR_GD_TENDER;
        opt = 23;
        QCOMPARE(p.GetData(item, opt, data), OPOS_E_ILLEGAL);
        int32_t vat = 9, gt = FPTR_GT_NET;
        QCOMPARE(p.GetTotalizer(vat, gt, data), OPOS_E_ILLEGAL);
    }

    void departments() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(Begin(p), 0);
        QCOMPARE(Item(p, QStringLiteral("A"), M(1000), 10002), 0); // department 2 -> rate B
        QCOMPARE(p.CurrentReceipt()->RateTotal(2), M(1000));
        QCOMPARE(Item(p, QStringLiteral("A"), M(1000), 10003), OPOS_E_EXTENDED);
        QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_BAD_VAT);
    }

    void trainingDoesNotCount() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(p.BeginTraining(), 0);
        QCOMPARE(p.BeginTraining(), OPOS_E_ILLEGAL);
        QVERIFY(p.TrainingModeActive());
        Sale(p, M(1000));
        QVERIFY(p.ReceiptRoll().PlainText().contains(QStringLiteral("NON FISCALE")));
        QCOMPARE(Data(p, FPTR_GD_DAILY_TOTAL), QStringLiteral("0"));
        QVERIFY(!p.DayOpened());
        QCOMPARE(p.EndTraining(), 0);
        QCOMPARE(p.EndTraining(), OPOS_E_ILLEGAL);
    }

    void duplicateReceipt() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(p.PrintDuplicateReceipt(), OPOS_E_ILLEGAL);
        p.SetDuplicateReceipt(true);
        Sale(p, M(1234));
        const auto before = p.ReceiptRoll().Count();
        QCOMPARE(p.PrintDuplicateReceipt(), 0);
        QVERIFY(!p.DuplicateReceipt());
        const QString copy = p.ReceiptRoll().PlainText(before);
        QVERIFY(copy.startsWith(QStringLiteral("COPIA")));
        QVERIFY(copy.contains(QStringLiteral("12,34")));
        // Nothing printed on the journal for a copy, nothing counted.
        QCOMPARE(Data(p, FPTR_GD_FISCAL_REC), QStringLiteral("1"));
        QCOMPARE(p.PrintDuplicateReceipt(), OPOS_E_ILLEGAL);
    }

    // ------------------------------------------------ the day
    void dayRules() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QVERIFY(!p.DayOpened());
        QString date = QStringLiteral("010120251200");
        QCOMPARE(p.SetDate(date), 0);
        Sale(p, M(100));
        QVERIFY(p.DayOpened());
        auto expectDayOpen = [&](int32_t rc) {
            QCOMPARE(rc, OPOS_E_EXTENDED);
            QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_WRONG_STATE);
        };
        expectDayOpen(p.SetDate(date));
        int32_t id = 1;
        QString value = QStringLiteral("21");
        expectDayOpen(p.SetVatValue(id, value));
        expectDayOpen(p.SetVatTable());
        int32_t line = 1;
        QString text = QStringLiteral("SHOP");
        bool dw = false;
        expectDayOpen(p.SetHeaderLine(line, text, dw));
        QCOMPARE(p.SetTrailerLine(line, text, dw), 0); // trailers may change any time
        QCOMPARE(p.PrintZReport(), 0);
        QVERIFY(!p.DayOpened());
        QCOMPARE(p.RemainingFiscalMemory(), 1799);
        QCOMPARE(Data(p, FPTR_GD_Z_REPORT), QStringLiteral("1"));
        QCOMPARE(Data(p, FPTR_GD_DAILY_TOTAL), QStringLiteral("0"));
        QCOMPARE(Data(p, FPTR_GD_GRAND_TOTAL), QStringLiteral("100"));
        QCOMPARE(p.SetHeaderLine(line, text, dw), 0);
        QCOMPARE(p.SetVatValue(id, value), 0);
        QCOMPARE(p.SetVatTable(), 0);
    }

    void vatTable() {
        SimulatedFiscalPrinter p;
        Ready(p);
        const int expected[] = {2200, 1000, 500, 400, 0, 0, 0, 0};
        for (int32_t id = 1; id <= 8; ++id) {
            int32_t opt = 0, rate = -1, vid = id;
            QCOMPARE(p.GetVatEntry(vid, opt, rate), 0);
            QCOMPARE(rate, expected[id - 1]);
        }
        int32_t id = 5;
        for (const char* bad : {"abc", "4.5.1", "", "-3"}) {
            QString v = QString::fromLatin1(bad);
            QCOMPARE(p.SetVatValue(id, v), OPOS_E_ILLEGAL);
        }
        QString v = QStringLiteral("4,5");
        QCOMPARE(p.SetVatValue(id, v), 0);
        int32_t opt = 0, rate = 0;
        QCOMPARE(p.GetVatEntry(id, opt, rate), 0);
        QCOMPARE(rate, 0); // pending until the table is set
        QCOMPARE(p.SetVatTable(), 0);
        QCOMPARE(p.GetVatEntry(id, opt, rate), 0);
        QCOMPARE(rate, 450);
        id = 9;
        QCOMPARE(p.SetVatValue(id, v), OPOS_E_ILLEGAL);
    }

    void dates() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QString bad = QStringLiteral("32132025");
        QCOMPARE(p.SetDate(bad), OPOS_E_EXTENDED);
        QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_BAD_DATE);
        QString date = QStringLiteral("150620301045");
        QCOMPARE(p.SetDate(date), 0);
        QString got;
        QCOMPARE(p.GetDate(got), 0);
        QCOMPARE(got.size(), 12);
        QCOMPARE(got.left(8), QStringLiteral("15062030"));
        QVERIFY(p.ClockOffsetSeconds() > 0);
    }

    void reports() {
        SimulatedFiscalPrinter p;
        Ready(p);
        Sale(p, M(100));
        QCOMPARE(p.PrintZReport(), 0);
        Sale(p, M(200));
        QCOMPARE(p.PrintZReport(), 0);
        int32_t type = FPTR_RT_ORDINAL;
        QString from = QStringLiteral("1"), to = QStringLiteral("2");
        const auto before = p.ReceiptRoll().Count();
        QCOMPARE(p.PrintReport(type, from, to), 0);
        const QString text = p.ReceiptRoll().PlainText(before);
        QVERIFY(text.contains(QStringLiteral("1,00")));
        QVERIFY(text.contains(QStringLiteral("2,00")));
        from = QStringLiteral("3");
        QCOMPARE(p.PrintReport(type, from, to), OPOS_E_ILLEGAL);
        type = FPTR_RT_DATE;
        from = QStringLiteral("01012000");
        QCOMPARE(p.PrintReport(type, from, to), OPOS_E_EXTENDED);
        QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_BAD_DATE);
        type = 9;
        QCOMPARE(p.PrintReport(type, from, to), OPOS_E_ILLEGAL);
        QString d1 = QStringLiteral("010120000000"), d2 = QStringLiteral("311299990000");
        const auto mark = p.ReceiptRoll().Count();
        QCOMPARE(p.PrintPeriodicTotalsReport(d1, d2), 0);
        QVERIFY(p.ReceiptRoll().PlainText(mark).contains(QStringLiteral("3,00")));
    }

    void memoryFullLocks() {
        SimulatedFiscalPrinter p;
        Ready(p);
        p.SetRemainingFiscalMemory(1);
        QCOMPARE(p.PrintZReport(), 0);
        QCOMPARE(p.RemainingFiscalMemory(), 0);
        QCOMPARE(p.PrinterState(), FPTR_PS_LOCKED);
    }

    void fiscalStateSurvivesCloseAndOpen() {
        SimulatedFiscalPrinter p;
        Ready(p);
        QCOMPARE(Begin(p), 0);
        QCOMPARE(Item(p, QStringLiteral("A"), M(700)), 0);
        QCOMPARE(p.Close(), 0);
        Ready(p);
        QCOMPARE(p.PrinterState(), FPTR_PS_FISCAL_RECEIPT);
        QCOMPARE(Data(p, FPTR_GD_CURRENT_TOTAL), QStringLiteral("700"));
    }

    void faults() {
        SimulatedFiscalPrinter p;
        Ready(p);
        p.FailNextCall(QStringLiteral("BeginFiscalReceipt"), OPOS_E_FAILURE, 0);
        QCOMPARE(Begin(p), OPOS_E_FAILURE);
        QCOMPARE(p.ResultCode(), OPOS_E_FAILURE);
        QCOMPARE(Begin(p), 0);
        p.FailNextCall(QStringLiteral("SetAsyncMode"), OPOS_E_EXTENDED, OPOS_EFPTR_TECHNICAL_ASSISTANCE);
        p.SetAsyncMode(true);
        QCOMPARE(p.ResultCodeExtended(), OPOS_EFPTR_TECHNICAL_ASSISTANCE);
        QVERIFY(!p.AsyncMode());
        p.SetOffline(true);
        QCOMPARE(Item(p, QStringLiteral("A"), M(100)), OPOS_E_OFFLINE);
        p.SetDeviceEnabled(false);
        p.SetDeviceEnabled(true);
        QCOMPARE(p.ResultCode(), OPOS_E_OFFLINE);
        p.SetOffline(false);
        p.SetDeviceEnabled(true);
        QCOMPARE(p.ResultCode(), 0);
        p.SetPowerOff(true);
        QCOMPARE(p.PowerState(), OPOS_PS_OFF_OFFLINE);
        QCOMPARE(Item(p, QStringLiteral("A"), M(100)), OPOS_E_OFFLINE);
        p.SetPowerOff(false);
        QCOMPARE(Data(p, FPTR_GD_RESTART), QStringLiteral("1"));
        QCOMPARE(p.PowerState(), OPOS_PS_ONLINE);
    }

    void sensorProperties() {
        SimulatedFiscalPrinter p;
        Ready(p);
        p.SetReceiptPaper(PaperLevel::NearEnd);
        p.SetJournalPaper(PaperLevel::Empty);
        p.SetCoverOpen(true);
        QVERIFY(p.RecNearEnd());
        QVERIFY(!p.RecEmpty());
        QVERIFY(p.JrnEmpty());
        QVERIFY(p.CoverOpen());
    }
};

QTEST_GUILESS_MAIN(TestSimulatedPrinter)
#include "test_printer.moc"
