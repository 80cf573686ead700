#pragma once

#include "model/IProcessBlock.h"

/// A comparison: the base of the steps with a condition, and by value the working copy of their
/// editor. The operands are expressions; an empty one counts as "0" on both sides.
class ConditionProcessBlock : public IProcessBlock
{
public:
    explicit ConditionProcessBlock(int stepType = step_type::Condition)
        : IProcessBlock(BasicStep, stepType)
    {
    }
    ConditionProcessBlock(const ConditionProcessBlock&) = default;
    ConditionProcessBlock& operator=(const ConditionProcessBlock&) = default;

    std::shared_ptr<IProcessBlock> copyAlone() const override;
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

class IfProcessBlock : public ConditionProcessBlock
{
public:
    IfProcessBlock() : ConditionProcessBlock(step_type::If) {}
    std::shared_ptr<IProcessBlock> copyAlone() const override;
};

class ElseIfProcessBlock : public ConditionProcessBlock
{
public:
    ElseIfProcessBlock() : ConditionProcessBlock(step_type::ElseIf) {}
    std::shared_ptr<IProcessBlock> copyAlone() const override;
};

class WhileProcessBlock : public ConditionProcessBlock
{
public:
    WhileProcessBlock() : ConditionProcessBlock(step_type::While) {}
    std::shared_ptr<IProcessBlock> copyAlone() const override;
};

class DoWhileProcessBlock : public ConditionProcessBlock
{
public:
    DoWhileProcessBlock() : ConditionProcessBlock(step_type::DoWhile) {}
    std::shared_ptr<IProcessBlock> copyAlone() const override;
};
