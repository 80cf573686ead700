#pragma once

#include "model/IProcessBlock.h"

/// A message window with up to six buttons and an optional assignment.
class PopupWindowProcessBlock : public CopyableBlock<PopupWindowProcessBlock>
{
public:
    struct Button
    {
        std::string name;
        std::string code; ///< run when the button is pressed
    };
    static constexpr int MaxButtons = 6;

    PopupWindowProcessBlock() : CopyableBlock(BasicStep, step_type::PopupWindow) {}

    std::string description() const override;
    std::string settingText() const override;

    std::string title;
    std::string content;
    /// 0 none, then s32, u32, s64, u64, double, string, u8*, s32*, s64*, double*.
    int assignmentKind = 0;
    std::string value;
    int variableSource = 0; ///< 0 a variable of the step's own, 1 an existing one
    std::string variableName;
    bool variableIsSystem = false;

    const std::vector<Button>& buttons() const { return m_buttons; }
    void setButtons(const std::vector<Button>& buttons) { m_buttons = buttons; }
    /// Appends a button with a name that no other bears; the caller keeps to MaxButtons.
    void createBtn();
    /// The three below do nothing for an index outside the list.
    void renameBtn(int index, const std::string& name);
    void updateBtnCode(int index, const std::string& code);
    void removeBtn(int index);

private:
    std::vector<Button> m_buttons;
};
