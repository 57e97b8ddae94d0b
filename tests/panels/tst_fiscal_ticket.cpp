#include "PanelBench.h"
#include "frmFiscalTicket.h"
#include "frmSettings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>

#include <memory>

// The fiscal receipt panel over a scripted control.
class FiscalTicketTest : public QObject {
    Q_OBJECT

    std::unique_ptr<PanelBench> bench;
    std::unique_ptr<frmFiscalTicket> panel;

    void Make(int vatRates = 4) {
        panel.reset();
        bench = std::make_unique<PanelBench>();
        bench->printer.Set(Prop::NumVatRates, vatRates);
        bench->printer.Set(Prop::State, 2);
        panel = std::make_unique<frmFiscalTicket>(bench->ctx);
    }
    void Press(QPushButton* button) { button->click(); }
    ScriptedPrinter::Call LastCall(const QString& name) const {
        const auto calls = bench->printer.CallsOf(name);
        return calls.isEmpty() ? ScriptedPrinter::Call{} : calls.last();
    }

private slots:
    void init() { Make(); }
    void cleanup() {
        panel.reset();
        bench.reset();
    }

    void loadFillsTheLists() {
        QCOMPARE(panel->txtRecMessage->toPlainText(), QStringLiteral("This is a message"));
        QCOMPARE(panel->cbVatId->count(), 5);
        QCOMPARE(panel->cbVatId->itemText(0), QStringLiteral("VAT Exempt"));
        QCOMPARE(panel->cbVatId->itemText(4), QStringLiteral("VAT #4"));
        QCOMPARE(panel->cbVatId->currentIndex(), 0);
        QCOMPARE(panel->cbDeptId->count(), 250);
        QCOMPARE(panel->cbDeptId->itemText(0), QStringLiteral("DEPT #1"));
        QCOMPARE(panel->cbDeptId->itemText(249), QStringLiteral("DEPT #250"));
        QCOMPARE(panel->cbAdjustmentType->count(), 4);
        QCOMPARE(panel->cbAdjustmentType->itemText(0), QStringLiteral("FPTR_AT_AMOUNT_DISCOUNT"));
        QCOMPARE(panel->cbAdjustmentType->itemText(3), QStringLiteral("FPTR_AT_PERCENTAGE_SURCHARGE"));
        QCOMPARE(panel->cbPaymentForm->count(), 0);
        QCOMPARE(panel->cbPaymentForm->currentText(), QStringLiteral("cbPaymentForm"));
        QVERIFY(panel->cbDeptId->isHidden());
        QVERIFY(panel->lblDeptID->isHidden());
        QVERIFY(!panel->cbVatId->isHidden());
        QCOMPARE(panel->chkReceiptRefund->text(), QStringLiteral("\"Nota di Credito\""));
        QVERIFY(!panel->tmrUpdateReceiptTotal->isActive());
        QCOMPARE(panel->itemCounter(), 0);
        // Loading reads the rate count only: no device method, nothing recorded.
        QVERIFY(bench->Calls().isEmpty());
        QVERIFY(bench->MacroLines().isEmpty());
    }

    void defaultSaleIsRecordedAndLogged() {
        Press(panel->cmdPrintRecItem);
        QCOMPARE(bench->MacroLines(),
                 QStringList{QStringLiteral("F_PrintRecItem$Articolo test 1$1.00$0$0$0.00$Kg")});
        QVERIFY2(bench->Log().contains(QStringLiteral(
                     "PrintRecItem(\"Articolo test 1\", 1.00, 0, 0, 0.00, \"Kg\")     -> OposSuccess(0)")),
                 qPrintable(bench->Log().join(u'\n')));
        const auto call = LastCall(QStringLiteral("PrintRecItem"));
        QCOMPARE(call.args.value(1).value<Amount>(), Amount(10000));
        QCOMPARE(bench->refreshes, 1);
        QCOMPARE(panel->lastResult(), 0);
        QVERIFY(panel->tmrUpdateReceiptTotal->isActive());
    }

    void counterRunsOnPastAFailedItem() {
        bench->printer.Script(QStringLiteral("PrintRecItem"), 0);
        bench->printer.Script(QStringLiteral("PrintRecItem"), 114, 214, QStringLiteral("Bad amount"));
        Press(panel->cmdPrintRecItem);
        Press(panel->cmdPrintRecItem);
        QCOMPARE(panel->lastResult(), 114);
        Press(panel->cmdPrintRecItem);
        const auto items = bench->printer.CallsOf(QStringLiteral("PrintRecItem"));
        QCOMPARE(items.size(), 3);
        QCOMPARE(items[0].args[0].toString(), QStringLiteral("Articolo test 1"));
        QCOMPARE(items[1].args[0].toString(), QStringLiteral("Articolo test 2"));
        QCOMPARE(items[2].args[0].toString(), QStringLiteral("Articolo test 3"));
        QCOMPARE(panel->itemCounter(), 3);
        QCOMPARE(panel->lastResult(), 0);
        QCOMPARE(bench->ErrorBoxes(), 1);
    }

    void voidAndRefundDescriptions_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("method");
        QTest::addColumn<QString>("description");
        // Two items sold before: the voids repeat the second one's number.
        QTest::newRow("item void") << "cmdPrintRecVoidItem"
                                   << "PrintRecItemVoid"
                                   << "**** Articolo test 2";
        QTest::newRow("adjustment void") << "cmdPrintRecVoidItemAdj"
                                         << "PrintRecItemAdjustmentVoid"
                                         << "**** Articolo test 2";
        QTest::newRow("refund") << "cmdPrintRecRefund"
                                << "PrintRecRefund"
                                << "REFUND>>Articolo test";
        QTest::newRow("refund void") << "cmdPrintRecRefundVoid"
                                     << "PrintRecRefundVoid"
                                     << "REFUNDVOID>>Articolo test";
        QTest::newRow("item adjustment") << "cmdItemAdjustment"
                                         << "PrintRecItemAdjustment"
                                         << "FPTR_AT_AMOUNT_DISCOUNT";
        QTest::newRow("subtotal adjustment") << "cmdSbtAdjustment"
                                             << "PrintRecSubtotalAdjustment"
                                             << "FPTR_AT_AMOUNT_DISCOUNT";
        QTest::newRow("void receipt") << "cmdRecVoid"
                                      << "PrintRecVoid"
                                      << "<<Not Paid!>>";
        QTest::newRow("not paid") << "cmdPrintRecNotPaid"
                                  << "PrintRecNotPaid"
                                  << "<<Not Paid!>>";
    }
    void voidAndRefundDescriptions() {
        QFETCH(QString, button);
        QFETCH(QString, method);
        QFETCH(QString, description);
        Press(panel->cmdPrintRecItem);
        Press(panel->cmdPrintRecItem);
        Press(panel->findChild<QPushButton*>(button));
        const auto calls = bench->printer.CallsOf(method);
        QCOMPARE(calls.size(), 1);
        const int at = method.startsWith(QStringLiteral("PrintRecItemAdjustment")) ||
                               method == QStringLiteral("PrintRecSubtotalAdjustment")
                           ? 1
                           : 0;
        QCOMPARE(calls[0].args[at].toString(), description);
        QCOMPARE(panel->itemCounter(), 2);
    }

    void amountsAndTypesOfTheOtherButtons() {
        panel->cbAdjustmentType->setCurrentIndex(2);
        panel->txtAdjustmentAmount->setText(QStringLiteral("12,5"));
        panel->txtItemAmount->setText(QStringLiteral("3.25"));
        panel->cbVatId->setCurrentIndex(2);
        Press(panel->cmdItemAdjustment);
        Press(panel->cmdSbtAdjustmentVoid);
        Press(panel->cmdPrintRecRefund);
        const auto adj = LastCall(QStringLiteral("PrintRecItemAdjustment"));
        QCOMPARE(adj.args[0].toInt(), 3);
        QCOMPARE(adj.args[1].toString(), QStringLiteral("FPTR_AT_PERCENTAGE_DISCOUNT"));
        QCOMPARE(adj.args[2].value<Amount>(), Amount(125000));
        QCOMPARE(adj.args[3].toInt(), 2);
        const auto sbtVoid = LastCall(QStringLiteral("PrintRecSubtotalAdjustVoid"));
        QCOMPARE(sbtVoid.args[0].toInt(), 3);
        QCOMPARE(sbtVoid.args[1].value<Amount>(), Amount(125000));
        const auto refund = LastCall(QStringLiteral("PrintRecRefund"));
        QCOMPARE(refund.args[1].value<Amount>(), Amount(32500));
        QCOMPARE(refund.args[2].toInt(), 2);
        // The operator's field keeps what was typed.
        QCOMPARE(panel->txtAdjustmentAmount->text(), QStringLiteral("12,5"));
    }

    void quantityIsRoundedToTheEvenNeighbour_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("quantity");
        QTest::newRow("default") << "0.00" << 0;
        QTest::newRow("half down") << "2.5" << 2;
        QTest::newRow("half up") << "3.5" << 4;
        QTest::newRow("comma") << "1,5" << 2;
        QTest::newRow("fraction lost") << "7.49" << 7;
        QTest::newRow("negative") << "-2.5" << -2;
    }
    void quantityIsRoundedToTheEvenNeighbour() {
        QFETCH(QString, typed);
        QFETCH(int, quantity);
        panel->txtItemQty->setText(typed);
        Press(panel->cmdPrintRecItem);
        QCOMPARE(LastCall(QStringLiteral("PrintRecItem")).args.value(2).toInt(), quantity);
    }

    void quantityBeyond32BitsSendsNothing() {
        panel->txtItemQty->setText(QStringLiteral("99999999999"));
        Press(panel->cmdPrintRecItem);
        QVERIFY(bench->printer.CallsOf(QStringLiteral("PrintRecItem")).isEmpty());
        QVERIFY(bench->messages.isEmpty());
        panel->txtItemQty->setText(QStringLiteral("1"));
        Press(panel->cmdPrintRecItem);
        QCOMPARE(bench->printer.CallsOf(QStringLiteral("PrintRecItem")).size(), 1);
    }

    void deptModeSendsTheDepartment() {
        panel->cbVatId->setCurrentIndex(3);
        panel->chkDeptSelect->setChecked(true);
        QVERIFY(panel->cbVatId->isHidden());
        QVERIFY(panel->lblVatID->isHidden());
        QVERIFY(!panel->cbDeptId->isHidden());
        QVERIFY(!panel->lblDeptID->isHidden());
        panel->cbDeptId->setCurrentIndex(2);
        Press(panel->cmdPrintRecItem);
        QCOMPARE(LastCall(QStringLiteral("PrintRecItem")).args.value(3).toInt(), 10003);
        QVERIFY(bench->MacroLines().last().endsWith(QStringLiteral("$10003$0.00$Kg")));

        panel->chkDeptSelect->setChecked(false);
        QVERIFY(!panel->cbVatId->isHidden());
        QVERIFY(panel->cbDeptId->isHidden());
        Press(panel->cmdPrintRecItem);
        QCOMPARE(LastCall(QStringLiteral("PrintRecItem")).args.value(3).toInt(), 3);
    }

    void repeatedSaleStopsAtTheFirstFailure() {
        bench->printer.Script(QStringLiteral("PrintRecItem"), 0);
        bench->printer.Script(QStringLiteral("PrintRecItem"), 114, 203, QStringLiteral("Paper out"));
        panel->txtPrintRecRpt->setText(QStringLiteral("5"));
        Press(panel->cmdPrintRecItemX);
        QCOMPARE(bench->printer.CallsOf(QStringLiteral("PrintRecItem")).size(), 2);
        QCOMPARE(bench->ErrorBoxes(), 1);
        QCOMPARE(panel->itemCounter(), 2);
        QVERIFY(!bench->messages.contains(QStringLiteral("BAD NUMBERO OF REPETITION")));
    }

    void repeatedSaleCounts_data() {
        QTest::addColumn<QString>("count");
        QTest::addColumn<int>("sales");
        QTest::addColumn<bool>("message");
        QTest::newRow("three") << "3" << 3 << false;
        QTest::newRow("zero") << "0" << 0 << true;
        QTest::newRow("no number") << "abc" << 0 << true;
        QTest::newRow("empty") << "" << 0 << true;
        QTest::newRow("negative") << "-2" << 0 << false;
    }
    void repeatedSaleCounts() {
        QFETCH(QString, count);
        QFETCH(int, sales);
        QFETCH(bool, message);
        panel->txtPrintRecRpt->setText(count);
        Press(panel->cmdPrintRecItemX);
        const auto items = bench->printer.CallsOf(QStringLiteral("PrintRecItem"));
        QCOMPARE(items.size(), sales);
        if (sales > 0)
            QCOMPARE(items.last().args[0].toString(),
                     QStringLiteral("Articolo test ") + QString::number(sales));
        QCOMPARE(bench->messages.contains(QStringLiteral("BAD NUMBERO OF REPETITION")), message);
    }

    void spinnerStepsTheCountField() {
        QScrollBar* spin = panel->UpDownPrintRecRpt;
        QCOMPARE(spin->minimum(), frmFiscalTicket::RepeatMin);
        QCOMPARE(spin->maximum(), frmFiscalTicket::RepeatMax);
        spin->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        QCOMPARE(panel->txtPrintRecRpt->text(), QStringLiteral("6"));
        QTest::keyClicks(panel->txtPrintRecRpt, QStringLiteral("0")); // "60"
        spin->triggerAction(QAbstractSlider::SliderSingleStepSub);
        QCOMPARE(panel->txtPrintRecRpt->text(), QStringLiteral("59"));
        spin->setValue(1000);
        QCOMPARE(panel->txtPrintRecRpt->text(), QString::number(frmFiscalTicket::RepeatMax));
    }

    void receiptTotalComesBackAfterAnItem() {
        bench->printer.handlers[QStringLiteral("GetData")] = [](QVariantList& a) {
            a[2] = QStringLiteral("250");
            return 0;
        };
        bench->printer.Set(Prop::State, 3); // busy: the timer waits
        Press(panel->cmdPrintRecItem);
        QVERIFY(panel->tmrUpdateReceiptTotal->isActive());
        QCOMPARE(panel->tmrUpdateReceiptTotal->interval(), 500);
        QTRY_VERIFY(bench->printer.reads.count(Prop::State) >= 2);
        QVERIFY(bench->printer.CallsOf(QStringLiteral("GetData")).isEmpty());
        QVERIFY(panel->tmrUpdateReceiptTotal->isActive());

        bench->printer.Set(Prop::State, 2);
        QTRY_COMPARE(panel->txtTicketTotal->text(), QStringLiteral("2.50"));
        QCOMPARE(panel->txtPayment->text(), QStringLiteral("2.50"));
        QVERIFY(!panel->tmrUpdateReceiptTotal->isActive());
        const auto getData = bench->printer.CallsOf(QStringLiteral("GetData"));
        QCOMPARE(getData.size(), 1);
        QCOMPARE(getData[0].args[0].toInt(), 1);
        QCOMPARE(getData[0].args[1].toInt(), 0);
        QCOMPARE(bench->MacroLines().last(), QStringLiteral("F_GetData$1$0"));
    }

    void receiptTotalKeepsTheFieldWhenTheAnswerIsNoNumber() {
        bench->printer.handlers[QStringLiteral("GetData")] = [](QVariantList& a) {
            a[2] = QStringLiteral("n/a");
            return 0;
        };
        panel->txtTicketTotal->setText(QStringLiteral("7.00"));
        panel->txtPayment->setText(QStringLiteral("9.00"));
        Press(panel->cmdPrintRecItem);
        QTRY_VERIFY(!panel->tmrUpdateReceiptTotal->isActive());
        QCOMPARE(panel->txtTicketTotal->text(), QStringLiteral("7.00"));
        QCOMPARE(panel->txtPayment->text(), QStringLiteral("7.00"));
    }

    void refreshOfTheTotalAfterFailures_data() {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("method");
        QTest::addColumn<bool>("armed");
        QTest::newRow("item") << "cmdPrintRecItem"
                              << "PrintRecItem" << false;
        QTest::newRow("item void") << "cmdPrintRecVoidItem"
                                   << "PrintRecItemVoid" << false;
        QTest::newRow("refund") << "cmdPrintRecRefund"
                                << "PrintRecRefund" << true;
        QTest::newRow("refund void") << "cmdPrintRecRefundVoid"
                                     << "PrintRecRefundVoid" << false;
        QTest::newRow("subtotal adjustment") << "cmdSbtAdjustment"
                                             << "PrintRecSubtotalAdjustment" << false;
    }
    void refreshOfTheTotalAfterFailures() {
        QFETCH(QString, button);
        QFETCH(QString, method);
        QFETCH(bool, armed);
        bench->printer.Script(method, 114, 207, QStringLiteral("Wrong state"));
        panel->txtTicketTotal->setText(QStringLiteral("4.00"));
        Press(panel->findChild<QPushButton*>(button));
        QCOMPARE(panel->lastResult(), 114);
        QCOMPARE(panel->tmrUpdateReceiptTotal->isActive(), armed);
    }

    void buttonsThatNeverArmTheRefresh_data() {
        QTest::addColumn<QString>("button");
        for (const char* b : {"cmdPrintRecSbt", "cmdPrintRecTotal", "cmdPrintRecNotPaid", "cmdRecVoid",
                              "cmdPrintRecMessage", "cmdDupReceipt", "cmdClearOutput", "cmdEndFiscRcpt"})
            QTest::newRow(b) << QString::fromLatin1(b);
    }
    void buttonsThatNeverArmTheRefresh() {
        QFETCH(QString, button);
        Press(panel->findChild<QPushButton*>(button));
        QVERIFY(!panel->tmrUpdateReceiptTotal->isActive());
        QCOMPARE(bench->refreshes, 1);
    }

    void totalSendsThePaymentFormText() {
        panel->txtTicketTotal->setText(QStringLiteral("2.50"));
        panel->txtPayment->setText(QStringLiteral("5"));
        Press(panel->cmdPrintRecTotal);
        QCOMPARE(bench->MacroLines().last(), QStringLiteral("F_PrintRecTotal$2.50$5.00$cbPaymentForm"));
        panel->RebuildPaymentForms();
        QCOMPARE(panel->cbPaymentForm->count(), 11);
        QCOMPARE(panel->cbPaymentForm->itemText(10), QStringLiteral("10"));
        Press(panel->cmdPrintRecTotal);
        QCOMPARE(bench->MacroLines().last(), QStringLiteral("F_PrintRecTotal$2.50$5.00$0"));
    }

    void messageGoesWithLineEndsAndEsc() {
        panel->txtRecMessage->setPlainText(QStringLiteral("[ESC]|2Cbig\nsecond"));
        Press(panel->cmdPrintRecMessage);
        const auto call = LastCall(QStringLiteral("PrintRecMessage"));
        QCOMPARE(call.args[0].toString(), QString(QChar(27)) + QStringLiteral("|2Cbig\r\nsecond"));
        QVERIFY(bench->Log().contains(
            QStringLiteral("PrintRecMessage(\"[ESC]|2Cbig[CR][LF]second\")     -> OposSuccess(0)")));
    }

    void beginReceiptOfSale() {
        frmSettings settings(bench->ctx);
        panel->SetAdditionalTextSources([&] { return settings.AdditionalHeaderText(); },
                                        [&] { return settings.AdditionalTrailerText(); });
        settings.txtAdditionalHeader->setPlainText(QStringLiteral("[ESC]|cAWelcome"));
        Press(panel->cmdPrintRecItem);
        bench->printer.Script(QStringLiteral("BeginFiscalReceipt"), 106);
        Press(panel->cmdBeginFiscRecpt);
        QCOMPARE(bench->Calls().mid(1),
                 (QStringList{QStringLiteral("SetFiscalReceiptType"), QStringLiteral("SetAdditionalHeader"),
                              QStringLiteral("BeginFiscalReceipt")}));
        QCOMPARE(LastCall(QStringLiteral("SetFiscalReceiptType")).args[0].toInt(), 4);
        QCOMPARE(LastCall(QStringLiteral("SetAdditionalHeader")).args[0].toString(),
                 QString(QChar(27)) + QStringLiteral("|cAWelcome"));
        QCOMPARE(LastCall(QStringLiteral("BeginFiscalReceipt")).args[0].toBool(), false);
        // Whatever the result: counter back to 0 and the total refresh armed.
        QCOMPARE(panel->itemCounter(), 0);
        QVERIFY(panel->tmrUpdateReceiptTotal->isActive());
        QCOMPARE(bench->ErrorBoxes(), 1);
    }

    void beginCreditNoteWritesPreLine() {
        panel->chkReceiptRefund->setChecked(true);
        panel->chkBegFiscalHeader->setChecked(true);
        panel->txtPraticadiReso->setText(QStringLiteral("RESO [ESC] 42"));
        Press(panel->cmdBeginFiscRecpt);
        QCOMPARE(bench->Calls(),
                 (QStringList{QStringLiteral("SetFiscalReceiptType"), QStringLiteral("SetPreLine"),
                              QStringLiteral("SetAdditionalHeader"), QStringLiteral("BeginFiscalReceipt")}));
        QCOMPARE(LastCall(QStringLiteral("SetFiscalReceiptType")).args[0].toInt(), 7);
        QCOMPARE(LastCall(QStringLiteral("SetPreLine")).args[0].toString(), QStringLiteral("RESO [ESC] 42"));
        QCOMPARE(LastCall(QStringLiteral("BeginFiscalReceipt")).args[0].toBool(), true);
        QVERIFY(bench->MacroLines().contains(QStringLiteral("F_BeginFiscalReceipt$-1")));
    }

    void endReceiptWritesTheTrailer() {
        frmSettings settings(bench->ctx);
        panel->SetAdditionalTextSources([&] { return settings.AdditionalHeaderText(); },
                                        [&] { return settings.AdditionalTrailerText(); });
        settings.txtAdditionalTrailer->setPlainText(QStringLiteral("Bye\nCiao"));
        bench->printer.Script(QStringLiteral("EndFiscalReceipt"), 114, 207);
        Press(panel->cmdEndFiscRcpt);
        QCOMPARE(bench->Calls(),
                 (QStringList{QStringLiteral("SetAdditionalTrailer"), QStringLiteral("EndFiscalReceipt")}));
        QCOMPARE(LastCall(QStringLiteral("SetAdditionalTrailer")).args[0].toString(),
                 QStringLiteral("Bye\r\nCiao"));
        QCOMPARE(panel->lastResult(), 114);
    }

    void enableRebuildsTheVatList_data() {
        QTest::addColumn<int>("rates");
        QTest::addColumn<int>("rows");
        QTest::addColumn<QString>("selected");
        QTest::newRow("four") << 4 << 5 << "VAT #1";
        QTest::newRow("one") << 1 << 2 << "VAT #1";
        QTest::newRow("none") << 0 << 1 << "VAT Exempt";
    }
    void enableRebuildsTheVatList() {
        QFETCH(int, rates);
        QFETCH(int, rows);
        QFETCH(QString, selected);
        bench->printer.Set(Prop::NumVatRates, rates);
        panel->RebuildVatList();
        QCOMPARE(panel->cbVatId->count(), rows);
        QCOMPARE(panel->cbVatId->currentText(), selected);
        Press(panel->cmdPrintRecItem);
        QCOMPARE(LastCall(QStringLiteral("PrintRecItem")).args.value(3).toInt(), rates > 0 ? 1 : 0);
    }

    void mirrorWritesBackAChangedDevice() {
        bench->printer.Set(Prop::DuplicateReceipt, true);
        panel->MirrorReceiptOptions();
        QVERIFY(panel->chkDupReceipt->isChecked());
        QVERIFY(!panel->chkFlagWhenIdle->isChecked());
        QCOMPARE(bench->Calls(), QStringList{QStringLiteral("SetDuplicateReceipt")});
        QCOMPARE(bench->MacroLines(), QStringList{QStringLiteral("P_DuplicateReceipt$True")});
        QVERIFY(bench->Log().contains(QStringLiteral("DuplicateReceipt := True     -> OposSuccess(0)")));
        QCOMPARE(bench->refreshes, 0);
        // The mirror reads the control directly: no log line of its own.
        QVERIFY(!bench->Log().contains(QStringLiteral("DuplicateReceipt = True")));

        panel->MirrorReceiptOptions(); // already in line: nothing more
        QCOMPARE(bench->Calls().size(), 1);

        bench->printer.Set(Prop::DuplicateReceipt, false);
        bench->printer.Set(Prop::FlagWhenIdle, true);
        panel->MirrorReceiptOptions();
        QVERIFY(!panel->chkDupReceipt->isChecked());
        QVERIFY(panel->chkFlagWhenIdle->isChecked());
        QCOMPARE(bench->MacroLines().mid(1), (QStringList{QStringLiteral("P_DuplicateReceipt$False"),
                                                          QStringLiteral("P_FlagWhenIdle$True")}));
    }

    void optionBoxesWriteTheirProperty_data() {
        QTest::addColumn<QString>("box");
        QTest::addColumn<QString>("line");
        QTest::newRow("async") << "chkAsyncMode"
                               << "P_AsyncMode$True";
        QTest::newRow("duplicate") << "chkDupReceipt"
                                   << "P_DuplicateReceipt$True";
        QTest::newRow("idle") << "chkFlagWhenIdle"
                              << "P_FlagWhenIdle$True";
    }
    void optionBoxesWriteTheirProperty() {
        QFETCH(QString, box);
        QFETCH(QString, line);
        auto* check = panel->findChild<QCheckBox*>(box);
        check->click();
        QVERIFY(check->isChecked());
        QCOMPARE(bench->MacroLines(), QStringList{line});
        QCOMPARE(bench->refreshes, 0);
    }
};

QTEST_MAIN(FiscalTicketTest)
#include "tst_fiscal_ticket.moc"
