// The editors that a varTreeDelegate opens in the cells.

#include "variables/varTreeDelegate.h"

#include "model/dialogs/NameValidator.h"
#include "model/dialogs/user_dialogs.h"
#include "variables/VarValueLineEdit.h"
#include "variables/variable_rows.h"
#include "variables/variable_rules.h"

#include <QComboBox>
#include <QKeyEvent>

using namespace variable_rows;
using variable_rules::NameRefusal;

namespace {

QWidget* makeTypeBox(QWidget* parent)
{
    auto* box = new QComboBox(parent);
    for (const variable_rules::OfferedType& offered : variable_rules::offeredTypes()) {
        box->addItem(offered.keyword, int(offered.type));
        box->setItemData(box->count() - 1, offered.keyword, Qt::ToolTipRole);
    }
    return box;
}

// A type that isn't offered is shown, but can't be chosen again.
void showType(QComboBox* box, const QString& keyword)
{
    box->setPlaceholderText(keyword);
    box->setCurrentIndex(box->findData(int(varTypeFromKeyword(keyword.toStdString()))));
}

void writeText(QAbstractItemModel* model, const QModelIndex& index, const QString& text)
{
    if (index.data(Qt::EditRole).toString() != text)
        model->setData(index, text, Qt::EditRole);
}

// An alias of the chosen type stays as it is written.
void writeType(QAbstractItemModel* model, const QModelIndex& index, const QComboBox* box)
{
    const DrelVarType present = varTypeFromKeyword(index.data().toString().toStdString());
    if (box->currentIndex() >= 0 && box->currentData().toInt() != present)
        writeText(model, index, box->currentText());
}

} // namespace

QWidget* varTreeDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                       const QModelIndex& index) const
{
    if (index.column() == TypeColumn)
        return makeTypeBox(parent);
    QLineEdit* editor =
        index.column() == ValueColumn ? new VarValueLineEdit(parent) : new QLineEdit(parent);
    editor->setFrame(false); // a row has no room for it
    if (index.column() == NameColumn) {
        editor->setValidator(new NameValidator(editor));
        editor->setInputMethodHints(Qt::ImhHiddenText);
        editor->setPlaceholderText(tr("需以字母或下划线开头"));
    }
    return editor;
}

void varTreeDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    const QString text = index.data(Qt::EditRole).toString();
    if (auto* box = qobject_cast<QComboBox*>(editor)) {
        showType(box, text);
    } else if (auto* value = qobject_cast<VarValueLineEdit*>(editor)) {
        value->setValueType(textOf(index, TypeColumn), rowOf(index).data(LengthRole).toInt());
        value->setValue(text);
    } else if (auto* line = qobject_cast<QLineEdit*>(editor)) {
        line->setText(text);
        m_nameEditPending = index.column() == NameColumn;
    }
    if (const auto* line = qobject_cast<QLineEdit*>(editor))
        editor->setToolTip(line->placeholderText()); // a narrow cell doesn't show all of it
}

void varTreeDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                   const QModelIndex& index) const
{
    if (const auto* box = qobject_cast<QComboBox*>(editor)) {
        writeType(model, index, box);
    } else if (index.column() == NameColumn) {
        setName(editor, model, index);
    } else if (auto* line = qobject_cast<QLineEdit*>(editor)) {
        // The field itself learns that it has lost the focus later than its cell is written.
        if (auto* value = qobject_cast<VarValueLineEdit*>(line))
            value->valueCalibrationSlot();
        writeText(model, index, line->text());
    }
}

void varTreeDelegate::setName(QWidget* editor, QAbstractItemModel* model,
                              const QModelIndex& index) const
{
    const auto* line = qobject_cast<QLineEdit*>(editor);
    if (!line || !m_nameEditPending)
        return;
    m_nameEditPending = false;
    const QString name = line->text().trimmed();
    switch (variable_rules::refusalOf(name, otherNames(*model, index))) {
    case NameRefusal::Empty:
        user_dialogs::warning(editor->window(), tr("warning"), tr("名称不能为空"));
        return;
    case NameRefusal::Taken:
        user_dialogs::warning(editor->window(), tr("warning"), tr("有重名变量，请重新命名"));
        return;
    case NameRefusal::None:
        writeText(model, index, name);
    }
}

void varTreeDelegate::leave(QWidget* editor)
{
    const auto* line = qobject_cast<QLineEdit*>(editor);
    if (!line || line->hasAcceptableInput())
        emit commitData(editor);
    emit closeEditor(editor, NoHint);
}

bool varTreeDelegate::eventFilter(QObject* watched, QEvent* event)
{
    auto* editor = qobject_cast<QWidget*>(watched);
    if (editor && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        const auto* line = qobject_cast<QLineEdit*>(editor);
        const bool isEnter = key == Qt::Key_Return || key == Qt::Key_Enter;
        if (key == Qt::Key_Tab || key == Qt::Key_Backtab ||
            (isEnter && line && !line->hasAcceptableInput())) {
            leave(editor);
            return true;
        }
    }
    return QItemDelegate::eventFilter(watched, event);
}
