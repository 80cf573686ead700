#include "standalone/variables/system_variable_json.h"

#include "base/document_text.h"
#include "standalone/model_service/json/FieldReader.h"
#include "standalone/model_service/json/FieldWriter.h"
#include "standalone/model_service/json/LoadReport.h"
#include "standalone/model_service/json/json_text.h"
#include "standalone/model_service/json/json_write.h"
#include "standalone/variables/system_values.h"

#include <QSet>

namespace standalone {
namespace system_variable_json {

namespace {

constexpr int Version = 1;

QString keyword(DataCategoryType category)
{
    return QString::fromStdString(varTypeKeyword(varTypeFromDataCategory(category)));
}

/// False for a keyword of none; an empty one is no category.
bool categoryOf(const QString& text, DataCategoryType& category)
{
    for (int value = NoCategory; value <= DoubleArrayCategory; ++value) {
        category = static_cast<DataCategoryType>(value);
        if (keyword(category) == text)
            return true;
    }
    return false;
}

bool readEntry(const JsonValue& object, LoadReport& report, SystemVariableContent::Entry& entry)
{
    system_variate::SystemVarInfo& info = entry.info;
    const DocumentPlace place;
    FieldReader reader(object, report, place);
    std::string name, type, value, description;
    reader.field("name", name);
    reader.field("type", type);
    reader.field("value", value);
    reader.field("description", description);
    reader.field("kind", info.kind, info.kind);
    reader.field("precision", info.precision, info.precision);
    entry.kept = reader.rest();
    info.name = QString::fromStdString(name);
    info.value = QString::fromStdString(value);
    info.description = QString::fromStdString(description);
    bool isSound = true;
    object.member("value").text(&isSound);
    return object.member("value").isString() && isSound && system_values::isName(info.name) &&
           categoryOf(QString::fromStdString(type), info.category) &&
           system_values::fits(info.category, info.value);
}

void insertText(FieldWriter& writer, std::string_view name, const QString& text)
{
    writer.insert(name, [text](std::string& json) { appendJsonString(json, text.toStdString()); });
}

void insertNumber(FieldWriter& writer, std::string_view name, int number)
{
    writer.insert(name, [number](std::string& json) { json += std::to_string(number); });
}

} // namespace

QString read(const QByteArray& text, SystemVariableContent& content, QStringList& strangers)
{
    content = {};
    LoadReport report(QStringLiteral("读取系统变量"));
    JsonTree document;
    document.read(text);
    if (document.fault())
        return QStringLiteral("%1 (位置 %2)")
            .arg(QString::fromUtf8(document.fault()))
            .arg(document.faultOffset());
    const JsonValue listed = document.root().member("variables");
    if (!document.root().isObject() || !(listed.isArray() || listed.isMissing()))
        return QStringLiteral("不是系统变量文件");
    const DocumentPlace place;
    FieldReader reader(document.root(), report, place);
    const JsonValue list = reader.takeArray("variables");
    for (auto item = list.first(); !item.isMissing(); item = item.nextIn(list)) {
        SystemVariableContent::Entry entry;
        if (item.isObject() && readEntry(item, report, entry) &&
            !content.entries.contains(entry.info.name)) {
            content.entries.insert(entry.info.name, entry);
            continue;
        }
        strangers.append(entry.info.name);
        std::string json;
        if (appendJsonValue(json, item))
            content.strangers.push_back(json);
        else
            return QStringLiteral("其他程序无法读取的内容");
    }
    content.kept = reader.rest();
    return QString();
}

std::string writeEntry(const SystemVariableContent::Entry& entry)
{
    FieldWriter writer(entry.kept);
    insertText(writer, "description", entry.info.description);
    insertNumber(writer, "kind", entry.info.kind);
    insertText(writer, "name", entry.info.name);
    insertNumber(writer, "precision", entry.info.precision);
    insertText(writer, "type", keyword(entry.info.category));
    insertText(writer, "value", entry.info.value);
    std::string json;
    writer.finish(json);
    return json;
}

QByteArray write(const SystemVariableContent& content)
{
    FieldWriter document(content.kept);
    document.insert("variables", [&content](std::string& json) {
        json += '[';
        const char* separator = "";
        for (const auto& entry : content.entries) {
            json += separator + writeEntry(entry);
            separator = ",";
        }
        for (const std::string& stranger : content.strangers) {
            json += separator + stranger;
            separator = ",";
        }
        json += ']';
    });
    if (!document.keeps("version"))
        insertNumber(document, "version", Version);
    std::string json;
    document.finish(json);
    return toFileText(json);
}

QMap<QString, std::string> entryTexts(const SystemVariableContent& content)
{
    QMap<QString, std::string> texts;
    for (auto entry = content.entries.cbegin(); entry != content.entries.cend(); ++entry)
        texts.insert(entry.key(), writeEntry(*entry));
    return texts;
}

QStringList merge(const QMap<QString, std::string>& base, const SystemVariableContent& other,
                  SystemVariableContent& own)
{
    const auto ownTexts = entryTexts(own);
    const auto otherTexts = entryTexts(other);
    QSet<QString> names;
    for (const auto* texts : {&base, &ownTexts, &otherTexts}) {
        for (auto text = texts->cbegin(); text != texts->cend(); ++text)
            names.insert(text.key());
    }
    QStringList both;
    for (const QString& name : qAsConst(names)) {
        const std::string before = base.value(name); // empty where there is none
        const std::string here = ownTexts.value(name);
        const std::string there = otherTexts.value(name);
        if (here != before) {
            if (there != before && there != here)
                both.append(name);
        } else if (there.empty()) {
            own.entries.remove(name);
        } else {
            own.entries.insert(name, other.entries.value(name));
        }
    }
    own.strangers = other.strangers;
    own.kept = other.kept;
    both.sort();
    return both;
}

} // namespace system_variable_json
} // namespace standalone
