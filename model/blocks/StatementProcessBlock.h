#pragma once

#include "model/IProcessBlock.h"

/// A free block of code.
class StatementProcessBlock : public CopyableBlock<StatementProcessBlock>
{
public:
    StatementProcessBlock() : CopyableBlock(BasicStep, step_type::Statement) {}

    std::string description() const override;
    std::string settingText() const override;

    const std::string& customCode() const { return m_code; }
    void setCustomCode(const std::string& code) { m_code = code; }

    /// Whether the code goes to a source file of its own, where sequence variables are unknown.
    bool getSplitFile() const { return m_splitFile; }
    void setSplitFile(bool split) { m_splitFile = split; }

private:
    std::string m_code;
    bool m_splitFile = false;
};
