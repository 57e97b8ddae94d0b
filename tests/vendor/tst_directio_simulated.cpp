#include "DirectIODisplayTab.h"
#include "DirectIOGenericTab.h"
#include "DirectIOReportsTab.h"
#include "SimBench.h"
#include "frmDirectIO.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace {

// The panel on the simulated printer.
struct DirectIOSim : SimBench {
    frmDirectIO panel{ctx, QStringLiteral("ZorvaneFPU")};

    void Press(const char* button) { SimBench::Press(&panel, button); }
    // The DirectIO lines since the last press.
    QStringList DirectIOLines() const {
        return Log().filter(QRegularExpression(QStringLiteral("^DirectIO\\(")));
    }
    // The text the control handed back, as the last DirectIO line shows it.
    QString ReturnedText() const {
        const QString line = DirectIOLines().value(0);
        const qsizetype from = line.indexOf(QStringLiteral("}, ")) + 3;
        return line.mid(from, line.lastIndexOf(QStringLiteral(")     -> ")) - from);
    }
    void Set(const char* field, const QString& text) {
        panel.findChild<QLineEdit*>(QLatin1StringView(field))->setText(text);
    }
    QString Text(const char* field) const {
        return panel.findChild<QLineEdit*>(QLatin1StringView(field))->text();
    }
};

} // namespace

class DirectIOSimulatedTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void drawerOpensAndReadsBackOpened() {
        DirectIOSim s;
        QLabel* shown = s.panel.generic->lblDirGetDrawer;
        s.Press("cmdDirGetDrawer");
        QCOMPARE(shown->text(), QStringLiteral("Closed"));
        s.Press("cmdDirOpenDrawer");
        s.Press("cmdDirGetDrawer");
        QCOMPARE(shown->text(), QStringLiteral("Opened"));
        QVERIFY(s.DirectIOLines().value(0).startsWith(
            QStringLiteral("DirectIO(DIRECTIO_FPTR_DRAWER_GET, {1, 0,")));
        s.printer.CloseDrawer();
        s.Press("cmdDirGetDrawer");
        QCOMPARE(shown->text(), QStringLiteral("Closed"));
        QCOMPARE(s.results, (QList<int32_t>{0, 0, 0, 0}));
    }

    void departmentLinksRoundTrip() {
        DirectIOSim s;
        s.Press("cmdDirectGetLinkToDepartment");
        QCOMPARE(s.Text("txtDeptVatLinks"), QStringLiteral("1A,2B"));
        s.Press("cmdDirectSetLinkToDepartment"); // written back unedited
        QCOMPARE(s.results.last(), 0);
        s.Set("txtDeptVatLinks", QStringLiteral("3C,4A"));
        s.Press("cmdDirectSetLinkToDepartment");
        QCOMPARE(s.results.last(), 0);
        s.Set("txtDeptVatLinks", QStringLiteral("1A,,9Z")); // refused, nothing changes
        s.Press("cmdDirectSetLinkToDepartment");
        QCOMPARE(s.results.last(), 106);
        QCOMPARE(s.ErrorBoxes(), 1);
        s.Set("txtDeptVatLinks", QString());
        s.Press("cmdDirectGetLinkToDepartment");
        QCOMPARE(s.Text("txtDeptVatLinks"), QStringLiteral("3C,4A"));
    }

    void xReportLandsInTheReportsFolder() {
        DirectIOSim s;
        const QString dataHome = QDir(qEnvironmentVariable("XDG_DATA_HOME")).canonicalPath();
        QVERIFY(!dataHome.isEmpty());
        s.Set("txtDirReportZFile", QStringLiteral("x-bench.txt"));
        s.panel.reports->cbDirReportZFileMode->setCurrentIndex(1); // create or rewrite
        s.Press("cmdDirReportZ");
        QCOMPARE(s.results.last(), 0);
        const QString path = s.ReturnedText(); // the log shows where the file went
        QCOMPARE(QFileInfo(path).fileName(), QStringLiteral("x-bench.txt"));
        QVERIFY2(QFileInfo(path).canonicalFilePath().startsWith(dataHome + u'/'), qPrintable(path));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
        const QByteArray once = file.readAll();
        file.close();
        QVERIFY(!once.trimmed().isEmpty());

        s.panel.reports->cbDirReportZFileMode->setCurrentIndex(0); // append
        s.Press("cmdDirReportZ");
        QCOMPARE(s.results.last(), 0);
        QVERIFY(QFileInfo(path).size() > once.size());
        s.panel.reports->cbDirReportZFileMode->setCurrentIndex(1);
        s.Press("cmdDirReportZ");
        QVERIFY(QFileInfo(path).size() < 2 * once.size());
    }

    void reportNamesLeavingTheFolderAreRefused_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("throughLink");
        QTest::newRow("parent folder") << "../escape.txt" << false;
        QTest::newRow("absolute path") << "" << false;
        QTest::newRow("300 characters") << QString(300, u'x') << false;
        QTest::newRow("symbolic link inside") << "out/escape.txt" << true;
        QTest::newRow("control character") << "bad\x01name.txt" << false;
    }
    void reportNamesLeavingTheFolderAreRefused() {
        QFETCH(QString, name);
        QFETCH(bool, throughLink);
        DirectIOSim s;
        QTemporaryDir outside;
        QVERIFY(outside.isValid());
        // The reports folder, from where a plain name went.
        s.Set("txtDirReportOFFile", QStringLiteral("probe.txt"));
        s.Press("cmdDirReportOnFile");
        QCOMPARE(s.results.last(), 0);
        const QString folder = QFileInfo(s.ReturnedText()).absolutePath();
        if (name.isEmpty())
            name = outside.filePath(QStringLiteral("escape.txt"));
        if (throughLink) {
            QFile::remove(folder + "/out");
            QVERIFY(QFile::link(outside.path(), folder + "/out"));
        }

        for (const char* button : {"cmdDirReportZ", "cmdDirReportOnFile", "cmdDirReportEJ"}) {
            const int boxes = s.ErrorBoxes();
            s.Set("txtDirReportZFile", name);
            s.Set("txtDirReportOFFile", name);
            s.Set("txtDirReportEJFileName", name);
            s.Press(button);
            QVERIFY2(s.results.last() != 0, button);
            QCOMPARE(s.DirectIOLines().size(), 1);
            if (s.results.last() != 0) {
                QVERIFY(!s.DirectIOLines()[0].contains(QStringLiteral("-> OposSuccess")));
                QCOMPARE(s.ErrorBoxes(), boxes + 1);
            }
        }
        QVERIFY(QDir(outside.path()).isEmpty());
        if (throughLink)
            QFile::remove(folder + "/out");
    }

    void displayRowsReadableFromTheSimulator() {
        DirectIOSim s;
        s.Press("cmdDirDyPrintText");
        QCOMPARE(s.printer.Display().Rows().value(0), QStringLiteral("This is a test"));
        s.Set("txtDyPtRow", QStringLiteral("2"));
        s.Set("txtDirPtString", QStringLiteral("Grazie"));
        s.Press("cmdDirDyPrintText");
        QCOMPARE(s.printer.Display().Rows().value(1), QStringLiteral("Grazie"));
        QCOMPARE(s.results, (QList<int32_t>{0, 0}));
        s.Set("txtDyPtRow", QStringLiteral("3")); // 2x20 has two rows
        s.Press("cmdDirDyPrintText");
        QCOMPARE(s.results.last(), 106);
        QVERIFY(s.DirectIOLines().value(0).contains(QStringLiteral("-> OposEIllegal(106)")));
        s.panel.display->cbVideoMode->setCurrentIndex(1); // 3x22
        s.Press("cmdDirSetVideoMode");
        s.Press("cmdDirDyPrintText");
        QCOMPARE(s.results.last(), 0);
        QCOMPARE(s.printer.Display().Rows().value(2), QStringLiteral("Grazie"));
        s.Press("cmdDirDisplayClear");
        for (const QString& row : s.printer.Display().Rows())
            QVERIFY(row.trimmed().isEmpty());
    }
};

QTEST_MAIN(DirectIOSimulatedTest)
#include "tst_directio_simulated.moc"
