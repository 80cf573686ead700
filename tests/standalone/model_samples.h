#pragma once

#include "model/IProcessBlock.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

/// What the tests of the model service share.
namespace samples {

using BlockPtr = std::shared_ptr<IProcessBlock>;

/// One block of every class, every field filled with a value that is not its default.
std::vector<BlockPtr> everyClass();

/// All fields of a block and of those below it, so that equality doesn't rest on the code that
/// writes documents.
std::string fieldsOf(IProcessBlock& block);

/// The tree of a sequence: one line a block, indented, flows as headings.
QString printTree(const QString& appName, const QString& sequenceId);

/// The lines that reach the host's log while it lives.
class LogCatcher : public QObject
{
public:
    LogCatcher();
    QStringList lines;
};

/// Empties the model: applets, variables, templates, quick steps and custom lists of @p appName.
void forget(const QString& appName);

} // namespace samples
