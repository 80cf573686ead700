#pragma once

#include "model/IProcessBlock.h"

/// A call of a sequence of the applet or of a template.
class SequenceProcessBlock : public CopyableBlock<SequenceProcessBlock>
{
public:
    enum Source : int { NothingChosen = 0, AppletSequence = 1, TemplateSequence = 2 };

    /// The template as the block was last saved with, so that the step can show a template that
    /// the present project lacks.
    struct CarriedTemplate
    {
        std::string id;
        std::string json;
        std::string name;
    };

    SequenceProcessBlock() : CopyableBlock(BasicStep, step_type::Sequence) {}

    std::string description() const override;
    std::string settingText() const override;

    int sourceKind = NothingChosen;
    std::string sequenceName; ///< for AppletSequence
    std::string sequenceId;
    std::string templateJson; ///< for TemplateSequence
    std::string templateName;
    std::string templateId;
    CarriedTemplate carried;
};
