#pragma once

#include "edits/DocumentEdits.h"
#include "logic/LogicView.h"
#include "logic/rows/CustonStandModel.h"
#include "logic/rows/logic_roles.h"
#include "model/dialogs/user_dialogs.h"
#include "model/services/process_edit.h"
#include "tests/logic/LogicFixture.h"
#include "tests/logic/drop_rows.h"
#include "tests/support/print_tree.h"
#include "tests/support/text.h"

#include <QSignalSpy>
#include <QTableView>
#include <QTreeView>

/// An applet with one sequence and a LogicView that shows it, and what the tests of editing do with
/// both. Message boxes are answered and noted as "title:text".
class EditFixture
{
public:
    LogicFixture applet;
    LogicView view;
    QString sequence;
    QTreeView* tree;
    QStringList boxes;
    QSignalSpy modified{&DocumentEdits::instance(), &DocumentEdits::modified};

    EditFixture()
        : sequence(applet.addSequence("Main")),
          tree(view.findChild<QTreeView*>(QStringLiteral("treeView")))
    {
        view.setCAppletName(applet.appName);
        user_dialogs::setHandler([this](const user_dialogs::Message& message) {
            boxes.append(message.title + QLatin1Char(':') + message.text);
            return user_dialogs::Answer{user_dialogs::Button::Ok, QString()};
        });
    }
    ~EditFixture()
    {
        user_dialogs::setHandler(nullptr);
        process_edit::removeAllCustomStepProperty(owner());
    }

    std::string owner() const { return applet.appName.toLocal8Bit().toStdString(); }
    void show()
    {
        view.addNewModelSlot(sequence);
        view.showSequence(sequence);
    }
    QString add(const QString& parent, int stepType, const char* name)
    {
        return applet.add(sequence, parent, stepType, name);
    }
    /// Two diagnostic kinds: "会话" with the shared step type 1, and "读数据" with 2.
    void addDiagnosticKinds()
    {
        BaseStepProperty kind;
        kind.name = "会话";
        kind.baseType = DiagnosticStep;
        kind.stepType = 1;
        kind.extra["udsJson"] = "{\"session\":1}";
        process_edit::addCustomStepProperty(owner(), {kind});
        kind.name = "读数据";
        kind.stepType = 2;
        process_edit::addCustomStepProperty(owner(), {kind});
    }
    QString addDiagnostic(const QString& parent)
    {
        return sdk_ui_interface::processedit::createProcess(applet.appName, sequence, parent,
                                                            DiagnosticStep, 2, -1);
    }

    CustonStandModel* model() const
    {
        return qobject_cast<CustonStandModel*>(view.editModel(sequence));
    }
    QStandardItem* row(const QString& uuid) const { return model()->rowOf(uuid); }
    int tableRows() const
    {
        return view.findChild<QTableView*>(QStringLiteral("tableView"))->model()->rowCount();
    }
    void setCurrent(const QString& uuid) { tree->setCurrentIndex(row(uuid)->index()); }
    QString currentUuid() const
    {
        return tree->currentIndex().data(logic_roles::BlockUuid).toString();
    }
    void addStep(int stepType, bool fromDrop = false)
    {
        view.addStep(BasicStep, stepType, QString(), fromDrop, false);
    }

    void moveRows(const QString& first, int count, const QString& parent, int at)
    {
        drop_rows::move(*model(), first, count, parent, at);
    }

    bool isInSight(const QModelIndex& index) const
    {
        return tree->viewport()->rect().contains(tree->visualRect(index).center());
    }
    /// Whether the rows are those that a new load gives.
    bool showsTheService() const
    {
        LogicView other;
        other.setCAppletName(applet.appName);
        other.addNewModelSlot(sequence);
        return test_support::printTree(*model(), {0, 1, 2}) ==
               test_support::printTree(*other.editModel(sequence), {0, 1, 2});
    }
    /// The rows of the three flows, if they are what the service holds.
    QStringList rows() const
    {
        return showsTheService() ? test_support::printTree(*model())
                                 : lines("not what the service holds");
    }
};
