#pragma once

#include <QByteArray>

namespace standalone {

/// The beginning and the end of what a program says, however much it is, with a line between them
/// that tells how many bytes were left out.
class ClippedOutput
{
public:
    /// Bytes kept of the beginning, and as many of the end.
    static constexpr int Half = 256 * 1024;

    void add(const QByteArray& piece);
    QByteArray toText() const;

private:
    QByteArray m_head;
    QByteArray m_tail; ///< a good deal longer than Half at times, so that it is seldom cut
    qint64 m_size = 0; ///< of all that was added
};

} // namespace standalone
