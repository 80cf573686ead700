#pragma once

#include <QString>
#include <QStringList>

/// Texts as tests write them down: UTF-8.

inline QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// The lines of a text that are not empty.
inline QStringList lines(const char* utf8)
{
    return text(utf8).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}
