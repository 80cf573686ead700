#pragma once

#include <QHash>
#include <QString>

/// One report of a run, as it waits to be drawn: a step's state, and the change of sequence that
/// followed it, if one did.
struct runProcessState
{
    QString seqUuid;
    /// Empty on a record that only carries a change of sequence.
    QString blockuuid;
    QString templateId; ///< the template in force when the report was queued, else empty
    QString gotoTemplateId;
    QString gotoSeqUuid;
    bool isEnd = false; ///< the change ends a called sequence
    bool hasGotoTemplate = false;
    double iProgress = 0.0; ///< of the step, 0 to 100
    int result = -1;        ///< negative is a failure
    bool hasGoto = false;   ///< the goto fields hold a change of sequence
};

/// Equal reports need no second place in the queue; what else they hold doesn't count.
inline bool operator==(const runProcessState& a, const runProcessState& b)
{
    return a.blockuuid == b.blockuuid && a.iProgress == b.iProgress && a.seqUuid == b.seqUuid &&
           a.templateId == b.templateId;
}

inline uint qHash(const runProcessState& state, uint seed = 0)
{
    return qHash(state.blockuuid, seed) ^ (qHash(state.iProgress, seed) * 31u) ^
           (qHash(state.seqUuid, seed) * 131u) ^ (qHash(state.templateId, seed) * 1031u);
}
