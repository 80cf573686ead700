#pragma once

#include <QString>

#include <string>

/// An applet's name as the model service takes it: in the local 8-bit encoding.
inline std::string appletNameBytes(const QString& appName)
{
    return appName.toLocal8Bit().toStdString();
}

inline QString appletNameText(const std::string& bytes)
{
    return QString::fromLocal8Bit(bytes.c_str());
}
