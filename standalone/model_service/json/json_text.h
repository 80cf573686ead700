#pragma once

#include "standalone/model_service/json/JsonTree.h"

#include <QByteArray>
#include <QString>

#include <string>

namespace standalone {

class LoadReport;

/// What becomes of a text that breaks off or is broken somewhere.
enum class BrokenText {
    Refuse, ///< nothing is read
    ReadOn  ///< what stands before the fault is read
};

/// Parses a JSON text of one object. A blank text is an empty object. A text that is no object, or
/// is broken, is reported; false if nothing is to be read of it.
bool parseObject(const QByteArray& json, LoadReport& report, JsonTree& tree,
                 BrokenText rule = BrokenText::Refuse);

/// An object on one line as a file has it that people compare: indented.
QByteArray toFileText(const std::string& json);

} // namespace standalone
