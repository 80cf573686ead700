#include "tests/shell/EditorFixture.h"

#include "shell/bridge/ProcessEditNotifyTool.h"
#include "shell/documents/applet_documents.h"
#include "tests/support/child_processes.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/rows.h"
#include "tests/support/test_program.h"

#include <QtTest>

namespace processedit = sdk_ui_interface::processedit;
using test_support::OrdinaryUser;

// Disks, folders and other programs that do what they shouldn't, under an open editor.
class StorageFailuresTest : public EditorFixture
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void askedForWritePermission();
    void folderWithoutPermission();
    void fullDisk();
    void deletedUnderTheEditor();
    void replacedUnderTheEditor();
    void othersAreNotReplacedUnasked();
    void unloadedAppletNeverEmptiesAFile();
    void copyElsewhereHasItsBackupThere();
    void appletWithoutPathsIsRefused();
    void projectClosedDuringACompile();
    void destroyed_data();
    void destroyed();

private:
    void changeStep(const char* name);
    bool setWritable(bool isWritable) const
    {
        const auto rights = QFile::ReadOwner | QFile::ExeOwner;
        return QFile::setPermissions(m_folder->path(),
                                     isWritable ? rights | QFile::WriteOwner : rights);
    }
    /// Whether the editor's save is refused, which it says once.
    bool isRefused()
    {
        m_record->take();
        m_editor->save(QString());
        return m_record->take() == lines("sigSave [idle]");
    }

    const QByteArray m_theirs = "{\"logicview\":{}, \"other\": 1}"; ///< another program's document
    std::shared_ptr<StatementProcessBlock> m_step;
    QStringList m_log;
};

void StorageFailuresTest::init()
{
    openEditor();
    QVERIFY(OrdinaryUser::own(m_folder->path()));
    m_log.clear();
    connect(&standalone::Host::instance(), &standalone::Host::errorLogged, this,
            [this](const QString& said) { m_log << said; });
    m_step = addStatement(sequence(), "");
    changeStep("first");
    m_editor->loadDataToUI(m_name, false);
}

void StorageFailuresTest::cleanup()
{
    standalone::Host::instance().disconnect(this);
    closeEditor();
}

void StorageFailuresTest::changeStep(const char* name)
{
    m_step->name = name;
    processedit::updateProcess(m_name, sequence(), m_step);
}

void StorageFailuresTest::askedForWritePermission()
{
    const char* ask = "提示:文件夹无写入权限，是否设置文件夹写入权限\n";
    const rows::Table<QString, bool, QString, bool> table{
        {"declined", m_folder->path(), false, QString(), false},
        {"not to be had", text("/usr"), true, text("警告:当前用户无法设置文件夹写入权限，设置失败"),
         false},
        {"granted", m_folder->path(), true, text("提示:设置文件夹写入权限成功"), true}};
    QVERIFY(setWritable(false));
    for (const auto& [row, project, isConfirmed, answer, isSaved] : table) {
        const rows::Named named(row);
        standalone::Host::instance().setProjectPath(project);
        m_agrees = isConfirmed;
        m_dialogs.clear();
        {
            const OrdinaryUser user;
            QVERIFY(user.isOrdinary());
            press(ProcessEditToolBar::Save);
        }
        QCOMPARE(m_dialogs.join(u'\n'), QString(text(ask) + answer).trimmed());
        for (const char* file : {"processInfo.pedt", "globalVariable.json", "quickStep.json"})
            QCOMPARE(QFile::exists(folder() + text(file)), isSaved);
    }
}

void StorageFailuresTest::folderWithoutPermission()
{
    m_editor->save(QString());
    const QByteArray before = saved();
    changeStep("second");
    QVERIFY(setWritable(false));
    {
        const OrdinaryUser user;
        QVERIFY(isRefused());
        QVERIFY(!m_editor->saveApp(m_name, false, QString()));
    }
    QCOMPARE(m_record->take(), lines("sigSave [idle]"));
    QCOMPARE(m_log, QStringList{text("[流程编辑] 无法写入 processInfo.pedt: ") + document()});
    QCOMPARE(saved(), before);
    QVERIFY(setWritable(true));
    QVERIFY(!isRefused());
    QVERIFY(saved().contains("second"));
}

void StorageFailuresTest::fullDisk()
{
    m_editor->save(QString());
    const QByteArray backup = saved();
    const rows::Table<rlim_t, QByteArray> table{{"for half of it", 50000, backup},
                                                {"not for the other's copy", 10, m_theirs}};
    m_step->setCustomCode(std::string(100000, 'x'));
    changeStep("second");
    for (const auto& [row, room, before] : table) {
        const rows::Named named(row);
        QVERIFY(test_support::putFile(document(), before));
        {
            const test_support::FullDisk disk{room};
            QVERIFY(isRefused());
        }
        QCOMPARE(saved(), before);
        QCOMPARE(saved(".bak"), backup);
        QCOMPARE(QDir(folder()).entryList({text("processInfo*")}, QDir::Files).size(), 2);
        QCOMPARE(m_log.filter(text("其内容无法另存")).size(), before == m_theirs ? 1 : 0);
    }
}

void StorageFailuresTest::deletedUnderTheEditor()
{
    m_editor->save(QString());
    QVERIFY(QFile::remove(document()));
    m_editor->save(QString());
    QVERIFY(saved().contains("first"));
    // The whole folder: that can be told, and put right.
    QVERIFY(QDir(folder()).removeRecursively());
    QVERIFY(isRefused());
    QVERIFY(QDir().mkpath(folder()));
    m_editor->save(QString());
    QVERIFY(saved().contains("first"));
}

void StorageFailuresTest::replacedUnderTheEditor()
{
    m_editor->save(QString());
    QVERIFY(test_support::putFile(document(), m_theirs));
    m_editor->save(QString());
    QVERIFY(saved().contains("first"));
    QCOMPARE(saved(".replaced"), m_theirs);
    QCOMPARE(m_log.size(), 1);
    // Its own writing and reading is nobody else's.
    m_editor->save(QString());
    m_editor->load(false);
    m_editor->save(QString());
    QVERIFY(!QFile::exists(document() + text(".replaced2")));
}

void StorageFailuresTest::othersAreNotReplacedUnasked()
{
    m_editor->setReplacesOthers(false);
    for (const bool wasThere : {false, true}) {
        QVERIFY(QFile::remove(document()) == wasThere);
        m_editor->load(true);
        if (wasThere)
            m_editor->save(QString());
        QVERIFY(test_support::putFile(document(), m_theirs));
        QVERIFY(isRefused());
        QVERIFY(!m_editor->saveApp(m_name, false, QString()));
        QCOMPARE(saved(), m_theirs);
        QVERIFY(QFile::remove(document() + text(".replaced")) == wasThere);
        // Where a copy goes has been asked for.
        const QString copy = folder() + text("copy.pedt");
        for (int round = 0; round < 2; ++round) {
            QVERIFY(m_editor->saveApp(m_name, false, copy));
            QVERIFY(test_support::putFile(copy, m_theirs));
        }
        QVERIFY(applet_documents::mayBeReplaced(document()));
        QCOMPARE(saved(".replaced"), m_theirs);
        m_editor->save(QString());
        QVERIFY(saved().contains("first"));
    }
}

void StorageFailuresTest::unloadedAppletNeverEmptiesAFile()
{
    m_editor->save(QString());
    const QByteArray before = saved();
    m_editor->clearCAppletData(true, true);
    QVERIFY(isRefused());
    QVERIFY(!m_editor->saveApp(m_name, true, QString()));
    QCOMPARE(saved(), before);
    m_editor->load(false);
    QCOMPARE(int(processedit::getAllSequenceByAppName(m_name).size()), 1);
}

void StorageFailuresTest::copyElsewhereHasItsBackupThere()
{
    using test_support::content;
    QVERIFY(QDir(folder()).mkdir(text("copy")));
    m_editor->save(folder() + text("copy/mine.pedt"));
    QVERIFY(!QFile::exists(document()));
    QCOMPARE(content(folder() + text("copy/processInfo.pedt.bak")),
             content(folder() + text("copy/mine.pedt")));
    // The other way keeps no backup there, and the first one at home.
    QVERIFY(m_editor->saveApp(m_name, false, folder() + text("other.pedt")));
    QVERIFY(!QFile::exists(document() + text(".bak")));
    QVERIFY(m_editor->saveApp(m_name, false, QString()));
    const QByteArray first = saved(".bak");
    changeStep("second");
    QVERIFY(m_editor->saveApp(m_name, false, QString()));
    QCOMPARE(saved(".bak"), first);
    // Emptied, it never becomes the backup.
    m_editor->clearCurrentShowSequenceData();
    m_editor->save(QString());
    QVERIFY(!saved().contains("second"));
    QCOMPARE(saved(".bak"), first);
}

void StorageFailuresTest::appletWithoutPathsIsRefused()
{
    const QString name = text("nowhere");
    QVERIFY(ProcessEditWidget::createAppletShell(name));
    processedit::createSeuqence(name, text("Sequence_0"));
    QVERIFY(!m_editor->saveApp(name, false, QString()));
    QVERIFY(!m_editor->saveApp(QString(), false, QString()));
    QVERIFY(!m_record->has("sigSave"));
    QVERIFY(!QFile::exists(text("processInfo.pedt")));
    ProcessEditWidget::deleteCApplet(name, true);
}

void StorageFailuresTest::projectClosedDuringACompile()
{
    press(ProcessEditToolBar::RunMain);
    QVERIFY(m_record->has("compileStart"));
    standalone::Host::instance().setProjectPath(QString());
    ProcessEditWidget::clearVarWidget();
    ProcessEditWidget::clearUDSVarInfo();
    ProcessEditWidget::clearUniversalPanelBindInfo();
    ProcessEditWidget::clearTransVciThread();
    QTRY_VERIFY_WITH_TIMEOUT(m_record->has("finished"), Patience);
    QCOMPARE(m_record->toolBar(), text("idle"));
    QVERIFY(saved().contains("first"));
    QVERIFY2(m_record->lines.at(m_record->lines.size() - 2).contains(text("运行失败")),
             qPrintable(m_record->lines.join(u'\n')));
}

void StorageFailuresTest::destroyed_data()
{
    QTest::addColumn<QString>("moment");
    QTest::addColumn<bool>("outlives");
    for (const char* moment : {"compile", "run", "after"}) {
        for (const bool outlives : {false, true})
            QTest::addRow("%s, the applet %s", moment, outlives ? "stays" : "goes")
                << text(moment) << outlives;
    }
}

// Nothing of a compile or a run may reach an editor that is gone, and another one can go on.
void StorageFailuresTest::destroyed()
{
    QFETCH(QString, moment);
    QFETCH(bool, outlives);
    setCode(sequence(), m_step, moment == text("run") ? "while (true) {}" : "log_info(\"x\");");
    m_editor->save(QString());
    m_editor->setProcessEditReset(!outlives);
    QSignalSpy compiled(LogicMaster::instance(), &LogicMaster::NotifyCompileResultSig);
    QSignalSpy ended(LogicMaster::instance(), &LogicMaster::NotifyRunResultSig);
    press(ProcessEditToolBar::RunMain);
    if (moment == text("run"))
        QTRY_COMPARE_WITH_TIMEOUT(m_record->toolBar(), text("running"), Patience);
    if (moment == text("after")) {
        // The runner has told its end, and the 100 ms have begun.
        bool hasEnded = false;
        connect(
            ProcessEditNotifyTool::instance(), &ProcessEditNotifyTool::runFinishSignal, this,
            [&hasEnded] { hasEnded = true; }, Qt::QueuedConnection);
        while (!hasEnded)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        ProcessEditNotifyTool::instance()->disconnect(this);
    }
    m_record.reset();
    m_editor.reset();
    if (outlives && moment == text("run"))
        processedit::stopCApplet(m_name, false);
    QTRY_COMPARE_WITH_TIMEOUT((moment == text("compile") ? compiled : ended).count(), 1, Patience);
    QCOMPARE(processedit::getCAppletDataIsExist(m_name), outlives);
    QCOMPARE(ProcessEditWidget::appletJsonPath(m_name), outlives ? folder() : QString());
    QTRY_VERIFY_WITH_TIMEOUT(
        test_support::childProcesses(QCoreApplication::applicationPid(), "applet_runner").isEmpty(),
        Patience);

    m_editor = makeEditor();
    m_record = std::make_unique<EditorRecorder>(m_editor.get());
    QCOMPARE(int(processedit::getProcessListBySequenceID(m_name, sequence()).size()), 1);
    press(ProcessEditToolBar::Compile);
    QTRY_VERIFY_WITH_TIMEOUT(m_record->has("finished 1"), Patience);
    QCOMPARE(m_record->count("runStart"), 0);
}

PE_WIDGET_TEST("storage_failures_test", StorageFailuresTest)
#include "storage_failures_test.moc"
