#include "logic/LogicView.h"
#include "logic/logic_roles.h"
#include "model/process_blocks.h"
#include "model/services/processedit.h"
#include "shell/ProcessEditToolBar.h"
#include "shell/ProcessEditWidget.h"
#include "tests/support/folders.h"
#include "tests/support/test_program.h"
#include "workbench/MainWindow.h"
#include "workbench/OutputPane.h"

#include <QDockWidget>
#include <QLabel>
#include <QSettings>
#include <QTextBlock>
#include <QTreeView>
#include <QtTest>

namespace processedit = sdk_ui_interface::processedit;

/// Errors of a compile as the user meets them: lines in the output, and the way back to the steps.
class OutputPaneTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void errorsLeadToTheirSteps();

private:
    void breakStep(const char* sequence, const char* step, const char* code) const;

    const QString m_app = QStringLiteral("ecu_check");
};

void OutputPaneTest::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication::setOrganizationName(QStringLiteral("process-edit-test"));
    QCoreApplication::setApplicationName(QStringLiteral("output_pane_test"));
    QSettings().clear();
}

void OutputPaneTest::breakStep(const char* sequence, const char* step, const char* code) const
{
    const auto block = std::dynamic_pointer_cast<StatementProcessBlock>(
        processedit::getProcess(m_app, QString::fromLatin1(step)));
    QVERIFY(block);
    block->setCustomCode(code);
    processedit::updateProcess(m_app, QString::fromLatin1(sequence), block);
}

void OutputPaneTest::errorsLeadToTheirSteps()
{
    const char* identity = "3c918c23-f0ae-4069-98f8-309fc57353bd";
    const char* answered = "3aa0b717-6e3c-4922-8bf9-ed99e1b50530"; // three rows deep
    const char* calibration = "c9a1b9c6-f144-4e76-9caa-4e4cb25356a1";
    const char* checksum = "714a2d60-e024-4236-a07b-e97dbad85926";
    QTemporaryDir folder;
    QVERIFY(test_support::copyFolder(QStringLiteral(PE_EXAMPLE), folder.path()));
    MainWindow window;
    window.openProject(ProjectFolder(folder.path()));
    window.openApplet(m_app);
    window.show();
    breakStep(identity, answered, "int n = 1;\nqzqzq(n);");
    breakStep(calibration, checksum, "if (qz2) {\n}\n");

    QSignalSpy finished(&window, &MainWindow::attemptFinished);
    window.editor()->onToolWidgetButtonClickedSlot(ProcessEditToolBar::Compile);
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, 60000);
    QCOMPARE(finished[0][0].toBool(), false);
    QCOMPARE(window.findChild<QLabel*>(QStringLiteral("activity"))->text(),
             QStringLiteral("编译失败"));

    auto* pane = qobject_cast<OutputPane*>(
        window.findChild<QDockWidget*>(QStringLiteral("outputDock"))->widget());
    const QStringList lines = pane->toPlainText().split(QLatin1Char('\n'));
    const QString first =
        QStringLiteral("出错步骤: 序列“read_identity”, 步骤“收到应答”, 语句第 2 行: "
                       "‘qzqzq’ was not declared in this scope");
    const int at =
        lines.indexOf(QRegularExpression(QStringLiteral("\\d\\d:\\d\\d:\\d\\d  ") + first));
    QVERIFY2(at >= 0, qPrintable(lines.join(QLatin1Char('\n'))));
    QVERIFY(lines[at + 1].startsWith(
        QStringLiteral("出错步骤: 序列“check_calibration”, 步骤“计算校验和”, 语句第 1 行: ‘qz2’")));

    const auto doubleClick = [pane](int line) {
        const QTextCursor cursor(pane->document()->findBlockByNumber(line));
        pane->setTextCursor(cursor);
        const QPoint spot = pane->cursorRect(cursor).center() + QPoint(4, 0);
        QTest::mouseDClick(pane->viewport(), Qt::LeftButton, {}, spot);
    };
    auto* view = window.editor()->findChild<LogicView*>();
    auto* tree = view->findChild<QTreeView*>(QStringLiteral("treeView"));
    const auto shows = [&](const char* sequence, const char* step) {
        const QModelIndex row = tree->currentIndex();
        return view->currentSequenceId() == QLatin1String(sequence) &&
               row.data(logic_roles::BlockUuid) == QLatin1String(step) &&
               tree->viewport()->rect().contains(tree->visualRect(row).center());
    };
    doubleClick(at);
    QVERIFY(shows(identity, answered));
    doubleClick(at + 1);
    QVERIFY(shows(calibration, checksum));
    // The compiler's own lines lead nowhere.
    doubleClick(at + 2);
    QVERIFY(shows(calibration, checksum));
    // A step that went in the meantime is no harm.
    processedit::removeProcess(m_app, QLatin1String(identity), QLatin1String(answered));
    view->addNewModelSlot(QLatin1String(identity));
    doubleClick(at);
    QCOMPARE(view->currentSequenceId(), QLatin1String(identity));
}

PE_WIDGET_TEST("output_pane_test", OutputPaneTest)
#include "output_pane_test.moc"
