#pragma once

#include "model/step_kinds.h"

#include <QString>
#include <QWidget>

#include <functional>
#include <memory>
#include <string>

class DelayedWrite;
class IProcessBlock;
class QLineEdit;

/// Base of the step-specific panels. A panel shows one block at a time, writes every change into
/// it, at once or a second after the last keystroke, and hands it back to the model service.
/// Loading never writes. GUI thread only.
class IBlockControl : public QWidget
{
    Q_OBJECT
public:
    explicit IBlockControl(QWidget* parent = nullptr);

    /// The kind of block that this panel serves. Of base type 5 one panel serves every step type.
    virtual logicBlockType baseType() const { return BasicStep; }
    virtual int stepType() const = 0;

    /// Takes the block and shows it; one of another class leaves the panel empty.
    virtual void loadBlock(std::shared_ptr<IProcessBlock> block) = 0;
    /// Writes the panel into the block, hands it to the model and emits updateProcessData.
    virtual void saveBlock() = 0;

    /// Where the block stands.
    virtual void setCAppletName(const QString& appName);
    virtual void setSequenceId(const QString& sequenceId);

    /// Whether a text waits to be written.
    virtual bool isTimerActive() const;
    virtual void stopTimer();

signals:
    void updateProcessData();

protected slots:
    virtual void onTimer();

protected:
    /// Shows a stored text from its beginning.
    static void showText(QLineEdit* edit, const std::string& text);
    /// Empty for none.
    static std::string stepIdOf(const std::shared_ptr<IProcessBlock>& block);
    /// The end of every saveBlock: @p write changes the fields of the block, which goes to the
    /// model and is told of.
    void handBack(const std::shared_ptr<IProcessBlock>& block, const std::function<void()>& write);

    DelayedWrite* m_timer; ///< a text control starts it anew with every keystroke
    QString m_cappletName;
    QString m_sequenceId;
};
