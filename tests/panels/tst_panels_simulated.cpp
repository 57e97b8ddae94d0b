#include "Seams.h"
#include "SimulatedFiscalPrinter.h"
#include "clsBenchLog.h"
#include "clsFprtWrapper.h"
#include "clsMacroEngine.h"
#include "frmFiscalTicket.h"
#include "frmProperties.h"
#include "frmReports.h"
#include "frmSettings.h"

#include <QComboBox>
#include <QFocusEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

// The panels driving the simulated printer, as an operator would.
class PanelsOnSimulatorTest : public QObject {
    Q_OBJECT

private slots:
    void wholeReceiptByHand() {
        SimulatedFiscalPrinter printer;
        clsBenchLog log;
        clsFprtWrapper wrapper{printer, log};
        clsMacroEngine macro{wrapper};
        QList<int32_t> results; // ResultCode at each refresh
        QStringList messages;
        PanelContext ctx{printer, wrapper, macro, [&] { results.append(printer.ResultCode()); }};
        wrapper.SetRecorder(&macro);
        macro.Construct();
        SetMessageBoxHandler([&](const QString& text, MsgButtons, const QString&) {
            messages.append(text);
            return MsgResult::Ok;
        });
        const auto reset = qScopeGuard([] { SetMessageBoxHandler({}); });
        frmSettings settings(ctx);
        frmFiscalTicket fiscal(ctx);
        fiscal.SetAdditionalTextSources([&] { return settings.AdditionalHeaderText(); },
                                        [&] { return settings.AdditionalTrailerText(); });
        // The toolbar's forward steps.
        QCOMPARE(wrapper.WOpen(QStringLiteral("ZorvaneFPU")), 0);
        wrapper.SetFreezeEvents(false);
        QCOMPARE(wrapper.ClaimDevice(2000), 0);
        wrapper.SetDeviceEnabled(true);
        QCOMPARE(printer.ResultCode(), 0);
        if (printer.PrinterState() != 1) // a receipt left open by an earlier run
            wrapper.ResetPrinter();
        QCOMPARE(printer.PrinterState(), 1);
        fiscal.RebuildVatList();
        fiscal.RebuildPaymentForms();
        QCOMPARE(fiscal.cbVatId->count(), 9); // this model has eight rates
        QCOMPARE(fiscal.cbVatId->currentText(), QStringLiteral("VAT #1"));

        settings.txtAdditionalHeader->setPlainText(QStringLiteral("Bench header"));
        fiscal.cmdBeginFiscRecpt->click();
        QCOMPARE(results.last(), 0);
        QCOMPARE(printer.PrinterState(), 2);
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
        QCOMPARE(printer.PrinterState(), 4); // paid in full: ending
        fiscal.cmdEndFiscRcpt->click();
        QCOMPARE(fiscal.lastResult(), 0);
        QCOMPARE(printer.PrinterState(), 1); // FPTR_PS_MONITOR
        QVERIFY2(!results.contains(111) && messages.isEmpty(), qPrintable(messages.join(u'|')));

        for (const char* text : {"Articolo test 1", "Articolo test 2", "Bench header"})
            QVERIFY2(printer.ReceiptText().contains(QLatin1StringView(text)),
                     qPrintable(printer.ReceiptText()));
        QVERIFY(macro.Lines().contains(QStringLiteral("F_PrintRecItem$Articolo test 1$1.50$0$1$0.00$Kg")));
        QVERIFY(macro.Lines().contains(QStringLiteral("F_PrintRecTotal$3.75$3.75$0")));
        QCOMPARE(macro.Lines().count(QStringLiteral("F_GetData$1$0")), 3); // begin and the two items
    }

    void vatChangeReportsAndPropertiesByHand() {
        SimulatedFiscalPrinter printer;
        clsBenchLog log;
        clsFprtWrapper wrapper{printer, log};
        clsMacroEngine macro{wrapper};
        QList<int32_t> results;
        PanelContext ctx{printer, wrapper, macro, [&] { results.append(printer.ResultCode()); }};
        frmSettings settings(ctx);
        frmReports reports(ctx);
        frmProperties properties(ctx);
        wrapper.WOpen(QStringLiteral("ZorvaneFPU"));
        wrapper.ClaimDevice(2000);
        wrapper.SetDeviceEnabled(true);
        QCOMPARE(printer.ResultCode(), 0);

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
        wrapper.GetVatEntry(3, 0, rate);
        QCOMPARE(rate, 700);

        reports.cmdXReport->click();
        reports.cmdZReport->click();
        QCOMPARE(results.count(0), results.size());
        QCOMPARE(printer.PrinterState(), 1);

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
