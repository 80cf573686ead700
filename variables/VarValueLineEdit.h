#pragma once

#include <QLineEdit>
#include <QTimer>

/// The field in which a variable's value is typed. What doesn't fit the type can't be typed; a
/// value that is refused (see value_rules) leaves the text before it, a red frame for a moment, and
/// a tool tip with the reason. GUI thread only.
class VarValueLineEdit : public QLineEdit
{
    Q_OBJECT
public:
    explicit VarValueLineEdit(QWidget* parent = nullptr);

    /// What can be typed from now on; the text stays. @p type is a primary type keyword. @p length
    /// is the most elements of an array or characters of a text, negative for no limit.
    void setValueType(const QString& type, int length);

    /// Shows @p value as it is, without a signal; it is what a refused text falls back to.
    void setValue(const QString& value);

signals:
    /// A value of the type has been typed. Never for u64 and types without a rule.
    void valueChanged(QString value);

public slots:
    /// Judges the text that has come to stand in the field. Not the signal of the base class, to
    /// which it is connected.
    void textChanged(const QString& text);
    /// Completes an array that ends in a comma.
    void valueCalibrationSlot();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void restore();
    void showRefusal(const QString& reason);

    QString m_type;
    QString m_lastValue; ///< the last accepted text
    int m_length = -1;
    QTimer m_refusal; ///< as long as the frame is red
};
