#pragma once

class QWidget;

namespace wheel_guard {

/// From now on the wheel changes only those lists and numbers of @p panel that have the focus; over
/// any other it is for what is around them. Of the controls that are there at the call.
void install(QWidget& panel);

} // namespace wheel_guard
