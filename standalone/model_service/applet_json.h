#pragma once

#include <QJsonObject>
#include <QString>

namespace standalone {

class AppletModel;

/// The sequences and blocks of an applet as a document:
/// {"sequences": [...], "stepKinds": {...}, "version": 1}.
QJsonObject writeApplet(const AppletModel& applet);

/// Replaces the applet's content by a document's. Faults go to the host's log under @p appName.
void readApplet(AppletModel& applet, const QJsonObject& document, const QString& appName);

} // namespace standalone
