#pragma once

#include "model/type_tables.h"
#include "model/uds_records.h"

#include <QMap>
#include <QSet>
#include <QString>
#include <QVector>

#include <functional>
#include <memory>
#include <vector>

class IProcessBlock;
class UdsProcessBlock;
struct DocumentChange;

/// Which variables the steps of an applet use, told to LogicMaster so that a change of a system
/// variable reaches them. Needs no widget. GUI thread only.
namespace variable_use {

/// Tells the variables of a diagnostic step, by name: those of the system with their category, and
/// those of the applet with their type. False if it can't.
using UdsVariables = std::function<bool(std::shared_ptr<UdsProcessBlock> block,
                                        QMap<QString, DataCategoryType>& systemVariables,
                                        QMap<QString, DrelVarType>& appletVariables)>;

/// The host's answer for diagnostic steps; empty: none of them is known to use any.
void setUdsVariablesCallback(UdsVariables callback);

/// The names that a basic step's code, expressions and targets use, of whatever scope: any of them
/// may be a system variable's, also of one that is made later.
QSet<QString> namesIn(const IProcessBlock& block);

/// Records the use of an applet's steps anew, and prepares its diagnostic steps: with @p defer
/// their generated code is dropped till the next compile.
void recordApplet(const QString& appName, bool defer);

/// Records what a step uses now, in place of what was recorded for it.
void recordBlock(const QString& appName, const QString& sequenceId,
                 const std::shared_ptr<IProcessBlock>& block);

/// Records the use of the steps that a change has added or written.
void recordChange(const DocumentChange& change);

/// A step by its sequence and its own uuid.
struct StepPlace
{
    QString sequenceId;
    QString stepId;
};

/// The basic steps that use any of @p names, in the document's order: those of one sequence, or
/// with an empty id of every sequence that has no variable of that name to itself.
QVector<StepPlace> usersOf(const QString& appName, const QString& sequenceId,
                           const QSet<QString>& names);

/// Forgets the steps of a sequence that the model no longer has.
void forgetRemovedBlocks(const QString& appName, const QString& sequenceId);

/// Appends the variables of one diagnostic step to what is recorded for it.
void addUdsVar(const std::shared_ptr<UdsProcessBlock>& block, const QString& appName);

/// Forgets what is recorded for a step, and records it anew if it is a diagnostic one.
void updateUdsVarInfo(const QString& appName, const std::shared_ptr<IProcessBlock>& block);

} // namespace variable_use
