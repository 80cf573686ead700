#pragma once

#include <QString>

#include <string>

namespace standalone {

class AppletModel;
class JsonTree;
class LoadReport;

/// The sequences and blocks of an applet as a document on one line:
/// {"sequences": [...], "stepKinds": {...}, "version": 1}.
std::string writeApplet(const AppletModel& applet);

/// Replaces the applet's content by a document's, which is an object.
void readApplet(AppletModel& applet, const JsonTree& document, LoadReport& report);

} // namespace standalone
