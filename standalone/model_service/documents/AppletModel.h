#pragma once

#include "standalone/model_service/documents/BlockPlaces.h"
#include "standalone/model_service/documents/property_json.h"
#include "standalone/model_service/documents/sequence_json.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace standalone {

/// The sequences and blocks of one applet. Every block is found by its uuid, with its parent, its
/// sequence and its flow; a change costs no more than the block's siblings and what lies below it.
class AppletModel
{
public:
    using BlockPtr = std::shared_ptr<IProcessBlock>;
    using Blocks = SequenceContent::Blocks;

    using Place = BlockPlace;
    using Sequences = std::vector<std::unique_ptr<SequenceContent>>;

    AppletModel() = default;
    AppletModel(const AppletModel&) = delete;
    AppletModel& operator=(const AppletModel&) = delete;

    /// Sequences in table order.
    const Sequences& sequences() const { return m_sequences; }
    SequenceContent* sequence(const std::string& id) const; ///< null if there is none
    /// Adds a sequence with its blocks; its id and its blocks' uuids must be free.
    void addSequence(SequenceContent sequence);
    /// The same at a place in the table; false if its id or a block's uuid is taken.
    bool insertSequence(SequenceContent sequence, std::size_t index);
    void removeSequence(const std::string& id);
    void removeAllSequences();
    /// Replaces all by sequences with different ids, and the places of all their blocks.
    void assign(Sequences sequences, BlockPlaces places);

    BlockPtr block(const std::string& uuid) const; ///< null if there is none
    const Place* place(const std::string& uuid) const;
    int indexOf(const Place& place) const; ///< among its siblings
    std::size_t blockCount() const { return m_places.size(); }

    /// Puts a block with its children under a parent of the sequence: a block's uuid, or a flow's
    /// "0", "1" or "2". An index outside means the end. False if there is no such parent, a uuid is
    /// taken or the nesting would get too deep.
    bool insert(const BlockPtr& block, const std::string& sequenceId, const std::string& parentUuid,
                int index);
    /// Moves a block within its sequence; the index counts without the block itself.
    bool move(const std::string& uuid, const std::string& parentUuid, int index);
    void remove(const std::string& uuid);
    void removeFlow(const std::string& sequenceId, int flow);
    /// Puts @p block in the place of the one with its uuid, whose children it takes over.
    bool replace(const BlockPtr& block);

    /// Members of the document that this version doesn't know, and those of its step kinds.
    std::string kept;
    KindTable::Rests kindRests;
    /// Whether a document was read into this applet, even an empty one.
    bool isDocument = false;

private:
    Blocks* siblingsFor(const std::string& sequenceId, const std::string& parentUuid, Place& place);
    Blocks& siblingsOf(const Place& place) const;
    void enter(const BlockPtr& block, const Place& place);
    void enterAll(const Blocks& blocks, const Place& place);
    void forget(const Blocks& blocks);
    bool isFree(const IProcessBlock& block) const;
    const IProcessBlock* parentOf(const IProcessBlock& block) const; ///< null at the top
    int depthOf(const IProcessBlock* block) const;

    Sequences m_sequences;
    std::unordered_map<std::string, SequenceContent*> m_sequencesById;
    BlockPlaces m_places;
};

} // namespace standalone
