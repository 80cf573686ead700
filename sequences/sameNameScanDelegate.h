#pragma once

#include <QItemDelegate>

/// Edits the cells of a table whose column 0 holds names that differ from row to row. A name that
/// is empty or borne by another row is refused with a message, and the old one stays. Other columns
/// take any text. GUI thread only.
class sameNameScanDelegate : public QItemDelegate
{
    Q_OBJECT
public:
    explicit sameNameScanDelegate(QObject* parent = nullptr);

    /// What the person reads when another row bears the name.
    void setSameNameMessage(const QString& message);
    /// With @p off, names of any shape can be typed; else only those of
    /// sequence_rules::namePattern, which is how it starts.
    void setNameValidatorOff(bool off);

    /// The height of every row, in pixels: twice that of the application's font, 30 at least.
    static int rowHeight();

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;

private:
    QString m_sameNameMessage;
    bool m_nameValidatorOff = false;
};
