#include "standalone/model_service/stores/SharedTable.h"

#include "base/document_text.h"
#include "base/file_reading.h"
#include "base/kept_copies.h"
#include "model/services/log.h"
#include "standalone/model_service/stores/project_file.h"

#include <QFileInfo>

#include <string>

namespace standalone {

namespace {

/// The text with the white space of all; as it is if it is broken, with @p complaint set.
QByteArray indented(const QByteArray& text, QString& complaint)
{
    std::string same;
    if (!document_text::indent({text.constData(), std::size_t(text.size())}, same, complaint))
        return text;
    return QByteArray::fromStdString(same);
}

} // namespace

void SharedTable::setLoaded(const QByteArray& fileText, const QByteArray& ownText)
{
    QString complaint;
    m_path.clear();
    m_inFile = indented(fileText, complaint);
    m_own = ownText;
}

void SharedTable::save(const QString& path, const QByteArray& ownText)
{
    if (m_path.isEmpty())
        m_path = path;
    // Elsewhere than where it is from there is nothing that could be known.
    if (path != m_path) {
        m_path = path;
        m_inFile.clear();
        m_own.clear();
    }
    if (QFileInfo::exists(path) && (ownText == m_own || !keepOther(path, ownText)))
        return;
    if (!writeProjectFile(path, ownText))
        return;
    QString complaint;
    m_inFile = indented(ownText, complaint);
    m_own = ownText;
}

/// False if what another program has made of the file would be lost.
bool SharedTable::keepOther(const QString& path, const QByteArray& ownText) const
{
    const auto file = file_reading::read(path, file_reading::MostOfTable);
    if (file.isRead && file.content == ownText)
        return true;
    QString complaint = file.complaint;
    if (file.isRead && indented(file.content, complaint) == m_inFile)
        return true;
    // One that was found damaged when it was read is kept already, under that name.
    const QString copy =
        kept_copies::keep(path, complaint.isEmpty() ? kept_copies::replaced : kept_copies::damaged);
    const QString why = complaint.isEmpty()
                            ? QStringLiteral("[流程编辑] %1 已被其他程序修改, ").arg(path)
                            : QStringLiteral("[流程编辑] %1 无法读取 (%2), ").arg(path, complaint);
    sdk_ui_interface::log::log_error(why + (copy.isEmpty()
                                                ? QStringLiteral("其内容无法另存, 未保存")
                                                : QStringLiteral("其内容保留为 ") + copy));
    return !copy.isEmpty();
}

SharedTable& globalVariablesFile()
{
    static SharedTable table;
    return table;
}

SharedTable& quickStepsFile()
{
    static SharedTable table;
    return table;
}

} // namespace standalone
