#include "standalone/compiler/dependencies.h"

#include <QFile>

namespace standalone {

/// Make's syntax as compilers write it: "target: path path \<newline> path". A blank or a '#' of a
/// path follows a backslash, backslashes before a blank are doubled, and a '$' is doubled.
QStringList dependenciesIn(const QByteArray& text)
{
    const int colon = text.indexOf(": ");
    QStringList paths;
    QByteArray path;
    const auto endPath = [&] {
        if (!path.isEmpty())
            paths << QFile::decodeName(path);
        path.clear();
    };
    for (int i = colon + 2; colon >= 0 && i < text.size() && text[i] != '\n'; ++i) {
        int slashes = 0;
        while (i + slashes < text.size() && text[i + slashes] == '\\')
            ++slashes;
        const char next = i + slashes < text.size() ? text[i + slashes] : '\n';
        if (slashes > 0 && next == '\n') {
            path += QByteArray(slashes - 1, '\\');
            endPath();
            i += slashes;
        } else if (slashes > 0 && (next == ' ' || next == '\t' || next == '#')) {
            path += QByteArray(slashes / 2, '\\');
            if (slashes % 2 == 1)
                path += next;
            else
                endPath();
            i += slashes;
        } else if (slashes > 0) {
            path += QByteArray(slashes, '\\');
            i += slashes - 1;
        } else if (next == ' ' || next == '\t') {
            endPath();
        } else {
            if (next == '$' && i + 1 < text.size() && text[i + 1] == '$')
                ++i;
            path += next;
        }
    }
    endPath();
    return paths;
}

QByteArray FileState::toText() const
{
    return QByteArray::number(size) + ' ' + QByteArray::number(modified) + ' ' +
           QByteArray::number(changed);
}

bool isOlder(const FileState& state, qint64 moment)
{
    constexpr qint64 ClockTick = 20; // milliseconds; files are stamped by the kernel's tick
    return state.changed / 1000000 < moment - ClockTick;
}

} // namespace standalone
