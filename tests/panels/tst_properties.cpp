#include "PanelBench.h"
#include "frmProperties.h"

#include <QTableWidget>

#include <cmath>

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

    void closedDeviceListsEveryPropertyOnEachPress() {
        QCOMPARE(panel->flexProperties->rowCount(), 2); // loading reads nothing
        QVERIFY(bench->printer.reads.isEmpty());
        bench->printer.Set(Prop::State, 1);
        for (int press = 1; press <= 2; ++press) {
            bench->printer.Set(Prop::NumVatRates, press * 4);
            panel->cmdReadProps->click();
            // Two blank rows, then every property once, sorted without regard to case.
            QCOMPARE(panel->flexProperties->rowCount(), 121);
            QCOMPARE(Cell(0, 0) + Cell(0, 1) + Cell(1, 0) + Cell(1, 1), QString());
            QStringList names;
            for (int row = 2; row < 121; ++row)
                names.append(FindProperty(Cell(row, 0)) ? Cell(row, 0) : QStringLiteral("?"));
            QStringList sorted = names;
            sorted.sort(Qt::CaseInsensitive);
            sorted.removeDuplicates();
            QCOMPARE(names, sorted);
            QCOMPARE(names.first() + names.last(), QStringLiteral("ActualCurrencyTrainingModeActive"));
            QCOMPARE(ValueOf(QStringLiteral("NumVatRates")), QStringLiteral(" %1").arg(press * 4));
            QCOMPARE(ValueOf(QStringLiteral("State")) + ValueOf(QStringLiteral("DeviceEnabled")),
                     QStringLiteral(" 1False"));
            // One log line per read, in row order.
            const QStringList log = bench->Log().mid((press - 1) * 119);
            QCOMPARE(log.size(), 119);
            for (int i = 0; i < 119; ++i)
                QVERIFY2(log[i].startsWith(names[i] + QStringLiteral(" = ")), qPrintable(log[i]));
        }
        QVERIFY(bench->MacroLines().isEmpty() && bench->Calls().isEmpty());
        QCOMPARE(bench->refreshes, 0);
    }

    void valueForms_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QVariant>("control");
        QTest::addColumn<QString>("shown");
        QTest::newRow("number") << "NumVatRates" << QVariant(8) << " 8";
        QTest::newRow("negative") << "ErrorLevel" << QVariant(-3) << "-3";
        QTest::newRow("state bare") << "State" << QVariant(2) << " 2";
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
        bench->printer.Set(FindProperty(name)->id, control);
        panel->cmdReadProps->click();
        QCOMPARE(ValueOf(name), shown);
    }

    void columnsSplitOneToTwo() {
        panel->cmdReadProps->click();
        panel->show();
        QTableWidget* grid = panel->flexProperties;
        for (const QSize size : {QSize(700, 500), QSize(455, 350), QSize(20, 10)}) {
            panel->resize(size);
            QVERIFY(QTest::qWaitForWindowExposed(panel.get()));
            if (size.width() < 100) { // too small: no grid left, a press still works, then it grows back
                QCOMPARE(grid->height(), 0);
                panel->cmdReadProps->click();
                QCOMPARE(grid->rowCount(), 121);
                panel->resize(400, 300);
            }
            QCOMPARE(grid->geometry(), QRect(0, grid->y(), panel->width(), panel->height() - grid->y()));
            QVERIFY(grid->y() >= panel->cmdReadProps->geometry().bottom());
            const int cells = grid->viewport()->width();
            QCOMPARE(grid->columnWidth(0), int(std::nearbyint(cells / 3.0)));
            QCOMPARE(grid->columnWidth(0) + grid->columnWidth(1), cells);
        }
    }
};

QTEST_MAIN(PropertiesTest)
#include "tst_properties.moc"
