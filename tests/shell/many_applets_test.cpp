#include "tests/shell/EditorRecorder.h"

#include "model/process_blocks.h"
#include "shell/run/ProcessEditToolBar.h"
#include "standalone/host/Host.h"
#include "standalone/runtime/runtime.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/child_processes.h"
#include "tests/support/test_program.h"

#include <QtTest>

#include <map>

namespace processedit = sdk_ui_interface::processedit;

// A hundred applets, each in an editor of its own, compiled and run eight at a time.
class ManyAppletsTest : public QObject
{
    Q_OBJECT
private slots:
    void many_applets();

private:
    struct Bench
    {
        std::unique_ptr<ProcessEditWidget> editor;
        std::unique_ptr<EditorRecorder> heard;
    };
    Bench start(int number) const;
    QString nameOf(int number) const { return text("applet_%1").arg(number); }

    static constexpr int Applets = 100;
    static constexpr int AtATime = 8;
    static constexpr int Patience = 600000;
    QTemporaryDir m_project;
};

ManyAppletsTest::Bench ManyAppletsTest::start(int number) const
{
    const QString name = nameOf(number);
    const QString id = processedit::createSeuqence(name, text("main_seq"));
    auto step = applet_fixture::addStep<StatementProcessBlock>(name, id, text("1"),
                                                               step_type::Statement, "语句");
    step->setCustomCode("log_info(\"I am " + std::to_string(number) + "\");");
    processedit::updateProcess(name, id, step);

    Bench bench;
    bench.editor = std::make_unique<ProcessEditWidget>(text("Test"));
    bench.editor->createCApplet(name);
    const QString folder = m_project.path() + u'/' + name + u'/';
    QDir().mkpath(folder);
    bench.editor->setProcessJsonAndVciPath(folder, folder);
    bench.editor->loadDataToUI(name, false);
    bench.heard = std::make_unique<EditorRecorder>(bench.editor.get());
    bench.editor->onToolWidgetButtonClickedSlot(ProcessEditToolBar::RunMain);
    return bench;
}

void ManyAppletsTest::many_applets()
{
    standalone::Host::instance().setProjectPath(m_project.path());
    std::map<int, Bench> atWork;
    int started = 0;
    int done = 0;
    while (done < Applets) {
        while (started < Applets && atWork.size() < AtATime) {
            atWork.emplace(started, start(started));
            ++started;
        }
        const auto finished = [&atWork] {
            return std::find_if(atWork.begin(), atWork.end(), [](const auto& entry) {
                return entry.second.heard->has("runFinish");
            });
        };
        QTRY_VERIFY_WITH_TIMEOUT(finished() != atWork.end(), Patience);
        const auto bench = finished();
        const QStringList& lines = bench->second.heard->lines;
        const QString report = lines.join(u'\n');
        QVERIFY2(lines.contains(text("output 1 I am %1 [running]").arg(bench->first)),
                 qPrintable(report));
        // Its own words and end, each once, whatever the others do.
        for (const char* once : {"output 1 I am", "finished 1", "saved", "runFinish"})
            QCOMPARE(bench->second.heard->count(once), 1);
        QVERIFY2(report.contains(nameOf(bench->first) + text(" 运行结束")), qPrintable(report));
        atWork.erase(bench);
        ++done;
    }
    QTRY_VERIFY(test_support::childProcesses(QCoreApplication::applicationPid(), "applet_runner")
                    .isEmpty());
    standalone::shutdownRuntime();
}

PE_WIDGET_TEST("many_applets", ManyAppletsTest)
#include "many_applets_test.moc"
