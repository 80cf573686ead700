#include "shell/bridge/LogicMaster.h"
#include "shell/documents/AppletStorage.h"

#include "model/process_blocks.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/folders.h"
#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QElapsedTimer>
#include <QtTest>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>

namespace processedit = sdk_ui_interface::processedit;

// A process that is killed at any moment of a save leaves the old document or the new one.
class SaveKilledTest : public QObject
{
    Q_OBJECT
private slots:
    void save_killed();

private:
    void makeApplet();
    void rename(int generation);
    QByteArray content(const char* name) const
    {
        return test_support::content(m_folder.filePath(text(name)));
    }
    qint64 saveInChild(int microseconds) const;

    static constexpr int Saves = 1000;
    static constexpr int Steps = 400;
    const QString m_name = text("killed");
    QTemporaryDir m_folder;
    QString m_sequence;
    std::shared_ptr<IProcessBlock> m_step;
};

void SaveKilledTest::makeApplet()
{
    m_sequence = processedit::createSeuqence(m_name, text("main_seq"));
    for (int index = 0; index < Steps; ++index)
        m_step = applet_fixture::addStep<DelayProcessBlock>(m_name, m_sequence, text("1"),
                                                            step_type::Delay, "等待");
    LogicMaster::instance()->setPaths(m_name, m_folder.path() + QLatin1Char('/'), QString());
}

void SaveKilledTest::rename(int generation)
{
    m_step->name = "generation " + std::to_string(generation);
    processedit::updateProcess(m_name, m_sequence, m_step);
}

// Saves in a process of its own and kills it after that time, unless it is done before; how long it
// took, in microseconds. A negative time lets it finish.
qint64 SaveKilledTest::saveInChild(int microseconds) const
{
    QElapsedTimer timer;
    timer.start();
    const pid_t child = fork();
    if (child == 0) {
        AppletStorage storage([] {}, nullptr);
        storage.setAppName(m_name);
        storage.save(QString());
        _exit(0);
    }
    if (microseconds >= 0) {
        usleep(static_cast<useconds_t>(microseconds));
        kill(child, SIGKILL);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return timer.nsecsElapsed() / 1000;
}

void SaveKilledTest::save_killed()
{
    applet_fixture::ScopedApplet applet(m_name);
    makeApplet();
    rename(0);
    saveInChild(-1);
    QByteArray document = content("processInfo.pedt");
    QVERIFY(document.contains("generation 0"));
    QCOMPARE(content("processInfo.pedt.bak"), document);

    std::mt19937 random(20240117);
    std::uniform_real_distribution<> moment(0.0, 2.0); // of what a whole save takes
    qint64 whole = 0;
    int completed = 0;
    int refreshed = 0;
    for (int generation = 1; generation <= Saves; ++generation) {
        // How long a save takes changes with what else the machine does.
        if (generation % 20 == 1) {
            whole = saveInChild(-1);
            document = content("processInfo.pedt");
        }
        rename(generation);
        const QByteArray backup = content("processInfo.pedt.bak");
        saveInChild(int(moment(random) * double(whole)));
        const QByteArray now = content("processInfo.pedt");
        const QByteArray nowBackup = content("processInfo.pedt.bak");
        const bool isNew = now.contains("generation " + QByteArray::number(generation) + "\"");
        QVERIFY2(isNew ? QJsonDocument::fromJson(now).isObject() : now == document,
                 qPrintable(text("save %1 left a broken document").arg(generation)));
        QVERIFY2(nowBackup == backup || (isNew && nowBackup == now),
                 qPrintable(text("save %1 left a broken backup").arg(generation)));
        completed += isNew;
        refreshed += nowBackup != backup;
        document = now;
    }
    qInfo("of %d saves %d replaced the document before the kill, %d the backup too", Saves,
          completed, refreshed);
    // Kills that all come too early or too late would say nothing.
    QVERIFY(completed > Saves / 50 && completed < Saves - Saves / 50);
}

PE_TEST("save_killed", SaveKilledTest)
#include "save_killed_test.moc"
