#include "model/dialogs/EmptyHint.h"

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QEvent>

EmptyHint::EmptyHint(QAbstractItemView* view, const QString& text)
    : QLabel(text, view->viewport()), m_view(view)
{
    setObjectName(QStringLiteral("emptyHint"));
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignCenter);
    setWordWrap(true);
    setMargin(fontMetrics().height());
    setForegroundRole(QPalette::PlaceholderText);
    setAttribute(Qt::WA_TransparentForMouseEvents); // the view's menu and drops stay
    hide();
    view->viewport()->installEventFilter(this);
}

/// A view paints itself anew whenever its rows have come or gone, whichever model has them.
bool EmptyHint::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Paint || event->type() == QEvent::Resize) {
        const QAbstractItemModel* model = m_view->model();
        setGeometry(m_view->viewport()->rect());
        setVisible(!model || model->rowCount(m_view->rootIndex()) == 0);
    }
    return QLabel::eventFilter(watched, event);
}
