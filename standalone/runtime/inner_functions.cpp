#include "standalone/runtime/inner_functions.h"

#include "model/type_tables.h"
#include "standalone/runtime/function_text.h"

#include <initializer_list>

namespace standalone {

namespace {

struct Parameter
{
    DrelVarType type;
    const char* name;
    const char* description;
};

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

QList<_DrelFunction> runFunctions()
{
    const Parameter line = {DrelCharPtr, "text", "日志内容"};
    const Parameter question = {DrelString, "text", "提问内容"};
    return {
        function(DrelVoid, "log_debug", "输出调试日志", {line}),
        function(DrelVoid, "log_info", "输出日志", {line}),
        function(DrelVoid, "log_warning", "输出警告日志", {line}),
        function(DrelVoid, "log_error", "输出错误日志", {line}),
        function(DrelVoid, "step_fail", "将当前步骤标记为失败", {{DrelS32, "code", "失败代码"}}),
        function(DrelVoid, "delay_ms", "等待, 停止运行时立即返回",
                 {{DrelS64, "milliseconds", "毫秒"}}),
        function(DrelS64, "now_ms", "单调时钟的毫秒数", {}),
        function(DrelVoid, "wait_until", "等到单调时钟到达某一时刻, 停止运行时立即返回",
                 {{DrelS64, "moment", "now_ms 的毫秒数"}}),
        function(DrelS64, "unix_time", "自 1970 年起的秒数 (UTC)", {}),
        function(DrelString, "time_text", "本地日期和时间的文本",
                 {{DrelString, "format", "strftime 格式, 例如 %Y-%m-%d %H:%M:%S"}}),
        function(DrelString, "get_system_text", "读取系统变量的文本",
                 {{DrelString, "name", "变量名"}}),
        function(DrelS32, "set_system_text", "写入系统变量的文本, 成功返回 0, 否则返回 -1",
                 {{DrelString, "name", "变量名"}, {DrelString, "value", "文本"}}),
        function(DrelDouble, "get_system_number", "读取系统变量的数值",
                 {{DrelString, "name", "变量名"}}),
        function(DrelS32, "set_system_number", "写入系统变量的数值, 成功返回 0, 否则返回 -1",
                 {{DrelString, "name", "变量名"}, {DrelDouble, "value", "数值"}}),
        function(DrelBool, "ask_yes_no", "向用户提问, 回答“是”时返回 true", {question}),
        function(DrelString, "ask_text", "请用户输入文本, 取消时返回空文本",
                 {question, {DrelString, "value", "初始文本"}}),
        function(DrelS32, "show_procedure_box", "显示提示框, 用户关闭后返回 0, 停止运行时返回 -1",
                 {{DrelString, "title", "标题"}, {DrelString, "text", "内容"}}),
        function(DrelS32, "show_capplet_box",
                 "以小程序名为标题显示提示框, 用户关闭后返回 0, 停止运行时返回 -1",
                 {{DrelString, "text", "内容"}}),
    };
}

QList<_DrelFunction> textFunctions()
{
    const Parameter text = {DrelString, "text", "文本"};
    const Parameter base = {DrelS32, "base", "进制, 2 到 36"};
    const Parameter part = {DrelString, "part", "要查找的文本"};
    const Parameter start = {DrelS32, "start", "起始字节位置, 从 0 起"};
    const Parameter decimals = {DrelS32, "decimals", "小数位数"};
    return {
        function(DrelS32, "text_length", "文本的字节数", {text}),
        function(DrelString, "text_part", "截取文本的一部分",
                 {text, start, {DrelS32, "count", "字节数, 负数表示直到末尾"}}),
        function(DrelS32, "text_find", "查找文本, 返回字节位置, 没有时返回 -1",
                 {text, part, start}),
        function(DrelString, "text_replace", "替换文本中的所有相同部分",
                 {text, part, {DrelString, "other", "替换后的文本"}}),
        function(DrelString, "text_upper", "转换为大写字母", {text}),
        function(DrelString, "text_lower", "转换为小写字母", {text}),
        function(DrelString, "text_trim", "去掉首尾的空白字符", {text}),
        function(DrelString, "text_format", "按 printf 格式生成文本, 格式之后可跟参数",
                 {{DrelCharPtr, "format", "printf 格式"}}),
        function(
            DrelVoid, "text_copy", "将文本复制到字符缓冲区, 超长时截断",
            {{DrelCharPtr, "target", "字符缓冲区"}, text, {DrelS32, "size", "缓冲区的字节数"}}),
        function(DrelS64, "text_to_integer", "文本转换为整数, 不是数字时返回 0", {text, base}),
        function(DrelDouble, "text_to_number", "文本转换为浮点数, 不是数字时返回 0", {text}),
        function(DrelString, "integer_to_text", "整数转换为文本",
                 {{DrelS64, "value", "整数"}, base}),
        function(DrelString, "number_to_text", "浮点数转换为文本",
                 {{DrelDouble, "value", "数值"}, decimals}),
        function(DrelS32, "hex_to_bytes",
                 "十六进制文本转换为字节, 返回字节数, 格式错误或放不下时返回 -1",
                 {text, {DrelU8Ptr, "data", "字节缓冲区"}, {DrelS32, "size", "缓冲区的字节数"}}),
        function(DrelString, "bytes_to_hex", "字节转换为十六进制文本",
                 {{DrelU8Ptr, "data", "字节"}, {DrelS32, "size", "字节数"}}),
    };
}

QList<_DrelFunction> byteFunctions()
{
    const Parameter data = {DrelU8Ptr, "data", "字节"};
    const Parameter size = {DrelS32, "size", "字节数"};
    const Parameter index = {DrelS32, "index", "字节位置, 从 0 起"};
    const Parameter name = {DrelString, "name", "算法名称"};
    const Parameter word = {DrelU16, "value", "数值"};
    const Parameter doubleWord = {DrelU32, "value", "数值"};
    return {
        function(DrelU8, "crc8",
                 "8 位 CRC: CRC-8/SMBUS, CRC-8/SAE-J1850, CRC-8/AUTOSAR, CRC-8/MAXIM-DOW, "
                 "CRC-8/ROHC",
                 {name, data, size}),
        function(DrelU16, "crc16",
                 "16 位 CRC: CRC-16/ARC, CRC-16/CCITT-FALSE, CRC-16/X-25, CRC-16/KERMIT, "
                 "CRC-16/MODBUS, CRC-16/XMODEM, CRC-16/USB",
                 {name, data, size}),
        function(DrelU32, "crc32",
                 "32 位 CRC: CRC-32, CRC-32/AUTOSAR, CRC-32/BZIP2, CRC-32/ISCSI, CRC-32/MPEG-2",
                 {name, data, size}),
        function(DrelU8, "get_byte", "读取一个字节", {data, index}),
        function(DrelVoid, "set_byte", "写入一个字节", {data, index, {DrelU8, "value", "数值"}}),
        function(DrelU16, "get_u16_be", "读取 16 位数值, 高字节在前", {data, index}),
        function(DrelU16, "get_u16_le", "读取 16 位数值, 低字节在前", {data, index}),
        function(DrelU32, "get_u32_be", "读取 32 位数值, 高字节在前", {data, index}),
        function(DrelU32, "get_u32_le", "读取 32 位数值, 低字节在前", {data, index}),
        function(DrelVoid, "set_u16_be", "写入 16 位数值, 高字节在前", {data, index, word}),
        function(DrelVoid, "set_u16_le", "写入 16 位数值, 低字节在前", {data, index, word}),
        function(DrelVoid, "set_u32_be", "写入 32 位数值, 高字节在前", {data, index, doubleWord}),
        function(DrelVoid, "set_u32_le", "写入 32 位数值, 低字节在前", {data, index, doubleWord}),
    };
}

QList<_DrelFunction> numberFunctions()
{
    const Parameter number = {DrelDouble, "x", "数值"};
    return {
        function(DrelDouble, "fabs", "绝对值", {number}),
        function(DrelDouble, "sqrt", "平方根", {number}),
        function(DrelDouble, "floor", "向下取整", {number}),
        function(DrelDouble, "ceil", "向上取整", {number}),
        function(DrelDouble, "pow", "幂", {number, {DrelDouble, "y", "指数"}}),
    };
}

} // namespace

QList<_DrelFunction> innerFunctions()
{
    return runFunctions() + textFunctions() + byteFunctions() + numberFunctions();
}

} // namespace standalone
