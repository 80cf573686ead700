#include "panels/IBlockControl.h"

#include <QTimer>

namespace {
constexpr int DebounceMs = 1000;
}

IBlockControl::IBlockControl(QWidget* parent) : QWidget(parent), m_timer(new QTimer(this))
{
    m_timer->setSingleShot(true);
    m_timer->setInterval(DebounceMs);
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
