#pragma once

#include <QListWidget>

/// The list that a box offers while one types: a window of its own that never takes the focus from
/// the box. It begins hidden.
class SuggestionList : public QListWidget
{
    Q_OBJECT
public:
    explicit SuggestionList(QWidget* parent);
};
