#pragma once

#include "model/blocks/ConditionProcessBlock.h"
#include "panels/IBlockControl.h"

class QLineEdit;
namespace Ui {
class wgtCondition;
}

/// The editor of one comparison; never a page of its own, but part of the panels of the steps that
/// have a condition. It keeps a working copy and never calls the model: the panel around it takes
/// the copy over when updateProcessData tells of it.
class wgtCondition : public IBlockControl
{
    Q_OBJECT
public:
    explicit wgtCondition(QWidget* parent = nullptr);
    ~wgtCondition() override;

    int stepType() const override { return step_type::Condition; }
    /// Takes nothing: only setConditionBlock fills the editor.
    void loadBlock(std::shared_ptr<IProcessBlock> block) override;
    /// Writes the controls into the working copy, and emits updateProcessData.
    void saveBlock() override;

    /// Shows a comparison. An operator that is not on offer leaves the list where it stands.
    virtual void setConditionBlock(ConditionProcessBlock condition);
    /// The working copy.
    const ConditionProcessBlock& condition() const { return m_condition; }

signals:
    /// A text was edited: the panel around saves after a pause.
    void timerStart();

private slots:
    void showleft_Menu();
    void showright_Menu();
    void onLineEditTextChanged(const QString& text);
    void onComboBoxTextChanged(const QString& text);
    void onSpinBoxValueChanged(int value);

private:
    void pickInto(QLineEdit* edit);
    void showLength(bool isArray);

    std::unique_ptr<Ui::wgtCondition> ui;
    ConditionProcessBlock m_condition;
};
