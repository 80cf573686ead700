#pragma once

#include <QDateTime>
#include <QString>

#include <functional>
#include <optional>

class QJsonObject;

/// The documents of applets on disk, with no widget: "processInfo.pedt" with its backup, and the
/// two files of older versions, which are only read. Errors go to the host's log. GUI thread only.
namespace applet_documents {

/// Deletes fields from the "logicview" object before it is written.
using StripFunction = std::function<void(QJsonObject& logicView)>;

/// What becomes of "processInfo.pedt.bak" beside the written file.
enum class Backup {
    Replace,  ///< the written file becomes the backup, if the applet has any block
    KeepFirst ///< the same, but a backup that is there stays
};

/// What a save does to a document that another program has changed since it was read or written
/// here, or has made since there was none.
enum class Others {
    Replace, ///< it is kept aside (".replaced"), which the log tells, and replaced
    Refuse   ///< it stays, and nothing is written
};

extern const QString documentName;

/// The applet's own document; @p jsonFolder ends with a separator. Empty for an empty folder: an
/// applet without paths has no document.
QString documentPath(const QString& jsonFolder);

/// Writes the applet's sequences, blocks and variables to @p fileName: the file is either the old
/// one or the new one at any moment. An empty @p strip writes all. False, with the file as it was,
/// if it can't be written, if @p fileName is empty, if the model holds nothing of the applet while
/// there is a file that would be emptied, and if it is another program's and @p rule says so.
bool write(const QString& appName, const QString& fileName, const StripFunction& strip,
           Others rule = Others::Replace);

/// Whether the document is another program's, as Others says.
bool isOfAnother(const QString& fileName);

/// Keeps such a document aside (".replaced"), so that the next save replaces it under either rule.
/// False, with a line in the log, if no copy can be made; nothing is changed then.
bool mayBeReplaced(const QString& fileName);

/// Keeps the backup beside @p fileName. An applet without any block never touches it, so that an
/// emptied document can't destroy the last good one; nor is it replaced by what could be read of a
/// damaged one: it is kept aside first (".bak.good").
void keepBackup(const QString& appName, const QString& fileName, Backup rule);

/// Reads the applet's document, or that of an older version, into the model. A document that does
/// not parse is copied aside first (".damaged"), since the next save replaces it; it is read as far
/// as it goes, unless the model holds the applet already, which then stays as it is. So does what a
/// file would bring that isn't there. @p quiet writes nothing to the log.
void read(const QString& appName, const QString& jsonFolder, bool quiet);

/// What was found when a document was read that isn't whole.
struct Damage
{
    QString fault; ///< in a few words with its place
    int sequences = 0;
    int steps = 0; ///< that could be read, of all sequences
};

/// What was wrong with the applet's document when it was last read here; nothing if it was whole or
/// was saved since, with its backup.
std::optional<Damage> damageRead(const QString& jsonFolder);

/// When the applet's backup was written; an invalid time if there is none that is whole.
QDateTime wholeBackup(const QString& jsonFolder);

/// Puts the backup in the place of the document, which is kept aside (".damaged"). Returns an empty
/// text, or why it can't be done; then the document is as it was.
QString restoreBackup(const QString& jsonFolder);

/// What is wrong with the applet's document as @c read would find it, in a few words with its
/// place; empty for a document that is whole, and for an applet without one.
QString faultOf(const QString& jsonFolder);

} // namespace applet_documents
