#pragma once

#include "model/IProcessBlock.h"
#include "model/SequenceInfo.h"
#include "model/compile_records.h"
#include "model/process_records.h"

#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// Service facade: the model of applets, and their compile and run.
///
/// An applet is addressed by its name; sequences, blocks and templates by uuid. Texts in
/// std::string and const char* are UTF-8 unless said otherwise. An unknown name or uuid gives an
/// empty record, a null block or an empty list, and a change of it does nothing. GUI thread only,
/// but for the callbacks that say otherwise.
namespace sdk_ui_interface {
namespace processedit {

// Applets
// ------------------------------------------------------------------------------------------

/// Whether the model holds this applet: it has a sequence, or a document was loaded into it.
bool getCAppletDataIsExist(const QString& appName);

/// All sequences and blocks as one JSON object; "{}" for an unknown applet. What it holds is the
/// service's own matter: the editor keeps it as the member "logicview" of the applet's document,
/// and gives it back with other blanks between the values. A host's strip callback may take members
/// from it. Members that the service did not know when it loaded the document stand in it again.
/// The order of members is stable.
QString generateProcessJson(const QString& appName);

/// Replaces the applet's sequences and blocks. An empty text creates nothing. A text that breaks
/// off is read up to the fault; one that has no sequence before it leaves the model as it was.
/// Either is reported to the log.
void loadProcessJson(const QString& appName, const QString& json);

void removeApp(const QString& appName);
/// Everywhere: in the model with its variables and custom kinds, and in the runtime, where an
/// applet that runs keeps the old name. Nothing happens if the old name is unknown or the new one
/// taken.
void renameProcessCAppletName(const QString& oldName, const QString& newName);
/// The name that a person reads; the applet's own name if it has no other.
QString getCAppletShowName(const QString& appName);

// Sequences
// ----------------------------------------------------------------------------------------

/// Adds a sequence at the end and returns its uuid; a taken name gets a number behind it. The
/// first sequence of an applet becomes the main one.
QString createSeuqence(const QString& appName, QString name);
SequenceInfo getSequence(const QString& appName, const QString& sequenceId);
/// Writes name, comment and main flag by the record's id. The flows are not taken from it: they
/// change through the operations on blocks.
void updateSequence(const QString& appName, SequenceInfo info);
/// In table order.
std::vector<SequenceInfo> getAllSequenceByAppName(const QString& appName);
void removeSequence(const QString& appName, const QString& sequenceId);
void removeAllSequenceByAppName(const QString& appName);

// Blocks
// -------------------------------------------------------------------------------------------

/// Creates a block and returns its uuid; empty if there is no such kind or parent, or if the steps
/// would be nested deeper than 200. A basic step can be of any kind that has a block class; it gets
/// the default table's record of its kind, or a plain one if the table lacks it. A diagnostic step
/// must be of a kind of the applet's custom list. The name is that of the kind. @p parentUuid is a
/// block's uuid or a flow's "0", "1" or "2"; @p index is the place among its siblings, an index
/// outside means the end.
QString createProcess(const QString& appName, const QString& sequenceId, const QString& parentUuid,
                      logicBlockType baseType, int subType, int index);
/// The same from a quick step, with its settings and its children, under new uuids.
QString createProcessInfoByQuickStep(const QString& appName, const QString& sequenceId,
                                     const QString& parentUuid, const QString& quickStepId,
                                     int index);
/// The block itself, shared; null if there is none.
std::shared_ptr<IProcessBlock> getProcess(const QString& appName, const QString& blockUuid);
/// Writes a block back by its uuid. The children of @p block are not taken from it.
void updateProcess(const QString& appName, const QString& sequenceId,
                   std::shared_ptr<IProcessBlock> block);
/// Removes a block with its children.
void removeProcess(const QString& appName, QString sequenceId, const QString& blockUuid);
/// Empties one flow, or with -1 all three.
void removeAllProcessBySequenceID(const QString& appName, QString sequenceId, logicBlockType flow);
/// The top-level blocks of the three flows, in order; their children are in the blocks.
std::vector<std::shared_ptr<IProcessBlock>> getProcessListBySequenceID(const QString& appName,
                                                                       const QString& sequenceId);
/// Every block of one flow, children behind their parent. 0 asks for all three flows.
std::vector<std::shared_ptr<IProcessBlock>>
getAllProcessBySequenceID(const QString& appName, const QString& sequenceId,
                          IProcessBlock::ProcessBlockBelong flow);

// Quick steps
// --------------------------------------------------------------------------------------

/// Keeps a copy of a block with its settings; returns the copy's id, empty on failure.
QString addQuickStepInfo(const QString& appName, const QString& blockUuid);
void removeQuickStepInfo(const QString& id);
QVector<std::shared_ptr<IProcessBlock>> getQuickStepInfo();
std::shared_ptr<IProcessBlock> getQuickStepInfo(const QString& id);
QVector<std::shared_ptr<IProcessBlock>> getQuickStepInfoVector(QStringList ids);
/// Replaces the quick steps by those of a JSON text; an empty text gives none.
void loadQuickStepJsonStr(const QString& json);
/// Writes the quick steps to a file, atomically, if they have changed. What another program has
/// written there meanwhile is copied aside first. A failure goes to the log, and the file stays.
void saveQuickStepJsonStr(const QString& path, BUSINESSTYPE business);
/// Writes the project's global variables to "globalVariable.json" in the project folder, as the
/// quick steps are written.
void saveGlobalVarJsonStr(const QString& projectPath, BUSINESSTYPE business);

// Templates
// ----------------------------------------------------------------------------------------

/// Replaces the templates by those of a JSON text.
void loadTemplateJsonStr(const QString& json);
QString generateTemplateJsonStr();
std::vector<processTemplateInfo> getAllProcessTemplate();
processTemplateInfo getProcessTemplateByID(const QString& id);
/// Makes a template of a sequence with all that it needs; returns its id and name, both empty on
/// failure.
std::pair<QString, QString> addProcessTemplate(const QString& appName, const QString& sequenceId);
void removeProcessTemplate(const QString& id);
void renameProcessTemplate(const QString& id, const QString& name);
void removeAllProcessTemplate(bool keepLoadedMark);

// Compile and run
// ----------------------------------------------------------------------------------

/// Told once, from a thread of the compiler, when a compile that started has ended. @p elapsed is
/// in milliseconds; @p appName is in the local 8-bit encoding; @p message is the compiler's text,
/// which is shown as UTF-8. The texts are valid during the call. It may be called before
/// compileCApplet has returned, and then waits for that; so it is never called by the thread that
/// is inside compileCApplet.
using CompileFinished = std::function<void(compileResult result, quint64 elapsed,
                                           const char* appName, const char* message)>;

/// Starts a compile of everything that @p sequenceId reaches. Generated code goes to
/// "<project>/CApplet/<name>_code", the module to "<project>/CApplet/<name>_mp/<name>.mp": the
/// editor opens the one folder and looks whether the other file is there. The model may change as
/// soon as this has returned. @p currentSequence: the target was chosen as the sequence on screen.
/// false: it did not start, @p onFinished is never called; as while the applet runs or is being
/// compiled. true with @p skipped set: nothing changed since the last success of the same target,
/// no compile runs, @p onFinished is never called. true with @p skipped clear: @p onFinished is
/// called once.
bool compileCApplet(const QString& appName, const QString& sequenceId, bool forVci,
                    bool currentSequence, CompileFinished onFinished, bool& skipped);

/// What the runInfo of a run event points to; valid during the call.
struct RunInfo
{
    std::string appName;    ///< local 8-bit encoding
    std::string sequenceId; ///< UTF-8
};
enum RunEvent : int { RunFinished = 1, RunStopped = 2, RunCrashed = 3 };
/// @p event: a RunEvent.
using RunEventCallback = void (*)(void* runInfo, int event);

/// Starts the compiled applet on a sequence and returns at once; its reports come through
/// CallbackFuncsImp (model/services/applet_runtime.h). false if it could not start, and then
/// @p onRunEvent is never called; so it is during a run of the applet, which goes on untouched, and
/// after one that was removed and has not ended yet. Else @p onRunEvent is called once at the end,
/// from the runner's thread, behind the last report; the applet counts as stopped by then. Who
/// waits for it lets the GUI thread's event loop go round: a run may be held while much of what it
/// has said waits there.
bool runCApplet(const QString& appName, const QString& sequenceId, RunEventCallback onRunEvent);

/// Asks the runner to stop, and returns at once; false if nothing runs. The flag is reserved.
bool stopCApplet(const QString& appName, bool reserved);

/// The runner's registered name, in the local 8-bit encoding and empty when the applet has none,
/// and its state. Any thread.
std::pair<std::string, CAppletRunState> getCAppletRunState(const QString& appName);

} // namespace processedit
} // namespace sdk_ui_interface
