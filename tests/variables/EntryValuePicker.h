#pragma once

#include "model/services/process_edit.h"
#include "standalone/variables/SystemVariables.h"
#include "tests/support/applet_fixture.h"
#include "variables/EntryValueTextEdit.h"
#include "variables/wgtEntryValue.h"

#include <QLineEdit>
#include <QTabWidget>
#include <QTableWidget>
#include <QTreeWidget>

/// Variables of each kind, for one applet and as long as this lives; system variables stay.
class PickerVariables
{
public:
    PickerVariables()
    {
        add(SequenceVariable, "seq", "seq_int", "int");
        add(SequenceVariable, "seq", "seq_s32", "s32");
        add(SequenceVariable, "other", "other_s32", "s32");
        add(ProcessVariable, localName(), "app_can", "PDrelCan");
        m_global = add(GlobalVariable, "", "global_u32", "u32");
        defineSystemVariable("sys_u32", UnsignedCategory, 1);
        defineSystemVariable("sys_odd", DataCategoryType(11), 1);
        defineSystemVariable("sys_inner", UnsignedCategory, 2);
    }
    ~PickerVariables() { process_edit::removeVariables(localName(), {m_global}); }

    static QString appName() { return QStringLiteral("选择器"); }

private:
    static std::string localName() { return appName().toLocal8Bit().toStdString(); }
    static std::string add(processVariableType scope, const std::string& owner, const char* name,
                           const char* type)
    {
        processVariable variable =
            process_edit::getVariable(process_edit::addVariable(localName(), scope, owner));
        variable.name = name;
        variable.type = type;
        variable.description = std::string("about ") + name;
        process_edit::updateVariable(localName(), variable, scope);
        return variable.uuid;
    }
    static void defineSystemVariable(const char* name, DataCategoryType category, int kind)
    {
        system_variate::SystemVarInfo variable;
        variable.name = QString::fromLatin1(name);
        variable.category = category;
        variable.kind = kind;
        standalone::SystemVariables::instance().define(variable);
    }

    applet_fixture::ScopedApplet m_applet{appName()};
    std::string m_global;
};

/// A dialog for the sequence "seq", and the widgets of its form.
struct EntryValuePicker
{
    explicit EntryValuePicker(EntryValType type = EntryVariablesAndFunctions,
                              const QString& data = QString(), const QString& keyword = QString())
    {
        dialog.setCAppletName(PickerVariables::appName());
        dialog.setSequenceId(QStringLiteral("seq"));
        dialog.setType(type, true, true);
        dialog.setData(keyword, data, false);
    }
    template <class Widget> Widget* find(const char* name)
    {
        return dialog.findChild<Widget*>(QString::fromLatin1(name));
    }
    /// "group: names" of the groups that are shown.
    QStringList listed() const
    {
        QStringList groups;
        for (int i = 0; i < tree->topLevelItemCount(); ++i) {
            const QTreeWidgetItem* group = tree->topLevelItem(i);
            QStringList names(group->text(0) + QLatin1Char(':'));
            for (int j = 0; j < group->childCount(); ++j)
                names.append(group->child(j)->text(0));
            if (!group->isHidden())
                groups.append(names.join(QLatin1Char(' ')));
        }
        return groups;
    }
    QTreeWidgetItem* variable(const char* name) const
    {
        return tree->findItems(QString::fromLatin1(name), Qt::MatchExactly | Qt::MatchRecursive)
            .value(0);
    }
    int row(const char* function) const
    {
        const auto found = table->findItems(QString::fromLatin1(function), Qt::MatchExactly);
        return found.isEmpty() ? -1 : found.first()->row();
    }
    QStringList shownFunctions() const
    {
        QStringList names;
        for (int row = 0; row < table->rowCount(); ++row) {
            if (!table->isRowHidden(row))
                names.append(table->item(row, 2)->text());
        }
        return names;
    }
    void pick(const char* variableName) { emit tree->itemDoubleClicked(variable(variableName), 0); }

    wgtEntryValue dialog;
    QTabWidget* tabs = find<QTabWidget>("tabWidget");
    QTreeWidget* tree = find<QTreeWidget>("treeVars");
    QTableWidget* table = find<QTableWidget>("tableWidget");
    EntryValueTextEdit* box = find<EntryValueTextEdit>("textEdit");
    QLineEdit* search = find<QLineEdit>("searchEdit");
};
