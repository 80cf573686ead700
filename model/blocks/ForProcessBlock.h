#pragma once

#include "model/IProcessBlock.h"

/// A counting loop: over a fixed range, or with a header of its own.
class ForProcessBlock : public CopyableBlock<ForProcessBlock>
{
public:
    ForProcessBlock() : CopyableBlock(BasicStep, step_type::For) {}

    std::string description() const override;
    std::string settingText() const override;

    /// False: the fixed range counts; true: the three texts of the custom header.
    bool getCustom() const { return m_custom; }
    void setCustom(bool custom) { m_custom = custom; }

    const std::string& getVariableName() const { return m_variableName; }
    /// Whether the loop defines its variable itself (s32, local to the loop).
    bool isNeedDefine() const { return m_needDefine; }
    void setVariableName(const std::string& name, bool needDefine)
    {
        m_variableName = name;
        m_needDefine = needDefine;
    }

    /// The variable runs from begin, included, to end, excluded, by step.
    int getBeginValue() const { return m_begin; }
    int getEndValue() const { return m_end; }
    int getStepValue() const { return m_step; }
    void setRangeValue(int begin, int end, int step)
    {
        m_begin = begin;
        m_end = end;
        m_step = step;
    }

    /// The custom header: initialisation, condition and increment.
    const std::string& getFun1() const { return m_init; }
    void setFun1(const std::string& init) { m_init = init; }
    const std::string& getFun2() const { return m_condition; }
    void setFun2(const std::string& condition) { m_condition = condition; }
    const std::string& getFun3() const { return m_increment; }
    void setFun3(const std::string& increment) { m_increment = increment; }

private:
    bool m_custom = false;
    std::string m_variableName = "i";
    bool m_needDefine = true;
    int m_begin = 0;
    int m_end = 10;
    int m_step = 1;
    std::string m_init;
    std::string m_condition;
    std::string m_increment;
};
