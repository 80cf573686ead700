#pragma once

#include "edits/DocumentEdits.h"
#include "logic/LogicView.h"
#include "logic/rows/CustonStandModel.h"
#include "logic/rows/logic_roles.h"
#include "model/dialogs/user_dialogs.h"
#include "model/services/process_edit.h"
#include "tests/logic/LogicFixture.h"
#include "tests/logic/drop_rows.h"
#include "tests/logic/step_trees.h"
#include "tests/support/print_tree.h"

#include <QSignalSpy>
#include <QTableView>
#include <QTreeView>

/// An applet with one sequence and a LogicView that shows it, and what the tests of editing do with
/// both. Steps are called by their uuid, or by the name that the applet was made with. Message
/// boxes are answered and noted as "title:text".
class EditFixture
{
public:
    LogicFixture applet;
    LogicView view;
    QString sequence;
    QTreeView* tree;
    QTableView* table;
    QStringList boxes;
    QSignalSpy modified{&DocumentEdits::instance(), &DocumentEdits::modified};
    QSignalSpy clicked{&view, &LogicView::processItemClicked};

    /// Shows the sequence with the steps that step_trees::parse takes from @p steps; nothing is
    /// loaded yet if there are none.
    explicit EditFixture(const char* steps = nullptr)
        : sequence(applet.addSequence("Main")),
          tree(view.findChild<QTreeView*>(QStringLiteral("treeView"))),
          table(view.findChild<QTableView*>(QStringLiteral("tableView")))
    {
        view.setCAppletName(applet.appName);
        user_dialogs::setHandler([this](const user_dialogs::Message& message) {
            boxes.append(message.title + QLatin1Char(':') + message.text);
            return user_dialogs::Answer{user_dialogs::Button::Ok, QString()};
        });
        if (!steps)
            return;
        make(steps);
        show();
    }
    ~EditFixture()
    {
        user_dialogs::setHandler(nullptr);
        process_edit::removeAllCustomStepProperty(owner());
    }

    /// So many plain steps, from "s0" on.
    static QByteArray numbered(int count)
    {
        QByteArray steps;
        for (int i = 0; i < count; ++i)
            steps += 's' + QByteArray::number(i) + ' ';
        return steps;
    }
    std::string owner() const { return applet.appName.toLocal8Bit().toStdString(); }
    void show()
    {
        view.addNewModelSlot(sequence);
        view.showSequence(sequence);
    }
    /// Adds steps to the service alone.
    void make(const char* steps)
    {
        for (const step_trees::Step& flow : step_trees::parse(text(steps)))
            make(flow.children, QString::number(step_trees::kinds()[flow.name].baseType));
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

    QString id(const QString& step) const { return ids.value(step, step); }
    QString id(const char* step) const { return id(text(step)); }
    template <class Block = IProcessBlock> std::shared_ptr<Block> block(const char* step) const
    {
        return applet.get<Block>(id(step));
    }
    CustonStandModel* model() const
    {
        return qobject_cast<CustonStandModel*>(view.editModel(sequence));
    }
    QStandardItem* row(const QString& step) const { return model()->rowOf(id(step)); }
    QStandardItem* row(const char* step) const { return row(text(step)); }
    QModelIndex cell(const char* step, int column = 0) const
    {
        return row(step)->index().siblingAtColumn(column);
    }
    /// What stands in the column of descriptions.
    QString description(const char* step) const { return cell(step, 1).data().toString(); }
    int tableRows() const { return table->model()->rowCount(); }
    void setCurrent(const QString& step) { tree->setCurrentIndex(row(step)->index()); }
    void setCurrent(const char* step) { setCurrent(text(step)); }
    QString currentUuid() const
    {
        return tree->currentIndex().data(logic_roles::BlockUuid).toString();
    }
    void addStep(int stepType, bool fromDrop = false)
    {
        view.addStep(BasicStep, stepType, QString(), fromDrop, false);
    }
    void addDiagnosticStep(int stepType, const char* kind)
    {
        view.addStep(DiagnosticStep, stepType, text(kind), false, false);
    }

    bool drop(const QString& step, const QString& parent, int row)
    {
        return drop_rows::drop(*model(), id(step), id(parent), row);
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
    /// The steps of the three flows, if they are what the service holds.
    QString steps() const
    {
        return showsTheService() ? step_trees::print(*model()) : text("not what the service holds");
    }

private:
    void make(const std::vector<step_trees::Step>& steps, const QString& parent)
    {
        for (const step_trees::Step& step : steps) {
            const QString uuid = add(parent, step_trees::kinds().value(step.name).stepType,
                                     step.name.toUtf8().constData());
            applet.setEnabled(uuid, step.state);
            ids.insert(step.name, uuid);
            make(step.children, uuid);
        }
    }

    QHash<QString, QString> ids; ///< by name
};
