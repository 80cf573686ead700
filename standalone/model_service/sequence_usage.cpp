#include "standalone/model_service/sequence_usage.h"

#include "standalone/model_service/AppletModel.h"
#include "standalone/model_service/block_fields.h"

#include <algorithm>
#include <unordered_map>

namespace standalone {

namespace {

constexpr int JumpToSequence = 2;

/// An archive that collects the identifiers in every text of a block.
class WordCollector
{
public:
    static constexpr bool Reads = false;

    void field(const char*, const std::string& value, const char* = "") { addWords(value); }
    template <class Value> void field(const char*, const Value&, const Value&) {}

    template <class Record, class Visit> void record(const char*, const Record& value, Visit visit)
    {
        visit(*this, value);
    }

    template <class Elements, class Visit>
    void list(const char*, const Elements& values, Visit visit)
    {
        for (const auto& value : values)
            visit(*this, value);
    }

    std::unordered_set<std::string> words;

private:
    static bool isWordPart(char c)
    {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '_';
    }

    void addWords(const std::string& text)
    {
        for (auto begin = text.begin(); begin != text.end();) {
            begin = std::find_if(begin, text.end(), isWordPart);
            const auto end = std::find_if_not(begin, text.end(), isWordPart);
            if (begin != end)
                words.insert(std::string(begin, end));
            begin = end;
        }
    }
};

void collectWords(const std::vector<std::shared_ptr<IProcessBlock>>& blocks, WordCollector& words)
{
    for (const auto& block : blocks) {
        const IProcessBlock& readOnly = *block;
        block_fields::visitGeneral(words, readOnly);
        block_fields::visitOwn(words, readOnly);
        collectWords(block->children, words);
    }
}

class CallCollector
{
public:
    explicit CallCollector(bool withDisabled) : m_withDisabled(withDisabled) {}

    void collect(const std::vector<std::shared_ptr<IProcessBlock>>& blocks)
    {
        for (const auto& block : blocks) {
            if (block->enableState == 0 && !m_withDisabled)
                continue;
            const auto* call = dynamic_cast<const SequenceProcessBlock*>(block.get());
            if (call && call->sourceKind == SequenceProcessBlock::AppletSequence)
                add(call->sequenceId);
            if (block->trueAction == JumpToSequence)
                add(block->trueTarget);
            if (block->falseAction == JumpToSequence)
                add(block->falseTarget);
            collect(block->children);
        }
    }

    std::vector<std::string> ids;

private:
    void add(const std::string& id)
    {
        if (!id.empty() && std::find(ids.begin(), ids.end(), id) == ids.end())
            ids.push_back(id);
    }

    bool m_withDisabled;
};

/// A search in depth: a sequence that is met again while it is open closes a loop.
class LoopSearch
{
public:
    explicit LoopSearch(const AppletModel& applet) : m_applet(applet) {}

    bool leadsIntoLoop(const std::string& sequenceId)
    {
        const auto [state, isNew] = m_isOpen.try_emplace(sequenceId, true);
        if (!isNew)
            return state->second;
        const auto* sequence = m_applet.sequence(sequenceId);
        if (sequence) {
            for (const auto& called : calledSequences(*sequence, false)) {
                if (leadsIntoLoop(called))
                    return true;
            }
        }
        m_isOpen[sequenceId] = false;
        return false;
    }

private:
    const AppletModel& m_applet;
    std::unordered_map<std::string, bool> m_isOpen;
};

} // namespace

std::vector<std::string> calledSequences(const SequenceContent& sequence, bool withDisabled)
{
    CallCollector calls(withDisabled);
    for (const auto& flow : sequence.flows)
        calls.collect(flow);
    return calls.ids;
}

bool hasCallLoop(const AppletModel& applet, const std::string& sequenceId)
{
    return LoopSearch(applet).leadsIntoLoop(sequenceId);
}

std::unordered_set<std::string> usedWords(const std::vector<std::shared_ptr<IProcessBlock>>& blocks)
{
    WordCollector words;
    collectWords(blocks, words);
    return std::move(words.words);
}

} // namespace standalone
