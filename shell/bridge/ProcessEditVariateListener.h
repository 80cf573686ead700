#pragma once

#include "model/services/system_variate.h"

#include <functional>

/// Hands every change of a system variable to a function, on the variable service's thread.
class ProcessEditVariateListener : public IUIVariateListener
{
public:
    using Function = std::function<void(Operation operation, SystemVarDef variable)>;

    /// Set before the first change can arrive or under the caller's own care.
    void setFunction(Function function) { m_function = std::move(function); }

private:
    void onVariateDirectChange(Operation operation, SystemVarDef variable) override
    {
        if (m_function)
            m_function(operation, std::move(variable));
    }

    Function m_function;
};
