#pragma once

#include "shell/ProcessEditWidget.h"

#include "model/process_blocks.h"
#include "shell/bridge/LogicMaster.h"
#include "standalone/host/Host.h"
#include "tests/support/applet_fixture.h"

#include <QTemporaryDir>

/// An editor on a screen, with an applet in a folder of its own.
class EditorFixture : public QObject
{
protected:
    void openEditor()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        standalone::Host::instance().setProjectPath(m_folder->path());
        m_editor = std::make_unique<ProcessEditWidget>(QStringLiteral("Test"));
        m_editor->createCApplet(m_name);
        m_editor->setProcessJsonAndVciPath(folder(), folder());
        m_editor->setSettingPath(folder());
        m_editor->load(false);
        m_editor->resize(1200, 700);
        m_editor->show();
    }

    void closeEditor()
    {
        m_editor.reset();
        LogicMaster::instance()->removeApplet(m_name, true);
    }

    std::shared_ptr<IProcessBlock> addDelay(int milliseconds)
    {
        auto step = applet_fixture::addStep<DelayProcessBlock>(
            m_name, sequence(), QStringLiteral("1"), step_type::Delay, "等待");
        step->delay = milliseconds;
        sdk_ui_interface::processedit::updateProcess(m_name, sequence(), step);
        m_editor->loadDataToUI(m_name, false);
        return step;
    }

    void click(const std::shared_ptr<IProcessBlock>& block)
    {
        m_editor->processItemClickedSlot(block->baseType(), QString::fromStdString(block->uuid));
    }

    template <class Widget> Widget* find(const QWidget* parent, const char* name) const
    {
        return parent->findChild<Widget*>(QString::fromLatin1(name));
    }
    QString folder() const { return m_folder->path() + QLatin1Char('/'); }
    QString sequence() const { return m_editor->getCurrentShowSequenceId(); }

    const QString m_name = QStringLiteral("widget_test");
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ProcessEditWidget> m_editor;
};
