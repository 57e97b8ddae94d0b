#include "SimBench.h"
#include "frmFiscalTicket.h"
#include "frmProperties.h"
#include "frmReports.h"
#include "frmSettings.h"

#include <QComboBox>
#include <QFocusEvent>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTableWidget>
#include <QTimer>

// The panels driving the simulated printer, as an operator would.
class PanelsOnSimulatorTest : public QObject {
    Q_OBJECT

private slots:
    void wholeReceiptByHand() {
        SimBench b; // opened, claimed and enabled, as the toolbar's forward steps leave it
        frmSettings settings(b.ctx);
        frmFiscalTicket fiscal(b.ctx);
        fiscal.SetAdditionalTextSources([&] { return settings.AdditionalHeaderText(); },
                                        [&] { return settings.AdditionalTrailerText(); });
        QCOMPARE(b.printer.ResultCode(), 0);
        if (b.printer.PrinterState() != 1) // a receipt left open by an earlier run
            b.wrapper.ResetPrinter();
        QCOMPARE(b.printer.PrinterState(), 1);
        fiscal.RebuildVatList();
        fiscal.RebuildPaymentForms();
        QCOMPARE(fiscal.cbVatId->count(), 9); // this model has eight rates
        QCOMPARE(fiscal.cbVatId->currentText(), QStringLiteral("VAT #1"));

        settings.txtAdditionalHeader->setPlainText(QStringLiteral("Bench header"));
        fiscal.cmdBeginFiscRecpt->click();
        QCOMPARE(b.results.last(), 0);
        QCOMPARE(b.printer.PrinterState(), 2);
        QTRY_VERIFY(!fiscal.tmrUpdateReceiptTotal->isActive());
        for (const auto& [amount, total] : {std::pair{"1.50", "1.50"}, std::pair{"2,25", "3.75"}}) {
            fiscal.txtItemAmount->setText(QLatin1StringView(amount));
            fiscal.cmdPrintRecItem->click();
            QCOMPARE(fiscal.lastResult(), 0);
            QTRY_COMPARE(fiscal.txtTicketTotal->text(), QLatin1StringView(total));
        }
        QCOMPARE(fiscal.txtPayment->text(), QStringLiteral("3.75"));
        fiscal.cmdPrintRecSbt->click();
        QCOMPARE(fiscal.lastResult(), 0);
        fiscal.cmdPrintRecTotal->click();
        QCOMPARE(fiscal.lastResult(), 0);
        QCOMPARE(b.printer.PrinterState(), 4); // paid in full: ending
        fiscal.cmdEndFiscRcpt->click();
        QCOMPARE(fiscal.lastResult(), 0);
        QCOMPARE(b.printer.PrinterState(), 1); // FPTR_PS_MONITOR
        QVERIFY2(!b.results.contains(111) && b.messages.isEmpty(), qPrintable(b.messages.join(u'|')));

        for (const char* text : {"Articolo test 1", "Articolo test 2", "Bench header"})
            QVERIFY2(b.printer.ReceiptText().contains(QLatin1StringView(text)),
                     qPrintable(b.printer.ReceiptText()));
        QVERIFY(b.macro.Lines().contains(QStringLiteral("F_PrintRecItem$Articolo test 1$1.50$0$1$0.00$Kg")));
        QVERIFY(b.macro.Lines().contains(QStringLiteral("F_PrintRecTotal$3.75$3.75$0")));
        QCOMPARE(b.macro.Lines().count(QStringLiteral("F_GetData$1$0")), 3); // begin and the two items
    }

    void vatChangeReportsAndPropertiesByHand() {
        SimBench b;
        QCOMPARE(b.printer.ResultCode(), 0);
        frmSettings settings(b.ctx);
        frmReports reports(b.ctx);
        frmProperties properties(b.ctx);

        // Rate 3 from 5 % to 7 %: read the table, edit the row, write it back.
        settings.cmdGetVatRate->click();
        QCOMPARE(settings.lstVatRates->count(), 8);
        QCOMPARE(settings.lstVatRates->item(2)->text(), QStringLiteral("5"));
        settings.lstVatRates->setCurrentRow(2);
        settings.txtVatRate->setText(QStringLiteral("7"));
        QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
        QCoreApplication::sendEvent(settings.txtVatRate, &out);
        settings.cmdSetVatRates->click();
        int32_t rate = 0;
        b.wrapper.GetVatEntry(3, 0, rate);
        QCOMPARE(rate, 700);

        reports.cmdXReport->click();
        reports.cmdZReport->click();
        QCOMPARE(b.results.count(0), b.results.size());
        QCOMPARE(b.printer.PrinterState(), 1);

        properties.cmdReadProps->click();
        QTableWidget* grid = properties.flexProperties;
        QCOMPARE(grid->rowCount(), 121);
        QHash<QString, QString> shown;
        for (int row = 0; row < grid->rowCount(); ++row)
            if (grid->item(row, 0) && grid->item(row, 1))
                shown.insert(grid->item(row, 0)->text(), grid->item(row, 1)->text());
        QCOMPARE(shown.value(QStringLiteral("DeviceName")), QStringLiteral("ZorvaneFPU"));
        QCOMPARE(shown.value(QStringLiteral("NumVatRates")), QStringLiteral(" 8"));
        QCOMPARE(shown.value(QStringLiteral("DeviceEnabled")), QStringLiteral("True"));
    }
};

QTEST_MAIN(PanelsOnSimulatorTest)
#include "tst_panels_simulated.moc"
