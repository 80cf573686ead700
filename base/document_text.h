#pragma once

#include <QByteArray>
#include <QString>

#include <map>
#include <memory>
#include <string>
#include <string_view>

/// The text of an applet's document: one object, whose members belong to the services and are
/// handed on without being taken apart. No state; any thread.
namespace document_text {

/// What stands in a text.
struct Parts
{
    bool isObject = false;
    /// By name as it stands in the text; of two of one name the last. A member that the text breaks
    /// off in reaches to the fault. Names point into the text, values into @c values.
    std::map<std::string_view, std::string_view> members;
    /// The values without the white space of the text: half of a document is indentation.
    std::unique_ptr<char[]> values;
    const char* fault = nullptr; ///< what broke the text, UTF-8; null for a whole one
    std::size_t faultOffset = 0;
};

/// Reads a text to its end, or to its first fault.
Parts split(std::string_view text);

/// UTF-8 of a long text. QString::toUtf8() asks for three bytes a character, which for a document
/// is time spent on memory that nobody uses.
QByteArray utf8Of(const QString& text);

/// "行 3 列 14": where an offset stands, counted from 1; columns are bytes.
QString lineAndColumn(std::string_view text, std::size_t offset);

/// The first byte that is not part of UTF-8 text; npos if all is.
std::size_t firstForeignByte(std::string_view text);

/// A text of one value on lines of its own, indented as QJsonDocument::toJson() does it, members in
/// their order and numbers digit by digit. False, with @p complaint set, for a broken text and for
/// one nested deeper than other programs read.
bool indent(std::string_view json, std::string& text, QString& complaint);

/// Writes one object of named JSON texts, indented as QJsonDocument::toJson() does it. Numbers stay
/// digit by digit. False if one of the texts is broken or has members in another order than that
/// library's, or characters otherwise escaped.
bool join(const std::map<std::string_view, std::string_view>& members, std::string& text);

} // namespace document_text
