#include "standalone/model_service/applet_json.h"

#include "standalone/model_service/AppletModel.h"
#include "standalone/model_service/BlockReader.h"
#include "standalone/model_service/BlockWriter.h"
#include "standalone/model_service/FieldReader.h"
#include "standalone/model_service/FieldWriter.h"
#include "standalone/model_service/identifiers.h"

#include <QSet>

namespace standalone {

namespace {

constexpr int FormatVersion = 1;

/// Sequences as they are read: gives each an id and a name of its own.
class SequenceNaming
{
public:
    void settle(SequenceInfo& head, LoadReport& report, const QString& where)
    {
        if (head.id.empty() || m_ids.contains(toText(head.id))) {
            const QString former = toText(head.id);
            head.id = newUuid();
            report.add(
                where,
                QStringLiteral("序列id缺少或重复(%1)，新的id为%2").arg(former, toText(head.id)));
        }
        m_ids.insert(toText(head.id));
        if (head.name.empty()) {
            const auto isTaken = [this](const QString& name) { return m_names.contains(name); };
            head.name = toUtf8(freeName(QStringLiteral("Sequence_0"), isTaken));
            report.add(where, QStringLiteral("缺少序列名，命名为%1").arg(toText(head.name)));
        }
        m_names.insert(toText(head.name));
    }

private:
    QSet<QString> m_ids;
    QSet<QString> m_names;
};

} // namespace

QJsonObject writeApplet(const AppletModel& applet)
{
    KindTable kinds(applet.kindRests);
    BlockWriter writer(kinds);
    QJsonArray sequences;
    for (const auto& sequence : applet.sequences())
        sequences.append(writeSequence(*sequence, writer));

    FieldWriter document(applet.kept);
    if (!sequences.isEmpty() || !applet.kept.contains(QLatin1String("sequences")))
        document.insert("sequences", sequences);
    const auto kindRecords = kinds.write();
    if (!kindRecords.isEmpty())
        document.insert("stepKinds", kindRecords);
    if (!applet.kept.contains(QLatin1String("version")))
        document.insert("version", FormatVersion);
    return document.object();
}

void readApplet(AppletModel& applet, const QJsonObject& document, const QString& appName)
{
    LoadReport report(QStringLiteral("读取流程%1").arg(appName));
    FieldReader reader(document, report);
    QJsonObject kindRecords;
    QJsonArray sequences;
    reader.takeObject("stepKinds", kindRecords);
    reader.takeArray("sequences", sequences);

    KindTable kinds;
    kinds.read(kindRecords, report);
    applet.removeAllSequences();
    applet.kept = reader.rest();
    applet.kindRests = kinds.rests();
    applet.isDocument = true;

    BlockReader blocks(kinds, report);
    SequenceNaming naming;
    int index = -1;
    for (const auto& item : qAsConst(sequences)) {
        const QString where = QStringLiteral("sequences[%1]").arg(++index);
        if (!item.isObject()) {
            report.add(where, QStringLiteral("序列不是对象，已忽略"));
            continue;
        }
        auto sequence = readSequence(item.toObject(), blocks, report, where);
        naming.settle(sequence.head, report, where);
        applet.addSequence(std::move(sequence));
    }
}

} // namespace standalone
