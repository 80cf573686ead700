#pragma once

#include <QString>

/// The example project that ships with the application. It is never opened itself: its user works
/// on a copy.
namespace example_project {

/// The folder of the copy, made now if there is none, or if the shipped example is another one than
/// that which the copy was made from; an older copy is kept under another name. Empty, with
/// @p complaint set, if the copy can't be made.
QString openCopy(QString& complaint);

} // namespace example_project
