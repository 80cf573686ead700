#include "workbench/ProjectFolder.h"

#include "base/file_writing.h"
#include "tests/support/folders.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

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
    const auto complaint = [](const QString& path) { return ProjectFolder(path).complaint(); };
    QCOMPARE(complaint(folder.path()), QString());
    const QString missing = folder.filePath(text("missing"));
    QVERIFY(complaint(missing).contains(missing));
    QVERIFY(test_support::putFile(missing, "a file"));
    QVERIFY(complaint(missing).contains(missing));
    const auto rights = QFile::permissions(folder.path());
    QVERIFY(QFile::setPermissions(folder.path(), QFile::Permissions()));
    if (!QFileInfo(folder.path()).isReadable()) // a superuser reads every folder
        QVERIFY(complaint(folder.path()).contains(text("无法读取")));
    QVERIFY(QFile::setPermissions(folder.path(), rights));
}

void ProjectFolderTest::createRenameRemove()
{
    QTemporaryDir folder;
    const ProjectFolder project(folder.path() + QLatin1Char('/'));
    const QString first = text("first");
    const QString second = text("second");
    QCOMPARE(project.createApplet(first), QString());
    QVERIFY(QDir().mkpath(folder.filePath(text("CApplet/first_code"))));
    const auto record = [&folder](const QString& applet) {
        return folder.filePath(text("CApplet/%1_log/20240101-120000-000.log").arg(applet));
    };
    QVERIFY(QDir().mkpath(QFileInfo(record(first)).path()));
    QVERIFY(test_support::putFile(record(first), "x"));
    QCOMPARE(project.applets(), QStringList{first});
    QCOMPARE(project.renameApplet(first, second), QString());
    QCOMPARE(project.applets(), QStringList{second});
    QVERIFY(!QFileInfo::exists(folder.filePath(text("CApplet/first_code"))));
    QVERIFY(!QFileInfo::exists(record(first)) && QFileInfo::exists(record(second)));
    QVERIFY(!project.renameApplet(first, text("third")).isEmpty());
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
            const QString applet = text(name);
            QVERIFY(isRenamed ? project.renameApplet(applet, applet + u'2').isEmpty()
                              : project.removeApplet(applet).isEmpty());
        };
        const auto path = [&](const QString& name) {
            return folder.filePath(text("CApplet/") + name);
        };
        const auto put = [&](const QStringList& names) {
            for (const QString& name : names)
                QVERIFY(test_support::putFile(path(name), "x"));
        };
        const QStringList made = lines("a_code/made.cpp\na_mp/a.mp\na_mp/a.mp.new") +
                                 QStringList{text("a_code/objects/%1.o").arg(QString(64, u'0'))};
        const QStringList foreign = lines("a_code/helper.h\na_code/objects/mine.o\na_mp/notes.txt");
        const QStringList neighbours =
            lines("b_code/processInfo.pedt\nb_code/made.cpp\nb_mp/processInfo.pedt\nb_mp/b.mp\n"
                  "b_log/processInfo.pedt\nb_log/20240101-120000-000.log");
        for (const char* name : {"a", "b"})
            QCOMPARE(project.createApplet(text(name)), QString());
        for (const char* name : {"a_code/objects", "a_mp", "b_code", "b_mp", "b_log"})
            QVERIFY(QDir().mkpath(path(text(name))));
        put(made + foreign + neighbours);
        for (const char* name : {"a_code", "b_code"})
            QVERIFY(test_support::putFile(path(text(name) + text("/generated_files.txt")),
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
    const QString orderFile = folder.filePath(text("project.json"));
    const auto order = [&project] { return project.applets().join(u' '); };
    for (const char* name : {"c", "a", "b"})
        QCOMPARE(project.createApplet(text(name)), QString());
    QCOMPARE(order(), text("c a b"));
    QCOMPARE(project.renameApplet(text("a"), text("z")), QString());
    QCOMPARE(order(), text("c z b"));
    QCOMPARE(project.removeApplet(text("c")), QString());
    QCOMPARE(order(), text("z b"));

    // What else the file holds stays; a damaged file costs the order and nothing else.
    QVERIFY(test_support::putFile(orderFile,
                                  R"({"title": 9007199254740993, "applets": ["b", "gone"]})"));
    QCOMPARE(order(), text("b z"));
    QCOMPARE(project.createApplet(text("a")), QString());
    QCOMPARE(order(), text("b z a"));
    using test_support::content;
    QVERIFY2(content(orderFile).contains("\"title\": 9007199254740993"), content(orderFile));
    QVERIFY(test_support::putFile(orderFile, "{"));
    QCOMPARE(order(), text("a b z"));
    // Kept before it is replaced.
    QCOMPARE(project.renameApplet(text("a"), text("y")), QString());
    QCOMPARE(order(), text("y b z"));
    QCOMPARE(content(orderFile + text(".damaged")), QByteArray("{"));
}

void ProjectFolderTest::aFailureLeavesTheNameFree()
{
    QTemporaryDir folder;
    const ProjectFolder project(folder.path());
    file_writing::setFault([](file_writing::Step, const QString&) { return true; });
    const QString complaint = project.createApplet(text("a"));
    file_writing::setFault({});
    QVERIFY(!complaint.isEmpty());
    QCOMPARE(project.createApplet(text("a")), QString());
}

void ProjectFolderTest::refusedNames()
{
    QTemporaryDir folder;
    const ProjectFolder project(folder.path());
    QCOMPARE(project.createApplet(text("taken")), QString());
    QCOMPARE(project.createApplet(text("other")), QString());
    for (const char* name :
         {"", "1st", "a b", "a/b", "..", "检测", "taken", "x_code", "x_mp", "x_log"}) {
        const rows::Named named(name);
        QVERIFY(!project.createApplet(text(name)).isEmpty());
        QVERIFY(!project.renameApplet(text("other"), text(name)).isEmpty());
    }
    QCOMPARE(project.applets(), QStringList({text("taken"), text("other")}));
}

void ProjectFolderTest::onlyFoldersWithADocumentAreApplets()
{
    QTemporaryDir folder;
    const ProjectFolder project(folder.path());
    for (const char* name : {"empty", "old", "x_mp"})
        QVERIFY(QDir().mkpath(project.appletFolder(text(name))));
    QVERIFY(
        test_support::putFile(project.appletFolder(text("old")) + text("logicview.json"), "{}"));
    QCOMPARE(project.applets(), QStringList{text("old")});
}

void ProjectFolderTest::lastAppletIsKeptByProject()
{
    QTemporaryDir one;
    QTemporaryDir other;
    ProjectFolder(one.path()).setLastApplet(text("a"));
    QCOMPARE(ProjectFolder(one.path()).lastApplet(), text("a"));
    QVERIFY(ProjectFolder(other.path()).lastApplet().isEmpty());
}

PE_TEST("project_folder_test", ProjectFolderTest)
#include "project_folder_test.moc"
