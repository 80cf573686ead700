// From an empty project to a finished run, by mouse and keyboard alone.
//
// With COMPOSE_PICTURES set to a folder, the window is pictured there at each station; with
// COMPOSE_DARK set, in a dark palette.

#include "tests/workbench/WorkbenchFixture.h"

#include "model/colour_rules.h"
#include "shell/ProcessEditWidget.h"
#include "tests/support/print_tree.h"
#include "tests/support/test_program.h"

#include <QApplication>
#include <QDir>
#include <QDockWidget>
#include <QLabel>
#include <QPainter>
#include <QTableView>
#include <QTreeView>
#include <QtTest>

namespace {

QString rowsOf(const QAbstractItemView* view, const QList<int>& columns)
{
    return view->model() ? test_support::printTree(*view->model(), columns).join(u'\n') : QString();
}

QStringList stepNames(const QAbstractItemView* view)
{
    QStringList names = test_support::printTree(*view->model());
    return names.replaceInStrings(QRegularExpression(text("\\[.\\] ")), QString());
}

QPalette darkPalette()
{
    QPalette palette(QColor(53, 53, 53)); // texts, frames and what is disabled follow from it
    palette.setColor(QPalette::Base, QColor(35, 35, 35));
    palette.setColor(QPalette::Disabled, QPalette::Base, QColor(45, 45, 45));
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(120, 120, 120));
    return colour_rules::withPlaceholders(palette);
}

/// Paints a dialog into the picture of the window below it, as the screen shows both.
QPixmap picture(QWidget& window, QWidget* dialog = nullptr)
{
    QPixmap whole = window.grab();
    if (dialog) {
        const QPixmap part = dialog->grab();
        QPainter painter(&whole);
        const QPoint corner((whole.width() - part.width()) / 2,
                            (whole.height() - part.height()) / 3);
        painter.fillRect(QRect(corner, part.size()).adjusted(-1, -1, 1, 1), Qt::darkGray);
        painter.drawPixmap(corner, part);
    }
    return whole;
}

} // namespace

class ComposeFromNothingTest : public WorkbenchFixture
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void composeFromNothing();

private:
    void look(const char* station, QWidget* dialog = nullptr) const;
    void look(const char* station, const char* dock) const;
    void keep(const QPixmap& picture, const char* station) const;
    void composeSequences();
    void composeVariables();
    void composeMain();
    void composeSummary();
    void setUpGeneral();
    /// Everything that the window shows of the document, sequence by sequence.
    QString shownDocument();
    /// Steps of the run that are not shown as done.
    QStringList notGreen() const;
    /// The lines of output until what was pressed is over.
    QStringList outputOfIt();

    QStringList m_output;
};

void ComposeFromNothingTest::initTestCase()
{
    if (qEnvironmentVariableIsSet("COMPOSE_DARK"))
        QApplication::setPalette(darkPalette());
    WorkbenchFixture::initTestCase();
}

void ComposeFromNothingTest::init()
{
    WorkbenchFixture::init();
    m_project = path("line_4");
    QVERIFY(QDir().mkpath(m_project));
}

void ComposeFromNothingTest::look(const char* station, QWidget* dialog) const
{
    if (qEnvironmentVariableIsSet("COMPOSE_PICTURES"))
        keep(picture(*m_window, dialog), station);
}

void ComposeFromNothingTest::look(const char* station, const char* dock) const
{
    if (qEnvironmentVariableIsSet("COMPOSE_PICTURES"))
        keep(m_window->findChild<QDockWidget*>(text(dock))->grab(), station);
}

void ComposeFromNothingTest::keep(const QPixmap& picture, const char* station) const
{
    const QDir folder(qEnvironmentVariable("COMPOSE_PICTURES"));
    QVERIFY(QDir().mkpath(folder.path()));
    QVERIFY(picture.save(folder.filePath(text(station) + text(".png"))));
}

void ComposeFromNothingTest::composeSequences()
{
    m_person->showTab("序列");
    m_person->renameSequence(0, "main_check");
    m_person->commentSequence(0, "上电后逐项检测");
    m_person->addSequence();
    m_person->renameSequence(1, "summary");
    m_person->commentSequence(1, "汇总结果");
    m_person->makeMain(0);
    m_person->clickSequence(0);
    look("2_sequences");
}

void ComposeFromNothingTest::composeVariables()
{
    m_person->showTab("变量");
    m_person->addVariable("序列变量", "total", "s32", "7", "累计值");
    m_person->addVariable("流程变量", "limit", "s32", "200", "累计上限");
    m_person->addVariable("全局变量", "station", "string", "台架A", "工位名称");
    look("3_variables");
}

void ComposeFromNothingTest::composeMain()
{
    Person& person = *m_person;
    person.clickStep("初始流程");
    person.chooseStep("表达式");

    person.pickVariable("btnLeftValue", "total",
                        [this](QWidget* picker) { look("4_picker", picker); });
    person.type("editRightValue", "7");

    person.dragStep("for", "主流程");
    person.type("timesSpin", "5");
    person.type("valueLineEdit", "k");
    person.dragStep("if", "for");
    person.type("editLeftValue", "k");
    person.choose("conditionComboBox", "==");
    person.type("editRightValue", "3");
    person.chooseStep("表达式");
    person.type("editLeftValue", "total");
    person.type("editRightValue", "total + 100");
    int looks = 0;
    person.dragStep("else", "if", "主流程",
                    [&] { look(++looks == 1 ? "5_drag_refused" : "5_drag"); });
    person.chooseStep("表达式");
    person.type("editLeftValue", "total");
    person.type("editRightValue", "total + 1");
    person.clickStep("endfor");
    person.chooseStep("while");
    person.type("editLeftValue", "total");
    person.choose("conditionComboBox", "<");
    person.type("editRightValue", "limit");
    person.chooseStep("语句");
    person.type("textEdit", "total = total + 50;");

    person.clickStep("结束流程");
    person.chooseStep("语句");
    person.type("textEdit", "log_info(\"%s: total %d\", station.c_str(), total);");
}

void ComposeFromNothingTest::composeSummary()
{
    m_person->showTab("序列");
    m_person->clickSequence(1);
    m_person->clickStep("主流程");
    m_person->chooseStep("语句");
    m_person->type("textEdit", "log_info(\"limit %d\", limit);");
    setUpGeneral();
    m_person->chooseStep("表达式");
    m_person->type("editLeftValue", "limit");
    m_person->type("editRightValue", "limit * 2");
    m_person->moveStep("汇总", "主流程"); // which makes it the last one
    m_person->clickSequence(0);
}

/// Of the step that is shown, page by page.
void ComposeFromNothingTest::setUpGeneral()
{
    Person& person = *m_person;
    person.type("nameLineEdit", "汇总");
    person.tick("tagCheckBox");
    person.type("editTag", "sum_up");
    look("general_1", "settingDock");
    person.showPage("单步循环");
    person.choose("loopTypeComboBox", "固定次数循环");
    person.type("timesSpin", "2");
    look("general_2", "settingDock");
    person.showPage("前/后执行语句");
    person.type("preExpressionTextEdit", "limit = limit + 1;");
    person.type("postExpressionTextEdit", "log_info(\"done\");");
    look("general_3", "settingDock");
    person.showPage("执行前条件");
    person.type("preconditionTextEdit", "limit > 0");
    look("general_4", "settingDock");
    person.showPage("执行后跳转");
    person.type("conditionCodeTextEdit", "limit > 1000");
    person.choose("conditionFalseActionComboBox", "终止序列");
    look("general_5", "settingDock");
}

QString ComposeFromNothingTest::shownDocument()
{
    m_person->showTab("序列");
    QStringList parts{rowsOf(m_person->sequences(), {0, 2})};
    for (int sequence = 0; sequence < m_person->sequences()->model()->rowCount(); ++sequence) {
        m_person->clickSequence(sequence);
        parts << rowsOf(m_person->steps(), {0, 1}) << rowsOf(m_person->variables(), {0, 1, 2, 3});
    }
    m_person->clickSequence(0);
    return parts.join(QLatin1String("\n--\n"));
}

QStringList ComposeFromNothingTest::notGreen() const
{
    QStringList rows;
    const QAbstractItemModel& model = *m_person->runSteps()->model();
    for (int flow = 0; flow < model.rowCount(); ++flow) {
        QModelIndexList below{model.index(flow, 0)};
        while (!below.isEmpty()) {
            const QModelIndex parent = below.takeFirst();
            for (int row = 0; row < model.rowCount(parent); ++row) {
                below << model.index(row, 0, parent);
                const QModelIndex state = model.index(row, 3, parent);
                const QColor colour = state.data(Qt::BackgroundRole).value<QBrush>().color();
                if (state.data() != text("执行成功") ||
                    colour.green() <= std::max(colour.red(), colour.blue()))
                    rows << below.last().data().toString();
            }
        }
    }
    return rows;
}

QStringList ComposeFromNothingTest::outputOfIt()
{
    if (!QTest::qWaitFor([this] { return isIdle(); }, Patience))
        m_output << text("no end came");
    QStringList said;
    said.swap(m_output);
    return said;
}

void ComposeFromNothingTest::composeFromNothing()
{
    openWindow();
    look("1_empty_project");
    m_value = text("motor_check");
    m_person->press("新建小程序");
    composeSequences();
    composeVariables();
    composeMain();
    m_person->clickStep("for");
    look("5_steps");
    composeSummary();

    const QString composed = shownDocument();
    m_person->pressTool("saveBtn");
    QVERIFY(!m_window->isDocumentModified());
    QVERIFY(m_window->close());
    openWindow("motor_check");
    QCOMPARE(shownDocument(), composed);

    connect(m_window->editor(), &ProcessEditWidget::notifyRunResultSig, this,
            [this](bool, const QString& said) { m_output << said.trimmed(); });
    m_person->pressTool("compileBtn");
    QStringList said = outputOfIt();
    QVERIFY2(said.join(u'\n').contains(text("main_check编译成功")), qPrintable(said.join(u'\n')));

    m_person->pressRunMain();
    QCOMPARE(activity()->text(), text("正在运行")); // without a compile
    said = outputOfIt();
    QCOMPARE(activity()->text(), text("运行结束"));
    // 7, four times one more, once a hundred; then fifties up to the limit.
    QVERIFY2(said.contains(text("台架A: total 211")), qPrintable(said.join(u'\n')));
    QCOMPARE(stepNames(m_person->runSteps()), stepNames(m_person->steps()));
    QCOMPARE(notGreen(), QStringList());
    QVERIFY(!m_window->isDocumentModified());
    look("6_run");

    m_person->showTab("编辑序列");
    m_person->toggleStep("else");
    m_person->pressRunMain();
    said = outputOfIt();
    QVERIFY2(said.contains(text("台架A: total 207")), qPrintable(said.join(u'\n')));
    QStringList left = stepNames(m_person->steps());
    const int branch = left.indexOf(text("    else"));
    QCOMPARE(left.takeAt(branch + 1), text("      表达式"));
    left.removeAt(branch);
    QCOMPARE(stepNames(m_person->runSteps()), left);
    QCOMPARE(notGreen(), QStringList());

    m_person->showTab("编辑序列");
    m_person->showTab("序列");
    m_person->clickSequence(1);
    m_person->pressRunCurrent();
    said = outputOfIt();
    QVERIFY2(said.count(text("limit 401")) == 2 && said.contains(text("done")),
             qPrintable(said.join(u'\n')));
    QCOMPARE(notGreen(), QStringList());
    QCOMPARE(m_asked.size(), 1); // the applet's name
}

PE_WIDGET_TEST("compose_from_nothing", ComposeFromNothingTest)
#include "compose_from_nothing_test.moc"
