#include "Seams.h"
#include "SimulatedFiscalPrinter.h"
#include "clsFprtWrapper.h"
#include "clsMacroEngine.h"
#include "frmFiscalTicket.h"
#include "frmSettings.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QTest>
#include <QTimer>

// The panels driving the simulated printer, as an operator would.
class PanelsOnSimulatorTest : public QObject {
    Q_OBJECT

private slots:
    void wholeReceiptByHand() {
        SimulatedFiscalPrinter printer;
        clsFprtWrapper wrapper{printer};
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
};

QTEST_MAIN(PanelsOnSimulatorTest)
#include "tst_panels_simulated.moc"
