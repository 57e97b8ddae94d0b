#include "TestRow.h"
#include "Tools.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
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

    // In a build the shipped files lie beside the program; installed, in share/fpubench beside
    // the programs' bin folder.
    void installedDataFolder_data() {
        QTest::addColumn<QStringList>("folders");
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QString>("program");
        QTest::addColumn<QString>("expected");
        Row("build tree", QStringList{"build/src/app"}, QStringList{}, "build/src/app", "build/src/app");
        Row("installed", QStringList{"usr/bin", "usr/share/fpubench"}, QStringList{}, "usr/bin",
            "usr/share/fpubench");
        Row("installed, trailing separator", QStringList{"opt/b/bin", "opt/b/share/fpubench"}, QStringList{},
            "opt/b/bin/", "opt/b/share/fpubench");
        Row("share without the bench's folder", QStringList{"opt/x/bin", "opt/x/share"}, QStringList{},
            "opt/x/bin", "opt/x/bin");
        Row("a file where the folder would be", QStringList{"p/bin", "p/share"},
            QStringList{"p/share/fpubench"}, "p/bin", "p/bin");
    }
    void installedDataFolder() {
        QFETCH(QStringList, folders);
        QFETCH(QStringList, files);
        QFETCH(QString, program);
        QFETCH(QString, expected);
        QTemporaryDir root;
        QVERIFY(root.isValid());
        for (const QString& folder : folders)
            QVERIFY(QDir(root.path()).mkpath(folder));
        for (const QString& name : files) {
            QFile file(root.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QString programFolder = root.filePath(program);
        if (program.endsWith(u'/'))
            programFolder += u'/';
        QCOMPARE(Tools::AppFolderFor(programFolder), root.filePath(expected));
    }
};

QTEST_APPLESS_MAIN(TestAppFolderWithoutApplication)
#include "tst_appfolder.moc"
