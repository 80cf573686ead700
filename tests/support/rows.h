#pragma once

#include <QTest>

#include <tuple>
#include <vector>

/// A test that goes through the rows of a table by itself:
///
///     const rows::Table<QString, int> table{{"empty", QString(), 0}, {"one", text("a"), 1}};
///     for (const auto& [row, name, size] : table) {
///         const rows::Named named(row);
///         QCOMPARE(name.size(), size);
///     }
namespace rows {

/// The first cell of a row is its name.
template <class... Cells> using Table = std::vector<std::tuple<const char*, Cells...>>;

/// Says after a failure in which row it was. Stands at the beginning of the loop's body.
class Named
{
public:
    explicit Named(const char* row) : m_row(row) {}
    ~Named()
    {
        if (QTest::currentTestFailed())
            qWarning("in row \"%s\"", m_row);
    }
    Q_DISABLE_COPY_MOVE(Named)

private:
    const char* m_row;
};

} // namespace rows
