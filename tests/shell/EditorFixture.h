#pragma once

#include "shell/ProcessEditWidget.h"

#include "model/dialogs/user_dialogs.h"
#include "model/process_blocks.h"
#include "shell/bridge/LogicMaster.h"
#include "shell/run/ProcessEditToolBar.h"
#include "standalone/host/Host.h"
#include "standalone/runtime/runtime.h"
#include "tests/shell/EditorRecorder.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/folders.h"
#include "tests/support/text.h"

#include <QTemporaryDir>

/// An editor on a screen, with an applet in a folder of its own, which is the project too. What it
/// asks is answered, and written down with what it tells its host.
class EditorFixture : public QObject
{
    Q_OBJECT
protected slots:
    void init() { openEditor(); }
    void cleanup() { closeEditor(); }
    void cleanupTestCase() { standalone::shutdownRuntime(); }

protected:
    void openEditor()
    {
        m_dialogs.clear();
        m_agrees = true;
        user_dialogs::setHandler([this](const user_dialogs::Message& message) {
            using user_dialogs::Button;
            m_dialogs << message.title + QLatin1Char(':') + message.text;
            const bool isYesNo = message.kind == user_dialogs::Kind::YesNo;
            const Button agreed = isYesNo ? Button::Yes : Button::Ok;
            return user_dialogs::Answer{m_agrees ? agreed : Button::Cancel, QString()};
        });
        m_folder = std::make_unique<QTemporaryDir>();
        standalone::Host::instance().setProjectPath(m_folder->path());
        m_editor = makeEditor();
        m_editor->show();
        m_record = std::make_unique<EditorRecorder>(m_editor.get());
    }

    void closeEditor()
    {
        m_record.reset();
        m_editor.reset();
        LogicMaster::instance()->removeApplet(m_name, true);
        user_dialogs::setHandler({});
    }

    /// One more editor of the applet, which is read if it isn't there.
    std::unique_ptr<ProcessEditWidget> makeEditor(const char* business = "Test") const
    {
        auto editor = std::make_unique<ProcessEditWidget>(text(business));
        editor->resize(1200, 700);
        editor->createCApplet(m_name);
        editor->setProcessJsonAndVciPath(folder(), folder());
        editor->setSettingPath(m_folder->path());
        if (sdk_ui_interface::processedit::getCAppletDataIsExist(m_name))
            editor->loadDataToUI(m_name, false);
        else
            editor->load(false);
        return editor;
    }

    std::shared_ptr<IProcessBlock> addDelay(int milliseconds)
    {
        auto step = applet_fixture::addStep<DelayProcessBlock>(m_name, sequence(), text("1"),
                                                               step_type::Delay, "等待");
        step->delay = milliseconds;
        sdk_ui_interface::processedit::updateProcess(m_name, sequence(), step);
        m_editor->loadDataToUI(m_name, false);
        return step;
    }

    /// A statement in the main flow of a sequence, which the editor has still to be told of.
    std::shared_ptr<StatementProcessBlock> addStatement(const QString& sequenceId,
                                                        const char* code) const
    {
        auto step = applet_fixture::addStep<StatementProcessBlock>(m_name, sequenceId, text("1"),
                                                                   step_type::Statement, "语句");
        setCode(sequenceId, step, code);
        return step;
    }
    void setCode(const QString& sequenceId, const std::shared_ptr<StatementProcessBlock>& step,
                 const std::string& code) const
    {
        step->setCustomCode(code);
        sdk_ui_interface::processedit::updateProcess(m_name, sequenceId, step);
    }

    void press(int function) { m_editor->onToolWidgetButtonClickedSlot(function); }
    void click(const std::shared_ptr<IProcessBlock>& block)
    {
        m_editor->processItemClickedSlot(block->baseType(), QString::fromStdString(block->uuid));
    }

    template <class Widget> Widget* find(const QWidget* parent, const char* name) const
    {
        return parent->findChild<Widget*>(QString::fromLatin1(name));
    }
    template <class Widget> Widget* find(const char* name) const
    {
        return find<Widget>(m_editor.get(), name);
    }
    QString folder() const { return m_folder->path() + QLatin1Char('/'); }
    QString document() const { return folder() + text("processInfo.pedt"); }
    /// Of the document, or of its copy with that suffix.
    QByteArray saved(const char* suffix = "") const
    {
        return test_support::content(document() + text(suffix));
    }
    QString sequence() const { return m_editor->getCurrentShowSequenceId(); }

    static constexpr int Patience = 60000;
    QString m_name = text("widget_test");
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<ProcessEditWidget> m_editor;
    std::unique_ptr<EditorRecorder> m_record;
    QStringList m_dialogs; ///< as "title:text"
    bool m_agrees = true;
};
