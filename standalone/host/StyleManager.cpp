#include "model/colour_rules.h"
#include "model/services/widget_bases.h"

#include <QApplication>
#include <QHash>
#include <QPixmap>
#include <QScreen>
#include <QtMath>

namespace {

constexpr qreal ReferenceDpi = 96.0;

qreal factor()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    return screen ? qMax(1.0, screen->logicalDotsPerInch() / ReferenceDpi) : 1.0;
}

// Icons are drawn for light ground.
QPixmap forPalette(QPixmap pixmap, bool isDark)
{
    if (!isDark || pixmap.isNull())
        return pixmap;
    QImage image = pixmap.toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixelColor(x, y, colour_rules::onDark(image.pixelColor(x, y)));
    }
    return QPixmap::fromImage(image);
}

} // namespace

int StyleManager::scale(int size)
{
    return qRound(size * factor());
}

QSize StyleManager::scale(QSize size)
{
    return QSize(scale(size.width()), scale(size.height()));
}

int StyleManager::scaleToolbarSize(int size)
{
    // The frame that a tool button draws around its icon.
    return scale(size) + 4;
}

int StyleManager::scaleToolbarHeight(int height)
{
    return scale(height) + 4;
}

QSize StyleManager::toolbarButtonIconSize(int size)
{
    return scale(QSize(size, size));
}

QIcon StyleManager::scaledToolbarIcon(const QString& path, int size)
{
    if (path.isEmpty())
        return QIcon();
    // Trees ask for the same few icons thousands of times; one QIcon a path shares its pixmaps.
    // Never destroyed: it would outlive the application object.
    static auto& icons = *new QHash<QString, QIcon>;
    const bool isDark = colour_rules::isDark(QGuiApplication::palette());
    QIcon& icon = icons[isDark ? path + QStringLiteral("*") : path];
    if (icon.isNull()) {
        const QString largePath =
            QString(path).replace(QLatin1String(".png"), QLatin1String("@2x.png"));
        QPixmap large = forPalette(QPixmap(largePath), isDark);
        if (isDark) {
            icon.addPixmap(
                forPalette(QIcon(path).pixmap(QIcon(path).availableSizes().value(0)), true));
            if (!large.isNull())
                icon.addPixmap(large);
        } else {
            icon = QIcon(path);
        }
        // On a screen of large fonts and no pixel ratio Qt itself doesn't look at the double size.
        if (!large.isNull() && scale(size) > size) {
            large.setDevicePixelRatio(1.0);
            icon.addPixmap(large);
        }
    }
    return scaledToolbarIcon(icon, size);
}

QIcon StyleManager::scaledToolbarIcon(const QIcon& icon, int size)
{
    const QSize wanted = toolbarButtonIconSize(size);
    // An icon that has the size already is shared as it is: trees hold thousands of them.
    if (icon.isNull() || icon.availableSizes().contains(wanted))
        return icon;
    return QIcon(icon.pixmap(wanted).scaled(wanted, Qt::KeepAspectRatio, Qt::SmoothTransformation));
}
