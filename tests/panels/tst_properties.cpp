#include "PanelBench.h"
#include "frmProperties.h"

#include <QPushButton>
#include <QTableWidget>
#include <QTest>

#include <cmath>
#include <memory>

namespace {

// Every property, in the grid's order: alphabetical without regard to case.
const QStringList GridNames =
    QStringLiteral(
        "ActualCurrency AdditionalHeader AdditionalTrailer AmountDecimalPlaces AsyncMode BinaryConversion "
        "CapAdditionalHeader CapAdditionalLines CapAdditionalTrailer CapAmountAdjustment CapAmountNotPaid "
        "CapChangeDue CapCheckTotal CapCompareFirmwareVersion CapCoverSensor CapDoubleWidth "
        "CapDuplicateReceipt "
        "CapEmptyReceiptIsVoidable CapFiscalReceiptStation CapFiscalReceiptType CapFixedOutput "
        "CapHasVatTable "
        "CapIndependentHeader CapItemList CapJrnEmptySensor CapJrnNearEndSensor CapJrnPresent "
        "CapMultiContractor "
        "CapNonFiscalMode CapOnlyVoidLastItem CapOrderAdjustmentFirst CapPackageAdjustment "
        "CapPercentAdjustment "
        "CapPositiveAdjustment CapPostPreLine CapPowerLossReport CapPowerReporting CapPredefinedPaymentLines "
        "CapReceiptNotPaid CapRecEmptySensor CapRecNearEndSensor CapRecPresent CapRemainingFiscalMemory "
        "CapReservedWord CapSetCurrency CapSetHeader CapSetPOSID CapSetStoreFiscalID CapSetTrailer "
        "CapSetVatTable "
        "CapSlpEmptySensor CapSlpFiscalDocument CapSlpFullSlip CapSlpNearEndSensor CapSlpPresent "
        "CapSlpValidation "
        "CapStatisticsReporting CapSubAmountAdjustment CapSubPercentAdjustment CapSubtotal CapTotalizerType "
        "CapTrainingMode CapUpdateFirmware CapUpdateStatistics CapValidateJournal CapXReport ChangeDue "
        "CheckHealthText CheckTotal Claimed ContractorId CountryCode CoverOpen DateType DayOpened "
        "DescriptionLength "
        "DeviceDescription DeviceEnabled DeviceName DuplicateReceipt ErrorLevel ErrorOutID ErrorState "
        "ErrorStation "
        "ErrorString FiscalReceiptStation FiscalReceiptType FlagWhenIdle FreezeEvents JrnEmpty JrnNearEnd "
        "MessageLength MessageType NumHeaderLines NumTrailerLines NumVatRates OutputID PostLine PowerNotify "
        "PowerState PredefinedPaymentLines PreLine PrinterState QuantityDecimalPlaces QuantityLength "
        "RecEmpty "
        "RecNearEnd RemainingFiscalMemory ReservedWord ResultCode ResultCodeExtended "
        "ServiceObjectDescription "
        "ServiceObjectVersion SlipSelection SlpEmpty SlpNearEnd State TotalizerType TrainingModeActive")
        .split(QLatin1Char(' '));

} // namespace

// The properties grid over a scripted control.
class PropertiesTest : public QObject {
    Q_OBJECT

    std::unique_ptr<PanelBench> bench;
    std::unique_ptr<frmProperties> panel;

    QString Cell(int row, int column) const {
        const QTableWidgetItem* item = panel->flexProperties->item(row, column);
        return item ? item->text() : QString();
    }
    QString ValueOf(const QString& name) const {
        for (int row = 0; row < panel->flexProperties->rowCount(); ++row)
            if (Cell(row, 0) == name)
                return Cell(row, 1);
        return QStringLiteral("<missing>");
    }

private slots:
    void init() {
        bench = std::make_unique<PanelBench>();
        panel = std::make_unique<frmProperties>(bench->ctx);
    }
    void cleanup() {
        panel.reset();
        bench.reset();
    }

    void loadReadsNothing() {
        QCOMPARE(panel->flexProperties->rowCount(), 2);
        QCOMPARE(panel->flexProperties->columnCount(), 2);
        QCOMPARE(Cell(0, 0), QString());
        QCOMPARE(Cell(1, 1), QString());
        QVERIFY(bench->printer.reads.isEmpty());
        QVERIFY(bench->Log().isEmpty());
    }

    void pressListsEveryPropertyInOrder() {
        QCOMPARE(GridNames.size(), 119);
        panel->cmdReadProps->click();
        QCOMPARE(panel->flexProperties->rowCount(), 121);
        for (int column = 0; column < 2; ++column) {
            QCOMPARE(Cell(0, column), QString());
            QCOMPARE(Cell(1, column), QString());
        }
        QStringList shown;
        for (int row = 2; row < 121; ++row)
            shown.append(Cell(row, 0));
        QCOMPARE(shown, GridNames);
        // One log line per read, in row order; nothing recorded, nothing called, no refresh.
        const QStringList log = bench->Log();
        QCOMPARE(log.size(), 119);
        for (int i = 0; i < 119; ++i)
            QVERIFY2(log[i].startsWith(GridNames[i] + QStringLiteral(" = ")), qPrintable(log[i]));
        QVERIFY(bench->MacroLines().isEmpty());
        QVERIFY(bench->Calls().isEmpty());
        QCOMPARE(bench->refreshes, 0);
    }

    void secondPressReplacesTheList() {
        panel->cmdReadProps->click();
        bench->printer.Set(Prop::NumVatRates, 8);
        panel->cmdReadProps->click();
        QCOMPARE(panel->flexProperties->rowCount(), 121);
        QCOMPARE(Cell(2, 0), QStringLiteral("ActualCurrency"));
        QCOMPARE(Cell(120, 0), QStringLiteral("TrainingModeActive"));
        QCOMPARE(ValueOf(QStringLiteral("NumVatRates")), QStringLiteral(" 8"));
        QCOMPARE(Cell(0, 0), QString());
        QCOMPARE(Cell(1, 0), QString());
    }

    void valueForms_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QVariant>("control");
        QTest::addColumn<QString>("shown");
        QTest::newRow("number") << "NumVatRates" << QVariant(8) << " 8";
        QTest::newRow("zero") << "AmountDecimalPlaces" << QVariant(0) << " 0";
        QTest::newRow("negative") << "ErrorLevel" << QVariant(-3) << "-3";
        QTest::newRow("state bare") << "State" << QVariant(2) << " 2";
        QTest::newRow("printer state bare") << "PrinterState" << QVariant(4) << " 4";
        QTest::newRow("country code") << "CountryCode" << QVariant(8) << " 8";
        QTest::newRow("version") << "ServiceObjectVersion" << QVariant(1011000) << " 1011000";
        QTest::newRow("text") << "DeviceName" << QVariant(QStringLiteral("ZorvaneFPU")) << "ZorvaneFPU";
        QTest::newRow("text kept as is") << "PreLine" << QVariant(QStringLiteral(" 12 ")) << " 12 ";
        QTest::newRow("empty text") << "PostLine" << QVariant(QString()) << "";
        QTest::newRow("true") << "CapCoverSensor" << QVariant(true) << "True";
        QTest::newRow("false") << "Claimed" << QVariant(false) << "False";
        QTest::newRow("power reporting") << "CapPowerReporting" << QVariant(1) << "True";
        QTest::newRow("no power reporting") << "CapPowerReporting" << QVariant(0) << "False";
    }
    void valueForms() {
        QFETCH(QString, name);
        QFETCH(QVariant, control);
        QFETCH(QString, shown);
        const PropertyInfo* info = FindProperty(name);
        QVERIFY(info);
        bench->printer.Set(info->id, control);
        panel->cmdReadProps->click();
        QCOMPARE(ValueOf(name), shown);
    }

    void closedDeviceStillGivesAllRows() {
        bench->printer.Set(Prop::State, 1);
        panel->cmdReadProps->click();
        QCOMPARE(panel->flexProperties->rowCount(), 121);
        QCOMPARE(ValueOf(QStringLiteral("State")), QStringLiteral(" 1"));
        QCOMPARE(ValueOf(QStringLiteral("DeviceEnabled")), QStringLiteral("False"));
    }

    void columnsSplitOneToTwo_data() {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::newRow("wide") << 700 << 500;
        QTest::newRow("narrow") << 301 << 400;
        QTest::newRow("odd") << 455 << 350;
    }
    void columnsSplitOneToTwo() {
        QFETCH(int, width);
        QFETCH(int, height);
        panel->cmdReadProps->click();
        panel->show();
        panel->resize(width, height);
        QVERIFY(QTest::qWaitForWindowExposed(panel.get()));
        QTableWidget* grid = panel->flexProperties;
        QCOMPARE(grid->x(), 0);
        QCOMPARE(grid->width(), panel->width());
        QCOMPARE(grid->y() + grid->height(), panel->height());
        QVERIFY(grid->y() >= panel->cmdReadProps->geometry().bottom());
        const int cells = grid->viewport()->width();
        QCOMPARE(grid->columnWidth(0), int(std::nearbyint(cells / 3.0)));
        QCOMPARE(grid->columnWidth(0) + grid->columnWidth(1), cells);
    }

    void tooSmallPanelDoesNotFail() {
        panel->show();
        panel->resize(20, 10);
        QVERIFY(QTest::qWaitForWindowExposed(panel.get()));
        QCOMPARE(panel->flexProperties->height(), 0);
        panel->cmdReadProps->click();
        QCOMPARE(panel->flexProperties->rowCount(), 121);
        panel->resize(400, 300);
        QCOMPARE(panel->flexProperties->y() + panel->flexProperties->height(), 300);
    }
};

QTEST_MAIN(PropertiesTest)
#include "tst_properties.moc"
