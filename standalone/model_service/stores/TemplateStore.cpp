#include "standalone/model_service/stores/TemplateStore.h"

#include "standalone/model_service/documents/template_json.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/json/FieldReader.h"
#include "standalone/model_service/json/FieldWriter.h"
#include "standalone/model_service/json/json_text.h"
#include "standalone/model_service/json/json_write.h"

#include <algorithm>
#include <unordered_set>

namespace standalone {

namespace {

/// Sets a member of an object.
void setText(std::string& object, const char* name, const std::string& text)
{
    FieldWriter writer(object);
    writer.insert(name, [&](std::string& out) { appendJsonString(out, text); });
    object.clear();
    writer.finish(object);
}

} // namespace

TemplateStore& templateStore()
{
    static TemplateStore store;
    return store;
}

void TemplateStore::load(const QByteArray& json)
{
    LoadReport report(QStringLiteral("读取模板"));
    JsonTree document;
    if (!parseObject(json, report, document))
        return;
    const DocumentPlace whole;
    FieldReader reader(document.root(), report, whole);
    const auto templates = reader.takeArray("templates");
    m_kept = reader.rest();
    m_entries.clear();
    std::unordered_set<std::string> ids;
    const DocumentPlace list("templates", whole);
    DocumentPlace where(-1, list);
    for (auto item = templates.first(); !item.isMissing(); item = item.nextIn(templates)) {
        where.setIndex(where.index() + 1);
        Entry entry{readTemplate(item, report, where), {}};
        if (entry.info.mainSequence.id.empty() || !appendJsonValue(entry.json, item)) {
            report.add(where, QStringLiteral("不是模板，已忽略"));
            continue;
        }
        if (entry.info.id.empty() || ids.count(entry.info.id) > 0) {
            entry.info.id = newUuid();
            setText(entry.json, "id", entry.info.id);
            report.add(where, QStringLiteral("模板id缺少或重复"));
        }
        ids.insert(entry.info.id);
        m_entries.push_back(std::move(entry));
    }
    m_isLoaded = true;
}

QString TemplateStore::fileText() const
{
    std::string templates = "[";
    for (const auto& entry : m_entries) {
        templates += templates.size() > 1 ? "," : "";
        templates += entry.json;
    }
    FieldWriter document(m_kept);
    document.insert("templates", [&](std::string& out) { out += templates + ']'; });
    std::string json;
    document.finish(json);
    return QString::fromUtf8(toFileText(json));
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
        setText(renamed->json, "name", name);
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

std::optional<TemplateStore::Standing> TemplateStore::standing(const std::string& id) const
{
    for (std::size_t index = 0; index < m_entries.size(); ++index) {
        if (m_entries[index].info.id == id)
            return Standing{m_entries[index], index};
    }
    return std::nullopt;
}

void TemplateStore::restore(const Standing& standing)
{
    remove(standing.entry.info.id);
    const std::size_t index = std::min(standing.index, m_entries.size());
    m_entries.insert(m_entries.begin() + std::ptrdiff_t(index), standing.entry);
}

QString TemplateStore::freeTemplateName(const QString& wanted) const
{
    return freeName(wanted, [this](const QString& name) {
        return std::any_of(m_entries.begin(), m_entries.end(),
                           [&](const Entry& entry) { return toText(entry.info.name) == name; });
    });
}

} // namespace standalone
