#include "workbench/ProjectFolder.h"

#include "tests/support/folders.h"
#include "tests/support/test_program.h"

#include <QtTest>

class ProjectFolderTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }
    void complaints();
    void createRenameRemove();
    void orderIsTheProjects();
    void refusedNames_data();
    void refusedNames();
    void onlyFoldersWithADocumentAreApplets();
    void lastAppletIsKeptByProject();
};

void ProjectFolderTest::complaints()
{
    QTemporaryDir folder;
    QVERIFY(ProjectFolder(folder.path()).complaint().isEmpty());
    const QString missing = folder.filePath(QStringLiteral("missing"));
    QVERIFY(ProjectFolder(missing).complaint().contains(missing));
    QVERIFY(test_support::putFile(missing, "a file"));
    QVERIFY(ProjectFolder(missing).complaint().contains(missing));
}

void ProjectFolderTest::createRenameRemove()
{
    QTemporaryDir folder;
    const ProjectFolder project(folder.path() + QLatin1Char('/'));
    const QString first = QStringLiteral("first");
    const QString second = QStringLiteral("second");
    QCOMPARE(project.createApplet(first), QString());
    QVERIFY(QDir().mkpath(folder.filePath(QStringLiteral("CApplet/first_code"))));
    QCOMPARE(project.applets(), QStringList{first});
    QCOMPARE(project.renameApplet(first, second), QString());
    QCOMPARE(project.applets(), QStringList{second});
    QVERIFY(!QFileInfo::exists(folder.filePath(QStringLiteral("CApplet/first_code"))));
    QVERIFY(!project.renameApplet(first, QStringLiteral("third")).isEmpty());
    QCOMPARE(project.removeApplet(second), QString());
    QVERIFY(project.applets().isEmpty());
}

void ProjectFolderTest::orderIsTheProjects()
{
    QTemporaryDir folder;
    const ProjectFolder project(folder.path());
    const QString orderFile = folder.filePath(QStringLiteral("project.json"));
    const auto order = [&project] { return project.applets().join(QLatin1Char(' ')); };
    for (const char* name : {"c", "a", "b"})
        QCOMPARE(project.createApplet(QString::fromLatin1(name)), QString());
    QCOMPARE(order(), QStringLiteral("c a b"));
    QCOMPARE(project.renameApplet(QStringLiteral("a"), QStringLiteral("z")), QString());
    QCOMPARE(order(), QStringLiteral("c z b"));
    QCOMPARE(project.removeApplet(QStringLiteral("c")), QString());
    QCOMPARE(order(), QStringLiteral("z b"));

    // What else the file holds stays; a damaged file costs the order and nothing else.
    QVERIFY(test_support::putFile(orderFile, R"({"applets": ["b", "gone"], "title": "x"})"));
    QCOMPARE(order(), QStringLiteral("b z"));
    QCOMPARE(project.createApplet(QStringLiteral("a")), QString());
    QCOMPARE(order(), QStringLiteral("b z a"));
    QFile file(orderFile);
    QVERIFY(file.open(QIODevice::ReadOnly) && file.readAll().contains("title"));
    file.close();
    QVERIFY(test_support::putFile(orderFile, "{"));
    QCOMPARE(order(), QStringLiteral("a b z"));
}

void ProjectFolderTest::refusedNames_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"", "1st", "a b", "a/b", "..", "检测", "taken", "x_code", "x_mp"})
        QTest::newRow(name) << QString::fromUtf8(name);
}

void ProjectFolderTest::refusedNames()
{
    QFETCH(QString, name);
    QTemporaryDir folder;
    const ProjectFolder project(folder.path());
    QCOMPARE(project.createApplet(QStringLiteral("taken")), QString());
    QCOMPARE(project.createApplet(QStringLiteral("other")), QString());
    QVERIFY(!project.createApplet(name).isEmpty());
    QVERIFY(!project.renameApplet(QStringLiteral("other"), name).isEmpty());
    QCOMPARE(project.applets(), QStringList({QStringLiteral("taken"), QStringLiteral("other")}));
}

void ProjectFolderTest::onlyFoldersWithADocumentAreApplets()
{
    QTemporaryDir folder;
    const ProjectFolder project(folder.path());
    for (const char* name : {"empty", "old", "x_mp"})
        QVERIFY(QDir().mkpath(project.appletFolder(QString::fromLatin1(name))));
    QVERIFY(test_support::putFile(
        project.appletFolder(QStringLiteral("old")) + QStringLiteral("logicview.json"), "{}"));
    QCOMPARE(project.applets(), QStringList{QStringLiteral("old")});
}

void ProjectFolderTest::lastAppletIsKeptByProject()
{
    QTemporaryDir one;
    QTemporaryDir other;
    ProjectFolder(one.path()).setLastApplet(QStringLiteral("a"));
    QCOMPARE(ProjectFolder(one.path()).lastApplet(), QStringLiteral("a"));
    QVERIFY(ProjectFolder(other.path()).lastApplet().isEmpty());
}

PE_TEST("project_folder_test", ProjectFolderTest)
#include "project_folder_test.moc"
