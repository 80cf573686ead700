#include "sequences/TemplateTreeView.h"

#include "sequences/template_file.h"

#include "model/services/processedit.h"
#include "model/services/widget_bases.h"

#include <QStandardItemModel>

TemplateTreeView::TemplateTreeView(QWidget* parent)
    : QTreeView(parent), m_model(new QStandardItemModel(this))
{
    setModel(m_model);
    setIndentation(0);
    setHeaderHidden(true);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setAcceptDrops(true);
    template_file::loadOnce();
    reload();
}

void TemplateTreeView::setCAppletName(const QString& appName)
{
    m_appName = appName;
}

void TemplateTreeView::reload()
{
    m_model->clear();
    const QIcon icon = StyleManager::scaledToolbarIcon(QStringLiteral(":/icon/功能/模板.png"), 26);
    for (const processTemplateInfo& info : sdk_ui_interface::processedit::getAllProcessTemplate()) {
        auto* item = new QStandardItem(icon, QString::fromStdString(info.name));
        item->setToolTip(item->text());
        item->setData(QString::fromStdString(info.id), Qt::UserRole);
        m_model->appendRow(item);
    }
}

#include "moc_TemplateTreeView.cpp"
