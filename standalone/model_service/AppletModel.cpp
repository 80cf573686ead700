#include "standalone/model_service/AppletModel.h"

#include "model/IProcessBlock.h"
#include "standalone/model_service/BlockReader.h"
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

void putAt(AppletModel::Blocks& blocks, const AppletModel::BlockPtr& block, int index)
{
    const bool isInside = index >= 0 && index < static_cast<int>(blocks.size());
    blocks.insert(isInside ? blocks.begin() + index : blocks.end(), block);
}

void takeOut(AppletModel::Blocks& blocks, const IProcessBlock* block)
{
    const auto found = std::find_if(blocks.begin(), blocks.end(),
                                    [=](const auto& other) { return other.get() == block; });
    if (found != blocks.end())
        blocks.erase(found);
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
    m_places.clear();
    m_sequencesById.clear();
    m_sequences.clear();
}

AppletModel::BlockPtr AppletModel::block(const std::string& uuid) const
{
    const auto* found = place(uuid);
    return found ? found->block : nullptr;
}

const AppletModel::Place* AppletModel::place(const std::string& uuid) const
{
    const auto found = m_places.find(uuid);
    return found == m_places.end() ? nullptr : &found->second;
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
    putAt(*siblings, block, index);
    enter(block, target);
    return true;
}

bool AppletModel::move(const std::string& uuid, const std::string& parentUuid, int index)
{
    const auto found = m_places.find(uuid);
    if (found == m_places.end())
        return false;
    const Place source = found->second;
    Place target;
    auto* siblings = siblingsFor(source.sequence->head.id, parentUuid, target);
    if (!siblings)
        return false;
    for (const auto* above = target.parent; above; above = m_places.at(above->uuid).parent) {
        if (above == source.block.get())
            return false;
    }
    if (depthOf(target.parent) + heightOf(*source.block) > BlockReader::MaxDepth)
        return false;
    takeOut(siblingsOf(source), source.block.get());
    putAt(*siblings, source.block, index);
    if (source.flow == target.flow) {
        found->second.parent = target.parent;
    } else {
        enter(source.block, target);
    }
    return true;
}

void AppletModel::remove(const std::string& uuid)
{
    const auto found = m_places.find(uuid);
    if (found == m_places.end())
        return;
    const Place place = found->second;
    takeOut(siblingsOf(place), place.block.get());
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
    const auto found = m_places.find(block->uuid);
    if (found == m_places.end())
        return false;
    const BlockPtr former = found->second.block;
    if (former == block)
        return true;
    auto& siblings = siblingsOf(found->second);
    std::replace(siblings.begin(), siblings.end(), former, block);
    block->children = former->children;
    found->second.block = block;
    for (const auto& child : block->children)
        m_places.at(child->uuid).parent = block.get();
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
    m_places[block->uuid] = entry;
    entry.parent = block.get();
    enterAll(block->children, entry);
}

void AppletModel::enterAll(const Blocks& blocks, const Place& place)
{
    for (const auto& block : blocks)
        enter(block, place);
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
    return isBlockUuid(block.uuid) && m_places.count(block.uuid) == 0 &&
           std::all_of(block.children.begin(), block.children.end(),
                       [this](const auto& child) { return isFree(*child); });
}

int AppletModel::depthOf(const IProcessBlock* block) const
{
    int depth = 0;
    for (; block; block = m_places.at(block->uuid).parent)
        ++depth;
    return depth;
}

} // namespace standalone
