#pragma once

#include <QtGlobal>

#include <string_view>

/// The texts of a step that a user writes, as messages name them; to be translated.
namespace codegen {
namespace user_text {

constexpr const char* Statement = QT_TRANSLATE_NOOP("codegen", "语句");
constexpr const char* Expression = QT_TRANSLATE_NOOP("codegen", "表达式");
constexpr const char* Condition = QT_TRANSLATE_NOOP("codegen", "条件");
constexpr const char* Call = QT_TRANSLATE_NOOP("codegen", "函数调用");
constexpr const char* LoopHeader = QT_TRANSLATE_NOOP("codegen", "循环设置");
constexpr const char* StepLoop = QT_TRANSLATE_NOOP("codegen", "单步循环");
constexpr const char* Before = QT_TRANSLATE_NOOP("codegen", "前执行语句");
constexpr const char* After = QT_TRANSLATE_NOOP("codegen", "后执行语句");
constexpr const char* PreCondition = QT_TRANSLATE_NOOP("codegen", "执行前条件");
constexpr const char* PostCondition = QT_TRANSLATE_NOOP("codegen", "执行后跳转条件");

/// Whether it is made of statements on lines of their own, and not part of a line.
inline bool isStatements(std::string_view text)
{
    return text == Statement || text == Before || text == After;
}

} // namespace user_text
} // namespace codegen
