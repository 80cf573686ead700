#include "panels/wgtExpression.h"

#include "model/blocks/ExpressionProcessBlock.h"
#include "panels/DelayedWrite.h"
#include "panels/value_picker.h"
#include "ui_wgtExpression.h"

#include <QSignalBlocker>

wgtExpression::wgtExpression(QWidget* parent)
    : IBlockControl(parent), ui(std::make_unique<Ui::wgtExpression>())
{
    ui->setupUi(this);
    connect(ui->editLeftValue, &QLineEdit::textChanged, this,
            &wgtExpression::onLineEditTextChanged);
    connect(ui->editRightValue, &QPlainTextEdit::textChanged, this,
            &wgtExpression::onTextEditTextChanged);
    connect(ui->btnLeftValue, &QAbstractButton::clicked, this,
            &wgtExpression::onBtnLeftValueClicked);
    connect(ui->btnRightValue, &QAbstractButton::clicked, this,
            &wgtExpression::onBtnRightValueClicked);
}

wgtExpression::~wgtExpression() = default;

void wgtExpression::loadBlock(std::shared_ptr<IProcessBlock> block)
{
    m_block = std::dynamic_pointer_cast<ExpressionProcessBlock>(block);
    if (!m_block)
        return;
    const QSignalBlocker blockers[] = {QSignalBlocker(ui->editLeftValue),
                                       QSignalBlocker(ui->editRightValue)};
    showText(ui->editLeftValue, m_block->leftValue);
    ui->editRightValue->setPlainText(QString::fromStdString(m_block->rightExpression));
}

void wgtExpression::saveBlock()
{
    m_timer->stop();
    if (!m_block)
        return;
    handBack(m_block, [this] {
        m_block->leftValue = ui->editLeftValue->text().toStdString();
        m_block->rightExpression = ui->editRightValue->toPlainText().toStdString();
    });
}

void wgtExpression::onBtnLeftValueClicked()
{
    const auto picked = value_picker::pick(this, {m_cappletName, m_sequenceId, stepIdOf(m_block),
                                                  value_picker::Offer::Variables, false,
                                                  ui->editLeftValue->text()});
    if (picked)
        value_picker::replaceText(ui->editLeftValue, *picked);
}

void wgtExpression::onBtnRightValueClicked()
{
    const auto picked = value_picker::pick(this, {m_cappletName, m_sequenceId, stepIdOf(m_block),
                                                  value_picker::Offer::VariablesAndFunctions, false,
                                                  ui->editRightValue->toPlainText(),
                                                  ui->editRightValue->textCursor().position()});
    if (picked)
        value_picker::replaceText(ui->editRightValue, *picked);
}

void wgtExpression::onLineEditTextChanged(const QString&)
{
    m_timer->start();
}

void wgtExpression::onTextEditTextChanged()
{
    m_timer->start();
}

#include "moc_wgtExpression.cpp"
