#pragma once

#include <QItemDelegate>

/// Draws the variable tree's cells and edits them: a name that the tree has only once, a value
/// that fits the type, one of the offered types, any remark. Types with a length have a button for
/// it at the right end of the name. GUI thread only.
class varTreeDelegate : public QItemDelegate
{
    Q_OBJECT
public:
    explicit varTreeDelegate(QObject* parent = nullptr);

    /// The place of the length button within a name cell, in the same coordinates.
    static QRect lengthButtonRect(const QRect& nameCell);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    /// The font's height and a little.
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    /// A name that is empty or taken is refused with a message, and the old one stays.
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;

    /// Leaves an editor as the loss of the focus does: with what has been typed, or with the old
    /// text if that is unfinished.
    void leave(QWidget* editor);

signals:
    void lengthButtonClicked(QModelIndex index);

protected:
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;
    /// Tab leaves an editor without opening the next one, Enter also one whose text is unfinished.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setName(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const;

    /// A name is judged once for each time that its editor is filled: leaving an editor can commit
    /// twice, and the message must not come twice.
    mutable bool m_nameEditPending = false;
};
