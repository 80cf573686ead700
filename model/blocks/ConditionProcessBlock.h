#pragma once

#include "model/IProcessBlock.h"

/// A comparison: the base of the steps with a condition, and by value the working copy of their
/// editor. The operands are expressions; an empty one counts as "0" on both sides.
class ConditionProcessBlock : public CopyableBlock<ConditionProcessBlock>
{
public:
    explicit ConditionProcessBlock(int stepType = step_type::Condition)
        : CopyableBlock(BasicStep, stepType)
    {
    }
    ConditionProcessBlock(const ConditionProcessBlock&) = default;
    ConditionProcessBlock& operator=(const ConditionProcessBlock&) = default;

    std::string description() const override;
    std::string settingText() const override;

    const std::string& getFun1() const { return m_left; }
    void setFun1(const std::string& left) { m_left = left; }
    const std::string& getFun2() const { return m_right; }
    void setFun2(const std::string& right) { m_right = right; }

    /// One of "==", "!=", ">", "<", ">=", "<=".
    const std::string& getOperator() const { return m_operator; }
    /// Whether the first getArraySize() elements of two arrays are compared; only with "==", "!=".
    bool getOperatorIsArray() const { return m_isArray; }
    int getArraySize() const { return m_arraySize; }
    void setOperator(const std::string& text, bool isArray, int arraySize)
    {
        m_operator = text;
        m_isArray = isArray;
        m_arraySize = arraySize;
    }

    /// Takes over the comparison of @p other and nothing else of it.
    void setCondition(const ConditionProcessBlock& other);

private:
    std::string m_left;
    std::string m_right;
    std::string m_operator = "==";
    bool m_isArray = false;
    int m_arraySize = 1;
};

class IfProcessBlock : public CopyableBlock<IfProcessBlock, ConditionProcessBlock>
{
public:
    IfProcessBlock() : CopyableBlock(step_type::If) {}
};

class ElseIfProcessBlock : public CopyableBlock<ElseIfProcessBlock, ConditionProcessBlock>
{
public:
    ElseIfProcessBlock() : CopyableBlock(step_type::ElseIf) {}
};

class WhileProcessBlock : public CopyableBlock<WhileProcessBlock, ConditionProcessBlock>
{
public:
    WhileProcessBlock() : CopyableBlock(step_type::While) {}
};

class DoWhileProcessBlock : public CopyableBlock<DoWhileProcessBlock, ConditionProcessBlock>
{
public:
    DoWhileProcessBlock() : CopyableBlock(step_type::DoWhile) {}
};
