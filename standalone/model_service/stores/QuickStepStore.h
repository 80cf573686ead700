#pragma once

#include "standalone/model_service/documents/property_json.h"

#include <QByteArray>

#include <memory>
#include <optional>
#include <string>
#include <vector>

class IProcessBlock;

namespace standalone {

/// The quick steps of the project: blocks kept with their settings and children. A quick step's id
/// is its block's uuid.
class QuickStepStore
{
public:
    using BlockPtr = std::shared_ptr<IProcessBlock>;

    bool isLoaded() const { return m_isLoaded; }
    /// Replaces all by those of a JSON text; one that doesn't parse changes nothing, and
    /// false is returned.
    bool load(const QByteArray& json);
    QByteArray fileText() const;

    const std::vector<BlockPtr>& all() const { return m_blocks; }
    BlockPtr find(const std::string& id) const; ///< null if there is none
    /// Keeps a copy under a new id, which is returned.
    std::string add(const IProcessBlock& block);
    void remove(const std::string& id);

    /// A quick step, which never changes, and where it stands.
    struct Standing
    {
        BlockPtr block;
        std::size_t index = 0;
    };
    std::optional<Standing> standing(const std::string& id) const; ///< empty if there is none
    void restore(const Standing& standing);

private:
    bool m_isLoaded = false;
    std::vector<BlockPtr> m_blocks;
    std::string m_kept;
    KindTable::Rests m_kindRests;
};

QuickStepStore& quickStepStore();

/// A deep copy under new uuids; jumps between the copied blocks go on leading to one another.
std::shared_ptr<IProcessBlock> copyUnderNewUuids(const IProcessBlock& block);

} // namespace standalone
