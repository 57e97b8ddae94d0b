#include "PanelBench.h"
#include "frmFiscalTicket.h"
#include "frmSettings.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QTimer>

// The fiscal receipt panel over a scripted control.
class FiscalTicketTest : public QObject {
    Q_OBJECT

    std::unique_ptr<PanelBench> bench;
    std::unique_ptr<frmFiscalTicket> panel;

    int Items() const { return int(bench->CallsOf("PrintRecItem").size()); }
    QTimer* Timer() const { return panel->tmrUpdateReceiptTotal; }

private slots:
    void init() {
        bench = std::make_unique<PanelBench>();
        bench->printer.Set(Prop::NumVatRates, 4);
        bench->printer.Set(Prop::State, 2);
        panel = std::make_unique<frmFiscalTicket>(bench->ctx);
    }
    void cleanup() {
        panel.reset();
        bench.reset();
    }

    void defaultSaleIsRecordedAndLogged() {
        QVERIFY(bench->Calls().isEmpty() && !Timer()->isActive()); // loading calls nothing
        panel->cmdPrintRecItem->click();
        QCOMPARE(bench->MacroLines(),
                 QStringList{QStringLiteral("F_PrintRecItem$Articolo test 1$1.00$0$0$0.00$Kg")});
        QVERIFY2(bench->Log().contains(QStringLiteral(
                     "PrintRecItem(\"Articolo test 1\", 1.00, 0, 0, 0.00, \"Kg\")     -> OposSuccess(0)")),
                 qPrintable(bench->Log().join(u'\n')));
        QCOMPARE(bench->Arg("PrintRecItem", 1).value<Amount>(), Amount(10000));
        QCOMPARE(bench->refreshes, 1);
        QVERIFY(Timer()->isActive());
    }

    void counterRunsOnPastAFailedItem() {
        bench->printer.Script(QStringLiteral("PrintRecItem"), 0);
        bench->printer.Script(QStringLiteral("PrintRecItem"), 114, 214, QStringLiteral("Bad amount"));
        for (int i = 1; i <= 3; ++i) {
            panel->cmdPrintRecItem->click();
            QCOMPARE(bench->Arg("PrintRecItem", 0).toString(), QStringLiteral("Articolo test %1").arg(i));
            QCOMPARE(panel->lastResult(), i == 2 ? 114 : 0);
        }
        QCOMPARE(panel->itemCounter(), 3);
        QCOMPARE(bench->ErrorBoxes(), 1);
    }

    void voidAndRefundDescriptions_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("method");
        QTest::addColumn<int>("at");
        QTest::addColumn<QString>("description");
        auto row = [](const char* button, const char* method, int at, const char* description) {
            QTest::newRow(method) << QString(button) << QString(method) << at << QString(description);
        };
        // Two items sold before: the voids repeat the second one's number.
        row("cmdPrintRecVoidItem", "PrintRecItemVoid", 0, "**** Articolo test 2");
        row("cmdPrintRecVoidItemAdj", "PrintRecItemAdjustmentVoid", 1, "**** Articolo test 2");
        row("cmdPrintRecRefund", "PrintRecRefund", 0, "REFUND>>Articolo test");
        row("cmdPrintRecRefundVoid", "PrintRecRefundVoid", 0, "REFUNDVOID>>Articolo test");
        row("cmdItemAdjustment", "PrintRecItemAdjustment", 1, "FPTR_AT_AMOUNT_DISCOUNT");
        row("cmdSbtAdjustment", "PrintRecSubtotalAdjustment", 1, "FPTR_AT_AMOUNT_DISCOUNT");
        row("cmdRecVoid", "PrintRecVoid", 0, "<<Not Paid!>>");
        row("cmdPrintRecNotPaid", "PrintRecNotPaid", 0, "<<Not Paid!>>");
    }
    void voidAndRefundDescriptions() {
        QFETCH(QString, button);
        QFETCH(QString, method);
        QFETCH(int, at);
        QFETCH(QString, description);
        panel->cmdPrintRecItem->click();
        panel->cmdPrintRecItem->click();
        panel->findChild<QPushButton*>(button)->click();
        const auto calls = bench->printer.CallsOf(method);
        QCOMPARE(calls.size(), 1);
        QCOMPARE(calls[0].args[at].toString(), description);
        QCOMPARE(panel->itemCounter(), 2);
    }

    void adjustmentAndRefundAmounts() {
        panel->cbAdjustmentType->setCurrentIndex(2);
        panel->txtAdjustmentAmount->setText(QStringLiteral("12,5"));
        panel->cbVatId->setCurrentIndex(2);
        panel->cmdItemAdjustment->click();
        const auto args = bench->CallsOf("PrintRecItemAdjustment").value(0).args;
        QCOMPARE(args.value(0).toInt(), 3);
        QCOMPARE(args.value(1).toString(), QStringLiteral("FPTR_AT_PERCENTAGE_DISCOUNT"));
        QCOMPARE(args.value(2).value<Amount>(), Amount(125000));
        QCOMPARE(args.value(3).toInt(), 2);
        QCOMPARE(panel->txtAdjustmentAmount->text(), QStringLiteral("12,5")); // kept as typed
        panel->txtItemAmount->setText(QStringLiteral("3.25"));
        panel->cmdPrintRecRefund->click();
        QCOMPARE(bench->Arg("PrintRecRefund", 1).value<Amount>(), Amount(32500));
        QCOMPARE(bench->Arg("PrintRecRefund", 2).toInt(), 2);
    }

    void quantityIsRoundedToTheEvenNeighbour() {
        // Typed quantity, then what is sent; none for a number beyond 32 bits.
        const QList<std::pair<const char*, QVariant>> rows{
            {"2.5", 2}, {"3.5", 4}, {"1,5", 2}, {"-2.5", -2}, {"99999999999", QVariant()}};
        for (const auto& [typed, quantity] : rows) {
            bench->printer.calls.clear();
            panel->txtItemQty->setText(QLatin1StringView(typed));
            panel->cmdPrintRecItem->click();
            QCOMPARE(Items(), quantity.isValid() ? 1 : 0);
            if (quantity.isValid())
                QCOMPARE(bench->Arg("PrintRecItem", 2).toInt(), quantity.toInt());
        }
        QVERIFY(bench->messages.isEmpty());
    }

    void deptModeSendsTheDepartment() {
        panel->cbVatId->setCurrentIndex(3);
        panel->chkDeptSelect->setChecked(true);
        QVERIFY(panel->cbVatId->isHidden() && panel->lblVatID->isHidden());
        QVERIFY(!panel->cbDeptId->isHidden() && !panel->lblDeptID->isHidden());
        QCOMPARE(panel->cbDeptId->itemText(249), QStringLiteral("DEPT #250"));
        panel->cbDeptId->setCurrentIndex(2);
        panel->cmdPrintRecItem->click();
        QCOMPARE(bench->Arg("PrintRecItem", 3).toInt(), 10003);
        QVERIFY(bench->MacroLines().last().endsWith(QStringLiteral("$10003$0.00$Kg")));
        panel->chkDeptSelect->setChecked(false);
        QVERIFY(!panel->cbVatId->isHidden() && panel->cbDeptId->isHidden());
        panel->cmdPrintRecItem->click();
        QCOMPARE(bench->Arg("PrintRecItem", 3).toInt(), 3);
    }

    void repeatedSale_data() {
        QTest::addColumn<QString>("count");
        QTest::addColumn<int>("sales");
        QTest::addColumn<bool>("message");
        QTest::newRow("second of five fails") << "5" << 2 << false;
        QTest::newRow("three") << "3" << 3 << false;
        QTest::newRow("zero") << "0" << 0 << true;
        QTest::newRow("no number") << "abc" << 0 << true;
        QTest::newRow("negative") << "-2" << 0 << false;
    }
    void repeatedSale() {
        QFETCH(QString, count);
        QFETCH(int, sales);
        QFETCH(bool, message);
        const bool fails = count == QStringLiteral("5");
        if (fails) {
            bench->printer.Script(QStringLiteral("PrintRecItem"), 0);
            bench->printer.Script(QStringLiteral("PrintRecItem"), 114, 203, QStringLiteral("Paper out"));
        }
        panel->txtPrintRecRpt->setText(count);
        panel->cmdPrintRecItemX->click();
        QCOMPARE(Items(), sales);
        QCOMPARE(panel->itemCounter(), sales);
        if (sales > 0)
            QCOMPARE(bench->Arg("PrintRecItem", 0).toString(), QStringLiteral("Articolo test %1").arg(sales));
        QCOMPARE(bench->messages.contains(QStringLiteral("BAD NUMBERO OF REPETITION")), message);
        QCOMPARE(bench->ErrorBoxes(), fails ? 1 : 0);
    }

    void receiptTotalComesBackAfterAnItem() {
        for (const auto& [answer, total] : {std::pair{"250", "2.50"}, std::pair{"n/a", "7.00"}}) {
            bench->Answer("GetData", 2, QString::fromLatin1(answer));
            panel->txtTicketTotal->setText(QStringLiteral("7.00"));
            panel->txtPayment->setText(QStringLiteral("9.00"));
            bench->printer.calls.clear();
            bench->printer.Set(Prop::State, 3); // busy: the timer waits
            panel->cmdPrintRecItem->click();
            QCOMPARE(Timer()->interval(), 500);
            const qsizetype reads = bench->printer.reads.count(Prop::State);
            QTRY_VERIFY(bench->printer.reads.count(Prop::State) >= reads + 2);
            QVERIFY(bench->CallsOf("GetData").isEmpty() && Timer()->isActive());
            bench->printer.Set(Prop::State, 2);
            QTRY_VERIFY(!Timer()->isActive());
            QCOMPARE(panel->txtTicketTotal->text(), QLatin1StringView(total));
            QCOMPARE(panel->txtPayment->text(), QLatin1StringView(total));
            QCOMPARE(bench->CallsOf("GetData").size(), 1);
            QCOMPARE(bench->MacroLines().last(), QStringLiteral("F_GetData$1$0"));
        }
    }

    void refreshArming_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("failing"); // the method made to fail, if any
        QTest::addColumn<bool>("armed");
        auto row = [](const char* button, const char* failing, bool armed) {
            QTest::newRow(button) << QString(button) << QString(failing) << armed;
        };
        row("cmdPrintRecItem", "PrintRecItem", false);
        row("cmdPrintRecVoidItem", "PrintRecItemVoid", false);
        row("cmdPrintRecRefund", "PrintRecRefund", true);
        row("cmdPrintRecRefundVoid", "PrintRecRefundVoid", false);
        row("cmdSbtAdjustment", "PrintRecSubtotalAdjustment", false);
        for (const char* button : {"cmdPrintRecSbt", "cmdPrintRecTotal", "cmdPrintRecNotPaid", "cmdRecVoid",
                                   "cmdPrintRecMessage", "cmdDupReceipt", "cmdClearOutput", "cmdEndFiscRcpt"})
            row(button, "", false);
    }
    void refreshArming() {
        QFETCH(QString, button);
        QFETCH(QString, failing);
        QFETCH(bool, armed);
        if (!failing.isEmpty())
            bench->printer.Script(failing, 114, 207, QStringLiteral("Wrong state"));
        panel->findChild<QPushButton*>(button)->click();
        QCOMPARE(panel->lastResult(), failing.isEmpty() ? 0 : 114);
        QCOMPARE(Timer()->isActive(), armed);
        QCOMPARE(bench->refreshes, 1);
    }

    void totalAndMessageTexts() {
        panel->txtTicketTotal->setText(QStringLiteral("2.50"));
        panel->txtPayment->setText(QStringLiteral("5"));
        panel->cmdPrintRecTotal->click();
        QCOMPARE(bench->MacroLines().last(), QStringLiteral("F_PrintRecTotal$2.50$5.00$cbPaymentForm"));
        panel->RebuildPaymentForms();
        QCOMPARE(panel->cbPaymentForm->itemText(10), QStringLiteral("10"));

        panel->txtRecMessage->setPlainText(QStringLiteral("[ESC]|2Cbig\nsecond"));
        panel->cmdPrintRecMessage->click();
        QCOMPARE(bench->Arg("PrintRecMessage", 0).toString(), QChar(27) + QStringLiteral("|2Cbig\r\nsecond"));
        QVERIFY(bench->Log().contains(
            QStringLiteral("PrintRecMessage(\"[ESC]|2Cbig[CR][LF]second\")     -> OposSuccess(0)")));
    }

    void beginAndEndReceipt() {
        frmSettings settings(bench->ctx);
        panel->SetAdditionalTextSources([&] { return settings.AdditionalHeaderText(); },
                                        [&] { return settings.AdditionalTrailerText(); });
        settings.txtAdditionalHeader->setPlainText(QStringLiteral("[ESC]|cAWelcome"));
        settings.txtAdditionalTrailer->setPlainText(QStringLiteral("Bye\nCiao"));
        panel->cmdPrintRecItem->click();
        bench->printer.Script(QStringLiteral("BeginFiscalReceipt"), 106);
        panel->cmdBeginFiscRecpt->click();
        QCOMPARE(bench->Calls().mid(1),
                 bench->Words("SetFiscalReceiptType SetAdditionalHeader BeginFiscalReceipt"));
        QCOMPARE(bench->Arg("SetFiscalReceiptType", 0).toInt(), 4);
        QCOMPARE(bench->Arg("SetAdditionalHeader", 0).toString(), QChar(27) + QStringLiteral("|cAWelcome"));
        QCOMPARE(bench->Arg("BeginFiscalReceipt", 0).toBool(), false);
        // Whatever the result: counter back to 0 and the total refresh armed.
        QCOMPARE(panel->itemCounter(), 0);
        QVERIFY(Timer()->isActive());
        QCOMPARE(bench->ErrorBoxes(), 1);

        bench->printer.calls.clear();
        bench->printer.Script(QStringLiteral("EndFiscalReceipt"), 114, 207);
        panel->cmdEndFiscRcpt->click();
        QCOMPARE(bench->Calls(), bench->Words("SetAdditionalTrailer EndFiscalReceipt"));
        QCOMPARE(bench->Arg("SetAdditionalTrailer", 0).toString(), QStringLiteral("Bye\r\nCiao"));
        QCOMPARE(panel->lastResult(), 114);

        bench->printer.calls.clear(); // a credit note writes the pre-line
        panel->chkReceiptRefund->setChecked(true);
        panel->chkBegFiscalHeader->setChecked(true);
        panel->txtPraticadiReso->setText(QStringLiteral("RESO [ESC] 42"));
        panel->cmdBeginFiscRecpt->click();
        QCOMPARE(bench->Calls(),
                 bench->Words("SetFiscalReceiptType SetPreLine SetAdditionalHeader BeginFiscalReceipt"));
        QCOMPARE(bench->Arg("SetFiscalReceiptType", 0).toInt(), 7);
        QCOMPARE(bench->Arg("SetPreLine", 0).toString(), QStringLiteral("RESO [ESC] 42"));
        QCOMPARE(bench->Arg("BeginFiscalReceipt", 0).toBool(), true);
        QVERIFY(bench->MacroLines().contains(QStringLiteral("F_BeginFiscalReceipt$-1")));
    }

    void enableRebuildsTheVatList() {
        for (int rates : {4, 0}) {
            bench->printer.Set(Prop::NumVatRates, rates);
            panel->RebuildVatList();
            QCOMPARE(panel->cbVatId->count(), rates + 1);
            QCOMPARE(panel->cbVatId->itemText(0), QStringLiteral("VAT Exempt"));
            QCOMPARE(panel->cbVatId->itemText(rates), rates ? QStringLiteral("VAT #4") : "VAT Exempt");
            QCOMPARE(panel->cbVatId->currentText(), rates ? QStringLiteral("VAT #1") : "VAT Exempt");
            panel->cmdPrintRecItem->click();
            QCOMPARE(bench->Arg("PrintRecItem", 3).toInt(), rates ? 1 : 0);
        }
    }

    void receiptOptionsFollowTheDevice() {
        bench->printer.Set(Prop::DuplicateReceipt, true);
        panel->MirrorReceiptOptions();
        QVERIFY(panel->chkDupReceipt->isChecked() && !panel->chkFlagWhenIdle->isChecked());
        QCOMPARE(bench->Calls(), bench->Words("SetDuplicateReceipt"));
        QCOMPARE(bench->MacroLines(), bench->Words("P_DuplicateReceipt$True"));
        QVERIFY(bench->Log().contains(QStringLiteral("DuplicateReceipt := True     -> OposSuccess(0)")));
        QVERIFY(!bench->Log().contains(QStringLiteral("DuplicateReceipt = True"))); // read directly
        panel->MirrorReceiptOptions(); // already in line: nothing more
        QCOMPARE(bench->Calls().size(), 1);
        // A click writes the box's property; the mirror follows a device change back.
        panel->chkAsyncMode->click();
        panel->chkFlagWhenIdle->click();
        panel->chkDupReceipt->click();
        bench->printer.Set(Prop::FlagWhenIdle, false);
        panel->MirrorReceiptOptions();
        QVERIFY(!panel->chkFlagWhenIdle->isChecked() && !panel->chkDupReceipt->isChecked());
        QCOMPARE(bench->MacroLines().mid(1), bench->Words("P_AsyncMode$True P_FlagWhenIdle$True "
                                                          "P_DuplicateReceipt$False P_FlagWhenIdle$False"));
        QCOMPARE(bench->refreshes, 0);
    }
};

QTEST_MAIN(FiscalTicketTest)
#include "tst_fiscal_ticket.moc"
