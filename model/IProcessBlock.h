#pragma once

#include "model/BaseStepProperty.h"

#include <memory>
#include <string>
#include <vector>

/// One step of a process: the base class of all block classes.
///
/// Blocks belong to the model service; everybody holds them through std::shared_ptr. A holder
/// changes the public fields in place and hands the block back with
/// sdk_ui_interface::processedit::updateProcess. A typed view is taken by a dynamic cast to the
/// class of the step type; a failed cast means a block that the holder can't edit.
///
/// All texts are UTF-8. GUI thread only; a copy made with clone() may go to another thread.
class IProcessBlock
{
public:
    /// The flow that getAllProcessBySequenceID is asked for: the flow row's base type plus one.
    enum ProcessBlockBelong : int { InitialFlowBlocks = 1, MainFlowBlocks = 2, EndFlowBlocks = 3 };

    virtual ~IProcessBlock();

    virtual int stepType() const;
    virtual logicBlockType baseType() const;

    /// A copy of this block alone that shares its children: the step behind clone().
    virtual std::shared_ptr<IProcessBlock> copyAlone() const = 0;

    /// What the step does, for the description column; may hold several lines parted by "\n".
    virtual std::string description() const = 0;

    /// How the step is set up beyond that, for the settings column; one line, may be empty.
    virtual std::string settingText() const = 0;

    /// A deep copy: the same fields and uuids, with copied children.
    std::shared_ptr<IProcessBlock> clone() const;

    std::string uuid; ///< identity within the applet
    std::string name; ///< step name
    std::string remark;
    std::vector<std::shared_ptr<IProcessBlock>> children; ///< nested steps, in order

    bool tagEnabled = false;
    std::string tag;
    std::string preCondition; ///< expression; empty means always

    int loopType = 0; ///< 0 none, 1 fixed count, 2 custom
    bool loopResultInReport = false;
    int loopCount = 10;
    std::string loopVariable = "i";
    std::string loopInit;
    std::string loopCondition;
    std::string loopStep;

    /// What follows when the post-condition holds or fails: 0 next step, 1 a step of the sequence,
    /// 2 a sequence, 3 end the sequence, 4 end the process, 5 pause. The targets are uuids.
    int trueAction = 0;
    std::string trueTarget;
    int falseAction = 0;
    std::string falseTarget;
    std::string postConditionCode;

    std::string preStatements;
    std::string postStatements;

    /// As a Qt::CheckState: 0 disabled, 1 some of its children enabled, 2 enabled.
    int enableState = 2;

    BaseStepProperty property; ///< the kind's description at the block's creation

protected:
    IProcessBlock(logicBlockType baseType, int stepType);
    IProcessBlock(const IProcessBlock&) = default;
    IProcessBlock& operator=(const IProcessBlock&) = default;

private:
    logicBlockType m_baseType;
    int m_stepType;
};

/// Between a class of blocks and its base: copies the class.
template <class Block, class Base = IProcessBlock> class CopyableBlock : public Base
{
public:
    std::shared_ptr<IProcessBlock> copyAlone() const override
    {
        return std::make_shared<Block>(static_cast<const Block&>(*this));
    }

protected:
    using Base::Base;
};
