#include "shell/bridge/VciTransThread.h"

#include "model/services/capplet.h"

#include <QMutexLocker>

VciTransThread::VciTransThread(const QString& appName, QObject* parent)
    : QThread(parent), m_appName(appName)
{
}

VciTransThread::~VciTransThread()
{
    quit();
    wait();
}

void VciTransThread::startConversion(QStringList sequenceNames)
{
    m_sequenceNames = std::move(sequenceNames);
    m_result = -1;
    start();
}

void VciTransThread::cancel()
{
    QMutexLocker lock(&m_mutex);
    m_cancelled = true;
}

bool VciTransThread::isCancelled() const
{
    QMutexLocker lock(&m_mutex);
    return m_cancelled;
}

void VciTransThread::run()
{
    m_result =
        sdk_ui_interface::capplet::transCCodeToVciCode(m_appName, m_targetPath, m_sequenceNames);
}

#include "moc_VciTransThread.cpp"
