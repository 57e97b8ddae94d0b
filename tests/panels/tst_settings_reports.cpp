#include "PanelBench.h"
#include "frmReports.h"
#include "frmSettings.h"

#include <QDate>
#include <QDateTime>
#include <QFocusEvent>
#include <QListWidget>
#include <QPlainTextEdit>

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
    QStringList Rates(const frmSettings& s) const {
        QStringList shown;
        for (int row = 0; row < s.lstVatRates->count(); ++row)
            shown.append(s.lstVatRates->item(row)->text());
        return shown;
    }

private slots:
    void init() {
        bench = std::make_unique<PanelBench>();
        bench->printer.Set(Prop::NumVatRates, 4);
    }
    void cleanup() { bench.reset(); }

    void dates() {
        frmSettings s(bench->ctx);
        frmReports r(bench->ctx);
        for (int result : {0, 111}) { // GetDate shows only a successful answer
            s.txtSetDate->setText(QStringLiteral("old text"));
            bench->Answer("GetDate", 0, QStringLiteral("010220241530"), result);
            s.cmdGetDate->click();
            QCOMPARE(s.txtSetDate->text(), result ? QString() : QStringLiteral("010220241530"));
        }
        QCOMPARE(bench->refreshes, 2);
        bench->printer.calls.clear();
        s.show();
        r.show();
        // Settings: now, to the minute.
        const QString format = QStringLiteral("ddMMyyyyHHmm");
        const QString before = QDateTime::currentDateTime().toString(format);
        QTest::mouseDClick(s.txtSetDate, Qt::LeftButton);
        const QString text = s.txtSetDate->text();
        QVERIFY2(text == before || text == QDateTime::currentDateTime().toString(format), qPrintable(text));
        // Reports: today at midnight, in the clicked box only.
        const QList<QLineEdit*> boxes{r.txtPrtRptStart, r.txtPrtRptEnd, r.txtPeriodReptStart,
                                      r.txtPeriodReptEnd};
        for (QLineEdit* box : boxes) {
            for (QLineEdit* other : boxes)
                other->setText(QStringLiteral("x"));
            const QString day = QDate::currentDate().toString(QStringLiteral("ddMMyyyy"));
            QTest::mouseDClick(box, Qt::LeftButton);
            const QString now = QDate::currentDate().toString(QStringLiteral("ddMMyyyy"));
            QVERIFY2(box->text() == day + "0000" || box->text() == now + "0000", qPrintable(box->text()));
            for (QLineEdit* other : boxes)
                QCOMPARE(other->text() == QStringLiteral("x"), other != box);
        }
        QVERIFY(bench->Calls().isEmpty());
    }

    void headerAndTrailerLines_data() {
        QTest::addColumn<bool>("header");
        QTest::addColumn<QString>("number");
        QTest::addColumn<bool>("doubleWidth");
        QTest::addColumn<QString>("line"); // empty: nothing is sent
        const QString esc(QChar(27));
        QTest::newRow("header") << true << "3" << true << "F_SetHeaderLine$3$" + esc + "|2CShop$-1";
        QTest::newRow("trailer") << false << "2" << false << "F_SetTrailerLine$2$" + esc + "|2CShop$0";
        QTest::newRow("rounded") << true << "2.5" << false << "F_SetHeaderLine$2$" + esc + "|2CShop$0";
        QTest::newRow("letters") << true << "abc" << false << QString();
        QTest::newRow("empty") << false << "" << false << QString();
        QTest::newRow("beyond 16 bits") << false << "40000" << false << QString();
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
        QCOMPARE(bench->MacroLines(), line.isEmpty() ? QStringList() : QStringList{line});
        QCOMPARE(bench->Calls().size(), line.isEmpty() ? 0 : 1);
        if (!line.isEmpty()) {
            const char* method = header ? "SetHeaderLine" : "SetTrailerLine";
            QCOMPARE(bench->Arg(method, 1).toString(), QChar(27) + QStringLiteral("|2CShop"));
            QCOMPARE(bench->Arg(method, 2).toBool(), doubleWidth);
        }
    }

    void vatTableRoundTrip() {
        frmSettings s(bench->ctx);
        ScriptVatTable({2200, 450, 500});
        s.cmdGetVatRate->click();
        QCOMPARE(Rates(s), bench->Words("22 4.5 5"));
        QCOMPARE(bench->refreshes, 1);
        QCOMPARE(bench->CallsOf("GetVatEntry").size(), 3);
        QCOMPARE(bench->Arg("GetVatEntry", 0).toInt(), 3);
        QCOMPARE(bench->Arg("GetVatEntry", 1).toInt(), 0);

        // Pick the second row, edit it, leave the field.
        s.lstVatRates->setCurrentRow(1);
        QCOMPARE(s.txtVatRate->text(), QStringLiteral("4.5"));
        QCOMPARE(s.txtVatIndex->text(), QStringLiteral("2"));
        s.txtVatRate->setText(QStringLiteral("6,5"));
        LoseFocus(s.txtVatRate);
        QCOMPARE(Rates(s), bench->Words("22 6,5 5"));
        QVERIFY(bench->CallsOf("SetVatValue").isEmpty());

        bench->refreshes = 0;
        s.cmdSetVatRates->click();
        const auto values = bench->CallsOf("SetVatValue");
        QCOMPARE(values.size(), 3);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(values[i].args[0].toInt(), i + 1);
            QCOMPARE(values[i].args[1].toString(), bench->Words("22 6,5 5")[i]);
        }
        QCOMPARE(bench->Calls().last(), QStringLiteral("SetVatTable"));
        QCOMPARE(bench->MacroLines().last(), QStringLiteral("F_SetVatTable$"));
        QCOMPARE(bench->refreshes, 4);
        QCOMPARE(s.lstVatRates->currentRow(), -1);
        QCOMPARE(s.txtVatIndex->text(), QStringLiteral("3")); // the writing loop walked the rows
    }

    void vatTableEdges() {
        frmSettings s(bench->ctx);
        s.cmdSetVatRates->click(); // before any read: nothing
        QVERIFY(bench->Calls().isEmpty());
        ScriptVatTable({2200, 1000});
        s.cmdGetVatRate->click();
        s.txtVatRate->setText(QStringLiteral("99"));
        LoseFocus(s.txtVatRate); // no row picked: nothing changes
        QCOMPARE(Rates(s), bench->Words("22 10"));
        QVERIFY(bench->messages.isEmpty());
        bench->printer.handlers.clear();
        bench->printer.Script(QStringLiteral("GetVatEntry"), 106); // a failed read still gives a row
        s.cmdGetVatRate->click();
        QCOMPARE(Rates(s), bench->Words("0 0"));
        ScriptVatTable({});
        s.cmdGetVatRate->click();
        QCOMPARE(s.lstVatRates->count(), 0);
        bench->printer.calls.clear();
        s.cmdSetVatRates->click();
        QCOMPARE(bench->Calls(), bench->Words("SetVatTable"));

        // The writing stops at the first refused rate; the table is still set.
        ScriptVatTable({2200, 1000, 400, 0});
        s.cmdGetVatRate->click();
        bench->printer.calls.clear();
        bench->printer.Script(QStringLiteral("SetVatValue"), 0);
        bench->printer.Script(QStringLiteral("SetVatValue"), 114, 207, QStringLiteral("Day open"));
        s.cmdSetVatRates->click();
        QCOMPARE(bench->Calls(), bench->Words("SetVatValue SetVatValue SetVatTable"));
        QCOMPARE(bench->ErrorBoxes(), 1);
    }

    void getDataPairsFollowTheRowBlocks() {
        frmReports r(bench->ctx);
        QCOMPARE(r.cbGetDataDataItem->count(), 74);
        const QHash<int, QString> names{{1, QStringLiteral("GD_CURRENT_TOTAL")},
                                        {25, QStringLiteral("GD_SIMP_INVOICE")},
                                        {37, QStringLiteral("GD_TENDER - PDL_HOME")},
                                        {59, QStringLiteral("GD_LINECOUNT - LC_SUBTOTAL_SURCHARGE_VOID")},
                                        {74, QStringLiteral("GD_DESCRIPTION_LENGTH - DL_VOID_ITEM")}};
        // Rows 1-25: the row number and 0; then tender 26, line count 27, description length 28,
        // each numbering its options from 1.
        for (int row = 1; row <= 74; ++row) {
            const int dataitem = row <= 25 ? row : row <= 47 ? 26 : row <= 62 ? 27 : 28;
            const int optArgs = row <= 25 ? 0 : row <= 47 ? row - 25 : row <= 62 ? row - 47 : row - 62;
            r.cbGetDataDataItem->setCurrentIndex(row - 1);
            if (names.contains(row))
                QCOMPARE(r.cbGetDataDataItem->currentText(), names[row]);
            r.cmdGetData->click();
            QCOMPARE(bench->Arg("GetData", 0).toInt(), dataitem);
            QCOMPARE(bench->Arg("GetData", 1).toInt(), optArgs);
        }
        bench->printer.Script(QStringLiteral("GetData"), 106); // the answer is shown as it came
        r.cmdGetData->click();
        QCOMPARE(r.txtGetDataResult->text(), QString());
        bench->Answer("GetData", 2, QStringLiteral("99ZS000123"));
        r.cmdGetData->click();
        QCOMPARE(r.txtGetDataResult->text(), QStringLiteral("99ZS000123"));
    }

    void getTotalizerInTwoStages() {
        frmReports r(bench->ctx);
        r.txtGetTotResult->setText(QStringLiteral("kept"));
        bench->printer.Script(QStringLiteral("SetTotalizerType"), 106, 0, QStringLiteral("Illegal"));
        r.cmdGetTotalyzer->click(); // the type is refused: no GetTotalizer
        QVERIFY(bench->CallsOf("GetTotalizer").isEmpty());
        QCOMPARE(r.txtGetTotResult->text(), QStringLiteral("kept"));
        QCOMPARE(bench->refreshes, 1);

        bench->printer.calls.clear();
        bench->Answer("GetTotalizer", 2, QStringLiteral("12345"));
        r.cmdGetTotalyzer->click();
        QCOMPARE(bench->Calls(), bench->Words("ClearError SetTotalizerType GetTotalizer"));
        QCOMPARE(bench->MacroLines().mid(2),
                 bench->Words("F_ClearError P_TotalizerType$1 F_GetTotalizer$0$1"));
        QCOMPARE(r.txtGetTotResult->text(), QStringLiteral("12345"));
        QCOMPARE(bench->refreshes, 4);

        r.cbTotalizerType->setCurrentIndex(3);
        r.cbGetTotVatID->setCurrentIndex(2);
        r.cbGetTotOptArgs->setCurrentIndex(16);
        r.cmdGetTotalyzer->click();
        QCOMPARE(bench->MacroLines().mid(bench->MacroLines().size() - 3),
                 bench->Words("F_ClearError P_TotalizerType$4 F_GetTotalizer$2$17"));
    }

    void checkHealthShowsItsText() {
        frmReports r(bench->ctx);
        bench->printer.Set(Prop::CheckHealthText, QStringLiteral("Internal HCheck: Successful"));
        r.cbCheckHealth->setCurrentIndex(2);
        bench->printer.Script(QStringLiteral("CheckHealth"), 106);
        r.cmdCheckHealth->click();
        QCOMPARE(bench->Arg("CheckHealth", 0).toInt(), 3);
        QCOMPARE(r.txtCheckHealth->text(), QStringLiteral("Internal HCheck: Successful"));
        QCOMPARE(bench->ErrorBoxes(), 1);
    }

    void enableRebuildsTheTotalizerVatList() {
        frmReports r(bench->ctx);
        for (int rates : {8, 0}) {
            bench->printer.Set(Prop::NumVatRates, rates);
            r.RebuildTotalizerVatList();
            QCOMPARE(r.cbGetTotVatID->count(), rates + 1);
            QCOMPARE(r.cbGetTotVatID->currentIndex(), rates ? 1 : 0);
            QCOMPARE(r.cbGetTotVatID->itemText(0), QStringLiteral("VAT Exempt"));
            r.cmdGetTotalyzer->click();
            QCOMPARE(bench->Arg("GetTotalizer", 0).toInt(), rates ? 1 : 0);
        }
    }
};

QTEST_MAIN(SettingsReportsTest)
#include "tst_settings_reports.moc"
