#include "panels/condition_texts.h"

QStringList condition_texts::operatorTexts()
{
    return {QStringLiteral("=="),       QStringLiteral("!="), QStringLiteral("==(数组)"),
            QStringLiteral("!=(数组)"), QStringLiteral(">"),  QStringLiteral("<"),
            QStringLiteral(">="),       QStringLiteral("<=")};
}

QString condition_texts::textOf(const Operator& comparison)
{
    return comparison.isArray ? comparison.sign + QStringLiteral("(数组)") : comparison.sign;
}

condition_texts::Operator condition_texts::operatorOf(const QString& text)
{
    return {text.section(QLatin1Char('('), 0, 0), text.contains(QStringLiteral("数组"))};
}
