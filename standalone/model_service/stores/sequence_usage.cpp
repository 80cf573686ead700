#include "standalone/model_service/stores/sequence_usage.h"

#include "model/fields/block_fields.h"
#include "standalone/model_service/documents/AppletModel.h"

#include <algorithm>
#include <unordered_map>

namespace standalone {

namespace {

constexpr int JumpToSequence = 2;

/// An archive that collects the identifiers in every text of a block.
class WordCollector : public block_fields::Search<WordCollector>
{
public:
    using Search::field;
    void field(const char*, const std::string& value) { addWords(value); }
    void field(const char*, const std::string& value, const char*) { addWords(value); }
    void code(const char*, const std::string& text) { addWords(text); }

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
        if (!id.empty() && m_known.insert(id).second)
            ids.push_back(id);
    }

    bool m_withDisabled;
    std::unordered_set<std::string> m_known;
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
    // A search in depth: a sequence that is met again while it is open closes a loop. Chains of
    // calls may be as long as the document, so the walk keeps its own stack.
    struct Level
    {
        std::string id;
        std::vector<std::string> called;
        std::size_t next = 0;
    };
    std::unordered_map<std::string, bool> isOpen;
    std::vector<Level> levels;
    const auto open = [&](const std::string& id) {
        const auto* sequence = applet.sequence(id);
        isOpen[id] = true;
        levels.push_back(
            {id, sequence ? calledSequences(*sequence, false) : std::vector<std::string>()});
    };
    open(sequenceId);
    while (!levels.empty()) {
        auto& level = levels.back();
        if (level.next == level.called.size()) {
            isOpen[level.id] = false;
            levels.pop_back();
            continue;
        }
        const std::string called = level.called[level.next++];
        const auto known = isOpen.find(called);
        if (known == isOpen.end())
            open(called);
        else if (known->second)
            return true;
    }
    return false;
}

std::unordered_set<std::string> usedWords(const std::vector<std::shared_ptr<IProcessBlock>>& blocks)
{
    WordCollector words;
    collectWords(blocks, words);
    return std::move(words.words);
}

} // namespace standalone
