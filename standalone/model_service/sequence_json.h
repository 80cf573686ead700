#pragma once

#include "model/SequenceInfo.h"

#include <QJsonObject>

#include <array>
#include <memory>
#include <vector>

class IProcessBlock;

namespace standalone {

class BlockReader;
class BlockWriter;
class LoadReport;

/// One sequence with its blocks: what a document holds of it.
struct SequenceContent
{
    using Blocks = std::vector<std::shared_ptr<IProcessBlock>>;

    /// The head with the uuids of the flows' top-level blocks.
    SequenceInfo record() const;

    SequenceInfo head; ///< its flows are not used: flows has them
    std::array<Blocks, 3> flows;
    QJsonObject kept; ///< members that reading left over
};

QJsonObject writeSequence(const SequenceContent& sequence, BlockWriter& writer);
SequenceContent readSequence(const QJsonObject& object, BlockReader& reader, LoadReport& report,
                             const QString& where);

} // namespace standalone
