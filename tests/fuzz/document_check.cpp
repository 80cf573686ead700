#include "tests/fuzz/documents.h"

#include "base/document_text.h"
#include "model/IProcessBlock.h"
#include "model/services/process_edit.h"
#include "model/services/process_json_edit.h"
#include "model/services/processedit.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <set>

namespace processedit = sdk_ui_interface::processedit;

namespace documents {

namespace {

const QString applet = QStringLiteral("checked");
const QString copy = QStringLiteral("copy");

struct Texts
{
    QString steps;
    std::string variables;
};

void forget(const QString& name)
{
    processedit::removeApp(name);
    process_edit::removeAllVarByAppName(name.toStdString());
}

Texts saved(const QString& name)
{
    return {processedit::generateProcessJson(name),
            process_json_edit::generateAppAndSequenceVariableJson(name.toStdString())};
}

/// Looks at every block as the views do.
QString faultOfTree()
{
    std::set<std::string> uuids;
    for (const auto& sequence : processedit::getAllSequenceByAppName(applet)) {
        const QString id = QString::fromStdString(sequence.id);
        for (int flow = 1; flow <= 3; ++flow) {
            const auto belong = static_cast<IProcessBlock::ProcessBlockBelong>(flow);
            for (const auto& block : processedit::getAllProcessBySequenceID(applet, id, belong)) {
                block->description();
                block->settingText();
                const QString uuid = QString::fromStdString(block->uuid);
                if (!uuids.insert(block->uuid).second)
                    return QStringLiteral("uuid twice: ") + uuid;
                if (processedit::getProcess(applet, uuid) != block)
                    return QStringLiteral("not found by uuid: ") + uuid;
                if (block->clone()->children.size() != block->children.size())
                    return QStringLiteral("copy differs: ") + uuid;
            }
        }
        process_edit::isHaveSequenceLoop(applet.toStdString(), sequence.id);
        process_edit::isHaveStuVar(applet.toStdString(), sequence.id);
    }
    return QString();
}

QString faultOfText(const Texts& texts)
{
    const std::string steps = texts.steps.toStdString();
    const auto bare = [](const std::string& json) {
        return QJsonDocument::fromJson(QByteArray::fromStdString(json));
    };
    std::string document;
    // Names with escapes are left to the library.
    if (!document_text::join({{"logicvar", texts.variables}, {"logicview", steps}}, document))
        return (steps + texts.variables).find('\\') == std::string::npos
                   ? QStringLiteral("not in the library's order: ") + texts.steps
                   : QString();
    const QJsonObject root{{QStringLiteral("logicvar"), bare(texts.variables).object()},
                           {QStringLiteral("logicview"), bare(steps).object()}};
    if (bare(document) != QJsonDocument(root))
        return QStringLiteral("the document differs from its parts: ") +
               QString::fromStdString(document);
    return root.value(QStringLiteral("logicview")).toObject().isEmpty() && steps != "{}"
               ? QStringLiteral("unreadable: ") + texts.steps
               : QString();
}

/// Where two texts part, if they do.
QString difference(const QString& first, const QString& second)
{
    if (first == second)
        return QString();
    const auto parting =
        std::mismatch(first.begin(), first.end(), second.begin(), second.end()).first;
    const int begin = std::max(0, int(parting - first.begin()) - 60);
    return QStringLiteral("no fixed point:\n%1\n%2")
        .arg(first.mid(begin, 160), second.mid(begin, 160));
}

} // namespace

QString faultOf(const QByteArray& document)
{
    forget(applet);
    const auto parts = document_text::split({document.constData(), std::size_t(document.size())});
    const auto textOf = [&](const char* name) {
        const auto found = parts.members.find(name);
        return found == parts.members.end()
                   ? QString()
                   : QString::fromUtf8(found->second.data(), int(found->second.size()));
    };
    processedit::loadProcessJson(applet, textOf("logicview"));
    process_json_edit::loadAppVariableJson(applet.toStdString(), textOf("logicvar").toStdString());
    QString fault = faultOfTree();
    const Texts first = saved(applet);
    if (fault.isEmpty())
        fault = faultOfText(first);

    forget(applet);
    forget(copy);
    processedit::loadProcessJson(copy, first.steps);
    process_json_edit::loadAppVariableJson(copy.toStdString(), first.variables);
    const Texts second = saved(copy);
    forget(copy);
    if (fault.isEmpty() && first.steps != QLatin1String("{}"))
        fault = difference(first.steps, second.steps);
    if (fault.isEmpty())
        fault = difference(QString::fromStdString(first.variables),
                           QString::fromStdString(second.variables));
    return fault;
}

} // namespace documents
