#include "standalone/model_service/stores/QuickStepStore.h"

#include "model/blocks/GotoProcessBlock.h"
#include "standalone/model_service/documents/BlockReader.h"
#include "standalone/model_service/documents/BlockWriter.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/json/FieldReader.h"
#include "standalone/model_service/json/FieldWriter.h"
#include "standalone/model_service/json/json_text.h"

#include <algorithm>
#include <unordered_map>

namespace standalone {

namespace {

using NewUuids = std::unordered_map<std::string, std::string>;

void giveNewUuids(IProcessBlock& block, NewUuids& newUuids)
{
    const std::string uuid = newUuid();
    newUuids[block.uuid] = uuid;
    block.uuid = uuid;
    for (const auto& child : block.children)
        giveNewUuids(*child, newUuids);
}

void redirectJumps(IProcessBlock& block, const NewUuids& newUuids)
{
    const auto redirect = [&](std::string& target) {
        const auto found = newUuids.find(target);
        if (found != newUuids.end())
            target = found->second;
    };
    redirect(block.trueTarget);
    redirect(block.falseTarget);
    if (auto* jump = dynamic_cast<GotoProcessBlock*>(&block))
        redirect(jump->targetUuid);
    for (const auto& child : block.children)
        redirectJumps(*child, newUuids);
}

} // namespace

std::shared_ptr<IProcessBlock> copyUnderNewUuids(const IProcessBlock& block)
{
    const auto copy = block.clone();
    NewUuids newUuids;
    giveNewUuids(*copy, newUuids);
    redirectJumps(*copy, newUuids);
    return copy;
}

QuickStepStore& quickStepStore()
{
    static QuickStepStore store;
    return store;
}

bool QuickStepStore::load(const QByteArray& json)
{
    LoadReport report(QStringLiteral("读取快捷步骤"));
    JsonTree document;
    if (!parseObject(json, report, document))
        return false;
    const DocumentPlace whole;
    FieldReader reader(document.root(), report, whole);
    KindTable kinds;
    kinds.read(reader.takeObject("stepKinds"), report);
    BlockPlaces places;
    m_blocks = BlockReader(kinds, places, report)
                   .read(reader.takeArray("quickSteps"), {"quickSteps", whole});
    m_kept = reader.rest();
    m_kindRests = kinds.rests();
    m_isLoaded = true;
    return true;
}

QByteArray QuickStepStore::fileText() const
{
    KindTable kinds(m_kindRests);
    BlockWriter writer(kinds);
    FieldWriter document(m_kept);
    document.insert("quickSteps", [&](std::string& out) { writer.write(out, m_blocks); });
    document.insert("stepKinds", [&](std::string& out) { kinds.write(out); });
    std::string json;
    document.finish(json);
    return toFileText(json);
}

QuickStepStore::BlockPtr QuickStepStore::find(const std::string& id) const
{
    const auto found = std::find_if(m_blocks.begin(), m_blocks.end(),
                                    [&](const auto& block) { return block->uuid == id; });
    return found == m_blocks.end() ? nullptr : *found;
}

std::string QuickStepStore::add(const IProcessBlock& block)
{
    m_blocks.push_back(copyUnderNewUuids(block));
    return m_blocks.back()->uuid;
}

void QuickStepStore::remove(const std::string& id)
{
    m_blocks.erase(std::remove_if(m_blocks.begin(), m_blocks.end(),
                                  [&](const auto& block) { return block->uuid == id; }),
                   m_blocks.end());
}

std::optional<QuickStepStore::Standing> QuickStepStore::standing(const std::string& id) const
{
    for (std::size_t index = 0; index < m_blocks.size(); ++index) {
        if (m_blocks[index]->uuid == id)
            return Standing{m_blocks[index], index};
    }
    return std::nullopt;
}

void QuickStepStore::restore(const Standing& standing)
{
    remove(standing.block->uuid);
    const std::size_t index = std::min(standing.index, m_blocks.size());
    m_blocks.insert(m_blocks.begin() + std::ptrdiff_t(index), standing.block);
}

} // namespace standalone
