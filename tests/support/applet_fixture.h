#pragma once

#include "model/services/process_edit.h"
#include "model/services/processedit.h"

#include <QString>

/// Small applets for tests, made through the model service.
namespace applet_fixture {

/// A block of a basic step at the end of @p parent ("0", "1", "2" or a block's uuid).
template <class Block>
std::shared_ptr<Block> addStep(const QString& appName, const QString& sequenceId,
                               const QString& parent, int stepType, const char* name)
{
    namespace processedit = sdk_ui_interface::processedit;
    const QString uuid =
        processedit::createProcess(appName, sequenceId, parent, BasicStep, stepType, -1);
    auto block = std::dynamic_pointer_cast<Block>(processedit::getProcess(appName, uuid));
    if (block)
        block->name = name;
    return block;
}

/// Removes an applet with its variables when the test leaves its scope.
class ScopedApplet
{
public:
    explicit ScopedApplet(const QString& name) : m_name(name) {}
    ~ScopedApplet()
    {
        sdk_ui_interface::processedit::removeApp(m_name);
        process_edit::removeAllVarByAppName(m_name.toLocal8Bit().toStdString());
    }
    ScopedApplet(const ScopedApplet&) = delete;
    ScopedApplet& operator=(const ScopedApplet&) = delete;

private:
    QString m_name;
};

} // namespace applet_fixture
