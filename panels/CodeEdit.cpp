#include "panels/CodeEdit.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetrics>

CodeEdit::CodeEdit(QWidget* parent) : QPlainTextEdit(parent)
{
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (!QFontInfo(fixed).fixedPitch()) // a platform without a theme
        fixed.setFamily(QStringLiteral("monospace"));
    setFont(fixed);
    setLineWrapMode(NoWrap);
    setTabStopDistance(4 * QFontMetricsF(font()).horizontalAdvance(QLatin1Char(' ')));
}

bool CodeEdit::focusNextPrevChild(bool next)
{
    return !next && QWidget::focusNextPrevChild(next);
}

#include "moc_CodeEdit.cpp"
