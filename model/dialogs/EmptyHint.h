#pragma once

#include <QLabel>

class QAbstractItemView;

/// Says in a view that has no rows why, or what to do: the user looks there and sees nothing else.
/// Owned by the view, whose model may come, change and go. GUI thread only.
class EmptyHint : public QLabel
{
public:
    /// @p text is shown as it is, in as many lines as it takes.
    EmptyHint(QAbstractItemView* view, const QString& text);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    const QAbstractItemView* m_view;
};
