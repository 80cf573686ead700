#include "tests/fuzz/documents.h"

#include "base/json_scan.h"
#include "model/fields/block_fields.h"
#include "standalone/model_service/documents/AppletModel.h"
#include "standalone/model_service/documents/applet_json.h"
#include "standalone/model_service/documents/block_factory.h"
#include "standalone/model_service/stores/VariableStore.h"

#include <limits>
#include <random>

using namespace standalone;

namespace documents {

namespace {

using Random = std::mt19937;

/// A whole number below @p count.
int below(Random& random, int count)
{
    return int(random() % std::uint32_t(count)); // std's distributions differ between libraries
}

std::string randomText(Random& random)
{
    static const char* const pieces[] = {"a",  "\n",   "\"", "\\", "步骤", "\xF0\x9F\x9A\x97",
                                         "\t", "x_1 ", "/",  "{",  "\x01", "\xEE\x80\x80",
                                         "0",  "]"};
    std::string text;
    for (int left = below(random, 6); left > 0; --left)
        text += pieces[below(random, int(std::size(pieces)))];
    if (below(random, 40) == 0)
        text += '\0';
    return text;
}

int randomInt(Random& random)
{
    switch (below(random, 4)) {
    case 0:
        return std::numeric_limits<int>::min();
    case 1:
        return std::numeric_limits<int>::max();
    default:
        return below(random, 20) - 2;
    }
}

/// An archive that gives fields random values; about half of them keep their default.
class Filler
{
public:
    static constexpr bool Reads = true;

    explicit Filler(Random& random) : m_random(random) {}

    void field(const char*, std::string& value, std::string_view = {})
    {
        if (isChanged())
            value = randomText(m_random);
    }
    void code(const char* name, std::string& text) { field(name, text); }
    void field(const char*, bool& value, bool) { value = isChanged(); }
    void field(const char*, int& value, int)
    {
        if (isChanged())
            value = randomInt(m_random);
    }
    void field(const char*, std::uint32_t& value, std::uint32_t)
    {
        if (isChanged())
            value = static_cast<std::uint32_t>(randomInt(m_random));
    }
    template <class Record, class Visit> void record(const char*, Record& value, Visit visit)
    {
        visit(*this, value);
    }
    template <class Element, class Visit>
    void list(const char*, std::vector<Element>& values, Visit visit)
    {
        values.resize(static_cast<std::size_t>(below(m_random, 4)));
        for (auto& value : values)
            visit(*this, value);
    }

private:
    bool isChanged() { return below(m_random, 2) == 0; }
    Random& m_random;
};

class Builder
{
public:
    explicit Builder(Random& random) : m_random(random) {}

    void build(AppletModel& applet)
    {
        for (int count = 1 + below(m_random, 2); count > 0; --count) {
            SequenceContent sequence;
            sequence.head.id = "sequence-" + std::to_string(count);
            sequence.head.name = randomText(m_random) + "n" + std::to_string(count);
            sequence.head.comment = randomText(m_random);
            sequence.head.isMain = count == 1;
            for (auto& flow : sequence.flows)
                fill(flow, 3, 0);
            applet.addSequence(std::move(sequence));
        }
    }

private:
    void fill(AppletModel::Blocks& blocks, int most, int depth)
    {
        for (int left = below(m_random, most); left > 0; --left) {
            auto block = randomBlock();
            Filler filler(m_random);
            block_fields::visitIdentity(filler, *block);
            block_fields::visitGeneral(filler, *block);
            block_fields::visitOwn(filler, *block);
            block->uuid = "block-" + std::to_string(++m_count);
            block->property.name = randomText(m_random);
            block->property.stepType = block->stepType();
            if (below(m_random, 3) == 0)
                block->property.extra = {{"键", randomText(m_random)}, {"udsJson", "{}"}};
            if (depth < 2)
                fill(block->children, 2 + below(m_random, 2), depth + 1);
            blocks.push_back(block);
        }
    }

    /// Of any kind that has a class.
    std::shared_ptr<IProcessBlock> randomBlock()
    {
        for (;;) {
            const auto baseType = below(m_random, 8) == 0 ? DiagnosticStep : BasicStep;
            if (auto block = makeBlock(baseType, 1 + below(m_random, step_type::Buzz)))
                return block;
        }
    }

    Random& m_random;
    int m_count = 0;
};

std::string randomVariables(Random& random)
{
    VariableStore store;
    for (int left = below(random, 5); left > 0; --left) {
        const auto scope = below(random, 2) == 0 ? ProcessVariable : SequenceVariable;
        auto variable = *store.find(store.add("a", scope, "sequence-1"));
        variable.name = randomText(random);
        variable.value = randomText(random);
        variable.length = randomInt(random);
        store.update("a", variable);
    }
    return store.appletText("a");
}

QByteArray document(Random& random)
{
    AppletModel applet;
    Builder(random).build(applet);
    return "{\"logicvar\":" + QByteArray::fromStdString(randomVariables(random)) +
           ",\"logicview\":" + QByteArray::fromStdString(writeApplet(applet)) + '}';
}

/// Where a document's values and members stand.
struct Spans
{
    struct Span
    {
        int begin;
        int end;
    };
    std::vector<Span> values;
    std::vector<Span> members; ///< with their values
    std::vector<Span> names;   ///< with their quotes

    void begin(char, std::size_t at) { open(at); }
    void end(std::size_t at)
    {
        const auto number = m_open.back();
        m_open.pop_back();
        values[number].end = int(at) + 1;
        closeMember(m_members.back(), int(at) + 1);
        m_members.pop_back();
    }
    void key(std::size_t begin, std::size_t end, bool)
    {
        names.push_back({int(begin) - 1, int(end) + 1});
        m_memberBegin = int(begin) - 1;
    }
    void string(std::size_t begin, std::size_t end, bool) { add(int(begin) - 1, int(end) + 1); }
    void scalar(std::size_t begin, std::size_t end) { add(int(begin), int(end)); }
    void space(std::size_t, std::size_t) {}

private:
    void open(std::size_t at)
    {
        m_open.push_back(values.size());
        m_members.push_back(m_memberBegin);
        m_memberBegin = -1;
        values.push_back({int(at), int(at)});
    }
    void add(int begin, int end)
    {
        values.push_back({begin, end});
        closeMember(m_memberBegin, end);
        m_memberBegin = -1;
    }
    void closeMember(int begin, int end)
    {
        if (begin >= 0)
            members.push_back({begin, end});
    }

    std::vector<std::size_t> m_open;
    std::vector<int> m_members;
    int m_memberBegin = -1;
};

QByteArray oddValue(Random& random)
{
    static const char* const values[] = {"null",
                                         "true",
                                         "-1",
                                         "1e999",
                                         "99999999999999999999",
                                         "0.5",
                                         "\"\"",
                                         "[]",
                                         "{}",
                                         "[1,[]]",
                                         "{\"a\":{\"b\":[0]}}",
                                         "\"\\u0000\"",
                                         "\"\\ud800x\"",
                                         "\"block-1\"",
                                         "[\"a\",2]",
                                         "2147483648",
                                         "\"sequence-1\"",
                                         "-0.0"};
    if (below(random, 16) == 0) {
        const int depth = 1 + below(random, 1500);
        return QByteArray(depth, '[') + QByteArray(depth, ']');
    }
    return values[below(random, int(std::size(values)))];
}

/// One fault in the structure.
QByteArray misbuilt(const QByteArray& text, Random& random)
{
    Spans spans;
    json_scan::scan({text.constData(), std::size_t(text.size())}, spans);
    const auto any = [&](const std::vector<Spans::Span>& of) {
        return of.empty() ? Spans::Span{0, 0} : of[std::size_t(below(random, int(of.size())))];
    };
    const auto textOf = [&](Spans::Span span) {
        return text.mid(span.begin, span.end - span.begin);
    };
    const auto replaced = [&](Spans::Span span, const QByteArray& by) {
        return text.left(span.begin) + by + text.mid(span.end);
    };
    const auto member = any(spans.members);
    const auto value = any(spans.values);
    const auto name = any(spans.names);
    switch (below(random, 7)) {
    case 0:
        return replaced(member, "\"gone\":0");
    case 1:
        return replaced(member, textOf(member) + ',' + textOf(member));
    case 2:
        return replaced(member, textOf(member) + ',' + textOf(any(spans.members)));
    case 3:
        return replaced(value, textOf(any(spans.values)));
    case 4:
        return replaced(name, textOf(any(spans.names)));
    case 5:
        return replaced(value, '[' + textOf(value) + ']');
    default:
        return replaced(value, oddValue(random));
    }
}

/// One fault in the bytes.
QByteArray misspelt(QByteArray text, Random& random)
{
    if (text.isEmpty())
        return text;
    const int at = below(random, text.size());
    const int length = 1 + below(random, 20);
    switch (below(random, 5)) {
    case 0:
        text[at] = char(below(random, 256));
        return text;
    case 1:
        return text.remove(at, length);
    case 2:
        return text.insert(at, text.mid(below(random, text.size()), length));
    case 3:
        return text.insert(at, "{}[],:\"\\0\x00\xff"[below(random, 12)]);
    default:
        return text.left(at);
    }
}

} // namespace

QByteArray whole(std::uint32_t seed)
{
    Random random(seed);
    return document(random);
}

QByteArray damaged(std::uint32_t seed)
{
    Random random(seed);
    QByteArray text = document(random);
    for (int left = 1 + below(random, 4); left > 0; --left)
        text = below(random, 4) == 0 ? misspelt(text, random) : misbuilt(text, random);
    return text;
}

} // namespace documents
