#include "shell/documents/applet_documents.h"

#include "base/document_text.h"
#include "base/file_reading.h"
#include "base/file_writing.h"
#include "base/kept_copies.h"

#include "model/applet_name.h"
#include "model/services/log.h"
#include "model/services/process_json_edit.h"
#include "model/services/processedit.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace processedit = sdk_ui_interface::processedit;

namespace applet_documents {

const QString documentName = QStringLiteral("processInfo.pedt");

namespace {

constexpr std::string_view logicViewKey = "logicview";
constexpr std::string_view variablesKey = "logicvar";

// Reports to the log, or to nobody.
class Reporter
{
public:
    explicit Reporter(bool quiet) : m_quiet(quiet) {}
    void operator()(const QString& text) const
    {
        if (!m_quiet)
            sdk_ui_interface::log::log_error(text);
    }

private:
    bool m_quiet;
};

std::string_view viewOf(const QByteArray& text)
{
    return {text.constData(), static_cast<std::size_t>(text.size())};
}

// UTF-8 with whatever is none replaced.
std::string soundUtf8(std::string_view text)
{
    if (document_text::firstForeignByte(text) == std::string_view::npos)
        return std::string(text);
    return QString::fromUtf8(text.data(), int(text.size())).toStdString();
}

QJsonObject parseOwn(const QByteArray& json, const QString& complaint)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        sdk_ui_interface::log::log_error(complaint + error.errorString());
    return document.object();
}

bool hasAnyBlock(const QString& appName)
{
    for (const SequenceInfo& info : processedit::getAllSequenceByAppName(appName)) {
        const bool empty =
            info.initialFlow.empty() && info.mainFlow.empty() && info.endFlow.empty();
        if (!info.id.empty() && !empty)
            return true;
    }
    return false;
}

// What each document held when it was last read or written here, by absolute path.
struct KnownContent
{
    std::vector<std::size_t> hashes; ///< of the pieces that it is read in
    /// Members beside the two of the services, as a newer version may write them.
    std::map<std::string, std::string> foreign;
    std::optional<Damage> damage; ///< till a save has dealt with the backup
    bool isUnkept = false;        ///< damaged, and no copy could be made of it

    static std::size_t hashOf(std::string_view piece)
    {
        return std::hash<std::string_view>()(piece);
    }
    bool isIn(const QString& fileName) const
    {
        auto next = hashes.begin();
        const auto isNext = [&](std::string_view piece) {
            return next != hashes.end() && *next++ == hashOf(piece);
        };
        return file_reading::readPieces(fileName, isNext) && next == hashes.end();
    }
};

QHash<QString, KnownContent>& knownContents()
{
    static QHash<QString, KnownContent> contents;
    return contents;
}

KnownContent& remember(const QString& fileName, const QByteArray& content)
{
    auto& known = knownContents()[QFileInfo(fileName).absoluteFilePath()];
    known.hashes.clear();
    for (auto left = viewOf(content); !left.empty();) {
        const auto piece = left.substr(0, file_reading::PieceBytes);
        known.hashes.push_back(KnownContent::hashOf(piece));
        left.remove_prefix(piece.size());
    }
    return known;
}

// What another program has put in the place of what is known; nothing if it is as it was, or was
// never looked at.
std::optional<QByteArray> contentOfAnother(const QString& fileName)
{
    const auto known = knownContents().constFind(QFileInfo(fileName).absoluteFilePath());
    if (known == knownContents().constEnd() || known->isIn(fileName))
        return std::nullopt;
    auto file = file_reading::read(fileName, file_reading::MostOfDocument);
    if (!file.isRead)
        return std::nullopt;
    return std::move(file.content);
}

// False if no copy can be made: the document stays as it is.
bool keepReplaced(const QString& fileName)
{
    const QString copy = kept_copies::keep(fileName, kept_copies::replaced);
    sdk_ui_interface::log::log_error(
        copy.isEmpty()
            ? QStringLiteral("[流程编辑] 流程文件已被其他程序修改, 其内容无法另存, 未保存: ") +
                  fileName
            : QStringLiteral("[流程编辑] 流程文件已被其他程序修改, 其内容保留为: ") + copy);
    return !copy.isEmpty();
}

KnownContent& knownOf(const QString& fileName)
{
    return knownContents()[QFileInfo(fileName).absoluteFilePath()];
}

// The next save would replace the document.
bool keepDamaged(const QString& fileName, const Reporter& report)
{
    const QString copy = kept_copies::keep(fileName, kept_copies::damaged);
    report(copy.isEmpty() ? QStringLiteral("[流程编辑] 无法保留损坏的流程文件: ") + fileName
                          : QStringLiteral("[流程编辑] 已保留损坏的流程文件: ") + copy);
    knownOf(fileName).isUnkept = copy.isEmpty();
    return !copy.isEmpty();
}

void noteDamage(const QString& fileName, const QString& fault, const QString& appName)
{
    Damage damage{fault, 0, 0};
    for (const SequenceInfo& sequence : processedit::getAllSequenceByAppName(appName)) {
        ++damage.sequences;
        damage.steps +=
            int(processedit::getAllProcessBySequenceID(appName, QString::fromStdString(sequence.id),
                                                       IProcessBlock::ProcessBlockBelong(0))
                    .size());
    }
    knownOf(fileName).damage = damage;
}

QString faultIn(std::string_view text, const document_text::Parts& parts)
{
    if (!parts.fault && parts.isObject)
        return QString();
    const QString fault = parts.fault ? QString::fromUtf8(parts.fault) : QStringLiteral("不是对象");
    return QStringLiteral("%1 (%2)").arg(fault,
                                         document_text::lineAndColumn(text, parts.faultOffset));
}

// Tells what is wrong with a document, and keeps a copy of one that a save would not give back.
// Empty for a whole one.
QString checkDocument(const QString& fileName, std::string_view text,
                      const document_text::Parts& parts, const Reporter& report)
{
    const QString fault = faultIn(text, parts);
    if (!fault.isEmpty())
        report(QStringLiteral("[流程编辑] 流程json文件解析失败: ") + fault);
    const auto foreign = document_text::firstForeignByte(text);
    const bool isForeign = foreign != std::string_view::npos;
    if (isForeign)
        report(QStringLiteral("[流程编辑] 流程文件含有非UTF-8字符, 已替换: ") +
               document_text::lineAndColumn(text, foreign));
    if (!fault.isEmpty() || isForeign)
        keepDamaged(fileName, report);
    if (!fault.isEmpty() || !isForeign)
        return fault;
    return QStringLiteral("含有非UTF-8字符 (%1)").arg(document_text::lineAndColumn(text, foreign));
}

// What is whole in memory is worth more than the beginning of a broken file.
bool staysAsItIs(const QString& appName, const QString& fileName, const Reporter& report)
{
    if (!processedit::getCAppletDataIsExist(appName))
        return false;
    report(QStringLiteral("[流程编辑] 流程文件已损坏, 小程序 %1 保留内存中的内容: %2")
               .arg(appName, fileName));
    return true;
}

void readDocument(const QString& appName, const QString& fileName, const Reporter& report)
{
    auto file = file_reading::read(fileName, file_reading::MostOfDocument);
    if (!file.isRead) {
        report(
            QStringLiteral("[流程编辑] 无法读取流程文件: %1 (%2)").arg(fileName, file.complaint));
        keepDamaged(fileName, report);
        noteDamage(fileName, file.complaint, appName);
        return;
    }
    QByteArray text = std::move(file.content);
    auto parts = document_text::split(viewOf(text));
    remember(fileName, text).damage.reset();
    const QString fault = checkDocument(fileName, viewOf(text), parts, report);
    if (parts.fault && staysAsItIs(appName, fileName, report))
        return;
    auto& foreign = knownOf(fileName).foreign;
    foreign.clear();
    std::optional<QString> steps;
    for (const auto& [name, json] : parts.members) {
        if (name == logicViewKey)
            steps = QString::fromUtf8(json.data(), int(json.size()));
        else if (name == variablesKey)
            process_json_edit::loadAppVariableJson(appletNameBytes(appName), soundUtf8(json));
        else if (!parts.fault)
            foreign.emplace(name, json);
    }
    // Large texts go before the model is made, which then takes their memory.
    parts = {};
    text.clear();
    if (steps)
        processedit::loadProcessJson(appName, *steps);
    if (!fault.isEmpty())
        noteDamage(fileName, fault, appName);
}

// The text of a file of an older version; nothing if there is none, or one that may not replace
// what is in memory.
std::optional<QByteArray> readOldFile(const QString& appName, const QString& fileName,
                                      const QString& complaint, const Reporter& report)
{
    const auto file = file_reading::read(fileName, file_reading::MostOfDocument);
    if (file.isMissing)
        return std::nullopt;
    if (!file.isRead) {
        report(complaint + file.complaint);
        return std::nullopt;
    }
    const QByteArray text = file.content;
    QJsonParseError error;
    QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError) {
        report(complaint + error.errorString());
        if (staysAsItIs(appName, fileName, report))
            return std::nullopt;
    }
    return text;
}

void readOldDocument(const QString& appName, const QString& folder, const Reporter& report)
{
    // Both before either is loaded: of a first load, each is read as far as it goes.
    const auto steps = readOldFile(appName, folder + QStringLiteral("logicview.json"),
                                   QStringLiteral("[流程编辑] 旧工程读取步骤json错误: "), report);
    const auto variables =
        readOldFile(appName, folder + QStringLiteral("variable.json"),
                    QStringLiteral("[流程编辑] 旧工程读取变量json错误: "), report);
    if (steps)
        processedit::loadProcessJson(appName, QString::fromUtf8(*steps));
    if (variables)
        process_json_edit::loadAppVariableJson(appletNameBytes(appName), variables->toStdString());
}

// A document of texts that can't be joined as they are: by way of the JSON library.
std::string rebuiltText(const std::map<std::string_view, std::string_view>& members)
{
    QJsonObject root;
    for (const auto& [name, json] : members) {
        const QByteArray text(json.data(), int(json.size()));
        const QString key = QString::fromUtf8(name.data(), int(name.size()));
        if (name == logicViewKey)
            root.insert(key, parseOwn(text, QStringLiteral("[流程编辑]: 步骤json解析错误: ")));
        else if (name == variablesKey)
            root.insert(key, parseOwn(text, QStringLiteral("[流程编辑]: 变量json解析错误: ")));
        else
            root.insert(key, QJsonDocument::fromJson('[' + text + ']').array().at(0));
    }
    return QJsonDocument(root).toJson().toStdString();
}

QString backupIn(const QString& folder)
{
    return folder + documentName + QStringLiteral(".bak");
}

bool isObject(std::string_view json)
{
    const auto first = json.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && json[first] == '{';
}

std::string documentText(const QString& appName, const StripFunction& strip,
                         const std::map<std::string, std::string>& foreign)
{
    QByteArray steps = document_text::utf8Of(processedit::generateProcessJson(appName));
    const std::string variables =
        process_json_edit::generateAppAndSequenceVariableJson(appletNameBytes(appName));
    if (strip) {
        QJsonObject object = parseOwn(steps, QStringLiteral("[流程编辑]: 步骤json解析错误: "));
        strip(object);
        steps = QJsonDocument(object).toJson(QJsonDocument::Compact);
    }
    std::map<std::string_view, std::string_view> members(foreign.begin(), foreign.end());
    members[logicViewKey] = viewOf(steps);
    members[variablesKey] = variables;
    std::string text;
    if (!isObject(viewOf(steps)) || !isObject(variables) || !document_text::join(members, text))
        return rebuiltText(members);
    return text;
}

} // namespace

QString documentPath(const QString& jsonFolder)
{
    return jsonFolder.isEmpty() ? QString() : jsonFolder + documentName;
}

bool write(const QString& appName, const QString& fileName, const StripFunction& strip, Others rule)
{
    if (fileName.isEmpty())
        return false;
    if (!processedit::getCAppletDataIsExist(appName) && QFile::exists(fileName)) {
        sdk_ui_interface::log::log_error(
            QStringLiteral("[流程编辑] 小程序 %1 没有数据, 不覆盖已有文件: %2")
                .arg(appName, fileName));
        return false;
    }
    const QString path = QFileInfo(fileName).absoluteFilePath();
    const std::string document = documentText(appName, strip, knownContents().value(path).foreign);
    const auto text = QByteArray::fromRawData(document.data(), int(document.size()));
    if (knownContents().value(path).isUnkept && !keepDamaged(fileName, Reporter(false)))
        return false;
    if (isOfAnother(fileName) && (rule == Others::Refuse || !keepReplaced(fileName)))
        return false;
    if (!file_writing::replace(fileName, text).isEmpty())
        return false;
    remember(fileName, text);
    return true;
}

bool isOfAnother(const QString& fileName)
{
    return contentOfAnother(fileName).has_value();
}

bool mayBeReplaced(const QString& fileName)
{
    const auto content = contentOfAnother(fileName);
    if (content && !keepReplaced(fileName))
        return false;
    if (content)
        remember(fileName, *content);
    return true;
}

void keepBackup(const QString& appName, const QString& fileName, Backup rule)
{
    const QString backup = backupIn(QFileInfo(fileName).path() + QLatin1Char('/'));
    const bool isThere = QFile::exists(backup);
    if (!hasAnyBlock(appName) || (rule == Backup::KeepFirst && isThere))
        return;
    if (isThere && knownOf(fileName).damage &&
        kept_copies::keep(backup, kept_copies::good).isEmpty()) {
        sdk_ui_interface::log::log_error(
            QStringLiteral("[流程编辑] 损坏前的备份无法另存, 不更新备份: ") + backup);
        return;
    }
    knownOf(fileName).damage.reset();
    const auto written = file_reading::read(fileName, file_reading::MostOfDocument);
    const QString complaint =
        written.isRead ? file_writing::replace(backup, written.content) : written.complaint;
    if (!complaint.isEmpty())
        sdk_ui_interface::log::log_error(
            QStringLiteral("[流程编辑] 无法写入备份: %1 (%2)").arg(backup, complaint));
}

std::optional<Damage> damageRead(const QString& jsonFolder)
{
    return jsonFolder.isEmpty() ? std::nullopt : knownOf(documentPath(jsonFolder)).damage;
}

QDateTime wholeBackup(const QString& jsonFolder)
{
    const QString backup = backupIn(jsonFolder);
    const auto file = file_reading::read(backup, file_reading::MostOfDocument);
    const std::string_view text = viewOf(file.content);
    const bool isWhole = file.isRead && faultIn(text, document_text::split(text)).isEmpty() &&
                         document_text::firstForeignByte(text) == std::string_view::npos;
    return isWhole ? QFileInfo(backup).lastModified() : QDateTime();
}

QString restoreBackup(const QString& jsonFolder)
{
    const QString document = documentPath(jsonFolder);
    const auto backup = file_reading::read(backupIn(jsonFolder), file_reading::MostOfDocument);
    if (!backup.isRead)
        return backup.complaint;
    if (QFileInfo::exists(document) && !keepDamaged(document, Reporter(false)))
        return QStringLiteral("无法保留损坏的流程文件: ") + document;
    return file_writing::replace(document, backup.content);
}

QString faultOf(const QString& jsonFolder)
{
    const auto file = file_reading::read(documentPath(jsonFolder), file_reading::MostOfDocument);
    if (!file.isRead)
        return file.complaint;
    return faultIn(viewOf(file.content), document_text::split(viewOf(file.content)));
}

void read(const QString& appName, const QString& jsonFolder, bool quiet)
{
    if (jsonFolder.isEmpty())
        return;
    const Reporter report(quiet);
    const QString document = documentPath(jsonFolder);
    if (QFileInfo::exists(document)) {
        readDocument(appName, document, report);
    } else {
        knownOf(document) = KnownContent(); // one that is there later is somebody else's
        readOldDocument(appName, jsonFolder, report);
    }
}

} // namespace applet_documents
