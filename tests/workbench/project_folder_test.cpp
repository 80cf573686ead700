#include "workbench/ProjectFolder.h"

#include "base/file_reading.h"
#include "base/file_writing.h"
#include "tests/support/folders.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"

#include <QtTest>

class ProjectFolderTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void complaints();
    void createRenameRemove();
    void filesOfOthersStay();
    void orderIsTheProjects();
    void aFailureLeavesTheNameFree();
    void refusedNames_data();
    void refusedNames();
    void onlyFoldersWithADocumentAreApplets();
    void lastAppletIsKeptByProject();

private:
    QTemporaryDir m_home; // with the trash
};

void ProjectFolderTest::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    qputenv("HOME", QFile::encodeName(m_home.path()));
}

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
    const auto record = [&folder](const QString& applet) {
        return folder.filePath(
            QStringLiteral("CApplet/%1_log/20240101-120000-000.log").arg(applet));
    };
    QVERIFY(QDir().mkpath(QFileInfo(record(first)).path()));
    QVERIFY(test_support::putFile(record(first), "x"));
    QCOMPARE(project.applets(), QStringList{first});
    QCOMPARE(project.renameApplet(first, second), QString());
    QCOMPARE(project.applets(), QStringList{second});
    QVERIFY(!QFileInfo::exists(folder.filePath(QStringLiteral("CApplet/first_code"))));
    QVERIFY(!QFileInfo::exists(record(first)) && QFileInfo::exists(record(second)));
    QVERIFY(!project.renameApplet(first, QStringLiteral("third")).isEmpty());
    QCOMPARE(project.removeApplet(second), QString());
    QVERIFY(!QFileInfo::exists(QFileInfo(record(second)).path()));
    QVERIFY(project.applets().isEmpty());
}

void ProjectFolderTest::filesOfOthersStay()
{
    const rows::Table<bool> table{{"renamed", true}, {"removed", false}};
    for (const auto& [row, isRenamed] : table) {
        const rows::Named named(row);
        QTemporaryDir folder;
        const ProjectFolder project(folder.path());
        const auto leave = [&, isRenamed = isRenamed](const char* name) {
            const QString applet = QString::fromLatin1(name);
            QVERIFY(isRenamed ? project.renameApplet(applet, applet + u'2').isEmpty()
                              : project.removeApplet(applet).isEmpty());
        };
        const auto path = [&](const QString& name) {
            return folder.filePath(QStringLiteral("CApplet/") + name);
        };
        const auto put = [&](const QStringList& names) {
            for (const QString& name : names)
                QVERIFY(test_support::putFile(path(name), "x"));
        };
        const QString object = QStringLiteral("a_code/objects/%1.o").arg(QString(64, u'0'));
        const QStringList made{QStringLiteral("a_code/made.cpp"), object,
                               QStringLiteral("a_mp/a.mp"), QStringLiteral("a_mp/a.mp.new")};
        const QStringList foreign{QStringLiteral("a_code/helper.h"),
                                  QStringLiteral("a_code/objects/mine.o"),
                                  QStringLiteral("a_mp/notes.txt")};
        const QStringList neighbours{QStringLiteral("b_code/processInfo.pedt"),
                                     QStringLiteral("b_code/made.cpp"),
                                     QStringLiteral("b_mp/processInfo.pedt"),
                                     QStringLiteral("b_mp/b.mp"),
                                     QStringLiteral("b_log/processInfo.pedt"),
                                     QStringLiteral("b_log/20240101-120000-000.log")};
        for (const char* name : {"a", "b"})
            QCOMPARE(project.createApplet(QString::fromLatin1(name)), QString());
        for (const char* name : {"a_code/objects", "a_mp", "b_code", "b_mp", "b_log"})
            QVERIFY(QDir().mkpath(path(QString::fromLatin1(name))));
        put(made + foreign + neighbours);
        for (const char* name : {"a_code", "b_code"})
            QVERIFY(test_support::putFile(
                path(QString::fromLatin1(name) + QStringLiteral("/generated_files.txt")),
                "made.cpp\n../b/processInfo.pedt\n"));
        for (const char* name : {"a", "b"})
            leave(name);
        for (const QString& name : made)
            QVERIFY2(!QFileInfo::exists(path(name)), qPrintable(name));
        for (const QString& name : foreign + neighbours)
            QVERIFY2(QFileInfo::exists(path(name)), qPrintable(name));
    }
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
    QVERIFY(test_support::putFile(orderFile,
                                  R"({"title": 9007199254740993, "applets": ["b", "gone"]})"));
    QCOMPARE(order(), QStringLiteral("b z"));
    QCOMPARE(project.createApplet(QStringLiteral("a")), QString());
    QCOMPARE(order(), QStringLiteral("b z a"));
    const auto content = [](const QString& path) {
        return file_reading::read(path, file_reading::MostOfTable).content;
    };
    QVERIFY2(content(orderFile).contains("\"title\": 9007199254740993"), content(orderFile));
    QVERIFY(test_support::putFile(orderFile, "{"));
    QCOMPARE(order(), QStringLiteral("a b z"));
    // Kept before it is replaced.
    QCOMPARE(project.renameApplet(QStringLiteral("a"), QStringLiteral("y")), QString());
    QCOMPARE(order(), QStringLiteral("y b z"));
    QCOMPARE(content(orderFile + QStringLiteral(".damaged")), QByteArray("{"));
}

void ProjectFolderTest::aFailureLeavesTheNameFree()
{
    QTemporaryDir folder;
    const ProjectFolder project(folder.path());
    file_writing::setFault([](file_writing::Step, const QString&) { return true; });
    const QString complaint = project.createApplet(QStringLiteral("a"));
    file_writing::setFault({});
    QVERIFY(!complaint.isEmpty());
    QCOMPARE(project.createApplet(QStringLiteral("a")), QString());
}

void ProjectFolderTest::refusedNames_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name :
         {"", "1st", "a b", "a/b", "..", "检测", "taken", "x_code", "x_mp", "x_log"})
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
