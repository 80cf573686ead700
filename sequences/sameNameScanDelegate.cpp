#include "sequences/sameNameScanDelegate.h"

#include "model/dialogs/NameValidator.h"
#include "model/dialogs/user_dialogs.h"
#include "sequences/sequence_rules.h"

#include <QApplication>
#include <QFontMetrics>
#include <QLineEdit>

using sequence_rules::NameRefusal;

namespace {

constexpr int NameColumn = 0;
constexpr int LeastRowHeight = 30;

QStringList namesOfOtherRows(const QAbstractItemModel& model, int row)
{
    QStringList names;
    names.reserve(model.rowCount());
    for (int other = 0; other < model.rowCount(); ++other) {
        if (other != row)
            names.append(model.index(other, NameColumn).data().toString());
    }
    return names;
}

} // namespace

sameNameScanDelegate::sameNameScanDelegate(QObject* parent) : QItemDelegate(parent) {}

void sameNameScanDelegate::setSameNameMessage(const QString& message)
{
    m_sameNameMessage = message;
}

void sameNameScanDelegate::setNameValidatorOff(bool off)
{
    m_nameValidatorOff = off;
}

int sameNameScanDelegate::rowHeight()
{
    return qMax(LeastRowHeight, 2 * QFontMetrics(QApplication::font()).height());
}

QSize sameNameScanDelegate::sizeHint(const QStyleOptionViewItem& option,
                                     const QModelIndex& index) const
{
    return {QItemDelegate::sizeHint(option, index).width(), rowHeight()};
}

QWidget* sameNameScanDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                            const QModelIndex& index) const
{
    auto* editor = new QLineEdit(parent);
    if (index.column() != NameColumn)
        return editor;
    editor->setPlaceholderText(tr("字母或下划线开头"));
    editor->setInputMethodHints(Qt::ImhHiddenText);
    if (!m_nameValidatorOff)
        editor->setValidator(new NameValidator(editor));
    return editor;
}

void sameNameScanDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const
{
    if (auto* lineEdit = qobject_cast<QLineEdit*>(editor))
        lineEdit->setText(index.data(Qt::EditRole).toString());
}

void sameNameScanDelegate::setModelData(QWidget* editor, QAbstractItemModel* model,
                                        const QModelIndex& index) const
{
    const auto* lineEdit = qobject_cast<QLineEdit*>(editor);
    if (index.column() != NameColumn || !lineEdit) {
        QItemDelegate::setModelData(editor, model, index);
        return;
    }
    const QString name = lineEdit->text().trimmed();
    switch (sequence_rules::refusalOf(name, namesOfOtherRows(*model, index.row()))) {
    case NameRefusal::Empty:
        user_dialogs::warning(editor->window(), tr("warning"), tr("名称不能为空"));
        return;
    case NameRefusal::Taken:
        user_dialogs::warning(editor->window(), tr("warning"), m_sameNameMessage);
        return;
    case NameRefusal::None:
        model->setData(index, name, Qt::DisplayRole);
        model->setData(index, name, Qt::EditRole);
    }
}

#include "moc_sameNameScanDelegate.cpp"
