#pragma once

#include <QString>
#include <QStringList>

/// How the operator of a comparison is told in the list that offers it. An operator that compares
/// the first elements of two arrays bears "(数组)" behind its sign. The texts are what is read
/// back, so they are not translated. No state, any thread.
namespace condition_texts {

struct Operator
{
    QString sign; ///< as blocks store it
    bool isArray = false;
};

/// The texts on offer, in their order.
QStringList operatorTexts();

/// The text of an operator; one that is not on offer gives a text that is not either.
QString textOf(const Operator& comparison);

/// The operator that a text tells; of any text, what stands before the first "(" is the sign.
Operator operatorOf(const QString& text);

} // namespace condition_texts
