#include "panels/wgtGeneralSetting.h"

#include "model/IProcessBlock.h"
#include "model/name_rules.h"
#include "panels/DelayedWrite.h"
#include "panels/goto_lists.h"
#include "panels/wheel_guard.h"
#include "ui_wgtGeneralSetting.h"

#include <QRegularExpressionValidator>
#include <QSignalBlocker>

#include <array>

namespace {

/// What follows a step.
enum Action { NextStep, ToStep, ToSequence, EndSequence, EndProcess, Pause };

QString textOf(const std::string& text)
{
    return QString::fromStdString(text);
}

QString chooseStep()
{
    return wgtGeneralSetting::tr("选择跳转的步骤...");
}

QString chooseSequence()
{
    return wgtGeneralSetting::tr("选择跳转的序列...");
}

/// While one lives, no control tells of a change.
class Silence
{
public:
    explicit Silence(const Ui::wgtGeneralSetting& ui)
        : m_blockers{QSignalBlocker(ui.nameLineEdit),
                     QSignalBlocker(ui.tagCheckBox),
                     QSignalBlocker(ui.editTag),
                     QSignalBlocker(ui.textEdit),
                     QSignalBlocker(ui.loopTypeComboBox),
                     QSignalBlocker(ui.loopResultInReportCheckBox),
                     QSignalBlocker(ui.loopWidget),
                     QSignalBlocker(ui.preExpressionTextEdit),
                     QSignalBlocker(ui.postExpressionTextEdit),
                     QSignalBlocker(ui.preconditionTextEdit),
                     QSignalBlocker(ui.conditionTrueActionComboBox),
                     QSignalBlocker(ui.conditionTrueGotoComboBox),
                     QSignalBlocker(ui.conditionFalseActionComboBox),
                     QSignalBlocker(ui.conditionFalseGotoComboBox),
                     QSignalBlocker(ui.conditionCodeTextEdit)}
    {
    }

private:
    std::array<QSignalBlocker, 15> m_blockers;
};

} // namespace

wgtGeneralSetting::wgtGeneralSetting(QWidget* parent)
    : QWidget(parent), ui(std::make_unique<Ui::wgtGeneralSetting>()),
      m_timer(new DelayedWrite(this))
{
    setUpForm();
    connectControls();
    ui->mainArea->hide();
}

wgtGeneralSetting::~wgtGeneralSetting() = default;

void wgtGeneralSetting::setUpForm()
{
    ui->setupUi(this);
    for (int page = 0; page < ui->listWidget->count(); ++page)
        ui->listWidget->item(page)->setData(Qt::UserRole, page);
    ui->listWidget->setCurrentRow(0);
    constexpr int room = 24;
    ui->listWidget->setFixedWidth(ui->listWidget->sizeHintForColumn(0) + room);
    ui->PropertiesWidget->setCurrentIndex(0);
    ui->editTag->setValidator(
        new QRegularExpressionValidator(name_rules::namePattern(), ui->editTag));
    ui->loopTypeComboBox->addItems({tr("无循环"), tr("固定次数循环"), tr("自定义循环")});
    ui->loopWidget->setEmbedded();
    ui->loopWidget->setGroupsEnabled(false, false);
    for (QComboBox* box : {ui->conditionTrueActionComboBox, ui->conditionFalseActionComboBox})
        box->addItems({tr("跳转到下一步"), tr("跳转到指定步骤"), tr("跳转到序列"), tr("终止序列"),
                       tr("终止流程"), tr("暂停(暂未开放)")});
    ui->conditionTrueGotoComboBox->hide();
    ui->conditionFalseGotoComboBox->hide();
    wheel_guard::install(*this);
}

void wgtGeneralSetting::connectControls()
{
    connect(m_timer, &QTimer::timeout, this, &wgtGeneralSetting::onTimer);
    connect(ui->listWidget, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
        if (item)
            ui->PropertiesWidget->setCurrentIndex(item->data(Qt::UserRole).toInt());
    });
    for (const QLineEdit* edit : {ui->nameLineEdit, ui->editTag})
        connect(edit, &QLineEdit::textChanged, this, &wgtGeneralSetting::onLineEditChanged);
    for (const QCheckBox* box : {ui->tagCheckBox, ui->loopResultInReportCheckBox})
        connect(box, &QCheckBox::stateChanged, this, &wgtGeneralSetting::onCheckBoxChanged);
    const std::initializer_list<const QPlainTextEdit*> texts = {
        ui->textEdit, ui->preExpressionTextEdit, ui->postExpressionTextEdit,
        ui->preconditionTextEdit, ui->conditionCodeTextEdit};
    for (const QPlainTextEdit* edit : texts)
        connect(edit, &QPlainTextEdit::textChanged, this, &wgtGeneralSetting::onTextEditorChanged);
    connect(ui->loopWidget, &wgtFor::lineEditTextChangedSig, this,
            &wgtGeneralSetting::onTextEditorChanged);
    const auto indexChanged = qOverload<int>(&QComboBox::currentIndexChanged);
    connect(ui->loopTypeComboBox, indexChanged, this, &wgtGeneralSetting::onLoopTypeChanged);
    for (const QComboBox* box : {ui->conditionTrueActionComboBox, ui->conditionFalseActionComboBox})
        connect(box, indexChanged, this, &wgtGeneralSetting::onConditionActionChanged);
    for (const CustomComboBox* box :
         {ui->conditionTrueGotoComboBox, ui->conditionFalseGotoComboBox})
        connect(box, indexChanged, this, &wgtGeneralSetting::onConditionGotoChanged);
}

void wgtGeneralSetting::loadGeneral(std::shared_ptr<IProcessBlock> block)
{
    const Silence silence(*ui);
    flushPending();
    clearControls();
    if (!block || (block->baseType() != NoBlock && !block->property.editable)) {
        showMessage(tr("该节点不可编辑"));
        return;
    }
    if (block->baseType() == NoBlock) {
        showNothingSelected();
        return;
    }
    m_block = std::move(block);
    ui->label_3->hide();
    ui->mainArea->show();
    enableControls();
    showTexts();
    showLoop();
    const int whenTrue = m_block->trueAction;
    const int whenFalse = m_block->falseAction;
    ui->conditionTrueActionComboBox->setCurrentIndex(whenTrue);
    ui->conditionFalseActionComboBox->setCurrentIndex(whenFalse);
    const auto placeholder = [](int action) {
        return action == ToStep ? chooseStep() : chooseSequence();
    };
    showGoto(*ui->conditionTrueGotoComboBox, whenTrue, m_block->trueTarget, placeholder(whenTrue));
    showGoto(*ui->conditionFalseGotoComboBox, whenFalse, m_block->falseTarget,
             placeholder(whenFalse));
    // Hidden by the true action: with a false action of its own it shows the sequences.
    const bool hasTarget = whenFalse != NextStep && whenFalse != EndSequence && whenFalse != Pause;
    ui->conditionFalseGotoComboBox->setVisible(hasTarget && whenTrue != EndProcess);
}

void wgtGeneralSetting::showNothingSelected()
{
    showMessage(tr("当前未选中步骤节点"));
}

void wgtGeneralSetting::showMessage(const QString& text)
{
    ui->mainArea->hide();
    ui->label_3->setText(text);
    ui->label_3->show();
}

void wgtGeneralSetting::clearControls()
{
    ui->tagCheckBox->setChecked(false);
    ui->loopResultInReportCheckBox->setChecked(false);
    for (QLineEdit* edit : {ui->nameLineEdit, ui->editTag, ui->editPreview})
        edit->clear();
    const std::initializer_list<QPlainTextEdit*> texts = {
        ui->textEdit, ui->preExpressionTextEdit, ui->postExpressionTextEdit,
        ui->preconditionTextEdit, ui->conditionCodeTextEdit};
    for (QPlainTextEdit* edit : texts)
        edit->clear();
    for (QComboBox* box :
         {ui->loopTypeComboBox, ui->conditionTrueActionComboBox, ui->conditionFalseActionComboBox})
        box->setCurrentIndex(0);
    for (CustomComboBox* box : {ui->conditionTrueGotoComboBox, ui->conditionFalseGotoComboBox})
        box->setSource({}, nullptr);
}

void wgtGeneralSetting::enableControls()
{
    const BaseStepProperty& kind = m_block->property;
    ui->nameLineEdit->setEnabled(kind.nameEditable);
    ui->tagCheckBox->setEnabled(kind.tagEnabled);
    ui->editTag->setEnabled(kind.tagEnabled);
    ui->loopTypeComboBox->setEnabled(kind.loopEnabled);
    ui->loopResultInReportCheckBox->setEnabled(kind.loopEnabled);
    ui->preExpressionTextEdit->setEnabled(kind.statementsEnabled);
    ui->postExpressionTextEdit->setEnabled(kind.statementsEnabled);
    ui->preconditionTextEdit->setEnabled(kind.preConditionEnabled);
    const std::initializer_list<QWidget*> followers = {
        ui->conditionTrueActionComboBox, ui->conditionTrueGotoComboBox,
        ui->conditionFalseActionComboBox, ui->conditionFalseGotoComboBox,
        ui->conditionCodeTextEdit};
    for (QWidget* control : followers)
        control->setEnabled(kind.postActionEnabled);
}

void wgtGeneralSetting::showTexts()
{
    ui->nameLineEdit->setText(textOf(m_block->name));
    ui->textEdit->setPlainText(textOf(m_block->remark));
    ui->tagCheckBox->setChecked(m_block->tagEnabled);
    ui->editTag->setText(textOf(m_block->tag));
    ui->editTag->setReadOnly(!m_block->tagEnabled);
    ui->preExpressionTextEdit->setPlainText(textOf(m_block->preStatements));
    ui->postExpressionTextEdit->setPlainText(textOf(m_block->postStatements));
    ui->preconditionTextEdit->setPlainText(textOf(m_block->preCondition));
    ui->conditionCodeTextEdit->setPlainText(textOf(m_block->postConditionCode));
    showDescription();
}

void wgtGeneralSetting::showDescription()
{
    ui->editPreview->setText(textOf(m_block->description()));
    ui->editPreview->setCursorPosition(0);
}

void wgtGeneralSetting::showLoop()
{
    const int type = m_block->loopType;
    ui->loopTypeComboBox->setCurrentIndex(type);
    ui->loopResultInReportCheckBox->setChecked(m_block->loopResultInReport);
    ui->loopWidget->setGroupsEnabled(type == 1, type == 2);
    LoopRecord record;
    record.count = m_block->loopCount;
    record.variable = textOf(m_block->loopVariable);
    record.init = textOf(m_block->loopInit);
    record.condition = textOf(m_block->loopCondition);
    record.increment = textOf(m_block->loopStep);
    ui->loopWidget->setLoopRecord(record);
}

void wgtGeneralSetting::showGoto(CustomComboBox& box, int action, const std::string& target,
                                 const QString& placeholder)
{
    const bool hasTarget = action == ToStep || action == ToSequence;
    box.setVisible(hasTarget);
    if (action == ToStep)
        goto_lists::showSteps(box, m_cappletName, m_sequenceId, textOf(target));
    else
        goto_lists::showSequences(box, m_cappletName, textOf(target));
    if (target.empty())
        box.ask(placeholder);
    else
        box.setEditable(false);
}

void wgtGeneralSetting::refreshPreview(const QString& blockUuid)
{
    if (!m_block || textOf(m_block->uuid) != blockUuid)
        return;
    showDescription();
    if (m_block->baseType() != DiagnosticStep)
        return;
    const QSignalBlocker blocker(ui->textEdit);
    ui->textEdit->setPlainText(textOf(m_block->remark));
}

void wgtGeneralSetting::onLineEditChanged(const QString& text)
{
    if (!m_block)
        return;
    const bool isName = sender() == ui->nameLineEdit;
    handBack([&] { (isName ? m_block->name : m_block->tag) = text.toStdString(); });
}

void wgtGeneralSetting::onCheckBoxChanged(int state)
{
    if (!m_block)
        return;
    const bool isChecked = state == Qt::Checked;
    const bool isTag = sender() == ui->tagCheckBox;
    if (isTag) {
        ui->editTag->setReadOnly(!isChecked);
        if (isChecked)
            ui->editTag->setFocus();
    }
    handBack([&] { (isTag ? m_block->tagEnabled : m_block->loopResultInReport) = isChecked; });
}

void wgtGeneralSetting::onTextEditorChanged()
{
    if (m_block)
        m_timer->start();
}

void wgtGeneralSetting::onLoopTypeChanged(int index)
{
    if (!m_block)
        return;
    ui->loopResultInReportCheckBox->setEnabled(index != 0);
    ui->loopWidget->setGroupsEnabled(index == 1, index == 2);
    handBack([&] { m_block->loopType = index; });
}

void wgtGeneralSetting::onConditionActionChanged(int index)
{
    if (!m_block)
        return;
    const Silence silence(*ui);
    const bool isTrue = sender() == ui->conditionTrueActionComboBox;
    CustomComboBox& box = isTrue ? *ui->conditionTrueGotoComboBox : *ui->conditionFalseGotoComboBox;
    // What the false one is asked for stands the other way round.
    showGoto(box, index, isTrue ? m_block->trueTarget : m_block->falseTarget,
             (index == ToStep) == isTrue ? chooseStep() : chooseSequence());
    // Its kind stands for the target until a row is picked.
    const std::string target = box.currentData(Qt::UserRole).toString().toStdString();
    handBack([&] {
        (isTrue ? m_block->trueAction : m_block->falseAction) = index;
        (isTrue ? m_block->trueTarget : m_block->falseTarget) = target;
    });
}

void wgtGeneralSetting::onConditionGotoChanged(int)
{
    auto* box = qobject_cast<CustomComboBox*>(sender());
    if (!m_block || !box)
        return;
    const std::string target = box->currentData(CustomComboBox::IdRole).toString().toStdString();
    {
        const QSignalBlocker blocker(box);
        box->setEditable(false);
    }
    const bool isTrue = box == ui->conditionTrueGotoComboBox;
    m_timer->handBack(m_cappletName, m_sequenceId, m_block,
                      [&] { (isTrue ? m_block->trueTarget : m_block->falseTarget) = target; });
}

void wgtGeneralSetting::onTimer()
{
    saveGeneral();
}

void wgtGeneralSetting::flushPending()
{
    if (m_block && m_timer->take())
        saveGeneral();
}

void wgtGeneralSetting::saveGeneral()
{
    if (!m_block)
        return;
    const LoopRecord loop = ui->loopWidget->loopRecord();
    handBack([&] {
        m_block->name = ui->nameLineEdit->text().toStdString();
        m_block->tag = ui->editTag->text().toStdString();
        m_block->remark = ui->textEdit->toPlainText().toStdString();
        m_block->preStatements = ui->preExpressionTextEdit->toPlainText().toStdString();
        m_block->postStatements = ui->postExpressionTextEdit->toPlainText().toStdString();
        m_block->preCondition = ui->preconditionTextEdit->toPlainText().toStdString();
        m_block->postConditionCode = ui->conditionCodeTextEdit->toPlainText().toStdString();
        if (ui->loopTypeComboBox->currentIndex() >= 0) // a later version's stays
            m_block->loopType = ui->loopTypeComboBox->currentIndex();
        m_block->loopResultInReport = loop.resultInReport;
        m_block->loopCount = loop.count;
        m_block->loopVariable = loop.variable.toStdString();
        m_block->loopInit = loop.init.toStdString();
        m_block->loopCondition = loop.condition.toStdString();
        m_block->loopStep = loop.increment.toStdString();
    });
}

void wgtGeneralSetting::handBack(const std::function<void()>& write)
{
    m_timer->handBack(m_cappletName, m_sequenceId, m_block, write);
    emit updateTreeProcessData(textOf(m_block->uuid));
}

#include "moc_wgtGeneralSetting.cpp"
