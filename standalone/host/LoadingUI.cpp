#include "model/services/widget_bases.h"

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QVBoxLayout>

LoadingUI::LoadingUI(QWidget* parent) : QWidget(parent), m_title(new QLabel), m_text(new QLabel)
{
    auto* box = new QWidget(this);
    box->setObjectName(QStringLiteral("loading_box"));
    box->setStyleSheet(
        QStringLiteral("#loading_box { background: palette(base); border: 1px solid #b8c0cc;"
                       " border-radius: 4px; }"));
    auto* busy = new QProgressBar;
    busy->setRange(0, 0);
    busy->setTextVisible(false);
    busy->setFixedHeight(StyleManager::scale(6));
    m_title->setStyleSheet(QStringLiteral("font-weight: bold;"));
    auto* inner = new QVBoxLayout(box);
    inner->setContentsMargins(24, 16, 24, 16);
    inner->addWidget(m_title);
    inner->addWidget(m_text);
    inner->addWidget(busy);
    auto* outer = new QVBoxLayout(this);
    outer->addWidget(box, 0, Qt::AlignCenter);
    hide();
    parent->installEventFilter(this);
}

void LoadingUI::showLoading(QString text, QString title)
{
    m_title->setText(title);
    m_text->setText(text);
    setGeometry(parentWidget()->rect());
    raise();
    show();
    setFocus();
}

void LoadingUI::hideLoading()
{
    hide();
}

bool LoadingUI::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QWidget::eventFilter(watched, event);
}

void LoadingUI::paintEvent(QPaintEvent*)
{
    QColor veil = palette().color(QPalette::Base);
    veil.setAlpha(160);
    QPainter(this).fillRect(rect(), veil);
}
