#include "model/services/applet_runtime.h"

#include "standalone/runtime/RunnerRegistry.h"

void (*CallbackFuncsImp::m_cb)(const char*, const char*, const char*, double, int) = nullptr;
void (*CallbackFuncsImp::m_seqCb)(const char*, const char*, bool) = nullptr;
void (*CallbackFuncsImp::m_tempSeqCb)(const char*, const char*, const char*, bool) = nullptr;

CAppletManager* CAppletManager::getInstance()
{
    static CAppletManager manager;
    return &manager;
}

MpCApplet* CAppletManager::getApplet(const std::string& appName)
{
    return standalone::RunnerRegistry::instance().loaded(appName);
}

namespace capplet_sdk {

int registerLogCallBack(const char* appName, LogCallback callback)
{
    if (!appName || !*appName)
        return -1;
    standalone::RunnerRegistry::instance().setLogCallback(appName, callback);
    return 0;
}

} // namespace capplet_sdk
