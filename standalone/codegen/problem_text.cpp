#include "standalone/codegen/problem_text.h"

#include "standalone/shown_text.h"

#include <QCoreApplication>

namespace codegen {

std::string problemText(const char* source, std::initializer_list<std::string> arguments)
{
    const QString pattern = QCoreApplication::translate("codegen", source);
    // Not by QString::arg one after another: an argument may look like a place.
    QString text;
    for (int i = 0; i < pattern.size(); ++i) {
        const int place =
            pattern[i] == u'%' && i + 1 < pattern.size() ? pattern[i + 1].digitValue() : -1;
        if (place >= 1 && place <= static_cast<int>(arguments.size())) {
            text +=
                standalone::shownText(QString::fromStdString(*(arguments.begin() + (place - 1))));
            ++i;
        } else {
            text += pattern[i];
        }
    }
    return text.toStdString();
}

} // namespace codegen
