#pragma once

#include "model/process_records.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <string>
#include <vector>

namespace standalone {

class AppletModel;

/// The templates of the project in their order. A template never changes but for its name.
class TemplateStore
{
    struct Entry
    {
        processTemplateInfo info;
        std::string json; ///< as it was read or first written, but for the name
    };

public:
    bool isLoaded() const { return m_isLoaded; }
    /// Replaces all by those of a JSON text; one that doesn't parse changes nothing.
    void load(const QByteArray& json);
    QString fileText() const;

    std::vector<processTemplateInfo> all() const;
    const processTemplateInfo* find(const std::string& id) const; ///< null if there is none
    void add(const processTemplateInfo& info);
    void rename(const std::string& id, const std::string& name);
    void remove(const std::string& id);
    void removeAll(bool keepLoadedMark);
    /// @p wanted, or the same with a number if a template has that name.
    QString freeTemplateName(const QString& wanted) const;

    /// A template, and where it stands.
    struct Standing
    {
        Entry entry;
        std::size_t index = 0;
    };
    std::optional<Standing> standing(const std::string& id) const; ///< empty if there is none
    void restore(const Standing& standing);

private:
    Entry* entry(const std::string& id);

    bool m_isLoaded = false;
    std::vector<Entry> m_entries;
    std::string m_kept;
};

TemplateStore& templateStore();

/// A frozen copy of a sequence with the sequences that it calls, directly or not, the variables
/// that all these use, and the templates that they call. Without id and name. A record without a
/// main sequence if the applet has no such sequence.
processTemplateInfo makeTemplate(const QString& appName, const AppletModel& applet,
                                 const std::string& sequenceId);

} // namespace standalone
