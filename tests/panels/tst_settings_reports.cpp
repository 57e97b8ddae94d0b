#include "PanelBench.h"
#include "frmReports.h"
#include "frmSettings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDate>
#include <QDateTime>
#include <QFocusEvent>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>

#include <memory>

// The settings and reports panels over a scripted control.
class SettingsReportsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<PanelBench> bench;

    static void LoseFocus(QWidget* w) {
        QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
        QCoreApplication::sendEvent(w, &out);
    }
    // VAT rates in hundredths of a percent, by VAT ID from 1.
    void ScriptVatTable(const QList<int32_t>& rates) {
        bench->printer.Set(Prop::NumVatRates, int(rates.size()));
        bench->printer.handlers[QStringLiteral("GetVatEntry")] = [rates](QVariantList& a) {
            a[2] = QVariant::fromValue<int32_t>(rates.value(a[0].toInt() - 1));
            return 0;
        };
    }
    QList<ScriptedPrinter::Call> Calls(const char* name) const {
        return bench->printer.CallsOf(QLatin1StringView(name));
    }
    static QString Digits(const QDateTime& at) { return at.toString(QStringLiteral("ddMMyyyyHHmm")); }

private slots:
    void init() {
        bench = std::make_unique<PanelBench>();
        bench->printer.Set(Prop::NumVatRates, 4);
    }
    void cleanup() { bench.reset(); }

    // ---- settings

    void getDateKeepsOnlyASuccessfulAnswer_data() {
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("shown");
        QTest::newRow("success") << 0 << "010220241530";
        QTest::newRow("failure") << 111 << "";
    }
    void getDateKeepsOnlyASuccessfulAnswer() {
        QFETCH(int, result);
        QFETCH(QString, shown);
        frmSettings s(bench->ctx);
        s.txtSetDate->setText(QStringLiteral("old text"));
        bench->printer.handlers[QStringLiteral("GetDate")] = [result](QVariantList& a) {
            a[0] = QStringLiteral("010220241530");
            return result;
        };
        s.cmdGetDate->click();
        QCOMPARE(s.txtSetDate->text(), shown);
        QCOMPARE(bench->refreshes, 1);
    }

    void dateAndIdentityGoAsTyped() {
        frmSettings s(bench->ctx);
        s.txtSetDate->setText(QStringLiteral("31-12 x"));
        s.cmdSetDate->click();
        s.txtPOSID->setText(QStringLiteral("POS 7"));
        s.txtCASHIERID->setText(QStringLiteral("Anna"));
        s.cmdSetPosID->click();
        QCOMPARE(Calls("SetDate").value(0).args.value(0).toString(), QStringLiteral("31-12 x"));
        QCOMPARE(bench->MacroLines(),
                 (QStringList{QStringLiteral("F_SetDate$31-12 x"), QStringLiteral("F_SetPOSID$POS 7$Anna")}));
        QCOMPARE(bench->refreshes, 2);
    }

    void doubleClickFillsNow() {
        frmSettings s(bench->ctx);
        s.show();
        const QDateTime before = QDateTime::currentDateTime();
        QTest::mouseDClick(s.txtSetDate, Qt::LeftButton);
        const QDateTime after = QDateTime::currentDateTime();
        const QString text = s.txtSetDate->text();
        QVERIFY(QRegularExpression(QStringLiteral("^\\d{12}$")).match(text).hasMatch());
        QVERIFY2(text == Digits(before) || text == Digits(after), qPrintable(text));
        QVERIFY(bench->Calls().isEmpty());
    }

    void headerAndTrailerLines_data() {
        QTest::addColumn<bool>("header");
        QTest::addColumn<QString>("number");
        QTest::addColumn<bool>("doubleWidth");
        QTest::addColumn<QString>("line");
        const QString esc(QChar(27));
        QTest::newRow("header") << true << "3" << true
                                << QStringLiteral("F_SetHeaderLine$3$") + esc + "|2CShop$-1";
        QTest::newRow("trailer") << false << "2" << false
                                 << QStringLiteral("F_SetTrailerLine$2$") + esc + "|2CShop$0";
        QTest::newRow("rounded") << true << "2.5" << false
                                 << QStringLiteral("F_SetHeaderLine$2$") + esc + "|2CShop$0";
    }
    void headerAndTrailerLines() {
        QFETCH(bool, header);
        QFETCH(QString, number);
        QFETCH(bool, doubleWidth);
        QFETCH(QString, line);
        frmSettings s(bench->ctx);
        (header ? s.txtSetHeaderLineNum : s.txtSetTrailerLineNum)->setText(number);
        (header ? s.txtSetHeaderLineText : s.txtSetTrailerLineText)->setText(QStringLiteral("[ESC]|2CShop"));
        (header ? s.chkDoubleWidthHeader : s.chkDoubleWidthTrailer)->setChecked(doubleWidth);
        (header ? s.cmdSetHeaderLine : s.cmdSetTrailerLine)->click();
        QCOMPARE(bench->MacroLines(), QStringList{line});
        const auto call = Calls(header ? "SetHeaderLine" : "SetTrailerLine").value(0);
        QCOMPARE(call.args.value(1).toString(), QString(QChar(27)) + QStringLiteral("|2CShop"));
        QCOMPARE(call.args.value(2).toBool(), doubleWidth);
    }

    void unreadableLineNumberSendsNothing_data() {
        QTest::addColumn<QString>("number");
        QTest::newRow("letters") << "abc";
        QTest::newRow("empty") << "";
        QTest::newRow("beyond 16 bits") << "40000";
    }
    void unreadableLineNumberSendsNothing() {
        QFETCH(QString, number);
        frmSettings s(bench->ctx);
        s.txtSetHeaderLineNum->setText(number);
        s.txtSetTrailerLineNum->setText(number);
        s.cmdSetHeaderLine->click();
        s.cmdSetTrailerLine->click();
        QVERIFY(bench->Calls().isEmpty());
        QVERIFY(bench->MacroLines().isEmpty());
    }

    void vatTableRoundTrip() {
        frmSettings s(bench->ctx);
        ScriptVatTable({2200, 450, 500});
        s.cmdGetVatRate->click();
        QCOMPARE(s.lstVatRates->count(), 3);
        QCOMPARE(s.lstVatRates->item(0)->text(), QStringLiteral("22"));
        QCOMPARE(s.lstVatRates->item(1)->text(), QStringLiteral("4.5"));
        QCOMPARE(s.lstVatRates->item(2)->text(), QStringLiteral("5"));
        QCOMPARE(bench->refreshes, 1);
        QCOMPARE(Calls("GetVatEntry").size(), 3);
        QCOMPARE(Calls("GetVatEntry").value(2).args.value(0).toInt(), 3);
        QCOMPARE(Calls("GetVatEntry").value(2).args.value(1).toInt(), 0);

        // Pick the second row, edit it, leave the field.
        s.lstVatRates->setCurrentRow(1);
        QCOMPARE(s.txtVatRate->text(), QStringLiteral("4.5"));
        QCOMPARE(s.txtVatIndex->text(), QStringLiteral("2"));
        s.txtVatRate->setText(QStringLiteral("6,5"));
        LoseFocus(s.txtVatRate);
        QCOMPARE(s.lstVatRates->count(), 3);
        QCOMPARE(s.lstVatRates->item(1)->text(), QStringLiteral("6,5"));
        QVERIFY(bench->printer.CallsOf(QStringLiteral("SetVatValue")).isEmpty());

        bench->refreshes = 0;
        s.cmdSetVatRates->click();
        const auto values = Calls("SetVatValue");
        QCOMPARE(values.size(), 3);
        QCOMPARE(values[0].args[1].toString(), QStringLiteral("22"));
        QCOMPARE(values[1].args[0].toInt(), 2);
        QCOMPARE(values[1].args[1].toString(), QStringLiteral("6,5"));
        QCOMPARE(values[2].args[1].toString(), QStringLiteral("5"));
        QCOMPARE(bench->Calls().last(), QStringLiteral("SetVatTable"));
        QCOMPARE(bench->MacroLines().last(), QStringLiteral("F_SetVatTable$"));
        QCOMPARE(bench->refreshes, 4);
        QCOMPARE(s.lstVatRates->currentRow(), -1);
        // The writing loop walked the rows: the fields show the last one.
        QCOMPARE(s.txtVatIndex->text(), QStringLiteral("3"));
    }

    void vatTableWriteStopsAtTheFirstFailure() {
        frmSettings s(bench->ctx);
        ScriptVatTable({2200, 1000, 400, 0});
        s.cmdGetVatRate->click();
        bench->printer.Script(QStringLiteral("SetVatValue"), 0);
        bench->printer.Script(QStringLiteral("SetVatValue"), 114, 207, QStringLiteral("Day open"));
        s.cmdSetVatRates->click();
        QCOMPARE(Calls("SetVatValue").size(), 2);
        QCOMPARE(Calls("SetVatTable").size(), 1);
        QCOMPARE(bench->ErrorBoxes(), 1);
    }

    void vatTableWithoutRates() {
        frmSettings s(bench->ctx);
        ScriptVatTable({});
        s.cmdGetVatRate->click();
        QCOMPARE(s.lstVatRates->count(), 0);
        s.cmdSetVatRates->click();
        QCOMPARE(bench->Calls(), (QStringList{QStringLiteral("SetVatTable")}));
    }

    void vatTableWriteBeforeAReadSendsNothing() {
        frmSettings s(bench->ctx);
        s.cmdSetVatRates->click();
        QVERIFY(bench->Calls().isEmpty());
    }

    void failedVatReadStillGivesARow() {
        frmSettings s(bench->ctx);
        bench->printer.Set(Prop::NumVatRates, 2);
        bench->printer.Script(QStringLiteral("GetVatEntry"), 106);
        s.cmdGetVatRate->click();
        QCOMPARE(s.lstVatRates->count(), 2);
        QCOMPARE(s.lstVatRates->item(0)->text(), QStringLiteral("0"));
    }

    void leavingTheRateWithNoRowChangesNothing() {
        frmSettings s(bench->ctx);
        ScriptVatTable({2200, 1000});
        s.cmdGetVatRate->click();
        s.txtVatRate->setText(QStringLiteral("99"));
        LoseFocus(s.txtVatRate);
        QCOMPARE(s.lstVatRates->item(0)->text(), QStringLiteral("22"));
        QCOMPARE(s.lstVatRates->item(1)->text(), QStringLiteral("10"));
        QVERIFY(bench->messages.isEmpty());
    }

    // ---- reports

    void reportListsAfterLoad() {
        frmReports r(bench->ctx);
        QCOMPARE(r.cbReportType->count(), 2);
        QCOMPARE(r.cbReportType->itemText(1), QStringLiteral("RT_DATE"));
        QCOMPARE(r.cbCheckHealth->count(), 3);
        QCOMPARE(r.cbCheckHealth->itemText(2), QStringLiteral("INTERACTIVE"));
        QCOMPARE(r.cbTotalizerType->count(), 4);
        QCOMPARE(r.cbTotalizerType->itemText(3), QStringLiteral("FPTR_TT_GRAND"));
        QCOMPARE(r.cbGetTotOptArgs->count(), 17);
        QCOMPARE(r.cbGetTotOptArgs->itemText(11), QStringLiteral("FPTR_GT_SUBTOTAL_SURCHARGES"));
        QCOMPARE(r.cbGetTotOptArgs->itemText(16), QStringLiteral("FPTR_GT_VAT_CATEGORY"));
        QCOMPARE(r.cbGetDataDataItem->count(), 74);
        QCOMPARE(r.cbGetTotVatID->count(), 5);
        QCOMPARE(r.cbGetTotVatID->itemText(4), QStringLiteral("VAT #4"));
        for (QComboBox* list : {r.cbReportType, r.cbCheckHealth, r.cbTotalizerType, r.cbGetTotOptArgs,
                                r.cbGetDataDataItem, r.cbGetTotVatID}) {
            QCOMPARE(list->currentIndex(), 0);
            QVERIFY(!list->isEditable());
        }
        QVERIFY(bench->Calls().isEmpty());
    }

    void getDataPairs_data() {
        QTest::addColumn<QString>("row");
        QTest::addColumn<int>("dataitem");
        QTest::addColumn<int>("optArgs");
        QTest::newRow("first") << "GD_CURRENT_TOTAL" << 1 << 0;
        QTest::newRow("last plain") << "GD_SIMP_INVOICE" << 25 << 0;
        QTest::newRow("terminal imprinter") << "GD_TENDER - PDL_TERMINAL_IMPRINTER" << 26 << 9;
        QTest::newRow("home") << "GD_TENDER - PDL_HOME" << 26 << 12;
        QTest::newRow("middle") << "GD_LINECOUNT - LC_SUBTOTAL_SURCHARGE_VOID" << 27 << 12;
        QTest::newRow("last") << "GD_DESCRIPTION_LENGTH - DL_VOID_ITEM" << 28 << 12;
    }
    void getDataPairs() {
        QFETCH(QString, row);
        QFETCH(int, dataitem);
        QFETCH(int, optArgs);
        frmReports r(bench->ctx);
        const int index = r.cbGetDataDataItem->findText(row);
        QVERIFY2(index >= 0, qPrintable(row));
        r.cbGetDataDataItem->setCurrentIndex(index);
        r.cmdGetData->click();
        const auto call = Calls("GetData").value(0);
        QCOMPARE(call.args.value(0).toInt(), dataitem);
        QCOMPARE(call.args.value(1).toInt(), optArgs);
    }

    void everyDataRowFollowsItsBlock() {
        frmReports r(bench->ctx);
        // Rows 1-25: the row number and 0; then tender 26, line count 27, description length 28,
        // each numbering its options from 1.
        for (int index = 0; index < 74; ++index) {
            const int row = index + 1;
            const int dataitem = row <= 25 ? row : row <= 47 ? 26 : row <= 62 ? 27 : 28;
            const int optArgs = row <= 25 ? 0 : row <= 47 ? row - 25 : row <= 62 ? row - 47 : row - 62;
            r.cbGetDataDataItem->setCurrentIndex(index);
            r.cmdGetData->click();
            const auto call = Calls("GetData").last();
            QCOMPARE(call.args.value(0).toInt(), dataitem);
            QCOMPARE(call.args.value(1).toInt(), optArgs);
        }
    }

    void getDataShowsWhateverCameBack() {
        frmReports r(bench->ctx);
        r.txtGetDataResult->setText(QStringLiteral("old"));
        bench->printer.Script(QStringLiteral("GetData"), 106);
        r.cmdGetData->click();
        QCOMPARE(r.txtGetDataResult->text(), QString());
        bench->printer.handlers[QStringLiteral("GetData")] = [](QVariantList& a) {
            a[2] = QStringLiteral("99ZS000123");
            return 0;
        };
        r.cmdGetData->click();
        QCOMPARE(r.txtGetDataResult->text(), QStringLiteral("99ZS000123"));
        QCOMPARE(bench->refreshes, 2);
    }

    void getTotalizerInTwoStages() {
        frmReports r(bench->ctx);
        bench->printer.handlers[QStringLiteral("GetTotalizer")] = [](QVariantList& a) {
            a[2] = QStringLiteral("12345");
            return 0;
        };
        r.cmdGetTotalyzer->click();
        QCOMPARE(bench->Calls(),
                 (QStringList{QStringLiteral("ClearError"), QStringLiteral("SetTotalizerType"),
                              QStringLiteral("GetTotalizer")}));
        QCOMPARE(Calls("SetTotalizerType").value(0).args.value(0).toInt(), 1);
        QCOMPARE(Calls("GetTotalizer").value(0).args.value(0).toInt(), 0);
        QCOMPARE(Calls("GetTotalizer").value(0).args.value(1).toInt(), 1);
        QCOMPARE(r.txtGetTotResult->text(), QStringLiteral("12345"));
        QCOMPARE(bench->refreshes, 3);

        r.cbTotalizerType->setCurrentIndex(3);
        r.cbGetTotVatID->setCurrentIndex(2);
        r.cbGetTotOptArgs->setCurrentIndex(16);
        r.cmdGetTotalyzer->click();
        QCOMPARE(bench->MacroLines().mid(3),
                 (QStringList{QStringLiteral("F_ClearError"), QStringLiteral("P_TotalizerType$4"),
                              QStringLiteral("F_GetTotalizer$2$17")}));
    }

    void getTotalizerStopsWhenTheTypeIsRefused() {
        frmReports r(bench->ctx);
        r.txtGetTotResult->setText(QStringLiteral("kept"));
        bench->printer.Script(QStringLiteral("SetTotalizerType"), 106, 0, QStringLiteral("Illegal"));
        r.cmdGetTotalyzer->click();
        QVERIFY(Calls("GetTotalizer").isEmpty());
        QCOMPARE(r.txtGetTotResult->text(), QStringLiteral("kept"));
        QCOMPARE(bench->refreshes, 1);
    }

    void reportsPassTheirTexts_data() {
        QTest::addColumn<int>("typeRow");
        QTest::addColumn<int>("type");
        QTest::newRow("ordinal") << 0 << 1;
        QTest::newRow("date") << 1 << 2;
    }
    void reportsPassTheirTexts() {
        QFETCH(int, typeRow);
        QFETCH(int, type);
        frmReports r(bench->ctx);
        r.cbReportType->setCurrentIndex(typeRow);
        r.txtPrtRptStart->setText(QStringLiteral("1"));
        r.cmdPrintReport->click();
        r.txtPeriodReptStart->setText(QStringLiteral("01012024"));
        r.cmdPrintPeriodicTotalsReport->click();
        r.cmdXReport->click();
        r.cmdZReport->click();
        QCOMPARE(bench->MacroLines(),
                 (QStringList{QStringLiteral("F_PrintReport$%1$1$").arg(type),
                              QStringLiteral("F_PrintPeriodicTotalsReport$01012024$"),
                              QStringLiteral("F_PrintXReport"), QStringLiteral("F_PrintZReport")}));
        QCOMPARE(bench->refreshes, 4);
    }

    void checkHealthShowsItsText() {
        frmReports r(bench->ctx);
        bench->printer.Set(Prop::CheckHealthText, QStringLiteral("Internal HCheck: Successful"));
        r.cbCheckHealth->setCurrentIndex(2);
        bench->printer.Script(QStringLiteral("CheckHealth"), 106);
        r.cmdCheckHealth->click();
        QCOMPARE(Calls("CheckHealth").value(0).args.value(0).toInt(), 3);
        QCOMPARE(r.txtCheckHealth->text(), QStringLiteral("Internal HCheck: Successful"));
        QCOMPARE(bench->ErrorBoxes(), 1);
    }

    void dateDoubleClickGivesMidnight() {
        frmReports r(bench->ctx);
        r.show();
        const QList<QLineEdit*> boxes{r.txtPrtRptStart, r.txtPrtRptEnd, r.txtPeriodReptStart,
                                      r.txtPeriodReptEnd};
        for (QLineEdit* box : boxes) {
            for (QLineEdit* other : boxes)
                other->setText(QStringLiteral("x"));
            const QString before =
                QDate::currentDate().toString(QStringLiteral("ddMMyyyy")) + QStringLiteral("0000");
            QTest::mouseDClick(box, Qt::LeftButton);
            const QString after =
                QDate::currentDate().toString(QStringLiteral("ddMMyyyy")) + QStringLiteral("0000");
            QVERIFY2(box->text() == before || box->text() == after, qPrintable(box->text()));
            for (QLineEdit* other : boxes)
                if (other != box)
                    QCOMPARE(other->text(), QStringLiteral("x"));
        }
        QVERIFY(bench->Calls().isEmpty());
    }

    void enableRebuildsTheTotalizerVatList_data() {
        QTest::addColumn<int>("rates");
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("selected");
        QTest::newRow("eight") << 8 << 9 << 1;
        QTest::newRow("none") << 0 << 1 << 0;
    }
    void enableRebuildsTheTotalizerVatList() {
        QFETCH(int, rates);
        QFETCH(int, rows);
        QFETCH(int, selected);
        frmReports r(bench->ctx);
        bench->printer.Set(Prop::NumVatRates, rates);
        r.RebuildTotalizerVatList();
        QCOMPARE(r.cbGetTotVatID->count(), rows);
        QCOMPARE(r.cbGetTotVatID->currentIndex(), selected);
        QCOMPARE(r.cbGetTotVatID->itemText(0), QStringLiteral("VAT Exempt"));
        r.cmdGetTotalyzer->click();
        QCOMPARE(Calls("GetTotalizer").value(0).args.value(0).toInt(), selected);
    }
};

QTEST_MAIN(SettingsReportsTest)
#include "tst_settings_reports.moc"
