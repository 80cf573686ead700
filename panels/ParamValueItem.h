#pragma once

#include <QString>
#include <QWidget>

class QLabel;
class QToolButton;
class VarValueLineEdit;

/// The cell of one argument: shows its value, and is typed into, or filled by the picker. A value
/// of a text type is put in quotes where it lacks them. GUI thread only.
class ParamValueItem : public QWidget
{
    Q_OBJECT
public:
    /// @p type is the keyword of the parameter's type; a text begins as an empty one in quotes.
    ParamValueItem(const QString& type, const QString& appName, const QString& sequenceId,
                   QWidget* parent = nullptr);

    /// What is shown, without a signal.
    void setValue(const QString& value);
    QString value() const { return m_value; }

    /// Turns to the field that is typed into, or back, which takes what was typed.
    void setEditing(bool on);
    bool isEditing() const { return m_editing; }
    /// Takes the value away; of a text, what stands between the quotes.
    void clear();

    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    /// The value was typed or picked.
    void sigEditFinish();
    /// The tab key was pressed while typing: to the value behind, or to the one before.
    void sigTab(bool isForward);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void showValue();
    void pick();
    void take(const QString& value);

    const QString m_type;
    const QString m_cappletName;
    const QString m_sequenceId;
    QString m_value;
    bool m_editing = false;
    QLabel* m_label;
    QToolButton* m_button;
    VarValueLineEdit* m_edit;
};
