#include "panels/ProcessEditTableWidget.h"

#include "panels/ProcessEditTableWidgetItemDelagate.h"

#include <QEvent>
#include <QHeaderView>

ProcessEditTableWidget::ProcessEditTableWidget(QWidget* parent) : QTableWidget(parent)
{
    setItemDelegate(new ProcessEditTableWidgetItemDelagate(this));
    constexpr int leastHeight = ProcessEditTableWidgetItemDelagate::LeastRowHeight;
    verticalHeader()->setMinimumSectionSize(leastHeight);
    verticalHeader()->setDefaultSectionSize(leastHeight);
    installEventFilter(this);
}

bool ProcessEditTableWidget::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == this && event->type() == QEvent::LayoutRequest)
        resizeRowsToContents();
    return QTableWidget::eventFilter(watched, event);
}

#include "moc_ProcessEditTableWidget.cpp"
