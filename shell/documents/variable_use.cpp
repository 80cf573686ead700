#include "shell/documents/variable_use.h"

#include "shell/bridge/LogicMaster.h"

#include "edits/DocumentChange.h"
#include "model/applet_name.h"
#include "model/fields/block_fields.h"
#include "model/services/process_edit.h"
#include "model/services/processedit.h"

namespace processedit = sdk_ui_interface::processedit;

namespace variable_use {

namespace {

UdsVariables& udsVariables()
{
    static UdsVariables callback;
    return callback;
}

bool isWordPart(QChar character)
{
    return character.isLetterOrNumber() || character == QLatin1Char('_');
}

/// An archive that collects the words of all code.
class WordsOfCode : public block_fields::Search<WordsOfCode>
{
public:
    void code(const char*, const std::string& text)
    {
        if (text.empty())
            return;
        const QString characters = QString::fromStdString(text);
        int begin = 0;
        for (int end = 0; end <= characters.size(); ++end) {
            if (end < characters.size() && isWordPart(characters.at(end)))
                continue;
            if (end > begin && !characters.at(begin).isDigit())
                words.insert(characters.mid(begin, end - begin));
            begin = end + 1;
        }
    }

    QSet<QString> words;
};

// A diagnostic step of a document that was written elsewhere: its generated code is not trusted.
void dropGeneratedCode(const QString& appName, const QString& sequenceId,
                       const std::shared_ptr<UdsProcessBlock>& block)
{
    block->callCode.clear();
    block->taskCode.clear();
    block->declareCode.clear();
    processedit::updateProcess(appName, sequenceId, block);
}

/// Of a block and all under it, whatever their depth.
void recordTree(const QString& appName, const QString& sequenceId,
                const std::shared_ptr<IProcessBlock>& block)
{
    std::vector<std::shared_ptr<IProcessBlock>> pending{block};
    while (!pending.empty()) {
        const auto next = std::move(pending.back());
        pending.pop_back();
        recordBlock(appName, sequenceId, next);
        if (next)
            pending.insert(pending.end(), next->children.begin(), next->children.end());
    }
}

/// Names that mean a sequence's own variables there.
QSet<QString> ownNames(const QString& appName, const QString& sequenceId)
{
    QSet<QString> names;
    for (const processVariable& variable :
         process_edit::getAllSequenceVariable(appletNameBytes(appName), sequenceId.toStdString()))
        names.insert(QString::fromStdString(variable.name));
    return names;
}

} // namespace

void setUdsVariablesCallback(UdsVariables callback)
{
    udsVariables() = std::move(callback);
}

QSet<QString> namesIn(const IProcessBlock& block)
{
    WordsOfCode code;
    block_fields::visitGeneral(code, block);
    block_fields::visitOwn(code, block);
    return code.words;
}

void recordApplet(const QString& appName, bool defer)
{
    QMap<QString, LogicMaster::VariableUse> uses;
    for (const SequenceInfo& sequence : processedit::getAllSequenceByAppName(appName)) {
        const QString sequenceId = QString::fromStdString(sequence.id);
        LogicMaster::VariableUse& ofSequence = uses[sequenceId];
        for (const auto& block : processedit::getAllProcessBySequenceID(
                 appName, sequenceId, IProcessBlock::ProcessBlockBelong(0))) {
            const auto uds = std::dynamic_pointer_cast<UdsProcessBlock>(block);
            if (!uds) {
                const QSet<QString> names = namesIn(*block);
                if (!names.isEmpty())
                    ofSequence.insert(QString::fromStdString(block->uuid), names);
                continue;
            }
            if (defer)
                dropGeneratedCode(appName, sequenceId, uds);
            updateUdsVarInfo(appName, uds);
        }
    }
    LogicMaster::instance()->setVariableUse(appName, uses);
}

void recordBlock(const QString& appName, const QString& sequenceId,
                 const std::shared_ptr<IProcessBlock>& block)
{
    if (std::dynamic_pointer_cast<UdsProcessBlock>(block))
        updateUdsVarInfo(appName, block);
    else if (block)
        LogicMaster::instance()->setVariableUse(
            appName, sequenceId, QString::fromStdString(block->uuid), namesIn(*block));
}

void recordChange(const DocumentChange& change)
{
    using Kind = DocumentChange::Kind;
    for (const DocumentChange::Item& item : change.items) {
        if (item.part != DocumentChange::Part::Step)
            continue;
        if (item.kind == Kind::Written)
            recordBlock(change.appName, item.sequenceId,
                        processedit::getProcess(change.appName, item.id));
        else if (item.kind == Kind::Added)
            recordTree(change.appName, item.sequenceId,
                       processedit::getProcess(change.appName, item.id));
    }
}

QVector<StepPlace> usersOf(const QString& appName, const QString& sequenceId,
                           const QSet<QString>& names)
{
    const auto uses = LogicMaster::instance()->variableUse(appName);
    QVector<StepPlace> users;
    for (const SequenceInfo& sequence : processedit::getAllSequenceByAppName(appName)) {
        const QString id = QString::fromStdString(sequence.id);
        const LogicMaster::VariableUse ofSequence = uses.value(id);
        if ((!sequenceId.isEmpty() && id != sequenceId) || ofSequence.isEmpty())
            continue;
        const QSet<QString> meant = sequenceId.isEmpty() ? names - ownNames(appName, id) : names;
        for (const auto& block : processedit::getAllProcessBySequenceID(
                 appName, id, IProcessBlock::ProcessBlockBelong(0))) {
            const QString uuid = QString::fromStdString(block->uuid);
            if (ofSequence.value(uuid).intersects(meant))
                users.append({id, uuid});
        }
    }
    return users;
}

void forgetRemovedBlocks(const QString& appName, const QString& sequenceId)
{
    LogicMaster* master = LogicMaster::instance();
    for (const QString& uuid : master->blocksThatUseVariables(appName, sequenceId)) {
        if (!processedit::getProcess(appName, uuid))
            master->setVariableUse(appName, sequenceId, uuid, {});
    }
}

void addUdsVar(const std::shared_ptr<UdsProcessBlock>& block, const QString& appName)
{
    QMap<QString, DataCategoryType> systemVariables;
    QMap<QString, DrelVarType> appletVariables;
    if (!block || !udsVariables() || !udsVariables()(block, systemVariables, appletVariables))
        return;
    std::vector<UdsVarStruct> variables;
    const auto add = [&variables](const QString& name, DrelVarType type, int kind) {
        variables.push_back({name, QString::fromStdString(varTypeKeyword(type)), kind});
    };
    for (auto it = systemVariables.cbegin(); it != systemVariables.cend(); ++it)
        add(it.key(), varTypeFromDataCategory(it.value()), 1);
    for (auto it = appletVariables.cbegin(); it != appletVariables.cend(); ++it)
        add(it.key(), it.value(), 0);
    LogicMaster::instance()->addUdsVariables(appName, QString::fromStdString(block->uuid),
                                             variables);
}

void updateUdsVarInfo(const QString& appName, const std::shared_ptr<IProcessBlock>& block)
{
    if (!block)
        return;
    LogicMaster::instance()->removeUdsVariables(appName, QString::fromStdString(block->uuid));
    if (const auto uds = std::dynamic_pointer_cast<UdsProcessBlock>(block))
        addUdsVar(uds, appName);
}

} // namespace variable_use
