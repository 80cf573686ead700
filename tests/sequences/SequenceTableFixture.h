#pragma once

#include "edits/DocumentEdits.h"
#include "model/dialogs/user_dialogs.h"
#include "model/services/processedit.h"
#include "sequences/SequenceTable.h"
#include "sequences/wgtSequenceTable.h"
#include "tests/support/applet_fixture.h"

#include <QLineEdit>
#include <QMenu>
#include <QStringList>

/// A shown table with an applet of its own. Warnings are gathered instead of shown; all signals are
/// gathered in their order, as "name" or "name id,id", the ids told as the names that the sequences
/// had when they were added here.
class SequenceTableFixture
{
public:
    explicit SequenceTableFixture(const QStringList& sequences = {}) : applet(appName)
    {
        previous = user_dialogs::setHandler([this](const user_dialogs::Message& message) {
            messages.append(message.title + QLatin1Char('|') + message.text);
            return user_dialogs::Answer{user_dialogs::Button::Ok, QString()};
        });
        panel.setCAppletName(appName);
        gatherSignals();
        panel.resize(430, 400);
        panel.show();
        for (const QString& name : sequences) {
            const QString id = sdk_ui_interface::processedit::createSeuqence(appName, name);
            ids.append(id);
            names.append(name);
            panel.addSequenceRow(record(id), false);
        }
    }
    ~SequenceTableFixture() { user_dialogs::setHandler(previous); }

    SequenceInfo record(const QString& id) const
    {
        return sdk_ui_interface::processedit::getSequence(appName, id);
    }
    /// The applet's sequences in the model, the main one with a "*".
    QStringList modelNames() const
    {
        QStringList all;
        for (const SequenceInfo& info :
             sdk_ui_interface::processedit::getAllSequenceByAppName(appName))
            all.append(QString::fromStdString(info.name) + QLatin1String(info.isMain ? "*" : ""));
        return all;
    }

    void select(const QVector<int>& rows)
    {
        table->clearSelection();
        for (int row : rows)
            table->selectionModel()->select(table->model()->index(row, 0),
                                            QItemSelectionModel::Select |
                                                QItemSelectionModel::Rows);
    }

    /// The editor of a cell, opened as by a double click.
    QLineEdit* edit(int row, int column)
    {
        table->setCurrentCell(row, column);
        table->editItem(table->item(row, column));
        told.clear();
        return table->findChild<QLineEdit*>();
    }

    const QString appName = QStringLiteral("sequence_table_test");
    applet_fixture::ScopedApplet applet;
    wgtSequenceTable panel;
    SequenceTable* table = panel.findChild<SequenceTable*>(QStringLiteral("tableWidget"));
    QStringList ids; ///< of the sequences that it began with
    QStringList names;
    QStringList messages; ///< "title|text"
    QStringList told;

private:
    void tell(const char* signal, const QStringList& withIds = {})
    {
        QStringList known;
        for (const QString& id : withIds)
            known.append(ids.contains(id) ? names[ids.indexOf(id)] : id);
        told.append(QString::fromLatin1(signal) + QLatin1Char(' ') + known.join(QLatin1Char(',')));
        told.last() = told.last().trimmed();
    }
    void gatherSignals()
    {
        using Table = wgtSequenceTable;
        const auto* p = &panel;
        QObject::connect(p, &Table::signalAddSquence, p, [this](auto id) { tell("added", {id}); });
        QObject::connect(p, &Table::signalRemoveSequence, p,
                         [this](auto list) { tell("removed", list); });
        QObject::connect(p, &Table::signalRemoveAllSequence, p, [this] { tell("removedAll"); });
        QObject::connect(p, &Table::currentSequenceChanged, p,
                         [this](auto id) { tell("current", {id}); });
        QObject::connect(p, &Table::signalAddTemplate, p,
                         [this](auto list) { tell("template", list); });
        QObject::connect(p, &Table::signalRenameSequence, p, [this] { tell("renamed"); });
        QObject::connect(&DocumentEdits::instance(), &DocumentEdits::modified, p,
                         [this] { tell("modified"); });
    }

    user_dialogs::Handler previous;
};
