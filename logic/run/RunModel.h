#pragma once

#include "logic/run/run_states.h"

#include <QHash>
#include <QStandardItemModel>

/// The rows of one sequence on the run tab. How a row ended is kept beside the rows and read when a
/// view asks for it: reports come faster than cells can be written. GUI thread only.
class RunModel : public QStandardItemModel
{
public:
    using QStandardItemModel::QStandardItemModel;

    /// Notes how a row ended; @p row is its cell of column 0. No signal is sent: the caller has the
    /// view drawn again.
    void mark(const QStandardItem* row, run_states::Outcome outcome)
    {
        m_marks.insert(row, {outcome, m_round});
    }
    /// No row has ended yet, as before the run; the same holds for signals.
    void forgetMarks() { ++m_round; }

    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private:
    struct Mark
    {
        run_states::Outcome outcome;
        quint32 round; ///< which entering of the sequence it belongs to
    };

    QHash<const QStandardItem*, Mark> m_marks;
    quint32 m_round = 0;
};
