#include "workbench/ProgressDisplay.h"

#include "model/colour_rules.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>

namespace {
constexpr int RefreshMs = 100;
}

ProgressDisplay::ProgressDisplay(QWidget* parent)
    : QWidget(parent), m_activity(new QLabel(tr("就绪"))), m_elapsedLabel(new QLabel),
      m_bar(new QProgressBar)
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 6, 0);
    layout->addWidget(m_activity);
    layout->addWidget(m_elapsedLabel);
    layout->addWidget(m_bar);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    m_activity->setObjectName(QStringLiteral("activity"));
    m_elapsedLabel->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("00000.0 s")));
    m_elapsedLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_bar->setRange(0, 100);
    m_bar->setFixedWidth(180);
    m_bar->setMaximumHeight(16);
    m_bar->hide(); // until something is under way
    m_refresh.setInterval(RefreshMs);
    connect(&m_refresh, &QTimer::timeout, this, &ProgressDisplay::showElapsed);
}

void ProgressDisplay::start(const QString& activity, bool hasProgress)
{
    showActivity(activity, false);
    m_isHeld = false;
    m_bar->setValue(0);
    m_bar->setVisible(hasProgress);
    if (!isBusy())
        m_elapsed.start();
    m_refresh.start();
    showElapsed();
}

void ProgressDisplay::showActivity(const QString& text, bool isFailure)
{
    QPalette colours; // of the application
    if (isFailure)
        colours.setColor(QPalette::WindowText, colour_rules::failure(colours));
    m_activity->setPalette(colours);
    m_activity->setText(text);
}

void ProgressDisplay::finish(const QString& text, bool isFailure)
{
    // What was refused took no time; the one before is no measure of it.
    if (m_refresh.isActive())
        showElapsed();
    else
        m_elapsedLabel->clear();
    m_refresh.stop();
    showActivity(text, isFailure);
}

void ProgressDisplay::reset()
{
    m_refresh.stop();
    showActivity(tr("就绪"), false);
    m_elapsedLabel->clear();
    m_bar->hide();
}

void ProgressDisplay::setProgress(double percent, int)
{
    if (!m_isHeld)
        m_bar->setValue(qRound(percent));
}

void ProgressDisplay::showElapsed()
{
    m_elapsedLabel->setText(tr("%1 秒").arg(m_elapsed.elapsed() / 1000.0, 0, 'f', 1));
}

#include "moc_ProgressDisplay.cpp"
