#include "Seams.h"
#include "SimulatedFiscalPrinter.h"
#include "Tools.h"
#include "clsFprtWrapper.h"
#include "clsMacroEngine.h"
#include "frmFiscalTicket.h"
#include "frmProperties.h"
#include "frmReports.h"
#include "frmSettings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

#include <memory>

// The panels driving the simulated printer, as an operator would.
class PanelsOnSimulatorTest : public QObject {
    Q_OBJECT

    struct Bench {
        SimulatedFiscalPrinter printer;
        clsFprtWrapper wrapper{printer};
        clsMacroEngine macro{wrapper};
        QList<int32_t> results; // ResultCode at each refresh
        QStringList messages;
        PanelContext ctx{printer, wrapper, macro, [this] { results.append(printer.ResultCode()); }};
        Bench() {
            wrapper.SetRecorder(&macro);
            macro.Construct();
            SetMessageBoxHandler([this](const QString& text, MsgButtons, const QString&) {
                messages.append(text);
                return MsgResult::Ok;
            });
        }
        ~Bench() {
            SetMessageBoxHandler({});
            wrapper.SetRecorder(nullptr);
        }
        // The toolbar's forward steps.
        void OpenClaimEnable() {
            QCOMPARE(wrapper.WOpen(QStringLiteral("ZorvaneFPU")), 0);
            wrapper.SetFreezeEvents(false);
            QCOMPARE(wrapper.ClaimDevice(2000), 0);
            wrapper.SetDeviceEnabled(true);
            QCOMPARE(printer.ResultCode(), 0);
        }
    };
    std::unique_ptr<Bench> bench;

private slots:
    void init() { bench = std::make_unique<Bench>(); }
    void cleanup() { bench.reset(); }

    void wholeReceiptByHand() {
        frmSettings settings(bench->ctx);
        frmFiscalTicket fiscal(bench->ctx);
        fiscal.SetAdditionalTextSources([&] { return settings.AdditionalHeaderText(); },
                                        [&] { return settings.AdditionalTrailerText(); });
        bench->OpenClaimEnable();
        if (bench->printer.PrinterState() != 1) // a receipt left open by an earlier run
            bench->wrapper.ResetPrinter();
        QCOMPARE(bench->printer.PrinterState(), 1);
        fiscal.RebuildVatList();
        fiscal.RebuildPaymentForms();
        QCOMPARE(fiscal.cbVatId->count(), 9); // this model has eight rates
        QCOMPARE(fiscal.cbVatId->currentText(), QStringLiteral("VAT #1"));

        settings.txtAdditionalHeader->setPlainText(QStringLiteral("Bench header"));
        fiscal.cmdBeginFiscRecpt->click();
        QCOMPARE(bench->results.last(), 0);
        QCOMPARE(bench->printer.PrinterState(), 2);
        QTRY_VERIFY(!fiscal.tmrUpdateReceiptTotal->isActive());

        fiscal.txtItemAmount->setText(QStringLiteral("1.50"));
        fiscal.cmdPrintRecItem->click();
        QCOMPARE(fiscal.lastResult(), 0);
        QTRY_COMPARE(fiscal.txtTicketTotal->text(), QStringLiteral("1.50"));
        fiscal.txtItemAmount->setText(QStringLiteral("2,25"));
        fiscal.cmdPrintRecItem->click();
        QCOMPARE(fiscal.lastResult(), 0);
        QTRY_COMPARE(fiscal.txtTicketTotal->text(), QStringLiteral("3.75"));
        QCOMPARE(fiscal.txtPayment->text(), QStringLiteral("3.75"));

        fiscal.cmdPrintRecSbt->click();
        QCOMPARE(fiscal.lastResult(), 0);
        fiscal.cmdPrintRecTotal->click();
        QCOMPARE(fiscal.lastResult(), 0);
        QCOMPARE(bench->printer.PrinterState(), 4); // paid in full: ending
        fiscal.cmdEndFiscRcpt->click();
        QCOMPARE(fiscal.lastResult(), 0);
        QCOMPARE(bench->printer.PrinterState(), 1); // FPTR_PS_MONITOR
        QVERIFY2(!bench->results.contains(111) && bench->messages.isEmpty(),
                 qPrintable(bench->messages.join(u'|')));

        const QString receipt = bench->printer.ReceiptText();
        QVERIFY2(receipt.contains(QStringLiteral("Articolo test 1")), qPrintable(receipt));
        QVERIFY2(receipt.contains(QStringLiteral("Articolo test 2")), qPrintable(receipt));
        QVERIFY2(receipt.contains(QStringLiteral("Bench header")), qPrintable(receipt));

        const QStringList lines = bench->macro.Lines();
        QVERIFY(lines.contains(QStringLiteral("F_PrintRecItem$Articolo test 1$1.50$0$1$0.00$Kg")));
        QVERIFY(lines.contains(QStringLiteral("F_PrintRecTotal$3.75$3.75$0")));
        QCOMPARE(lines.count(QStringLiteral("F_GetData$1$0")), 3); // begin and the two items
    }

    void mirrorFollowsTheDevice() {
        frmFiscalTicket fiscal(bench->ctx);
        bench->OpenClaimEnable();
        // A macro line changed the device behind the panel's back.
        bench->printer.SetDuplicateReceipt(true);
        fiscal.MirrorReceiptOptions();
        QVERIFY(fiscal.chkDupReceipt->isChecked());
        QCOMPARE(bench->macro.Lines().last(), QStringLiteral("P_DuplicateReceipt$True"));
        QVERIFY(bench->printer.DuplicateReceipt());
    }

    void settingsReadTheVatTable() {
        frmSettings settings(bench->ctx);
        bench->OpenClaimEnable();
        settings.cmdGetVatRate->click();
        QCOMPARE(settings.lstVatRates->count(), 8);
        QCOMPARE(settings.lstVatRates->item(0)->text(), QStringLiteral("22"));
        QCOMPARE(settings.lstVatRates->item(1)->text(), QStringLiteral("10"));
        QCOMPARE(settings.lstVatRates->item(3)->text(), QStringLiteral("4"));
        QCOMPARE(settings.lstVatRates->item(7)->text(), QStringLiteral("0"));
    }

    void propertiesOfTheOpenDevice() {
        frmProperties props(bench->ctx);
        props.cmdReadProps->click();
        QCOMPARE(props.flexProperties->rowCount(), 121); // closed device
        bench->OpenClaimEnable();
        props.cmdReadProps->click();
        QCOMPARE(props.flexProperties->rowCount(), 121);
        QHash<QString, QString> shown;
        for (int row = 2; row < 121; ++row)
            shown.insert(props.flexProperties->item(row, 0)->text(),
                         props.flexProperties->item(row, 1)->text());
        QCOMPARE(shown.size(), 119);
        QCOMPARE(shown.value(QStringLiteral("DeviceName")), QStringLiteral("ZorvaneFPU"));
        QCOMPARE(shown.value(QStringLiteral("CountryCode")), QStringLiteral(" 8"));
        QCOMPARE(shown.value(QStringLiteral("ServiceObjectVersion")), QStringLiteral(" 1011000"));
        QCOMPARE(shown.value(QStringLiteral("NumVatRates")), QStringLiteral(" 8"));
        QCOMPARE(shown.value(QStringLiteral("DeviceEnabled")), QStringLiteral("True"));
        QCOMPARE(shown.value(QStringLiteral("CapSlpPresent")), QStringLiteral("False"));
        QCOMPARE(shown.value(QStringLiteral("ReservedWord")), QStringLiteral("TOTALE"));
        QCOMPARE(shown.value(QStringLiteral("State")), QStringLiteral(" 2"));
    }
};

QTEST_MAIN(PanelsOnSimulatorTest)
#include "tst_panels_simulated.moc"
