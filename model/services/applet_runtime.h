#pragma once

#include "model/compile_records.h"

#include <string>

/// An applet that is loaded in the runtime.
struct MpCApplet
{
    std::string name;       ///< local 8-bit encoding, as the path
    std::string modulePath; ///< its compiled module, "<project>/CApplet/<name>_mp/<name>.mp"
};

/// The applet runtime's registry.
class CAppletManager
{
public:
    /// Never null. Any thread.
    static CAppletManager* getInstance();

    /// The loaded applet, owned by the manager, or null. @p appName is in the local 8-bit encoding.
    /// GUI thread.
    MpCApplet* getApplet(const std::string& appName);

private:
    CAppletManager() = default;
};

namespace capplet_sdk {

/// Called on a runtime thread; the texts are valid during the call, @p appName is in the local
/// 8-bit encoding, @p text is UTF-8. Of lines that come faster than the editor shows them a bounded
/// number waits; how many are left out is said in their place.
using LogCallback = void (*)(const char* appName, DrelLogLevel level, const char* text);

/// Installs the log callback of one applet, in place of an earlier one; null removes it. It goes
/// with the applet when that is destroyed; an applet that isn't created yet may be given one.
/// @p appName is in the local 8-bit encoding. 0 is success. GUI thread.
int registerLogCallBack(const char* appName, LogCallback callback);

} // namespace capplet_sdk

/// Slots that the editor fills once, before any run; the services define them, null at first. They
/// are called on a runner's thread, one call at a time for one applet; a null slot is left out.
/// Applet names are in the local 8-bit encoding, ids UTF-8; the texts are valid during the call. A
/// call returns soon and never waits for the GUI thread. What it has left there is work still to be
/// done: a runtime that reports faster than the editor draws has to bound what is on its way.
class CallbackFuncsImp
{
public:
    /// A step's state changed. @p progress is 0 at its start and 100 at its end. A negative
    /// @p result is a failure at any progress, 100 included; 0 and more is none. Of reports that
    /// wait to be drawn the editor takes those of one step and one progress as one, whatever their
    /// result: a failure that follows a report of 100 must come at another progress.
    static void (*m_cb)(const char* appName, const char* sequenceId, const char* blockId,
                        double progress, int result);
    /// A called sequence was entered, or left (@p isEnd). The sequence that the run starts with is
    /// not reported.
    static void (*m_seqCb)(const char* appName, const char* sequenceId, bool isEnd);
    /// The same for a sequence of a template.
    static void (*m_tempSeqCb)(const char* appName, const char* templateId, const char* sequenceId,
                               bool isEnd);
};
