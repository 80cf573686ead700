#include "standalone/compiler/ClippedOutput.h"

#include <QCoreApplication>

#include <algorithm>

namespace standalone {

void ClippedOutput::add(const QByteArray& piece)
{
    m_size += piece.size();
    const int toHead = std::min(piece.size(), Half - m_head.size());
    m_head += piece.left(toHead);
    m_tail += piece.mid(toHead);
    if (m_tail.size() > 4 * Half)
        m_tail = m_tail.right(Half);
}

QByteArray ClippedOutput::toText() const
{
    const QByteArray tail = m_tail.right(Half);
    const qint64 leftOut = m_size - m_head.size() - tail.size();
    if (leftOut == 0)
        return m_head + tail;
    const QString mark =
        QCoreApplication::translate("standalone::ClippedOutput", "…… 此处省略 %1 字节 ……")
            .arg(leftOut);
    return m_head + '\n' + mark.toUtf8() + '\n' + tail;
}

} // namespace standalone
