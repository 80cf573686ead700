#pragma once

#include <QString>
#include <QVector>
#include <QWidget>

#include <memory>

class IBlockControl;
class IProcessBlock;
class QLabel;
class QStackedWidget;

/// The stack of the step-specific panels: shows the one that serves the selected block, or says
/// why there is none. GUI thread only.
class wgtCommonControl : public QWidget
{
    Q_OBJECT
public:
    /// With the panels of all step kinds.
    explicit wgtCommonControl(QWidget* parent = nullptr);
    /// With panels of the caller's choice, which go over to the stack.
    explicit wgtCommonControl(const QVector<IBlockControl*>& panels, QWidget* parent = nullptr);
    ~wgtCommonControl() override;

    void setCAppletName(const QString& appName);
    /// Flushes, as what waits belongs to the sequence before.
    void setSequenceId(const QString& sequenceId);

    /// Flushes, then shows @p block; null says that the node can't be edited.
    void showBlock(std::shared_ptr<IProcessBlock> block);
    /// Says that no step is selected, and hides all pages.
    void showNothingSelected();
    /// Writes a text that waits to be written.
    void flushPending();

signals:
    /// A panel has written the block of this uuid.
    void updateTreeProcessData(QString blockUuid);

private slots:
    void onUpdateProcessData();

private:
    IBlockControl* panelFor(const IProcessBlock& block) const;
    void showMessage(const QString& text);
    void showNoPanel(const IProcessBlock& block);

    QVector<IBlockControl*> m_panels; ///< pages of the stack
    QStackedWidget* m_stack;
    QLabel* m_noPanelLabel; ///< on page 0
    QLabel* m_messageLabel; ///< instead of the stack
    QString m_cappletName;
    QString m_sequenceId;
    std::shared_ptr<IProcessBlock> m_block;
};
