#include "panels/wgtCustomCode.h"

#include "edits/DocumentEdits.h"
#include "model/blocks/StatementProcessBlock.h"
#include "model/dialogs/user_dialogs.h"
#include "model/services/widget_bases.h"
#include "panels/DelayedWrite.h"
#include "panels/statement_texts.h"
#include "panels/value_picker.h"
#include "ui_wgtCustomCode.h"

#include <QPointer>
#include <QSignalBlocker>

namespace {
constexpr int IconSize = 20;
}

wgtCustomCode::wgtCustomCode(QWidget* parent)
    : IBlockControl(parent), ui(std::make_unique<Ui::wgtCustomCode>())
{
    ui->setupUi(this);
    ui->toolButton->setIcon(
        StyleManager::scaledToolbarIcon(QStringLiteral(":/icon/功能/fx.png"), IconSize));
    ui->toolButton->setIconSize(StyleManager::toolbarButtonIconSize(IconSize));
    connect(ui->checkBox, &QCheckBox::stateChanged, this, &wgtCustomCode::onCheckBoxStateChanged);
    connect(ui->textEdit, &QPlainTextEdit::textChanged, this,
            &wgtCustomCode::onTextEditTextChanged);
    connect(ui->toolButton, &QAbstractButton::clicked, this, &wgtCustomCode::onFxButtonClicked);
}

wgtCustomCode::~wgtCustomCode() = default;

void wgtCustomCode::loadBlock(std::shared_ptr<IProcessBlock> block)
{
    m_block = std::dynamic_pointer_cast<StatementProcessBlock>(block);
    if (!m_block)
        return;
    const QSignalBlocker blockers[] = {QSignalBlocker(ui->textEdit), QSignalBlocker(ui->checkBox)};
    ui->textEdit->setPlainText(QString::fromStdString(m_block->customCode()));
    ui->checkBox->setCheckState(m_block->getSplitFile() ? Qt::Checked : Qt::Unchecked);
}

void wgtCustomCode::saveBlock()
{
    m_timer->stop();
    if (!m_block)
        return;
    handBack(m_block, [this] {
        m_block->setCustomCode(ui->textEdit->toPlainText().toStdString());
        m_block->setSplitFile(ui->checkBox->checkState() == Qt::Checked);
    });
}

QString wgtCustomCode::extractFunctionDeclaration(const QString& input)
{
    return statement_texts::functionDeclarations(input);
}

void wgtCustomCode::onTextEditTextChanged()
{
    m_timer->start();
    if (m_block)
        DocumentEdits::instance().updateProcess(m_cappletName, m_sequenceId, m_block, [this] {
            m_block->setCustomCode(ui->textEdit->toPlainText().toStdString());
        });
}

void wgtCustomCode::onFxButtonClicked()
{
    const auto picked = value_picker::pick(this, {m_cappletName, m_sequenceId, stepIdOf(m_block),
                                                  value_picker::Offer::VariablesAndFunctions, false,
                                                  ui->textEdit->toPlainText(),
                                                  ui->textEdit->textCursor().position()});
    if (!picked)
        return;
    value_picker::replaceText(ui->textEdit, *picked);
    saveBlock();
}

void wgtCustomCode::onCheckBoxStateChanged(int state)
{
    const QPointer<wgtCustomCode> alive(this);
    if (state == Qt::Checked)
        user_dialogs::warning(this, tr("注意"),
                              tr("单独生成脚本文件时,语句内使用序列变量会引发编译错误"));
    if (alive)
        saveBlock();
}

#include "moc_wgtCustomCode.cpp"
