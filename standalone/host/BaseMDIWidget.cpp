#include "model/services/widget_bases.h"

#include <QApplication>
#include <QEvent>
#include <QEventLoop>
#include <QScreen>

BaseMDIWidget::BaseMDIWidget(IBusiness* business, const QString& title) : m_business(business)
{
    setWindowTitle(title);
    setWindowFlag(Qt::Dialog);
}

BaseMDIWidget::~BaseMDIWidget() = default;

BaseMDIWidget::DialogCode BaseMDIWidget::exec(ShowPosBehavior position)
{
    const QWidget* parent = parentWidget() ? parentWidget()->window() : nullptr;
    setWindowModality(Qt::ApplicationModal);
    adjustSize();
    if (position == CenterOfParent && parent)
        move(parent->frameGeometry().center() - rect().center());
    else if (const QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
    m_result = Rejected;
    QEventLoop loop;
    m_loop = &loop;
    show();
    loop.exec();
    m_loop = nullptr;
    return static_cast<DialogCode>(m_result);
}

void BaseMDIWidget::setResult(int result)
{
    m_result = result;
}

void BaseMDIWidget::hideCloseButton()
{
    setWindowFlag(Qt::WindowCloseButtonHint, false);
}

void BaseMDIWidget::setVisible(bool visible)
{
    const bool changed = visible != isVisible();
    QWidget::setVisible(visible);
    if (!changed)
        return;
    if (visible) {
        onWindowShow();
        return;
    }
    onWindowHide();
    if (m_loop)
        m_loop->quit();
}

void BaseMDIWidget::setWindowId(const QString& id)
{
    m_windowId = id;
}

data_gather_interface::FunctionId BaseMDIWidget::getWindowID()
{
    return {m_windowId};
}

bool BaseMDIWidget::event(QEvent* event)
{
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::Close && m_loop)
        m_loop->quit();
    return handled;
}

void BaseMDIWidget::focusOutEvent(QFocusEvent* event)
{
    QWidget::focusOutEvent(event);
}

void BaseMDIWidget::paintEvent(QPaintEvent* event)
{
    QWidget::paintEvent(event);
}

// What the host offers around a window beyond this; a stand-alone host has no such things.
void BaseMDIWidget::onVedioHelpBtnClicked() {}
void BaseMDIWidget::onWindowRenamed(const QString&) {}
void BaseMDIWidget::setShowFromAction(bool) {}
void BaseMDIWidget::onShortcutChanged(const QString&, const QKeySequence&, const QKeySequence&) {}
void BaseMDIWidget::onShortcutTriggered(const QString&, const QKeySequence&) {}
void BaseMDIWidget::onWindowHide() {}
void BaseMDIWidget::onWindowShow() {}
