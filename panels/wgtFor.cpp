#include "panels/wgtFor.h"

#include "model/blocks/ForProcessBlock.h"
#include "panels/DelayedWrite.h"
#include "panels/loop_values.h"
#include "ui_wgtFor.h"

#include <QRegularExpressionValidator>
#include <QSignalBlocker>

wgtFor::wgtFor(QWidget* parent) : IBlockControl(parent), ui(std::make_unique<Ui::wgtFor>())
{
    setUpForm();
    for (const QRadioButton* radio : {ui->fixedCycle, ui->customCycle})
        connect(radio, &QRadioButton::clicked, this, &wgtFor::onRadioBtnClicked);
    for (const QLineEdit* edit :
         {ui->valueLineEdit, ui->timesLineEdit_init, ui->timesLineEdit_ver, ui->timesLineEdit_add})
        connect(edit, &QLineEdit::textChanged, this, &wgtFor::onLineEditTextChanged);
    connect(ui->timesSpin, qOverload<int>(&QSpinBox::valueChanged), this,
            &wgtFor::onLineEditTextChanged);
}

wgtFor::~wgtFor() = default;

void wgtFor::setUpForm()
{
    ui->setupUi(this);
    setGroupsEnabled(true, false);
    ui->timesSpin->setMaximum(loop_values::MaxCount);
    const auto validator = [this](const QString& pattern) {
        return new QRegularExpressionValidator(QRegularExpression(pattern), this);
    };
    ui->valueLineEdit->setValidator(validator(loop_values::variablePattern()));
    auto* header = validator(loop_values::headerPattern());
    for (QLineEdit* edit : {ui->timesLineEdit_init, ui->timesLineEdit_ver, ui->timesLineEdit_add})
        edit->setValidator(header);
    // The fields of the two groups stand below each other.
    const QList<QLabel*> labels = findChildren<QLabel*>();
    int width = 0;
    for (const QLabel* label : labels)
        width = qMax(width, label->sizeHint().width());
    for (QLabel* label : labels)
        label->setMinimumWidth(width);
}

void wgtFor::loadBlock(std::shared_ptr<IProcessBlock> block)
{
    m_block = std::dynamic_pointer_cast<ForProcessBlock>(block);
    if (!m_block)
        return;
    const QSignalBlocker blockers[] = {
        QSignalBlocker(ui->fixedCycle),         QSignalBlocker(ui->customCycle),
        QSignalBlocker(ui->timesSpin),          QSignalBlocker(ui->valueLineEdit),
        QSignalBlocker(ui->timesLineEdit_init), QSignalBlocker(ui->timesLineEdit_ver),
        QSignalBlocker(ui->timesLineEdit_add)};
    const bool isCustom = m_block->getCustom();
    (isCustom ? ui->customCycle : ui->fixedCycle)->setChecked(true);
    setGroupsEnabled(!isCustom, isCustom);
    if (isCustom) {
        showText(ui->timesLineEdit_init, m_block->getFun1());
        showText(ui->timesLineEdit_ver, m_block->getFun2());
        showText(ui->timesLineEdit_add, m_block->getFun3());
        return;
    }
    ui->timesSpin->setValue(
        loop_values::fixedCount(m_block->getBeginValue(), m_block->getEndValue()));
    showText(ui->valueLineEdit, m_block->getVariableName());
    ui->defineCheckBox->setChecked(m_block->isNeedDefine());
}

void wgtFor::saveBlock()
{
    if (!m_block)
        return;
    m_timer->stop();
    const LoopRecord shown = loopRecord();
    const bool isFixed = ui->fixedCycle->isChecked();
    handBack(m_block, [&] {
        if (isFixed) {
            m_block->setVariableName(shown.variable.toStdString(), ui->defineCheckBox->isChecked());
            m_block->setRangeValue(0, shown.count, 1);
        } else {
            m_block->setFun1(shown.init.toStdString());
            m_block->setFun2(shown.condition.toStdString());
            m_block->setFun3(shown.increment.toStdString());
        }
        m_block->setCustom(!isFixed);
    });
}

void wgtFor::setEmbedded()
{
    m_embedded = true;
    ui->fixedCycle->hide();
    ui->customCycle->hide();
}

void wgtFor::setLoopRecord(const LoopRecord& record)
{
    const QSignalBlocker blockers[] = {
        QSignalBlocker(ui->timesSpin), QSignalBlocker(ui->valueLineEdit),
        QSignalBlocker(ui->timesLineEdit_init), QSignalBlocker(ui->timesLineEdit_ver),
        QSignalBlocker(ui->timesLineEdit_add)};
    ui->timesSpin->setValue(record.count);
    ui->valueLineEdit->setText(record.variable);
    ui->timesLineEdit_init->setText(record.init);
    ui->timesLineEdit_ver->setText(record.condition);
    ui->timesLineEdit_add->setText(record.increment);
}

LoopRecord wgtFor::loopRecord() const
{
    LoopRecord record;
    record.count = ui->timesSpin->value();
    record.variable = ui->valueLineEdit->text();
    record.init = ui->timesLineEdit_init->text();
    record.condition = ui->timesLineEdit_ver->text();
    record.increment = ui->timesLineEdit_add->text();
    return record;
}

void wgtFor::setGroupsEnabled(bool fixed, bool custom)
{
    ui->fixedWidget->setEnabled(fixed);
    ui->customWidget->setEnabled(custom);
}

void wgtFor::onRadioBtnClicked()
{
    const bool isFixed = ui->fixedCycle->isChecked();
    setGroupsEnabled(isFixed, !isFixed);
    saveBlock();
}

void wgtFor::onLineEditTextChanged()
{
    if (m_embedded)
        emit lineEditTextChangedSig();
    else
        m_timer->start();
}

void wgtFor::onTimer()
{
    if (!m_embedded)
        saveBlock();
}

#include "moc_wgtFor.cpp"
