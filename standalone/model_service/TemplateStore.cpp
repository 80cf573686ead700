#include "standalone/model_service/TemplateStore.h"

#include "standalone/model_service/FieldReader.h"
#include "standalone/model_service/FieldWriter.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/json_text.h"
#include "standalone/model_service/template_json.h"

#include <algorithm>

namespace standalone {

TemplateStore& templateStore()
{
    static TemplateStore store;
    return store;
}

void TemplateStore::load(const QByteArray& json)
{
    LoadReport report(QStringLiteral("读取模板"));
    QJsonObject document;
    if (!parseObject(json, report, document))
        return;
    FieldReader reader(document, report);
    QJsonArray templates;
    reader.takeArray("templates", templates);
    m_kept = reader.rest();
    m_entries.clear();
    int index = -1;
    for (const auto& item : qAsConst(templates)) {
        const QString where = QStringLiteral("templates[%1]").arg(++index);
        QJsonObject object = item.toObject();
        auto info = readTemplate(object, report, where);
        if (info.mainSequence.id.empty()) {
            report.add(where, QStringLiteral("不是模板，已忽略"));
            continue;
        }
        if (info.id.empty() || find(info.id)) {
            info.id = newUuid();
            object.insert(QLatin1String("id"), toText(info.id));
            report.add(where, QStringLiteral("模板id缺少或重复"));
        }
        m_entries.push_back({info, object});
    }
    m_isLoaded = true;
}

QString TemplateStore::toFileText() const
{
    QJsonArray templates;
    for (const auto& entry : m_entries)
        templates.append(entry.json);
    FieldWriter document(m_kept);
    document.insert("templates", templates);
    return toJson(document.object(), QJsonDocument::Indented);
}

std::vector<processTemplateInfo> TemplateStore::all() const
{
    std::vector<processTemplateInfo> infos;
    for (const auto& entry : m_entries)
        infos.push_back(entry.info);
    return infos;
}

const processTemplateInfo* TemplateStore::find(const std::string& id) const
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&](const Entry& entry) { return entry.info.id == id; });
    return found == m_entries.end() ? nullptr : &found->info;
}

TemplateStore::Entry* TemplateStore::entry(const std::string& id)
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [&](const Entry& entry) { return entry.info.id == id; });
    return found == m_entries.end() ? nullptr : &*found;
}

void TemplateStore::add(const processTemplateInfo& info)
{
    m_entries.push_back({info, writeTemplate(info)});
}

void TemplateStore::rename(const std::string& id, const std::string& name)
{
    if (auto* renamed = entry(id)) {
        renamed->info.name = name;
        renamed->json.insert(QLatin1String("name"), toText(name));
    }
}

void TemplateStore::remove(const std::string& id)
{
    m_entries.erase(std::remove_if(m_entries.begin(), m_entries.end(),
                                   [&](const Entry& entry) { return entry.info.id == id; }),
                    m_entries.end());
}

void TemplateStore::removeAll(bool keepLoadedMark)
{
    m_entries.clear();
    m_isLoaded = m_isLoaded && keepLoadedMark;
}

QString TemplateStore::freeTemplateName(const QString& wanted) const
{
    return freeName(wanted, [this](const QString& name) {
        return std::any_of(m_entries.begin(), m_entries.end(),
                           [&](const Entry& entry) { return toText(entry.info.name) == name; });
    });
}

} // namespace standalone
