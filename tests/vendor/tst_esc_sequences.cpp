#include "MDITestFPOPOS.h"
#include "PanelBench.h"
#include "frmEscSequences.h"
#include "frmToolbar.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace {

// "E" stands for the character 27 in the expected texts.
QString Esc(const char* text) {
    return QString::fromLatin1(text).replace(u'E', QChar(27));
}

} // namespace

class EscSequencesTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    // Operator steps as PanelBench::Apply takes them, in order.
    void sequence_data() {
        QTest::addColumn<QString>("presses");
        QTest::addColumn<QString>("expected");
        QTest::newRow("every plain token")
            << "Command3 Command4 Command5 Command6 Command7 Command9 Command8 Command10 Command11 Command12 "
               "Command13 Command14 Command16"
            << Esc("E|1CE|2CE|3CE|5CE|6CE|lAE|cAE|rAE|lRE|rRE|uRE|dRE|K");
        QTest::newRow("order of presses, twice the same")
            << "Command16 Command4 Command4 Command3" << Esc("E|KE|2CE|2CE|1C");
        QTest::newRow("bitmap and feed") << "cmdPrintBmp Command1" << Esc("E|1BE|1F");
        QTest::newRow("leading zeros drop")
            << "txtBmpID=007 cmdPrintBmp txtFeedLines=012 Command1" << Esc("E|7BE|12F");
        QTest::newRow("barcode, defaults") << "Command2" << Esc("E|14R14007817504598");
        QTest::newRow("barcode, CODE39")
            << "cbDirBarcodeType=#3 txtBarcodeString=AB-12 Command2" << Esc("E|6R4AB-12");
        QTest::newRow("barcode, empty field")
            << "cbDirBarcodeType=#1 txtBarcodeString= Command2" << Esc("E|1R2");
        QTest::newRow("fields without a number append nothing")
            << "txtBmpID=abc cmdPrintBmp txtFeedLines= Command1 Command3" << Esc("E|1C");
        QTest::newRow("typed text stays")
            << "Command3 txtEscSequence+=Total: Command4" << Esc("E|1CTotal:E|2C");
        QTest::newRow("clear") << "Command3 cmdClear Command5" << Esc("E|3C");
    }
    void sequence() {
        QFETCH(QString, presses);
        QFETCH(QString, expected);
        frmEscSequences generator;
        PanelBench::Apply(&generator, presses.split(u' '));
        QCOMPARE(generator.txtEscSequence->text(), expected);
    }

    void copyPutsTheSequenceOnTheClipboardAndCloses_data() {
        QTest::addColumn<QString>("presses");
        QTest::addColumn<QString>("clipboard");
        QTest::newRow("a sequence") << "Command8 Command4" << Esc("E|cAE|2C");
        QTest::newRow("empty") << "" << QString();
    }
    void copyPutsTheSequenceOnTheClipboardAndCloses() {
        QFETCH(QString, presses);
        QFETCH(QString, clipboard);
        QGuiApplication::clipboard()->setText(QStringLiteral("what was there"));
        frmEscSequences generator;
        generator.show();
        PanelBench::Apply(&generator, presses.split(u' ', Qt::SkipEmptyParts));
        generator.Command15->click();
        QCOMPARE(QGuiApplication::clipboard()->text(), clipboard);
        QCOMPARE(generator.txtEscSequence->text(), QString());
        QVERIFY(!generator.isVisible());
    }

    void toolbarOpensTheGeneratorModally() {
        auto control = std::make_unique<ScriptedPrinter>();
        control->Set(Prop::State, 1);
        MDITestFPOPOS window(std::move(control));
        SetMessageBoxHandler([](const QString&, MsgButtons, const QString&) { return MsgResult::Ok; });
        window.show();
        QString seen;
        bool modal = false;
        // Runs inside the generator's own event loop, then closes it through its copy button.
        QTimer::singleShot(0, [&] {
            auto* generator = qobject_cast<frmEscSequences*>(QApplication::activeModalWidget());
            if (!generator)
                return;
            modal = generator->isModal();
            generator->Command12->click();
            seen = generator->txtEscSequence->text();
            generator->Command15->click();
        });
        QTimer::singleShot(5000, [] {
            if (QWidget* stuck = QApplication::activeModalWidget())
                stuck->close();
        });
        window.Toolbar()->cmdEscSequences->click();
        QVERIFY(modal);
        QCOMPARE(seen, Esc("E|rR"));
        QCOMPARE(QGuiApplication::clipboard()->text(), Esc("E|rR"));
        QVERIFY(!QApplication::activeModalWidget());
        SetMessageBoxHandler({});
    }
};

QTEST_MAIN(EscSequencesTest)
#include "tst_esc_sequences.moc"
