#pragma once

#include "model/IProcessBlock.h"

/// A call of a library or applet function.
class ApiProcessBlock : public CopyableBlock<ApiProcessBlock>
{
public:
    struct Parameter
    {
        std::string type; ///< type keyword
        std::string value;
        std::string description;
    };

    ApiProcessBlock() : CopyableBlock(BasicStep, step_type::Api) {}

    std::string description() const override;
    std::string settingText() const override;

    /// Replaces all parameters; they are never changed singly.
    virtual void setParameters(const std::vector<Parameter>& parameters);
    const std::vector<Parameter>& parameters() const { return m_parameters; }

    std::string returnVariable; ///< takes the result; empty: the result is dropped
    std::string returnType;     ///< type keyword
    std::string callText;       ///< as picked, with type keywords in the places of the arguments
    bool userFunction = false;  ///< a function of the applet, not of the library

private:
    std::vector<Parameter> m_parameters;
};
