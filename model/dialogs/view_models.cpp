#include "model/dialogs/view_models.h"

#include <QAbstractItemView>
#include <QItemSelectionModel>

void view_models::setModel(QAbstractItemView* view, QAbstractItemModel* model)
{
    QItemSelectionModel* earlier = view->selectionModel();
    view->setModel(model);
    if (earlier != view->selectionModel())
        delete earlier;
}
