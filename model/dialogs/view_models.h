#pragma once

class QAbstractItemModel;
class QAbstractItemView;

namespace view_models {

/// Gives a view another model. The selection model that the view made for the earlier one goes at
/// once; by itself it would stay for as long as its model lives.
void setModel(QAbstractItemView* view, QAbstractItemModel* model);

} // namespace view_models
