#pragma once

#include <QString>
#include <QWidget>

#include <functional>
#include <memory>

class CustomComboBox;
class DelayedWrite;
class IProcessBlock;
class QComboBox;
namespace Ui {
class wgtGeneralSetting;
}

/// What every step has: name, tag, description and remark, its own loop, statements before and
/// after it, its pre-condition, and what follows it. Stands beside the step-specific panel and is
/// given the same block. Texts are written one second after the last keystroke, but for name and
/// tag, and the rest at once. GUI thread only.
class wgtGeneralSetting : public QWidget
{
    Q_OBJECT
public:
    explicit wgtGeneralSetting(QWidget* parent = nullptr);
    ~wgtGeneralSetting() override;

    void setCAppletName(const QString& appName) { m_cappletName = appName; }
    void setSequenceId(const QString& sequenceId) { m_sequenceId = sequenceId; }

    /// Shows @p block, after writing what waits for the one before; null says that the node can't
    /// be edited.
    void loadGeneral(std::shared_ptr<IProcessBlock> block);
    /// Says that no step is selected.
    void showNothingSelected();
    /// Writes a change that waits to be written.
    void flushPending();
    /// Writes all texts and the loop; that its turns are to be in the report is forgotten by it.
    void saveGeneral();
    /// Shows the block's description anew, if it is the one shown; of a diagnostic step the remark
    /// too, which its panel writes.
    void refreshPreview(const QString& blockUuid);

signals:
    /// The panel has written the block of this uuid.
    void updateTreeProcessData(QString blockUuid);

private slots:
    void onLineEditChanged(const QString& text);
    void onCheckBoxChanged(int state);
    void onTextEditorChanged();
    void onConditionActionChanged(int index);
    void onConditionGotoChanged(int index);
    void onLoopTypeChanged(int index);
    void onTimer();

private:
    void setUpForm();
    void connectControls();
    void showMessage(const QString& text);
    void enableControls();
    void clearControls();
    void showTexts();
    void showDescription();
    void showLoop();
    void showGoto(CustomComboBox& box, int action, const std::string& target,
                  const QString& placeholder);
    /// Writes by @p write, and tells the tree.
    void handBack(const std::function<void()>& write);

    std::unique_ptr<Ui::wgtGeneralSetting> ui;
    QString m_cappletName;
    QString m_sequenceId;
    DelayedWrite* m_timer;
    std::shared_ptr<IProcessBlock> m_block;
};
