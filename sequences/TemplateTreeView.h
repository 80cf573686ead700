#pragma once

#include <QTreeView>

class QStandardItemModel;

/// The project's templates, a flat list: frozen copies of sequences. GUI thread only.
class TemplateTreeView : public QTreeView
{
    Q_OBJECT
public:
    explicit TemplateTreeView(QWidget* parent = nullptr);

    void setCAppletName(const QString& appName);
    /// Fills the list again from the model service.
    void reload();

private:
    QStandardItemModel* m_model;
    QString m_appName;
};
