#pragma once

#include "model/IProcessBlock.h"

/// A diagnostic step (UDS, ISO 14229), edited by the diagnosis service.
class UdsProcessBlock : public CopyableBlock<UdsProcessBlock>
{
public:
    explicit UdsProcessBlock(int stepType) : CopyableBlock(DiagnosticStep, stepType) {}

    std::string description() const override;
    std::string settingText() const override;

    /// The JSON text of the step, opaque to the editor.
    virtual void setUdsConfig(const std::string& json);
    virtual std::string udsConfig() const;

    std::string stepText;    ///< what the description column shows, from the diagnosis service
    std::string callCode;    ///< generated: the call of the task
    std::string taskCode;    ///< generated: the task's function
    std::string declareCode; ///< generated: what it needs at file scope

private:
    std::string m_config;
};
