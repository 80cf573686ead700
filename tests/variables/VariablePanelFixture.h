#pragma once

#include "edits/DocumentEdits.h"
#include "model/dialogs/user_dialogs.h"
#include "model/services/process_edit.h"
#include "tests/support/applet_fixture.h"
#include "tests/support/text.h"
#include "variables/variable_rows.h"
#include "variables/wgtLocalVariable.h"

#include <QHash>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QTest>
#include <QTreeView>

#include <utility>

/// A shown panel with an applet of its own and two sequences, of which the first is shown. Tests
/// call a variable by the name that it was made with.
/// Messages are gathered instead of shown; so are the signals, as "shared 0|1 name,name" and
/// "modified".
class VariablePanelFixture
{
public:
    /// Without @p variables no sequence is shown yet.
    explicit VariablePanelFixture(const char* variables = nullptr) : applet(appName)
    {
        previous = user_dialogs::setHandler([this](const user_dialogs::Message& message) {
            messages.append(message.title + QLatin1Char('|') + message.text);
            return user_dialogs::Answer{user_dialogs::Button::Ok, QString()};
        });
        panel.setCAppletName(appName);
        QObject::connect(&panel, &wgtLocalVariable::sigUpdateVariable, &panel,
                         [this](bool isGlobal, const QStringList& names) {
                             told.append(
                                 QStringLiteral("shared %1 %2")
                                     .arg(QString::number(isGlobal), names.join(QLatin1Char(',')))
                                     .trimmed());
                         });
        QObject::connect(&DocumentEdits::instance(), &DocumentEdits::modified, &panel,
                         [this] { told.append(QStringLiteral("modified")); });
        panel.resize(520, 400);
        panel.show();
        panel.activateWindow();
        isActive = QTest::qWaitForWindowActive(&panel);
        if (variables) {
            make(variables, first);
            panel.reloadSequenceVariables(first);
        }
    }
    ~VariablePanelFixture()
    {
        user_dialogs::setHandler(previous);
        std::vector<std::string> uuids;
        for (const processVariable& variable : process_edit::getAllGlobalVariable())
            uuids.push_back(variable.uuid);
        process_edit::removeVariables(app(), uuids);
    }

    /// Adds variables to the service alone, the scopes separated by "|": "a b:u8*=1,2 | p | g".
    /// They are numbers and 0 if nothing else is said.
    void make(const char* variables, const QString& sequence)
    {
        const QStringList scopes = text(variables).split(QLatin1Char('|'));
        for (int scope = 0; scope < scopes.size(); ++scope) {
            for (const QString& each : scopes[scope].split(QLatin1Char(' '), Qt::SkipEmptyParts))
                make(each, processVariableType(scope), sequence);
        }
    }
    void remove(const char* name) const { process_edit::removeVariables(app(), {key(name)}); }
    void lock(const char* name) const
    {
        processVariable variable = record(name);
        variable.isLocked = true;
        variable.isEditable = true;
        process_edit::updateVariable(app(), variable, variable.scope);
    }
    processVariable record(const char* name) const { return process_edit::getVariable(key(name)); }
    QString value(const char* name) const { return QString::fromStdString(record(name).value); }
    QString uuid(const char* name) const { return uuids.value(text(name)); }

    QModelIndex group(int scope) const { return tree->model()->index(scope, 0); }
    QModelIndex cell(const char* name, int column = 0) const
    {
        const QModelIndexList rows = variable_rows::find(*tree->model(), {uuid(name)});
        return rows.isEmpty() ? QModelIndex() : rows.first().sibling(rows.first().row(), column);
    }
    /// The shown names, the groups separated by " | ".
    QString names() const
    {
        QStringList groups;
        for (int scope = 0; tree->model() && scope < tree->model()->rowCount(); ++scope) {
            QStringList names;
            for (int row = 0; row < tree->model()->rowCount(group(scope)); ++row)
                names.append(tree->model()->index(row, 0, group(scope)).data().toString());
            groups.append(names.join(QLatin1Char(' ')));
        }
        return groups.join(QLatin1String(" | "));
    }
    QString shown(const char* name, int column) const
    {
        return cell(name, column).data().toString();
    }
    QString takeTold() { return std::exchange(told, {}).join(QLatin1String("; ")); }

    void select(const QModelIndexList& rows)
    {
        tree->selectionModel()->clearSelection();
        for (const QModelIndex& row : rows)
            tree->selectionModel()->select(row,
                                           QItemSelectionModel::Select | QItemSelectionModel::Rows);
        if (!rows.isEmpty())
            tree->selectionModel()->setCurrentIndex(rows.last(), QItemSelectionModel::NoUpdate);
    }
    QString selectedNames() const
    {
        QStringList names;
        for (const QModelIndex& row : tree->selectionModel()->selectedRows())
            names.append(row.data().toString());
        return names.join(QLatin1Char(' '));
    }

    /// A double click into a cell; the editor that it opens, or null.
    QWidget* edit(const QModelIndex& index)
    {
        const QPoint place = tree->visualRect(index).topLeft() + QPoint(3, 3);
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {}, place);
        told.clear();
        return tree->indexWidget(index);
    }
    /// Types over what a cell holds; the editor stays open.
    QLineEdit* begin(const QModelIndex& index, const char* keys)
    {
        auto* line = qobject_cast<QLineEdit*>(edit(index));
        line->clear();
        QTest::keyClicks(line, text(keys));
        return line;
    }
    /// Types over what a cell holds and leaves it with @p key.
    void type(const QModelIndex& index, const char* keys, Qt::Key key = Qt::Key_Return)
    {
        const QPersistentModelIndex place(index);
        QTest::keyClick(begin(index, keys), key);
        QTRY_VERIFY(!tree->indexWidget(place));
    }

    const QString appName = QStringLiteral("variable_panel_test");
    const QString first = QStringLiteral("sequence-1");
    const QString second = QStringLiteral("sequence-2");
    applet_fixture::ScopedApplet applet;
    wgtLocalVariable panel;
    QTreeView* tree = panel.findChild<QTreeView*>(QStringLiteral("treeView"));
    QStringList messages; ///< "title|text"
    bool isActive = false;

private:
    std::string app() const { return appName.toStdString(); }
    std::string key(const char* name) const { return uuid(name).toStdString(); }
    /// @p written is "name:type=value".
    void make(const QString& written, processVariableType scope, const QString& sequence)
    {
        const std::string owner = scope == SequenceVariable  ? sequence.toStdString()
                                  : scope == ProcessVariable ? app()
                                                             : std::string();
        processVariable variable =
            process_edit::getVariable(process_edit::addVariable(app(), scope, owner));
        const QString type = written.section(QLatin1Char(':'), 1).section(QLatin1Char('='), 0, 0);
        variable.name = written.section(QLatin1Char(':'), 0, 0).toStdString();
        variable.type = type.isEmpty() ? "s32" : type.toStdString();
        variable.value = type.isEmpty() ? "0" : written.section(QLatin1Char('='), 1).toStdString();
        process_edit::updateVariable(app(), variable, scope);
        uuids.insert(QString::fromStdString(variable.name), QString::fromStdString(variable.uuid));
    }

    QHash<QString, QString> uuids; ///< by the name that they were made with
    QStringList told;
    user_dialogs::Handler previous;
};
