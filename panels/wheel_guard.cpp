#include "panels/wheel_guard.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QEvent>

namespace {

class WheelGuard : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const auto* control = qobject_cast<QWidget*>(watched);
        if (event->type() != QEvent::Wheel || !control || control->hasFocus())
            return false;
        event->ignore(); // it goes on to the parent
        return true;
    }
};

template <class Control> void guard(QWidget& panel, WheelGuard* guard)
{
    const auto controls = panel.findChildren<Control*>();
    for (Control* control : controls) {
        // The wheel alone doesn't give the focus either.
        control->setFocusPolicy(Qt::StrongFocus);
        control->installEventFilter(guard);
    }
}

} // namespace

void wheel_guard::install(QWidget& panel)
{
    auto* filter = new WheelGuard(&panel);
    guard<QComboBox>(panel, filter);
    guard<QAbstractSpinBox>(panel, filter);
}
