#include "standalone/runtime/inner_functions.h"

#include "model/type_tables.h"

#include <cstring>
#include <initializer_list>

namespace standalone {

namespace {

struct Parameter
{
    DrelVarType type;
    const char* name;
    const char* description;
};

template <std::size_t Size> void copyText(char (&target)[Size], const char* text)
{
    std::strncpy(target, text, Size - 1);
}

_DrelFunction function(DrelVarType returnType, const char* name, const char* description,
                       std::initializer_list<Parameter> parameters)
{
    _DrelFunction record = {};
    copyText(record.name, name);
    copyText(record.description, description);
    record.returnType = returnType;
    int index = 0;
    for (const Parameter& parameter : parameters) {
        auto& slot = record.params[index++];
        copyText(slot.name, parameter.name);
        copyText(slot.description, parameter.description);
        slot.type = parameter.type;
    }
    return record;
}

} // namespace

QList<_DrelFunction> innerFunctions()
{
    const Parameter line = {DrelCharPtr, "text", "日志内容"};
    const Parameter number = {DrelDouble, "x", "数值"};
    return {
        function(DrelVoid, "log_debug", "输出调试日志", {line}),
        function(DrelVoid, "log_info", "输出日志", {line}),
        function(DrelVoid, "log_warning", "输出警告日志", {line}),
        function(DrelVoid, "log_error", "输出错误日志", {line}),
        function(DrelVoid, "step_fail", "将当前步骤标记为失败", {{DrelS32, "code", "失败代码"}}),
        function(DrelVoid, "delay_ms", "延时", {{DrelS64, "milliseconds", "毫秒"}}),
        function(DrelS64, "now_ms", "单调时钟的毫秒数", {}),
        function(DrelDouble, "fabs", "绝对值", {number}),
        function(DrelDouble, "sqrt", "平方根", {number}),
        function(DrelDouble, "floor", "向下取整", {number}),
        function(DrelDouble, "ceil", "向上取整", {number}),
        function(DrelDouble, "pow", "幂", {number, {DrelDouble, "y", "指数"}}),
    };
}

} // namespace standalone
