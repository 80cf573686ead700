#include "shell/ProcessEditWidget.h"

#include "model/dialogs/user_dialogs.h"
#include "model/process_blocks.h"
#include "model/services/host.h"
#include "shell/bridge/LogicMaster.h"
#include "shell/bridge/ProcessEditNotifyTool.h"
#include "shell/documents/applet_documents.h"
#include "shell/run/ProcessEditToolBar.h"
#include "standalone/host/Host.h"
#include "standalone/runtime/runtime.h"
#include "tests/shell/EditorRecorder.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/folders.h"
#include "tests/support/ordinary_user.h"
#include "tests/support/test_program.h"

#include <QtTest>

namespace processedit = sdk_ui_interface::processedit;
using test_support::OrdinaryUser;

// Disks, folders and other programs that do what they shouldn't, under an open editor.
class StorageFailuresTest : public QObject
{
    Q_OBJECT
private slots:
    void init();
    void cleanup();
    void cleanupTestCase() { standalone::shutdownRuntime(); }
    void askedForWritePermission_data();
    void askedForWritePermission();
    void folderWithoutPermission();
    void fullDisk_data();
    void fullDisk();
    void deletedUnderTheEditor();
    void replacedUnderTheEditor();
    void othersAreNotReplacedUnasked_data();
    void othersAreNotReplacedUnasked();
    void unloadedAppletNeverEmptiesAFile();
    void copyElsewhereHasItsBackupThere();
    void appletWithoutPathsIsRefused();
    void projectClosedDuringACompile();
    void destroyed_data();
    void destroyed();

private:
    QString folder() const { return m_folder->path() + QLatin1Char('/'); }
    QString document() const { return folder() + QStringLiteral("processInfo.pedt"); }
    QByteArray content(const QString& file) const;
    void changeStep(const char* name);

    static constexpr int Patience = 60000;
    const QString m_name = QStringLiteral("fails");
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ProcessEditWidget> m_editor;
    std::unique_ptr<EditorRecorder> m_record;
    std::shared_ptr<StatementProcessBlock> m_step;
    QStringList m_dialogs;
    QStringList m_log;
    user_dialogs::Button m_answer = user_dialogs::Button::Ok;
};

void StorageFailuresTest::init()
{
    m_dialogs.clear();
    m_log.clear();
    m_answer = user_dialogs::Button::Ok;
    user_dialogs::setHandler([this](const user_dialogs::Message& message) {
        m_dialogs << message.title + QLatin1Char(':') + message.text;
        return user_dialogs::Answer{m_answer, QString()};
    });
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(OrdinaryUser::own(m_folder->path()));
    standalone::Host::instance().setProjectPath(m_folder->path());
    connect(&standalone::Host::instance(), &standalone::Host::errorLogged, this,
            [this](const QString& text) { m_log << text; });
    m_editor = std::make_unique<ProcessEditWidget>(QStringLiteral("Test"));
    m_editor->createCApplet(m_name);
    m_editor->setProcessJsonAndVciPath(folder(), folder());
    m_editor->load(false);
    m_step = applet_fixture::addStep<StatementProcessBlock>(
        m_name, m_editor->getCurrentShowSequenceId(), QStringLiteral("1"), step_type::Statement,
        "first");
    m_editor->loadDataToUI(m_name, false);
    m_record = std::make_unique<EditorRecorder>(m_editor.get());
}

void StorageFailuresTest::cleanup()
{
    standalone::Host::instance().disconnect(this);
    m_record.reset();
    m_editor.reset();
    ProcessEditWidget::deleteCApplet(m_name, true);
    user_dialogs::setHandler({});
}

QByteArray StorageFailuresTest::content(const QString& file) const
{
    QFile opened(file);
    return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray();
}

void StorageFailuresTest::changeStep(const char* name)
{
    m_step->name = name;
    processedit::updateProcess(m_name, m_editor->getCurrentShowSequenceId(), m_step);
}

void StorageFailuresTest::askedForWritePermission_data()
{
    QTest::addColumn<QString>("project"); // empty: the user's own, read-only
    QTest::addColumn<bool>("isConfirmed");
    QTest::addColumn<QStringList>("dialogs");
    QTest::addColumn<bool>("isSaved");
    const QString ask = QStringLiteral("提示:文件夹无写入权限，是否设置文件夹写入权限");
    QTest::newRow("declined") << QString() << false << QStringList{ask} << false;
    QTest::newRow("granted") << QString() << true
                             << QStringList{ask, QStringLiteral("提示:设置文件夹写入权限成功")}
                             << true;
    QTest::newRow("not to be had")
        << QStringLiteral("/usr") << true
        << QStringList{ask, QStringLiteral("警告:当前用户无法设置文件夹写入权限，设置失败")}
        << false;
}

void StorageFailuresTest::askedForWritePermission()
{
    QFETCH(QString, project);
    QFETCH(bool, isConfirmed);
    m_answer = isConfirmed ? user_dialogs::Button::Ok : user_dialogs::Button::Cancel;
    if (!project.isEmpty())
        standalone::Host::instance().setProjectPath(project);
    else
        QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::ExeOwner));
    {
        const OrdinaryUser user;
        QVERIFY(user.isOrdinary());
        m_editor->onToolWidgetButtonClickedSlot(ProcessEditToolBar::Save);
    }
    QTEST(m_dialogs, "dialogs");
    QTEST(QFile::exists(document()), "isSaved");
    QTEST(QFile::exists(folder() + QStringLiteral("globalVariable.json")), "isSaved");
    QTEST(QFile::exists(folder() + QStringLiteral("quickStep.json")), "isSaved");
}

void StorageFailuresTest::folderWithoutPermission()
{
    m_editor->save(QString());
    const QByteArray before = content(document());
    changeStep("second");
    QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::ExeOwner));
    m_record->take();
    {
        const OrdinaryUser user;
        m_editor->save(QString());
        QCOMPARE(m_record->take(), QStringList{QStringLiteral("sigSave [idle]")});
        QVERIFY(!m_editor->saveApp(m_name, false, QString()));
    }
    QCOMPARE(m_log,
             QStringList{QStringLiteral("[流程编辑] 无法写入 processInfo.pedt: ") + document()});
    QCOMPARE(content(document()), before);
    QVERIFY(QFile::setPermissions(m_folder->path(),
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    m_editor->save(QString());
    QVERIFY(content(document()).contains("second"));
}

void StorageFailuresTest::fullDisk_data()
{
    QTest::addColumn<int>("room");
    QTest::addColumn<bool>("isReplaced"); // by another program, before
    QTest::newRow("for half of it") << 50000 << false;
    QTest::newRow("for nothing") << 10 << false;
    QTest::newRow("not for the other's copy") << 10 << true;
}

void StorageFailuresTest::fullDisk()
{
    QFETCH(int, room);
    QFETCH(bool, isReplaced);
    m_editor->save(QString());
    const QByteArray backup = content(document());
    if (isReplaced)
        QVERIFY(test_support::putFile(document(), "{\"logicview\":{}, \"other\": 1}"));
    const QByteArray before = content(document());
    m_step->setCustomCode(std::string(room > 10 ? 100000 : 1, 'x'));
    changeStep("second");
    m_record->take();
    {
        const test_support::FullDisk disk{rlim_t(room)};
        m_editor->save(QString());
    }
    QCOMPARE(m_record->take(), QStringList{QStringLiteral("sigSave [idle]")});
    QCOMPARE(content(document()), before);
    QCOMPARE(content(document() + QStringLiteral(".bak")), backup);
    QCOMPARE(QDir(folder()).entryList(QDir::Files).size(), 2);
    QCOMPARE(m_log.filter(QStringLiteral("其内容无法另存")).size(), isReplaced ? 1 : 0);
}

void StorageFailuresTest::deletedUnderTheEditor()
{
    m_editor->save(QString());
    QVERIFY(QFile::remove(document()));
    m_editor->save(QString());
    QVERIFY(content(document()).contains("first"));
    // The whole folder: that can be told, and put right.
    QVERIFY(QDir(folder()).removeRecursively());
    m_record->take();
    m_editor->save(QString());
    QCOMPARE(m_record->take(), QStringList{QStringLiteral("sigSave [idle]")});
    QVERIFY(QDir().mkpath(folder()));
    m_editor->save(QString());
    QVERIFY(content(document()).contains("first"));
}

void StorageFailuresTest::replacedUnderTheEditor()
{
    m_editor->save(QString());
    QVERIFY(test_support::putFile(document(), "{\"logicview\":{}, \"other\": 1}"));
    m_editor->save(QString());
    QVERIFY(content(document()).contains("first"));
    QCOMPARE(content(document() + QStringLiteral(".replaced")),
             QByteArray("{\"logicview\":{}, \"other\": 1}"));
    QCOMPARE(m_log.size(), 1);
    // Its own writing and reading is nobody else's.
    m_editor->save(QString());
    m_editor->load(false);
    m_editor->save(QString());
    QVERIFY(!QFile::exists(document() + QStringLiteral(".replaced2")));
}

void StorageFailuresTest::othersAreNotReplacedUnasked_data()
{
    QTest::addColumn<bool>("wasThere");
    QTest::newRow("changed") << true;
    QTest::newRow("made") << false;
}

void StorageFailuresTest::othersAreNotReplacedUnasked()
{
    QFETCH(bool, wasThere);
    m_editor->setReplacesOthers(false);
    if (wasThere)
        m_editor->save(QString());
    const QByteArray theirs = "{\"logicview\":{}, \"other\": 1}";
    QVERIFY(test_support::putFile(document(), theirs));
    m_record->take();
    m_editor->save(QString());
    QCOMPARE(m_record->take(), QStringList{QStringLiteral("sigSave [idle]")});
    QVERIFY(!m_editor->saveApp(m_name, false, QString()));
    QCOMPARE(content(document()), theirs);
    QVERIFY(!QFile::exists(document() + QStringLiteral(".replaced")));
    // Where a copy goes has been asked for.
    const QString copy = folder() + QStringLiteral("copy.pedt");
    for (int round = 0; round < 2; ++round) {
        QVERIFY(m_editor->saveApp(m_name, false, copy));
        QVERIFY(test_support::putFile(copy, theirs));
    }

    QVERIFY(applet_documents::mayBeReplaced(document()));
    QCOMPARE(content(document() + QStringLiteral(".replaced")), theirs);
    m_editor->save(QString());
    QVERIFY(content(document()).contains("first"));
}

void StorageFailuresTest::unloadedAppletNeverEmptiesAFile()
{
    m_editor->save(QString());
    const QByteArray before = content(document());
    m_editor->clearCAppletData(true, true);
    m_record->take();
    m_editor->save(QString());
    QCOMPARE(m_record->take(), QStringList{QStringLiteral("sigSave [idle]")});
    QVERIFY(!m_editor->saveApp(m_name, true, QString()));
    QCOMPARE(content(document()), before);
    m_editor->load(false);
    QCOMPARE(int(processedit::getAllSequenceByAppName(m_name).size()), 1);
}

void StorageFailuresTest::copyElsewhereHasItsBackupThere()
{
    QVERIFY(QDir(folder()).mkdir(QStringLiteral("copy")));
    m_editor->save(folder() + QStringLiteral("copy/mine.pedt"));
    QVERIFY(!QFile::exists(document()));
    QCOMPARE(content(folder() + QStringLiteral("copy/processInfo.pedt.bak")),
             content(folder() + QStringLiteral("copy/mine.pedt")));
    // The other way keeps no backup there, and the first one at home.
    QVERIFY(m_editor->saveApp(m_name, false, folder() + QStringLiteral("other.pedt")));
    QVERIFY(!QFile::exists(document() + QStringLiteral(".bak")));
    QVERIFY(m_editor->saveApp(m_name, false, QString()));
    const QByteArray first = content(document() + QStringLiteral(".bak"));
    changeStep("second");
    QVERIFY(m_editor->saveApp(m_name, false, QString()));
    QCOMPARE(content(document() + QStringLiteral(".bak")), first);
    // Emptied, it never becomes the backup.
    m_editor->clearCurrentShowSequenceData();
    m_editor->save(QString());
    QVERIFY(!content(document()).contains("second"));
    QCOMPARE(content(document() + QStringLiteral(".bak")), first);
}

void StorageFailuresTest::appletWithoutPathsIsRefused()
{
    const QString name = QStringLiteral("nowhere");
    QVERIFY(ProcessEditWidget::createAppletShell(name));
    processedit::createSeuqence(name, QStringLiteral("Sequence_0"));
    QVERIFY(!m_editor->saveApp(name, false, QString()));
    QVERIFY(!m_editor->saveApp(QString(), false, QString()));
    QVERIFY(!m_record->has("sigSave"));
    QVERIFY(!QFile::exists(QStringLiteral("processInfo.pedt")));
    ProcessEditWidget::deleteCApplet(name, true);
}

void StorageFailuresTest::projectClosedDuringACompile()
{
    m_editor->onToolWidgetButtonClickedSlot(ProcessEditToolBar::RunMain);
    QVERIFY(m_record->has("compileStart"));
    standalone::Host::instance().setProjectPath(QString());
    ProcessEditWidget::clearVarWidget();
    ProcessEditWidget::clearUDSVarInfo();
    ProcessEditWidget::clearUniversalPanelBindInfo();
    ProcessEditWidget::clearTransVciThread();
    QTRY_VERIFY_WITH_TIMEOUT(m_record->has("finished"), Patience);
    QCOMPARE(m_record->toolBar(), QStringLiteral("idle"));
    QVERIFY(content(document()).contains("first"));
    QVERIFY2(m_record->lines.at(m_record->lines.size() - 2).contains(QStringLiteral("运行失败")),
             qPrintable(m_record->lines.join(QLatin1Char('\n'))));
}

void StorageFailuresTest::destroyed_data()
{
    QTest::addColumn<QString>("moment");
    QTest::addColumn<bool>("outlives");
    for (const char* moment : {"compile", "run", "after"}) {
        for (const bool outlives : {false, true})
            QTest::addRow("%s, the applet %s", moment, outlives ? "stays" : "goes")
                << QString::fromLatin1(moment) << outlives;
    }
}

// Nothing of a compile or a run may reach an editor that is gone, and another one can go on.
void StorageFailuresTest::destroyed()
{
    QFETCH(QString, moment);
    QFETCH(bool, outlives);
    m_step->setCustomCode(moment == QLatin1String("run") ? "while (true) {}" : "log_info(\"x\");");
    changeStep("first");
    m_editor->save(QString());
    m_editor->setProcessEditReset(!outlives);
    QSignalSpy compiled(LogicMaster::instance(), &LogicMaster::NotifyCompileResultSig);
    QSignalSpy ended(LogicMaster::instance(), &LogicMaster::NotifyRunResultSig);
    m_editor->onToolWidgetButtonClickedSlot(ProcessEditToolBar::RunMain);
    if (moment == QLatin1String("run"))
        QTRY_COMPARE_WITH_TIMEOUT(m_record->toolBar(), QStringLiteral("running"), Patience);
    if (moment == QLatin1String("after")) {
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
    if (outlives && moment == QLatin1String("run"))
        processedit::stopCApplet(m_name, false);
    if (moment == QLatin1String("compile"))
        QTRY_COMPARE_WITH_TIMEOUT(compiled.count(), 1, Patience);
    else
        QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 1, Patience);
    QCOMPARE(processedit::getCAppletDataIsExist(m_name), outlives);

    m_editor = std::make_unique<ProcessEditWidget>(QStringLiteral("Test"));
    m_editor->createCApplet(m_name);
    m_editor->setProcessJsonAndVciPath(folder(), folder());
    m_editor->load(false);
    m_record = std::make_unique<EditorRecorder>(m_editor.get());
    QCOMPARE(
        int(processedit::getProcessListBySequenceID(m_name, m_editor->getCurrentShowSequenceId())
                .size()),
        1);
    m_editor->onToolWidgetButtonClickedSlot(ProcessEditToolBar::Compile);
    QTRY_VERIFY_WITH_TIMEOUT(m_record->has("finished 1"), Patience);
    QCOMPARE(m_record->count("runStart"), 0);
}

PE_WIDGET_TEST("storage_failures_test", StorageFailuresTest)
#include "storage_failures_test.moc"
