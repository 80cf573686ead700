#pragma once

#include <QByteArray>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace standalone {

class JsonTree;

/// A value of a JsonTree; it lives as long as the tree. A value that isn't there is missing, and
/// may be asked all the same.
class JsonValue
{
public:
    enum Kind : std::uint8_t { Missing, Null, False, True, Number, String, Array, Object };

    JsonValue() = default;
    JsonValue(const JsonTree& tree, std::uint32_t index) : m_tree(&tree), m_index(index) {}

    Kind kind() const;
    bool isMissing() const { return m_tree == nullptr; }
    bool isString() const { return kind() == String; }
    bool isBool() const { return kind() == True || kind() == False; }
    bool isArray() const { return kind() == Array; }
    bool isObject() const { return kind() == Object; }

    /// A string without escapes, or any other value.
    bool isPlain() const;

    /// The source of a scalar; of a string what stands between the quotes.
    std::string_view source() const;
    /// A string decoded. Half a pair of surrogates becomes U+FFFD, and @p isSound false.
    std::string text(bool* isSound = nullptr) const;
    /// A number without a fraction that an int64 can hold exactly; false for any other value.
    bool whole(std::int64_t& number) const;

    /// The first element of an array, or the first member's name in an object; missing if empty.
    JsonValue first() const;
    std::size_t count() const; ///< of an array's elements
    /// What follows an element or a member's value; missing at the end.
    JsonValue nextIn(const JsonValue& container) const;
    /// The value of the member of which this is the name.
    JsonValue valueOfName() const { return {*m_tree, m_index + 1}; }
    /// A member of an object, the last of that name; missing if there is none.
    JsonValue member(std::string_view name) const;

private:
    friend class JsonTree;
    const JsonTree* m_tree = nullptr;
    std::uint32_t m_index = 0;
};

/// A JSON text as a flat list of its values in the order of the text. Of a broken text it holds
/// what stands before the fault. Any nesting.
class JsonTree
{
public:
    JsonTree() = default;
    JsonTree(const JsonTree&) = delete; // values point into it
    JsonTree& operator=(const JsonTree&) = delete;

    void read(const QByteArray& text);

    JsonValue root() const { return m_nodes.empty() ? JsonValue() : JsonValue(*this, 0); }
    const char* fault() const { return m_fault; } ///< UTF-8; null for a whole text
    std::size_t faultOffset() const { return m_faultOffset; }
    std::size_t objectCount() const { return m_objectCount; } ///< at any depth

private:
    friend class JsonValue;
    friend class JsonTreeBuilder;

    struct Node
    {
        std::uint32_t begin; ///< in the text
        std::uint32_t end;
        std::uint32_t next; ///< the first node behind this value
        JsonValue::Kind kind;
        bool isPlain; ///< a string without escapes
    };

    QByteArray m_text;
    std::vector<Node> m_nodes;
    std::size_t m_objectCount = 0;
    const char* m_fault = nullptr;
    std::size_t m_faultOffset = 0;
};

inline JsonValue::Kind JsonValue::kind() const
{
    return m_tree ? m_tree->m_nodes[m_index].kind : Missing;
}

inline bool JsonValue::isPlain() const
{
    return !m_tree || m_tree->m_nodes[m_index].isPlain;
}

inline std::string_view JsonValue::source() const
{
    if (!m_tree)
        return {};
    const auto& node = m_tree->m_nodes[m_index];
    return {m_tree->m_text.constData() + node.begin, node.end - node.begin};
}

inline JsonValue JsonValue::first() const
{
    if (!isArray() && !isObject())
        return {};
    const bool isEmpty = m_tree->m_nodes[m_index].next == m_index + 1;
    return isEmpty ? JsonValue() : JsonValue(*m_tree, m_index + 1);
}

inline JsonValue JsonValue::nextIn(const JsonValue& container) const
{
    const auto next = m_tree->m_nodes[m_index].next;
    const bool isLast = next >= m_tree->m_nodes[container.m_index].next;
    return isLast ? JsonValue() : JsonValue(*m_tree, next);
}

} // namespace standalone
