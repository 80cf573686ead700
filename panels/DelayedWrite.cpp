#include "panels/DelayedWrite.h"

#include "edits/DocumentEdits.h"

DelayedWrite::DelayedWrite(QObject* panel) : QTimer(panel)
{
    setSingleShot(true);
    setInterval(DebounceMs);
}

bool DelayedWrite::take()
{
    const bool isWaiting = isActive();
    stop();
    return isWaiting;
}

void DelayedWrite::handBack(const QString& appName, const QString& sequenceId,
                            const std::shared_ptr<IProcessBlock>& block,
                            const std::function<void()>& write) const
{
    const DocumentEdits::Act act;
    DocumentEdits::instance().updateProcess(appName, sequenceId, block, write);
}

#include "moc_DelayedWrite.cpp"
