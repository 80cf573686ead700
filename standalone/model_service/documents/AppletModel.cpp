#include "standalone/model_service/documents/AppletModel.h"

#include "model/IProcessBlock.h"
#include "standalone/model_service/documents/BlockReader.h"
#include "standalone/model_service/identifiers.h"

#include <algorithm>

namespace standalone {

namespace {

int heightOf(const IProcessBlock& block)
{
    int below = 0;
    for (const auto& child : block.children)
        below = std::max(below, heightOf(*child));
    return below + 1;
}

/// Where a block stands in @p blocks, looked for from @p nearby on: what was added or removed
/// before it since is little.
int indexOf(const AppletModel::Blocks& blocks, const IProcessBlock* block, int nearby)
{
    const int count = static_cast<int>(blocks.size());
    nearby = std::clamp(nearby, 0, count);
    const auto isAt = [&](int i) {
        return i >= 0 && i < count && blocks[static_cast<std::size_t>(i)].get() == block;
    };
    for (int off = 0; off <= count; ++off) {
        if (isAt(nearby - off))
            return nearby - off;
        if (isAt(nearby + off))
            return nearby + off;
    }
    return -1;
}

int placeFor(int index, std::size_t count)
{
    const int end = static_cast<int>(count);
    return index >= 0 && index < end ? index : end;
}

int putAt(AppletModel::Blocks& blocks, const AppletModel::BlockPtr& block, int index)
{
    const int place = placeFor(index, blocks.size());
    blocks.insert(blocks.begin() + place, block);
    return place;
}

void takeOut(AppletModel::Blocks& blocks, const AppletModel::Place& place)
{
    const int index = indexOf(blocks, place.block.get(), place.lastIndex);
    if (index >= 0)
        blocks.erase(blocks.begin() + index);
}

/// Moves a block among its siblings; the index counts without the block itself. Only what stands
/// between the two places is touched.
int moveTo(AppletModel::Blocks& blocks, const AppletModel::Place& place, int index)
{
    const int from = indexOf(blocks, place.block.get(), place.lastIndex);
    const int to = placeFor(index, blocks.size() - 1);
    const auto at = [&](int i) { return blocks.begin() + i; };
    if (from < to)
        std::rotate(at(from), at(from + 1), at(to + 1));
    else
        std::rotate(at(to), at(from), at(from + 1));
    return to;
}

} // namespace

SequenceContent* AppletModel::sequence(const std::string& id) const
{
    const auto found = m_sequencesById.find(id);
    return found == m_sequencesById.end() ? nullptr : found->second;
}

void AppletModel::addSequence(SequenceContent content)
{
    m_sequences.push_back(std::make_unique<SequenceContent>(std::move(content)));
    auto* sequence = m_sequences.back().get();
    m_sequencesById[sequence->head.id] = sequence;
    for (int flow = InitialFlow; flow <= EndFlow; ++flow)
        enterAll(sequence->flows[static_cast<std::size_t>(flow)],
                 {nullptr, nullptr, sequence, flow});
}

bool AppletModel::insertSequence(SequenceContent content, std::size_t index)
{
    const auto areFree = [this](const Blocks& blocks) {
        return std::all_of(blocks.begin(), blocks.end(),
                           [this](const auto& block) { return isFree(*block); });
    };
    if (sequence(content.head.id) ||
        !std::all_of(content.flows.begin(), content.flows.end(), areFree))
        return false;
    addSequence(std::move(content));
    if (index < m_sequences.size())
        std::rotate(m_sequences.begin() + std::ptrdiff_t(index), m_sequences.end() - 1,
                    m_sequences.end());
    return true;
}

void AppletModel::removeSequence(const std::string& id)
{
    auto* removed = sequence(id);
    if (!removed)
        return;
    for (const auto& blocks : removed->flows)
        forget(blocks);
    m_sequencesById.erase(id);
    m_sequences.erase(std::find_if(m_sequences.begin(), m_sequences.end(),
                                   [=](const auto& s) { return s.get() == removed; }));
}

void AppletModel::removeAllSequences()
{
    m_sequencesById.clear();
    m_sequences.clear();
    m_places.clear(); // last: blocks then go in the order in which they lie in memory
}

void AppletModel::assign(Sequences sequences, BlockPlaces places)
{
    removeAllSequences();
    m_sequences = std::move(sequences);
    m_places = std::move(places);
    for (const auto& sequence : m_sequences)
        m_sequencesById[sequence->head.id] = sequence.get();
}

AppletModel::BlockPtr AppletModel::block(const std::string& uuid) const
{
    const auto* found = place(uuid);
    return found ? found->block : nullptr;
}

const AppletModel::Place* AppletModel::place(const std::string& uuid) const
{
    return m_places.find(uuid);
}

bool AppletModel::insert(const BlockPtr& block, const std::string& sequenceId,
                         const std::string& parentUuid, int index)
{
    Place target;
    auto* siblings = siblingsFor(sequenceId, parentUuid, target);
    if (!siblings || !isFree(*block))
        return false;
    if (depthOf(target.parent) + heightOf(*block) > BlockReader::MaxDepth)
        return false;
    target.lastIndex = putAt(*siblings, block, index);
    enter(block, target);
    return true;
}

bool AppletModel::move(const std::string& uuid, const std::string& parentUuid, int index)
{
    auto* found = m_places.find(uuid);
    if (!found)
        return false;
    const Place source = *found;
    Place target;
    auto* siblings = siblingsFor(source.sequence->head.id, parentUuid, target);
    if (!siblings)
        return false;
    for (const auto* above = target.parent; above; above = parentOf(*above)) {
        if (above == source.block.get())
            return false;
    }
    if (depthOf(target.parent) + heightOf(*source.block) > BlockReader::MaxDepth)
        return false;
    auto& former = siblingsOf(source);
    if (siblings == &former) {
        found->lastIndex = moveTo(former, source, index);
        return true;
    }
    takeOut(former, source);
    target.lastIndex = found->lastIndex = putAt(*siblings, source.block, index);
    if (source.flow == target.flow) {
        found->parent = target.parent;
    } else {
        enter(source.block, target);
    }
    return true;
}

int AppletModel::indexOf(const Place& place) const
{
    return standalone::indexOf(siblingsOf(place), place.block.get(), place.lastIndex);
}

void AppletModel::remove(const std::string& uuid)
{
    auto* found = m_places.find(uuid);
    if (!found)
        return;
    const Place place = *found;
    takeOut(siblingsOf(place), place);
    forget({place.block});
}

void AppletModel::removeFlow(const std::string& sequenceId, int flow)
{
    auto* emptied = sequence(sequenceId);
    if (!emptied || flow < InitialFlow || flow > EndFlow)
        return;
    auto& blocks = emptied->flows[static_cast<std::size_t>(flow)];
    forget(blocks);
    blocks.clear();
}

bool AppletModel::replace(const BlockPtr& block)
{
    auto* found = m_places.find(block->uuid);
    if (!found)
        return false;
    const BlockPtr former = found->block;
    if (former == block)
        return true;
    auto& siblings = siblingsOf(*found);
    std::replace(siblings.begin(), siblings.end(), former, block);
    block->children = former->children;
    found->block = block;
    for (const auto& child : block->children)
        if (auto* below = m_places.find(child->uuid))
            below->parent = block.get();
    return true;
}

AppletModel::Blocks* AppletModel::siblingsFor(const std::string& sequenceId,
                                              const std::string& parentUuid, Place& target)
{
    auto* owner = sequence(sequenceId);
    if (!owner)
        return nullptr;
    const int flow = flowOfParentId(parentUuid);
    if (flow >= 0) {
        target = {nullptr, nullptr, owner, flow};
        return &owner->flows[static_cast<std::size_t>(flow)];
    }
    const auto* parent = place(parentUuid);
    if (!parent || parent->sequence != owner)
        return nullptr;
    target = {nullptr, parent->block.get(), owner, parent->flow};
    return &parent->block->children;
}

AppletModel::Blocks& AppletModel::siblingsOf(const Place& place) const
{
    return place.parent ? place.parent->children
                        : place.sequence->flows[static_cast<std::size_t>(place.flow)];
}

void AppletModel::enter(const BlockPtr& block, const Place& place)
{
    Place entry = place;
    entry.block = block;
    if (!m_places.insert(entry))
        *m_places.find(block->uuid) = entry;
    entry.parent = block.get();
    entry.lastIndex = 0;
    enterAll(block->children, entry);
}

void AppletModel::enterAll(const Blocks& blocks, const Place& place)
{
    auto each = place;
    for (const auto& block : blocks) {
        enter(block, each);
        ++each.lastIndex;
    }
}

void AppletModel::forget(const Blocks& blocks)
{
    for (const auto& block : blocks) {
        m_places.erase(block->uuid);
        forget(block->children);
    }
}

bool AppletModel::isFree(const IProcessBlock& block) const
{
    return isBlockUuid(block.uuid) && !m_places.find(block.uuid) &&
           std::all_of(block.children.begin(), block.children.end(),
                       [this](const auto& child) { return isFree(*child); });
}

const IProcessBlock* AppletModel::parentOf(const IProcessBlock& block) const
{
    const auto* known = m_places.find(block.uuid);
    return known ? known->parent : nullptr;
}

int AppletModel::depthOf(const IProcessBlock* block) const
{
    int depth = 0;
    for (; block; block = parentOf(*block))
        ++depth;
    return depth;
}

} // namespace standalone
