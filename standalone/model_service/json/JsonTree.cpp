#include "standalone/model_service/json/JsonTree.h"

#include "base/json_scan.h"

#include <QString>
#include <QVector>

#include <charconv>
#include <cmath>

namespace standalone {

namespace {

/// What the "\u" escapes say that follow one another from @p at on, which moves behind them.
std::string unicodeEscapes(std::string_view source, std::size_t& at, bool& isSound)
{
    QString text;
    for (; source.substr(at, 2) == "\\u"; at += 6) {
        ushort unit = 0;
        std::from_chars(source.data() + at + 2, source.data() + at + 6, unit, 16);
        text += QChar(unit);
    }
    const auto characters = text.toUcs4(); // with U+FFFD for half a pair of surrogates
    const auto sound = QString::fromUcs4(characters.constData(), characters.size());
    isSound = isSound && sound == text;
    return sound.toStdString();
}

/// @p source is well-formed: it passed the scanner.
std::string decoded(std::string_view source, bool& isSound)
{
    std::string text;
    text.reserve(source.size());
    for (std::size_t at = 0; at < source.size();) {
        const auto escape = std::min(source.find('\\', at), source.size());
        text.append(source.substr(at, escape - at));
        if (escape == source.size())
            break;
        at = escape;
        const char name = source[escape + 1];
        if (name == 'u') {
            text += unicodeEscapes(source, at, isSound);
            continue;
        }
        const auto control = json_scan::escapeNames.find(name);
        text += control == std::string_view::npos ? name : json_scan::escapedControls[control];
        at += 2;
    }
    return text;
}

} // namespace

/// The handler that fills a tree.
class JsonTreeBuilder
{
public:
    explicit JsonTreeBuilder(JsonTree& tree) : m_tree(tree) {}

    void begin(char bracket, std::size_t at)
    {
        m_open.push_back(static_cast<std::uint32_t>(m_tree.m_nodes.size()));
        add(bracket == '{' ? JsonValue::Object : JsonValue::Array, at, at, true);
        m_tree.m_objectCount += bracket == '{' ? 1 : 0;
    }
    void end(std::size_t at)
    {
        auto& node = m_tree.m_nodes[m_open.back()];
        node.end = static_cast<std::uint32_t>(at + 1);
        node.next = static_cast<std::uint32_t>(m_tree.m_nodes.size());
        m_open.pop_back();
        m_hasName = false;
    }
    void key(std::size_t begin, std::size_t end, bool isPlain)
    {
        add(JsonValue::String, begin, end, isPlain);
        m_hasName = true;
    }
    void string(std::size_t begin, std::size_t end, bool isPlain)
    {
        add(JsonValue::String, begin, end, isPlain);
    }
    void scalar(std::size_t begin, std::size_t end)
    {
        const char c = m_tree.m_text.constData()[begin];
        add(c == 't'   ? JsonValue::True
            : c == 'f' ? JsonValue::False
            : c == 'n' ? JsonValue::Null
                       : JsonValue::Number,
            begin, end, true);
    }
    void space(std::size_t, std::size_t) {}

    /// Closes what a broken text left open; a name without a value goes.
    void finish(std::size_t at)
    {
        if (m_hasName)
            m_tree.m_nodes.pop_back();
        while (!m_open.empty())
            end(at);
    }

private:
    void add(JsonValue::Kind kind, std::size_t begin, std::size_t end, bool isPlain)
    {
        auto& nodes = m_tree.m_nodes;
        nodes.push_back({static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end),
                         static_cast<std::uint32_t>(nodes.size() + 1), kind, isPlain});
        m_hasName = false;
    }

    JsonTree& m_tree;
    std::vector<std::uint32_t> m_open;
    bool m_hasName = false; ///< the last node is a name whose value is still to come
};

void JsonTree::read(const QByteArray& text)
{
    constexpr std::size_t bytesAValue = 8; // a guess for texts without indentation
    m_text = text;
    m_nodes.clear();
    m_objectCount = 0;
    const std::string_view view(m_text.constData(), static_cast<std::size_t>(m_text.size()));
    m_nodes.reserve(view.size() / bytesAValue);
    JsonTreeBuilder builder(*this);
    const auto result = json_scan::scan(view, builder);
    builder.finish(result.offset);
    m_fault = result.fault;
    m_faultOffset = result.offset;
}

std::string JsonValue::text(bool* isSound) const
{
    if (!isString())
        return {};
    if (m_tree->m_nodes[m_index].isPlain)
        return std::string(source());
    bool sound = true;
    auto text = decoded(source(), sound);
    if (isSound && !sound)
        *isSound = false;
    return text;
}

bool JsonValue::whole(std::int64_t& number) const
{
    if (kind() != Number)
        return false;
    const auto digits = source();
    const char* const end = digits.data() + digits.size();
    const auto exact = std::from_chars(digits.data(), end, number);
    if (exact.ec == std::errc() && exact.ptr == end)
        return true;
    constexpr double most = 9007199254740992.0; // beyond, a double skips whole numbers
    double value = 0;
    const auto rounded = std::from_chars(digits.data(), end, value);
    if (rounded.ec != std::errc() || value != std::floor(value) || std::abs(value) > most)
        return false;
    number = static_cast<std::int64_t>(value);
    return true;
}

std::size_t JsonValue::count() const
{
    std::size_t count = 0;
    if (isArray())
        for (auto item = first(); !item.isMissing(); item = item.nextIn(*this))
            ++count;
    return count;
}

JsonValue JsonValue::member(std::string_view name) const
{
    JsonValue found;
    if (!isObject())
        return found;
    for (auto key = first(); !key.isMissing(); key = key.valueOfName().nextIn(*this)) {
        if (key.source() == name || key.text() == name)
            found = key.valueOfName();
    }
    return found;
}

} // namespace standalone
