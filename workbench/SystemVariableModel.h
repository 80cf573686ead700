#pragma once

#include "model/services/system_variate.h"

#include <QAbstractTableModel>
#include <QMutex>
#include <QSet>
#include <QVector>

#include <memory>

/// The system variables as a live table: a row each, in alphabetical order of the names. What is
/// written into a cell goes to the variable service; the rows follow what the service tells, from
/// whichever side the change came. GUI thread only.
class SystemVariableModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { NameColumn, TypeColumn, ValueColumn, DescriptionColumn, ColumnCount };

    explicit SystemVariableModel(QObject* parent = nullptr);
    ~SystemVariableModel() override;

    /// -1 without such a variable.
    int rowOf(const QString& name) const;
    /// Shows a variable as the service has it now, before the service tells of it.
    void follow(const QString& name);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Types are written as their keywords, values as texts. False, and @ref refused, if the
    /// service doesn't take it.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    /// Keywords of the types that a variable can have.
    static QStringList typeKeywords();

signals:
    void refused(QString reason);

private:
    class Listener;
    /// Any thread: the variable of that name isn't any more what its row shows.
    void onChanged(const QString& name);
    void followChanges();

    QVector<system_variate::SystemVarInfo> m_rows;
    QMutex m_mutex;                       ///< guards what follows
    QSet<QString> m_changed;              ///< names; while there are some, one event waits
    std::unique_ptr<Listener> m_listener; ///< last: it calls into all of the above
};
