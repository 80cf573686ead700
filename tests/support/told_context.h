#pragma once

#include <QCoreApplication>
#include <QTranslator>

/// As long as it lives, every translated text reads "context:text".
class ToldContext : public QTranslator
{
public:
    ToldContext() { QCoreApplication::installTranslator(this); }
    ~ToldContext() override { QCoreApplication::removeTranslator(this); }

    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* source, const char*, int) const override
    {
        return QString::fromUtf8(context) + QLatin1Char(':') + QString::fromUtf8(source);
    }
};
