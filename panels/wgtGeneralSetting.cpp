#include "panels/wgtGeneralSetting.h"

#include "edits/DocumentEdits.h"
#include "model/IProcessBlock.h"
#include "model/name_rules.h"
#include "model/services/processedit.h"
#include "panels/IBlockControl.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>
#include <QTimer>

wgtGeneralSetting::wgtGeneralSetting(QWidget* parent)
    : QWidget(parent), m_timer(new QTimer(this)), m_mainArea(new QWidget),
      m_messageLabel(new QLabel), m_nameEdit(new QLineEdit), m_tagCheckBox(new QCheckBox),
      m_tagEdit(new QLineEdit), m_preview(new QLineEdit), m_remarkEdit(new QPlainTextEdit)
{
    m_timer->setSingleShot(true);
    m_timer->setInterval(IBlockControl::DebounceMs);
    buildForm();
    connect(m_timer, &QTimer::timeout, this, &wgtGeneralSetting::saveGeneral);
    connect(m_nameEdit, &QLineEdit::textChanged, this, &wgtGeneralSetting::startTimer);
    connect(m_tagEdit, &QLineEdit::textChanged, this, &wgtGeneralSetting::startTimer);
    connect(m_remarkEdit, &QPlainTextEdit::textChanged, this, &wgtGeneralSetting::startTimer);
    connect(m_tagCheckBox, &QCheckBox::toggled, this, [this](bool tagged) {
        m_tagEdit->setReadOnly(!tagged);
        startTimer();
    });
    showNothingSelected();
}

void wgtGeneralSetting::buildForm()
{
    m_nameEdit->setObjectName(QStringLiteral("nameLineEdit"));
    m_tagCheckBox->setObjectName(QStringLiteral("tagCheckBox"));
    m_tagEdit->setObjectName(QStringLiteral("editTag"));
    m_preview->setObjectName(QStringLiteral("editPreview"));
    m_remarkEdit->setObjectName(QStringLiteral("textEdit"));
    m_messageLabel->setObjectName(QStringLiteral("label_3"));
    m_messageLabel->setAlignment(Qt::AlignCenter);
    m_messageLabel->setMargin(12);
    m_preview->setReadOnly(true);
    m_tagEdit->setValidator(new QRegularExpressionValidator(name_rules::namePattern(), m_tagEdit));
    m_tagEdit->setInputMethodHints(Qt::ImhHiddenText);
    m_tagEdit->setPlaceholderText(tr("标签名称需以字母或下划线开头，长度不超过20个字符"));

    auto* tagRow = new QHBoxLayout;
    tagRow->addWidget(m_tagCheckBox);
    tagRow->addWidget(m_tagEdit);
    auto* form = new QFormLayout(m_mainArea);
    form->addRow(tr("名称："), m_nameEdit);
    form->addRow(tr("标签："), tagRow);
    form->addRow(tr("描述："), m_preview);
    form->addRow(tr("备注："), m_remarkEdit);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_mainArea);
    layout->addWidget(m_messageLabel);
}

void wgtGeneralSetting::setCAppletName(const QString& appName)
{
    m_cappletName = appName;
}

void wgtGeneralSetting::setSequenceId(const QString& sequenceId)
{
    m_sequenceId = sequenceId;
}

void wgtGeneralSetting::loadGeneral(std::shared_ptr<IProcessBlock> block)
{
    flushPending();
    if (!block || (block->baseType() != NoBlock && !block->property.editable)) {
        showMessage(tr("该节点不可编辑"));
        return;
    }
    if (block->baseType() == NoBlock) {
        showNothingSelected();
        return;
    }
    m_block = std::move(block);
    showBlock();
    m_messageLabel->hide();
    m_mainArea->show();
}

void wgtGeneralSetting::showNothingSelected()
{
    showMessage(tr("当前未选中步骤节点"));
}

void wgtGeneralSetting::showMessage(const QString& text)
{
    m_mainArea->hide();
    m_messageLabel->setText(text);
    m_messageLabel->show();
}

void wgtGeneralSetting::showBlock()
{
    const QSignalBlocker blockers[] = {QSignalBlocker(m_nameEdit), QSignalBlocker(m_tagCheckBox),
                                       QSignalBlocker(m_tagEdit), QSignalBlocker(m_remarkEdit)};
    m_nameEdit->setText(QString::fromStdString(m_block->name));
    m_nameEdit->setEnabled(m_block->property.nameEditable);
    m_tagCheckBox->setChecked(m_block->tagEnabled);
    m_tagCheckBox->setEnabled(m_block->property.tagEnabled);
    m_tagEdit->setText(QString::fromStdString(m_block->tag));
    m_tagEdit->setEnabled(m_block->property.tagEnabled);
    m_tagEdit->setReadOnly(!m_block->tagEnabled);
    m_remarkEdit->setPlainText(QString::fromStdString(m_block->remark));
    refreshPreview(QString::fromStdString(m_block->uuid));
}

void wgtGeneralSetting::refreshPreview(const QString& blockUuid)
{
    if (!m_block || QString::fromStdString(m_block->uuid) != blockUuid)
        return;
    m_preview->setText(QString::fromStdString(m_block->description()));
    if (m_block->baseType() != DiagnosticStep)
        return;
    const QSignalBlocker blocker(m_remarkEdit);
    m_remarkEdit->setPlainText(QString::fromStdString(m_block->remark));
}

void wgtGeneralSetting::startTimer()
{
    m_timer->start();
}

void wgtGeneralSetting::flushPending()
{
    if (!m_timer->isActive() || !m_block)
        return;
    m_timer->stop();
    saveGeneral();
}

void wgtGeneralSetting::saveGeneral()
{
    if (!m_block)
        return;
    DocumentEdits::instance().updateProcess(m_cappletName, m_sequenceId, m_block, [this] {
        m_block->name = m_nameEdit->text().toStdString();
        m_block->tagEnabled = m_tagCheckBox->isChecked();
        m_block->tag = m_tagEdit->text().toStdString();
        m_block->remark = m_remarkEdit->toPlainText().toStdString();
    });
    emit updateTreeProcessData(QString::fromStdString(m_block->uuid));
}

#include "moc_wgtGeneralSetting.cpp"
