#include "logic/look/BreakPointButton.h"

#include "model/services/widget_bases.h"

#include <QPushButton>
#include <QVBoxLayout>

namespace {
constexpr int Edge = 24;
}

BreakPointButton::BreakPointButton(QWidget* parent) : QWidget(parent), m_button(new QPushButton)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 1, 0, 1);
    layout->addWidget(m_button);
    m_button->setCheckable(true);
    m_button->setFixedSize(Edge, Edge);
    m_button->setStyleSheet(QStringLiteral("border:none;"));
    setFixedSize(Edge, Edge);
    setEnabled(false);
    connect(m_button, &QPushButton::toggled, this, [this](bool checked) {
        m_button->setIcon(checked ? StyleManager::scaledToolbarIcon(
                                        QStringLiteral(":/icon/功能/breakpoint.png"), Edge)
                                  : QIcon());
    });
}

#include "moc_BreakPointButton.cpp"
