// What an applet asks the editor for, for statements, expressions and API steps. Written
// beside the generated code like applet_runtime.h.

#pragma once

#include "applet_runtime.h"
#include "byte_functions.h"

namespace rt {

/// The longest answer of the editor.
enum { answer_room = 8192 };

inline s64 ask(int question, const string& first, const string& second, const string& third,
               u32 count, char* answer)
{
    const applet_text texts[] = {{first.c_str(), first.size()},
                                 {second.c_str(), second.size()},
                                 {third.c_str(), third.size()}};
    return api->ask(question, texts, count, answer, answer_room);
}

} // namespace rt

// System variables of the workbench

/// Empty, with a line in the log, for a variable that isn't there.
inline string get_system_text(const string& name)
{
    char answer[rt::answer_room];
    const s64 size = rt::ask(applet_read_variable, name, string(), string(), 1, answer);
    return size < 0 ? string() : string(answer, static_cast<size_t>(size));
}

/// 0; -1, with a line in the log, for a variable that isn't there or doesn't take the value.
inline s32 set_system_text(const string& name, const string& value)
{
    char answer[rt::answer_room];
    const s64 size = rt::ask(applet_write_variable, name, value, string(), 2, answer);
    return size < 0 ? -1 : 0;
}

inline double get_system_number(const string& name)
{
    const string text = get_system_text(name);
    const bool is_hex = text.size() > 2 && (text.c_str()[1] == 'x' || text.c_str()[1] == 'X');
    return is_hex ? static_cast<double>(strtoll(text.c_str(), 0, 16)) : text_to_number(text);
}

/// A whole number is written without a point, which whole variables don't take.
inline s32 set_system_number(const string& name, double value)
{
    return set_system_text(name, value == floor(value) && fabs(value) < 1e18
                                     ? text_format("%.0f", value)
                                     : text_format("%.17g", value));
}

// Questions to the user; a stop of the run ends them

inline bool ask_yes_no(const string& text)
{
    char answer[rt::answer_room];
    return rt::ask(applet_ask_yes_no, string(), text, string(), 2, answer) >= 0;
}

/// Empty if the user cancels.
inline string ask_text(const string& text, const string& value)
{
    char answer[rt::answer_room];
    const s64 size = rt::ask(applet_ask_text, string(), text, value, 3, answer);
    return size < 0 ? string() : string(answer, static_cast<size_t>(size));
}

/// Returns when the user has closed the box: 0, or -1 when the run was stopped before.
inline s32 show_procedure_box(const string& title, const string& text)
{
    char answer[rt::answer_room];
    return rt::ask(applet_show_notice, title, text, string(), 2, answer) < 0 ? -1 : 0;
}

/// The same under the applet's name.
inline s32 show_capplet_box(const string& text)
{
    return show_procedure_box(string(), text);
}
