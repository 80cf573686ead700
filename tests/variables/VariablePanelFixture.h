#pragma once

#include "edits/DocumentEdits.h"
#include "model/dialogs/user_dialogs.h"
#include "model/services/process_edit.h"
#include "tests/support/applet_fixture.h"
#include "variables/variable_rows.h"
#include "variables/wgtLocalVariable.h"

#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QTest>
#include <QTreeView>

/// A shown panel with an applet of its own and two sequences, of which the first is shown.
/// Messages are gathered instead of shown; so are the signals, as "shared 0|1 name,name" and
/// "modified".
class VariablePanelFixture
{
public:
    VariablePanelFixture() : applet(appName)
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
    }
    ~VariablePanelFixture()
    {
        user_dialogs::setHandler(previous);
        std::vector<std::string> uuids;
        for (const processVariable& variable : process_edit::getAllGlobalVariable())
            uuids.push_back(variable.uuid);
        process_edit::removeVariables(appName.toStdString(), uuids);
    }

    /// Adds a variable to the service alone; its uuid.
    QString make(processVariableType scope, const char* name, const char* type = "s32",
                 const char* value = "0", const QString& sequenceId = QString())
    {
        const std::string app = appName.toStdString();
        const QString sequence = sequenceId.isEmpty() ? first : sequenceId;
        const std::string owner = scope == SequenceVariable  ? sequence.toStdString()
                                  : scope == ProcessVariable ? app
                                                             : std::string();
        processVariable variable =
            process_edit::getVariable(process_edit::addVariable(app, scope, owner));
        variable.name = name;
        variable.type = type;
        variable.value = value;
        process_edit::updateVariable(app, variable, scope);
        return QString::fromStdString(variable.uuid);
    }
    static processVariable record(const QString& uuid)
    {
        return process_edit::getVariable(uuid.toStdString());
    }

    QModelIndex group(int scope) const { return tree->model()->index(scope, 0); }
    QModelIndex cell(const QString& uuid, int column = 0) const
    {
        const QModelIndexList rows = variable_rows::find(*tree->model(), {uuid});
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
    QString shown(const QString& uuid, int column) const
    {
        return cell(uuid, column).data().toString();
    }

    void select(const QModelIndexList& rows)
    {
        tree->selectionModel()->clearSelection();
        for (const QModelIndex& row : rows)
            tree->selectionModel()->select(row,
                                           QItemSelectionModel::Select | QItemSelectionModel::Rows);
        if (!rows.isEmpty())
            tree->selectionModel()->setCurrentIndex(rows.last(), QItemSelectionModel::NoUpdate);
    }
    QStringList selectedNames() const
    {
        QStringList names;
        for (const QModelIndex& row : tree->selectionModel()->selectedRows())
            names.append(row.data().toString());
        return names;
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
    /// Types a text over what a cell holds and leaves it with @p key.
    void type(const QModelIndex& index, const QString& text, Qt::Key key = Qt::Key_Return)
    {
        const QPersistentModelIndex place(index);
        auto* line = qobject_cast<QLineEdit*>(edit(index));
        QVERIFY(line);
        line->selectAll();
        QTest::keyClick(line, Qt::Key_Delete);
        QTest::keyClicks(line, text);
        QTest::keyClick(line, key);
        QTRY_VERIFY(!tree->indexWidget(place));
    }

    const QString appName = QStringLiteral("variable_panel_test");
    const QString first = QStringLiteral("sequence-1");
    const QString second = QStringLiteral("sequence-2");
    applet_fixture::ScopedApplet applet;
    wgtLocalVariable panel;
    QTreeView* tree = panel.findChild<QTreeView*>(QStringLiteral("treeView"));
    QStringList messages; ///< "title|text"
    QStringList told;
    bool isActive = false;

private:
    user_dialogs::Handler previous;
};
