#pragma once

#include <QWidget>

struct SequenceInfo;
class QCheckBox;
class QTableWidget;
class QTableWidgetItem;

/// The list of an applet's sequences: name, main flag and comment, a row each, in order of
/// creation. A change goes to the model service at once. GUI thread only.
class wgtSequenceTable : public QWidget
{
    Q_OBJECT
public:
    explicit wgtSequenceTable(QWidget* parent = nullptr);

    void setCAppletName(const QString& appName);

    /// Empties the table without a signal.
    void clearRows();
    /// Appends the row of a sequence; with @p select it becomes the current one, without a signal.
    void addSequenceRow(const SequenceInfo& info, bool select);
    /// Makes the row of a sequence current; an id without a row changes nothing.
    void selectSequence(const QString& sequenceId);
    /// Empty without a current row.
    QString currentSequenceId() const;

signals:
    void currentSequenceChanged(QString sequenceId);
    /// The table changed the document.
    void sigModified();

private slots:
    void onCurrentItemChangedSlot(QTableWidgetItem* current, QTableWidgetItem* previous);
    void onMainSequenceCheckBoxChangedSlot(int state);

private:
    QString sequenceIdAt(int row) const;
    QCheckBox* mainBoxAt(int row) const;

    QTableWidget* m_table;
    QString m_appName;
};
