#pragma once

#include <QTimer>

#include <functional>
#include <memory>

class IProcessBlock;

/// When and how a panel writes the block that it shows: it starts this timer with every keystroke
/// in a text, and writes when it ends, a second after the last one. GUI thread only.
class DelayedWrite : public QTimer
{
    Q_OBJECT
public:
    /// From the last key to the write, in milliseconds.
    static constexpr int DebounceMs = 1000;

    explicit DelayedWrite(QObject* panel);

    /// Ends the wait; false if nothing waits to be written.
    bool take();
    /// @p write changes the fields of the block, which then goes to the model, as one act.
    void handBack(const QString& appName, const QString& sequenceId,
                  const std::shared_ptr<IProcessBlock>& block,
                  const std::function<void()>& write) const;
};
