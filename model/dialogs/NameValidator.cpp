#include "model/dialogs/NameValidator.h"

#include "model/name_rules.h"

NameValidator::NameValidator(QObject* parent)
    : QRegularExpressionValidator(name_rules::namePattern(), parent)
{
}

QValidator::State NameValidator::validate(QString& input, int& position) const
{
    return input.isEmpty() ? Acceptable : QRegularExpressionValidator::validate(input, position);
}

#include "moc_NameValidator.cpp"
