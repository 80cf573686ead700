#pragma once

#include <QString>

#include <string_view>

namespace standalone {

/// Where in a document a value stands: a chain of names and positions on the reader's stack, which
/// becomes a text only where one is needed.
class DocumentPlace
{
public:
    DocumentPlace() = default; ///< the whole document
    /// A member; @p name and @p above must outlive the place.
    DocumentPlace(std::string_view name, const DocumentPlace& above) : m_above(&above), m_name(name)
    {
    }
    /// An element of an array.
    DocumentPlace(int index, const DocumentPlace& above) : m_above(&above), m_index(index) {}

    void setIndex(int index) { m_index = index; }
    int index() const { return m_index; }

    /// As "sequences[0].mainFlow[2].delay"; empty for the whole document. The middle of a very long
    /// one is left out.
    QString text() const;

private:
    const DocumentPlace* m_above = nullptr;
    std::string_view m_name;
    int m_index = -1;
};

} // namespace standalone
