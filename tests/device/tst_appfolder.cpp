#include "Tools.h"

#include <QFileInfo>
#include <QTest>

// Runs without an application object: the program's folder must still be found.
class TestAppFolderWithoutApplication : public QObject {
    Q_OBJECT

private slots:
    void holdsProgram() {
        QVERIFY(!QCoreApplication::instance());
        const QString folder = Tools::AppFolder();
        QVERIFY(!folder.endsWith(u'/'));
        QVERIFY(QFileInfo(folder + QStringLiteral("/tst_appfolder")).isExecutable());
    }
};

QTEST_APPLESS_MAIN(TestAppFolderWithoutApplication)
#include "tst_appfolder.moc"
