#include "panels/IBlockControl.h"

#include "model/IProcessBlock.h"
#include "panels/DelayedWrite.h"

#include <QLineEdit>

IBlockControl::IBlockControl(QWidget* parent) : QWidget(parent), m_timer(new DelayedWrite(this))
{
    connect(m_timer, &QTimer::timeout, this, &IBlockControl::onTimer);
}

void IBlockControl::setCAppletName(const QString& appName)
{
    m_cappletName = appName;
}

void IBlockControl::setSequenceId(const QString& sequenceId)
{
    m_sequenceId = sequenceId;
}

bool IBlockControl::isTimerActive() const
{
    return m_timer->isActive();
}

void IBlockControl::stopTimer()
{
    m_timer->stop();
}

void IBlockControl::onTimer()
{
    saveBlock();
}

void IBlockControl::showText(QLineEdit* edit, const std::string& text)
{
    edit->setText(QString::fromStdString(text));
    edit->setCursorPosition(0);
}

std::string IBlockControl::stepIdOf(const std::shared_ptr<IProcessBlock>& block)
{
    return block ? block->uuid : std::string();
}

void IBlockControl::handBack(const std::shared_ptr<IProcessBlock>& block,
                             const std::function<void()>& write)
{
    m_timer->handBack(m_cappletName, m_sequenceId, block, write);
    emit updateProcessData();
}

#include "moc_IBlockControl.cpp"
