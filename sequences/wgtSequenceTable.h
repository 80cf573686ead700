#pragma once

#include <QWidget>

struct SequenceInfo;
class QMenu;
class QTableWidgetItem;
class SequenceTable;

/// The list of an applet's sequences: name, main flag and comment, a row each, in order of
/// creation. A change goes to the model service at once. Sequences are told by their uuids in all
/// signals, also where a parameter is called a name. GUI thread only.
class wgtSequenceTable : public QWidget
{
    Q_OBJECT
public:
    explicit wgtSequenceTable(QWidget* parent = nullptr);

    void setCAppletName(const QString& appName);
    /// With @p disabled the table has no context menu.
    void setContextMenuDisabled(bool disabled);

    /// Empties the table without a signal.
    void clearRows();
    /// Appends the row of a sequence that the model holds; with @p select it becomes the current
    /// one. No signal: this is how a document is loaded.
    void addSequenceRow(const SequenceInfo& info, bool select);
    /// Makes the row of a sequence current; an id without a row changes nothing.
    void selectSequence(const QString& sequenceId);
    /// Empty without a current row.
    QString currentSequenceId() const;

    /// Writes what is being typed into a cell to the model.
    void flushPending();

    /// A new context menu, with its entries enabled as they are now. A child of this widget that
    /// the caller deletes.
    QMenu* makeContextMenu();

public slots:
    /// Adds a sequence under a free name to the applet; its row becomes the current one.
    void addSequenceSlot();
    /// Removes the sequences of the selected rows with their variables; nothing is asked.
    void removeSelectedSequence();
    void removeAllSequence();
    /// Offers the sequences of the selected rows as templates.
    void addSequenceToTemplate();

signals:
    /// What went, in the words of its user, since nothing is asked.
    void sigNotice(QString text);
    void signalAddSquence(QString name);
    /// Once for all sequences that were removed together; they are gone from the model.
    void signalRemoveSequence(QStringList nameList);
    void signalRemoveAllSequence();
    /// Empty when the last sequence is gone.
    void currentSequenceChanged(QString name);
    /// In table order.
    void signalAddTemplate(QStringList idList);
    void signalRenameSequence();

private slots:
    void onCurrentItemChangedSlot(QTableWidgetItem* current, QTableWidgetItem* previous);
    void onItemChangedSlot(QTableWidgetItem* item);
    void onMainSequenceCheckBoxChangedSlot(int state);
    void showContextMenu(const QPoint& position);

private:
    /// Of sequences that are still there.
    QString removalText(const QStringList& ids) const;
    void setMain(int row, bool isMain);

    SequenceTable* m_table;
    QString m_appName;
    bool m_contextMenuDisabled = false;
};
