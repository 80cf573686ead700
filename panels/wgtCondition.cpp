#include "panels/wgtCondition.h"

#include "panels/condition_texts.h"
#include "panels/value_picker.h"
#include "ui_wgtCondition.h"

#include <QSignalBlocker>

wgtCondition::wgtCondition(QWidget* parent)
    : IBlockControl(parent), ui(std::make_unique<Ui::wgtCondition>())
{
    ui->setupUi(this);
    ui->conditionComboBox->addItems(condition_texts::operatorTexts());
    showLength(false);
    connect(ui->editLeftValue, &QLineEdit::textChanged, this, &wgtCondition::onLineEditTextChanged);
    connect(ui->editRightValue, &QLineEdit::textChanged, this,
            &wgtCondition::onLineEditTextChanged);
    connect(ui->conditionComboBox, &QComboBox::currentTextChanged, this,
            &wgtCondition::onComboBoxTextChanged);
    connect(ui->lenSpinBox, qOverload<int>(&QSpinBox::valueChanged), this,
            &wgtCondition::onSpinBoxValueChanged);
    connect(ui->left_value_btn, &QAbstractButton::clicked, this, &wgtCondition::showleft_Menu);
    connect(ui->right_value_btn, &QAbstractButton::clicked, this, &wgtCondition::showright_Menu);
}

wgtCondition::~wgtCondition() = default;

void wgtCondition::loadBlock(std::shared_ptr<IProcessBlock>) {}

void wgtCondition::setConditionBlock(ConditionProcessBlock condition)
{
    const QSignalBlocker blockers[] = {
        QSignalBlocker(ui->editLeftValue), QSignalBlocker(ui->editRightValue),
        QSignalBlocker(ui->conditionComboBox), QSignalBlocker(ui->lenSpinBox)};
    m_condition = std::move(condition);
    showText(ui->editLeftValue, m_condition.getFun1());
    showText(ui->editRightValue, m_condition.getFun2());
    const bool isArray = m_condition.getOperatorIsArray();
    ui->conditionComboBox->setCurrentText(
        condition_texts::textOf({QString::fromStdString(m_condition.getOperator()), isArray}));
    showLength(isArray);
    ui->lenSpinBox->setValue(m_condition.getArraySize());
}

void wgtCondition::saveBlock()
{
    m_condition.setFun1(ui->editLeftValue->text().toStdString());
    m_condition.setFun2(ui->editRightValue->text().toStdString());
    const auto chosen = condition_texts::operatorOf(ui->conditionComboBox->currentText());
    m_condition.setOperator(chosen.sign.toStdString(), chosen.isArray, ui->lenSpinBox->value());
    emit updateProcessData();
}

void wgtCondition::showleft_Menu()
{
    pickInto(ui->editLeftValue);
}

void wgtCondition::showright_Menu()
{
    pickInto(ui->editRightValue);
}

void wgtCondition::pickInto(QLineEdit* edit)
{
    const auto picked =
        value_picker::pick(this, {m_cappletName, m_sequenceId, m_condition.uuid,
                                  value_picker::Offer::VariablesAndFunctions, true, edit->text()});
    if (picked)
        value_picker::replaceText(edit, *picked);
}

void wgtCondition::onLineEditTextChanged(const QString&)
{
    emit timerStart();
}

void wgtCondition::onComboBoxTextChanged(const QString& text)
{
    showLength(condition_texts::operatorOf(text).isArray);
    saveBlock();
}

void wgtCondition::onSpinBoxValueChanged(int)
{
    saveBlock();
}

void wgtCondition::showLength(bool isArray)
{
    ui->lenLabel->setVisible(isArray);
    ui->lenSpinBox->setVisible(isArray);
}

#include "moc_wgtCondition.cpp"
