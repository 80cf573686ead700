#include "variables/EntryValueTextEdit.h"

#include "variables/SuggestionList.h"
#include "variables/completion.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScreen>

#include <algorithm>

namespace {

constexpr int ListWidth = 250;
constexpr int ListMaxHeight = 150;
constexpr int ListFrame = 5;

} // namespace

EntryValueTextEdit::EntryValueTextEdit(QWidget* parent)
    : QTextEdit(parent), m_suggestionList(new SuggestionList(this))
{
    setTabChangesFocus(true);
    connect(this, &QTextEdit::textChanged, this, &EntryValueTextEdit::onTextChanged);
    connect(m_suggestionList, &QListWidget::itemClicked, this,
            &EntryValueTextEdit::applySuggestion);
}

void EntryValueTextEdit::setWords(const QStringList& words)
{
    m_words = words;
}

void EntryValueTextEdit::onTextChanged()
{
    if (m_isApplying)
        return;
    const QString word = completion::wordAt(textCursor());
    const QStringList matches = word.isEmpty() ? QStringList() : completion::matches(m_words, word);
    if (matches.isEmpty()) {
        m_suggestionList->hide();
        return;
    }
    fillList(matches);
    showList();
}

void EntryValueTextEdit::fillList(const QStringList& matches)
{
    const completion::RowChange change = completion::rowChange(m_listed, matches);
    if (change.removed > 0)
        m_suggestionList->model()->removeRows(change.first, change.removed);
    if (!change.inserted.isEmpty())
        m_suggestionList->insertItems(change.first, change.inserted);
    m_listed = matches;
    m_suggestionList->setCurrentRow(0);
}

void EntryValueTextEdit::showList()
{
    const int rowsHeight = m_suggestionList->sizeHintForRow(0) * m_suggestionList->count();
    m_suggestionList->setFixedSize(ListWidth, std::min(rowsHeight + ListFrame, ListMaxHeight));
    ensureCursorVisible(); // a line that has just come may be scrolled to only after this
    const QRect local = cursorRect();
    const QRect cursor(viewport()->mapToGlobal(local.topLeft()), local.size());
    const QScreen* screen = QGuiApplication::screenAt(cursor.bottomLeft());
    if (!screen)
        screen = this->screen();
    m_suggestionList->move(
        completion::listPlace(cursor, m_suggestionList->size(), screen->availableGeometry()));
    m_suggestionList->show();
}

void EntryValueTextEdit::applySuggestion(QListWidgetItem* item)
{
    if (!item)
        return;
    {
        // The text that comes in is no word that is being typed.
        const QScopedValueRollback<bool> applying(m_isApplying, true);
        completion::replaceWord(textCursor(), item->text());
    }
    m_suggestionList->hide();
}

void EntryValueTextEdit::keyPressEvent(QKeyEvent* event)
{
    if (!m_suggestionList->isVisible()) {
        QTextEdit::keyPressEvent(event);
        return;
    }
    if (handleListKey(event)) {
        event->accept();
        return;
    }
    const int before = textCursor().position();
    const int revision = document()->revision();
    QTextEdit::keyPressEvent(event);
    // A key that only moves the cursor leaves the word that the list stands for.
    if (document()->revision() == revision && textCursor().position() != before)
        onTextChanged();
}

bool EntryValueTextEdit::handleListKey(QKeyEvent* event)
{
    const int count = m_suggestionList->count();
    const int row = m_suggestionList->currentRow();
    switch (event->key()) {
    case Qt::Key_Down:
        m_suggestionList->setCurrentRow((row + 1) % count);
        return true;
    case Qt::Key_Up:
        m_suggestionList->setCurrentRow((row + count - 1) % count);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Tab:
        applySuggestion(m_suggestionList->currentItem());
        return row >= 0;
    case Qt::Key_Escape:
        m_suggestionList->hide();
        return true;
    default:
        return false;
    }
}

void EntryValueTextEdit::mousePressEvent(QMouseEvent* event)
{
    m_suggestionList->hide();
    QTextEdit::mousePressEvent(event);
}

void EntryValueTextEdit::focusOutEvent(QFocusEvent* event)
{
    m_suggestionList->hide();
    QTextEdit::focusOutEvent(event);
}

void EntryValueTextEdit::hideEvent(QHideEvent* event)
{
    // A window of its own stays when its parent goes.
    m_suggestionList->hide();
    QTextEdit::hideEvent(event);
}

/// Asked before keyPressEvent: Tab belongs to the list while it is shown.
bool EntryValueTextEdit::focusNextPrevChild(bool next)
{
    return !(next && m_suggestionList->isVisible()) && QTextEdit::focusNextPrevChild(next);
}

#include "moc_EntryValueTextEdit.cpp"
