#pragma once

#include <QWidget>

#include <memory>

class IProcessBlock;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QTimer;

/// What every step has: name, tag, description and remark. Stands beside the step-specific panel
/// and is given the same block. A change is written one second after the last keystroke. GUI
/// thread only.
class wgtGeneralSetting : public QWidget
{
    Q_OBJECT
public:
    explicit wgtGeneralSetting(QWidget* parent = nullptr);

    void setCAppletName(const QString& appName);
    void setSequenceId(const QString& sequenceId);

    /// Shows @p block, after writing what waits for the one before; null says that the node can't
    /// be edited.
    void loadGeneral(std::shared_ptr<IProcessBlock> block);
    /// Says that no step is selected.
    void showNothingSelected();
    /// Writes a change that waits to be written.
    void flushPending();
    /// Shows the block's description anew, if it is the one shown; of a diagnostic step the remark
    /// too, which its panel writes.
    void refreshPreview(const QString& blockUuid);

signals:
    /// The panel has written the block of this uuid.
    void updateTreeProcessData(QString blockUuid);

private slots:
    void startTimer();
    void saveGeneral();

private:
    void buildForm();
    void showMessage(const QString& text);
    void showBlock();

    QString m_cappletName;
    QString m_sequenceId;
    QTimer* m_timer;
    std::shared_ptr<IProcessBlock> m_block;

    QWidget* m_mainArea;
    QLabel* m_messageLabel; ///< instead of the main area
    QLineEdit* m_nameEdit;
    QCheckBox* m_tagCheckBox;
    QLineEdit* m_tagEdit;
    QLineEdit* m_preview;
    QPlainTextEdit* m_remarkEdit;
};
