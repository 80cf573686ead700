#pragma once

#include "edits/DocumentChange.h"
#include "model/process_records.h"
#include "model/step_kinds.h"

#include <QObject>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class IProcessBlock;

/// The one way by which the editor changes a document. Each operation calls that of the model
/// service which bears its name, and is announced with what stood before and after. Reading,
/// loading and saving are nobody's edits. GUI thread only.
class DocumentEdits : public QObject
{
    Q_OBJECT
public:
    static DocumentEdits& instance();

    /// What is done while one lives is one act, announced at its end; an operation without one is
    /// an act of its own. One within another belongs to that. Of one applet at a time.
    class Act
    {
    public:
        Act();
        ~Act();
        Act(const Act&) = delete;
        Act& operator=(const Act&) = delete;
    };

    // Steps --------------------------------------------------------------------------------------
    QString createProcess(const QString& appName, const QString& sequenceId,
                          const QString& parentUuid, logicBlockType baseType, int subType,
                          int index);
    QString createProcessInfoByQuickStep(const QString& appName, const QString& sequenceId,
                                         const QString& parentUuid, const QString& quickStepId,
                                         int index);
    /// @p write changes the fields of the block, which is in the model, and nothing else.
    void updateProcess(const QString& appName, const QString& sequenceId,
                       const std::shared_ptr<IProcessBlock>& block,
                       const std::function<void()>& write);
    /// The same of the enable state alone, for many steps at once.
    void setEnableState(const QString& appName, const QString& sequenceId,
                        const std::shared_ptr<IProcessBlock>& block, int state);
    void updateProcessInfoIndex(const QString& appName, const QString& sequenceId,
                                const QString& blockUuid, const QString& parentUuid, int index);
    void removeProcess(const QString& appName, const QString& sequenceId, const QString& blockUuid);
    void removeAllProcessBySequenceID(const QString& appName, const QString& sequenceId,
                                      logicBlockType flow);

    // Sequences ----------------------------------------------------------------------------------
    QString createSeuqence(const QString& appName, const QString& name);
    void updateSequence(const QString& appName, const SequenceInfo& info);
    void removeSequence(const QString& appName, const QString& sequenceId);
    void removeAllSequenceByAppName(const QString& appName);

    // Variables; applet names as process_edit takes them ------------------------------------------
    std::string addVariable(const std::string& appName, processVariableType scope,
                            const std::string& ownerId);
    void updateVariable(const std::string& appName, const processVariable& variable, int scope);
    void pasteVariable(const std::string& appName, processVariable& variable, int scope);
    void removeVariables(const std::string& appName, const std::vector<std::string>& uuids);
    void removeAllVarBySequenceId(const std::string& appName, const std::string& sequenceId);

    // Changes ------------------------------------------------------------------------------------
    /// Brings the document to where it was before a change, or to where it was after it, and
    /// announces that. The document stands where the change has left it, or was brought before it.
    /// False if a part could not be put back; the others were.
    bool undo(const DocumentChange& change);
    bool redo(const DocumentChange& change);

signals:
    /// The document has changed. Rows and panels may be told only after it.
    void changed(const DocumentChange& change);

private:
    DocumentEdits() = default;
    void add(const QString& appName, DocumentChange::Item item);
    bool put(const DocumentChange::Item& item, const document_state::StatePtr& state);

    int m_depth = 0; ///< of acts
    DocumentChange m_act;
};
