#pragma once

#include <QRegularExpressionValidator>

/// Keeps to name_rules::namePattern while a name is typed, but lets an empty text pass: an editor
/// whose text its validator doesn't accept isn't committed, and the person would never read why an
/// empty name won't do.
class NameValidator : public QRegularExpressionValidator
{
    Q_OBJECT
public:
    explicit NameValidator(QObject* parent = nullptr);
    State validate(QString& input, int& position) const override;
};
