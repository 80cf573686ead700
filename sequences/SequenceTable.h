#pragma once

#include <QTableWidget>
#include <QVector>

struct SequenceInfo;
class QCheckBox;

/// The rows of a wgtSequenceTable and what is dragged from them; whole rows are selected. It knows
/// no service: its rows show what they were made of. GUI thread only.
class SequenceTable : public QTableWidget
{
    Q_OBJECT
public:
    /// The item of NameColumn bears the sequence's uuid in role Qt::UserRole.
    enum Column { NameColumn, MainColumn, CommentColumn, ColumnCount };

    explicit SequenceTable(QWidget* parent = nullptr);

    /// The applet that drags name as their source.
    void setCAppletName(const QString& appName);

    /// Adds a row at the end, without a signal, and returns its number.
    int appendSequence(const SequenceInfo& info);
    /// Makes a row the current one, selects it alone and scrolls to it.
    void makeCurrent(int row);
    /// Ends an open editor with what has been typed, as Return does; a name that the delegate
    /// refuses is refused with its message.
    void commitEditor();
    /// Takes rows away, without a signal. @p rows is in table order, each once.
    void removeRowsAt(const QVector<int>& rows);
    /// Empties the table without a signal.
    void removeAllRows();

    /// Empty outside the rows.
    QString sequenceIdAt(int row) const;
    /// Ids of several rows, in the order of @p rows.
    QStringList sequenceIdsAt(const QVector<int>& rows) const;
    QCheckBox* mainBoxAt(int row) const;
    /// The column of names, in table order.
    QStringList names() const;
    /// In table order, each once.
    QVector<int> selectedRows() const;

protected:
    void rowsInserted(const QModelIndex& parent, int first, int last) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    /// The dragged rows' ids, in table order, joined by ";", and the applet's name; the formats
    /// that only mark a drag as one of sequences are empty.
    QMimeData* mimeData(const QList<QTableWidgetItem*> items) const override;

private:
    void setUpColumns();

    QString m_appName;
};
