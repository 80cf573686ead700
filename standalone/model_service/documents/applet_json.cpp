#include "standalone/model_service/documents/applet_json.h"

#include "standalone/model_service/documents/AppletModel.h"
#include "standalone/model_service/documents/BlockReader.h"
#include "standalone/model_service/documents/BlockWriter.h"
#include "standalone/model_service/identifiers.h"
#include "standalone/model_service/json/FieldReader.h"
#include "standalone/model_service/json/FieldWriter.h"

#include <unordered_set>

namespace standalone {

namespace {

constexpr int FormatVersion = 1;

/// Sequences as they are read: gives each an id and a name of its own.
class SequenceNaming
{
public:
    void settle(SequenceInfo& head, LoadReport& report, const DocumentPlace& where)
    {
        if (head.id.empty() || m_ids.count(head.id) > 0) {
            const QString former = LoadReport::shown(head.id);
            head.id = newUuid();
            report.add(
                where,
                QStringLiteral("序列id缺少或重复(%1)，新的id为%2").arg(former, toText(head.id)));
        }
        m_ids.insert(head.id);
        if (head.name.empty()) {
            do {
                head.name = "Sequence_" + std::to_string(m_number++);
            } while (m_names.count(head.name) > 0);
            report.add(where, QStringLiteral("缺少序列名，命名为%1").arg(toText(head.name)));
        }
        m_names.insert(head.name);
    }

private:
    std::unordered_set<std::string> m_ids;
    std::unordered_set<std::string> m_names;
    int m_number = 0; ///< the lowest that may be free
};

void tellVersion(const JsonValue& document, LoadReport& report)
{
    const auto version = document.member("version");
    std::int64_t number = FormatVersion;
    if (!version.isMissing() && (!version.whole(number) || number < 1))
        report.add({}, QStringLiteral("version: 无效的文档版本"));
    else if (number > FormatVersion)
        report.add({},
                   QStringLiteral("version: 文档版本 %1 高于支持的版本 %2，不认识的内容原样保留")
                       .arg(number)
                       .arg(FormatVersion));
}

} // namespace

std::string writeApplet(const AppletModel& applet)
{
    KindTable kinds(applet.kindRests);
    BlockWriter writer(kinds);
    std::string sequences;
    constexpr std::size_t usualStep = 160;
    sequences.reserve(applet.blockCount() * usualStep);
    for (const auto& sequence : applet.sequences()) {
        sequences += sequences.empty() ? '[' : ',';
        writeSequence(sequences, *sequence, writer);
    }
    const bool isEmpty = sequences.empty();
    sequences += isEmpty ? "[]" : "]";

    FieldWriter document(applet.kept);
    if (!isEmpty || !document.keeps("sequences"))
        document.insert("sequences", [&](std::string& out) { out += sequences; });
    if (!kinds.isEmpty())
        document.insert("stepKinds", [&](std::string& out) { kinds.write(out); });
    // A document of a newer version stays one: it holds what this version only passes on.
    if (!document.keeps("version"))
        document.insert("version", [](std::string& out) { out += std::to_string(FormatVersion); });
    std::string json;
    json.reserve(sequences.size() + 1024);
    document.finish(json);
    return json;
}

void readApplet(AppletModel& applet, const JsonTree& document, LoadReport& report)
{
    const DocumentPlace whole;
    FieldReader reader(document.root(), report, whole);
    tellVersion(document.root(), report);
    KindTable kinds;
    kinds.read(reader.takeObject("stepKinds"), report);
    const auto sequences = reader.takeArray("sequences");
    applet.removeAllSequences();
    applet.kept = reader.rest();
    applet.kindRests = kinds.rests();
    applet.isDocument = true;

    BlockPlaces places;
    places.reserve(document.objectCount()); // hardly more than the blocks
    BlockReader blocks(kinds, places, report);
    AppletModel::Sequences read;
    SequenceNaming naming;
    const DocumentPlace list("sequences", whole);
    DocumentPlace where(0, list);
    for (auto item = sequences.first(); !item.isMissing(); item = item.nextIn(sequences)) {
        if (item.isObject()) {
            read.push_back(std::make_unique<SequenceContent>());
            readSequence(*read.back(), item, blocks, report, where);
            naming.settle(read.back()->head, report, where);
        } else {
            report.add(where, QStringLiteral("序列不是对象，已忽略"));
        }
        where.setIndex(where.index() + 1);
    }
    applet.assign(std::move(read), std::move(places));
}

} // namespace standalone
