#pragma once

#include "model/compile_records.h"

/// The callbacks that the closed services call, each on a thread of its own: they turn C texts into
/// Qt values and emit one signal of ProcessEditNotifyTool. Nothing else happens here.
namespace notify_callbacks {

/// For compileCApplet. Takes the pending compile of the applet out of LogicMaster.
void compileFinished(compileResult result, quint64 elapsed, const char* appName,
                     const char* message);

/// For runCApplet. Events other than 1, 2 and 3 and a null record are dropped.
void runEvent(void* runInfo, int event);

/// For the slots of CallbackFuncsImp.
void blockState(const char* appName, const char* sequenceId, const char* blockId, double progress,
                int result);
void sequenceEntry(const char* appName, const char* sequenceId, bool isEnd);
void templateSequenceEntry(const char* appName, const char* templateId, const char* sequenceId,
                           bool isEnd);

/// For capplet_sdk::registerLogCallBack.
void logText(const char* appName, DrelLogLevel level, const char* text);

/// The compiler's text comes in mixed encodings: what stands before and behind the first word
/// "generated" is decoded as UTF-8 each; without that word the whole is.
QString recodeCompilerMessage(const char* message);

} // namespace notify_callbacks
