#include "standalone/model_service/json/json_text.h"

#include "base/document_text.h"
#include "standalone/model_service/json/DocumentPlace.h"
#include "standalone/model_service/json/LoadReport.h"

#include <algorithm>

namespace standalone {

bool parseObject(const QByteArray& json, LoadReport& report, JsonTree& tree, BrokenText rule)
{
    const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    const bool isBlank = std::all_of(json.begin(), json.end(), isSpace);
    tree.read(isBlank ? QByteArrayLiteral("{}") : json);
    if (tree.fault()) {
        report.add({}, QStringLiteral("json解析错误: %1 (位置 %2)")
                           .arg(QString::fromUtf8(tree.fault()))
                           .arg(tree.faultOffset()));
        return rule == BrokenText::ReadOn && tree.root().isObject();
    }
    if (!tree.root().isObject())
        report.add({}, QStringLiteral("json不是对象"));
    return tree.root().isObject();
}

QByteArray toFileText(const std::string& json)
{
    std::string text;
    QString complaint;
    // What the services write is whole.
    return document_text::indent(json, text, complaint) ? QByteArray::fromStdString(text)
                                                        : QByteArray::fromStdString(json);
}

} // namespace standalone
