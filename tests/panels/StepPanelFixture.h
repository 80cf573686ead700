#pragma once

#include "model/dialogs/user_dialogs.h"
#include "model/process_blocks.h"
#include "model/services/processedit.h"
#include "panels/IBlockControl.h"
#include "panels/wgtCommonControl.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/text.h"

#include <QApplication>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTimer>
#include <QtTest>

/// Shown panels, and an applet with one sequence. Message boxes are answered and noted as
/// "title|text".
class StepPanelFixture
{
public:
    StepPanelFixture() : applet(appName)
    {
        sequence =
            sdk_ui_interface::processedit::createSeuqence(appName, QStringLiteral("Sequence_0"));
        previous = user_dialogs::setHandler([this](const user_dialogs::Message& message) {
            messages.append(message.title + QLatin1Char('|') + message.text);
            return user_dialogs::Answer{user_dialogs::Button::Ok, QString()};
        });
        control.setCAppletName(appName);
        control.setSequenceId(sequence);
        control.resize(420, 360);
        control.show();
        control.activateWindow();
        isActive = QTest::qWaitForWindowActive(&control);
    }
    ~StepPanelFixture() { user_dialogs::setHandler(previous); }

    /// A step that can be edited, at the end of the main flow.
    template <class Block> std::shared_ptr<Block> add(int stepType)
    {
        auto block = applet_fixture::addStep<Block>(appName, sequence, QStringLiteral("1"),
                                                    stepType, "步骤");
        if (block)
            block->property.editable = true;
        return block;
    }
    std::shared_ptr<IProcessBlock> add(int stepType) { return add<IProcessBlock>(stepType); }
    /// Such a step, which the panel shows.
    template <class Block = IProcessBlock> std::shared_ptr<Block> show(int stepType)
    {
        auto block = add<Block>(stepType);
        control.showBlock(block);
        return block;
    }

    QWidget* page() const { return stack->currentWidget(); }
    IBlockControl* panel() const { return qobject_cast<IBlockControl*>(page()); }
    /// A control of the page that is shown.
    template <class Widget = QWidget> Widget* find(const char* name) const
    {
        return page()->findChild<Widget*>(QLatin1String(name));
    }
    /// What stands in a control.
    QString shown(const char* name) const
    {
        const QVariant lines = find(name)->property("plainText");
        return (lines.isValid() ? lines : find(name)->property("text")).toString();
    }
    /// Replaces what stands in a control by what is typed.
    void type(const char* name, const QString& text) const
    {
        auto* widget = find(name);
        QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(widget, Qt::Key_Delete);
        QTest::keyClicks(widget, text);
    }
    QString json() const { return sdk_ui_interface::processedit::generateProcessJson(appName); }
    /// The steps that were told as written, since the last call.
    QStringList takeTold()
    {
        QStringList uuids;
        for (const QList<QVariant>& arguments : qAsConst(told))
            uuids.append(arguments.first().toString());
        told.clear();
        return uuids;
    }

    const QString appName = QStringLiteral("panel_test");
    applet_fixture::ScopedApplet applet;
    QString sequence;
    wgtCommonControl control;
    QStackedWidget* stack = control.findChild<QStackedWidget*>(QStringLiteral("stackedWidget"));
    QStringList messages;
    bool isActive = false;

private:
    QSignalSpy told{&control, &wgtCommonControl::updateTreeProcessData};
    user_dialogs::Handler previous;
};

inline QString uuidOf(const std::shared_ptr<IProcessBlock>& block)
{
    return QString::fromStdString(block->uuid);
}
