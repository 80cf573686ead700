#pragma once

#include <QWidget>

class QTableView;
class SystemVariableModel;

/// The system variables of the project, live, to be changed in place; a tool bar adds and removes.
/// GUI thread only.
class SystemVariablePane : public QWidget
{
    Q_OBJECT
public:
    explicit SystemVariablePane(QWidget* parent = nullptr);

signals:
    /// Something couldn't be done, and why.
    void refused(QString reason);

private:
    void addVariable();
    void removeSelected();

    SystemVariableModel* m_model;
    QTableView* m_table;
};
