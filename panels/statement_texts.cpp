#include "panels/statement_texts.h"

#include <QRegularExpression>

QString statement_texts::functionDeclarations(const QString& code)
{
    static const QRegularExpression definition(
        QStringLiteral("(?:void|int|float|double|char)\\s+(\\w+\\([^\\)]*\\))\\s*\\{[^}]*\\}"));
    QString declarations;
    auto found = definition.globalMatch(code);
    while (found.hasNext())
        declarations += found.next().captured(1) + QLatin1Char(';');
    return declarations;
}
