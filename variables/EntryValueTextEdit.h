#pragma once

#include <QStringList>
#include <QTextEdit>

class QListWidgetItem;
class SuggestionList;

/// A box of several lines that offers known words while one types. The list follows the word that
/// ends at the cursor: Up and Down walk it round, Return, Enter and Tab take the current row in the
/// word's place, so does a click; Escape puts the list away. Without the list these keys are the
/// box's own, and Tab moves the focus on. GUI thread only.
class EntryValueTextEdit : public QTextEdit
{
    Q_OBJECT
public:
    explicit EntryValueTextEdit(QWidget* parent = nullptr);

    /// The words to offer, in the order in which they are listed. They replace the earlier ones.
    void setWords(const QStringList& words);

public slots:
    /// Brings the list in line with the word at the cursor.
    void onTextChanged();
    /// Takes a row of the list in the place of the word under the cursor; null changes nothing.
    void applySuggestion(QListWidgetItem* item);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    bool handleListKey(QKeyEvent* event);
    void fillList(const QStringList& matches);
    void showList();

    SuggestionList* m_suggestionList; ///< a child; a window of its own
    QStringList m_words;
    QStringList m_listed; ///< the rows of the list
    bool m_isApplying = false;
};
