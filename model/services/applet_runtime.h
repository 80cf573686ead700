#pragma once

#include "model/compile_records.h"

#include <string>

/// An applet that is loaded in the runtime.
struct MpCApplet
{
    std::string name;       ///< local 8-bit encoding
    std::string modulePath; ///< its compiled module
};

/// The applet runtime's registry.
class CAppletManager
{
public:
    /// Never null. Any thread.
    static CAppletManager* getInstance();

    /// The loaded applet, owned by the manager, or null. GUI thread.
    MpCApplet* getApplet(const std::string& appName);

private:
    CAppletManager() = default;
};

namespace capplet_sdk {

/// Called on a runtime thread; the texts are valid during the call, @p text is UTF-8.
using LogCallback = void (*)(const char* appName, DrelLogLevel level, const char* text);

/// Installs the log callback of one applet, in place of an earlier one; null removes it. 0 is
/// success.
int registerLogCallBack(const char* appName, LogCallback callback);

} // namespace capplet_sdk

/// Slots that the editor fills once, before any run. They are called on a runner's thread, one call
/// at a time for one applet; a null slot is left out. Applet names are in the local 8-bit encoding,
/// ids as they were generated; the texts are valid during the call.
class CallbackFuncsImp
{
public:
    /// A step's state changed. @p progress is 0 at its start and 100 at its end; a negative
    /// @p result is a failure.
    static void (*m_cb)(const char* appName, const char* sequenceId, const char* blockId,
                        double progress, int result);
    /// A called sequence was entered, or left (@p isEnd).
    static void (*m_seqCb)(const char* appName, const char* sequenceId, bool isEnd);
    /// The same for a sequence of a template.
    static void (*m_tempSeqCb)(const char* appName, const char* templateId, const char* sequenceId,
                               bool isEnd);
};
