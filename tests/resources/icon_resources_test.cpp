// The icons as the application sees them: the paths the editor and the workbench ask for, in both
// resolutions, distinguishable and readable. The program runs at a device pixel ratio of 2, so that
// QIcon's choice between the two resolutions is under test as well.

#include "tests/support/test_program.h"
#include "tests/support/text.h"

#include <QApplication>
#include <QDirIterator>
#include <QIcon>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>
#include <QTest>

namespace {
constexpr int Edge = 26;

QStringList iconPaths()
{
    const QStringList folders = lines(R"(
stepIcon if else else_if end for while do_while break continue go_to api函数 语句 表达式 序列
stepIcon 弹窗 延时 发送CAN 接收CAN 蜂鸣器 诊断服务 文件下载 安全访问 CSV绑定变量 设置变量
stepIcon 库计算变量 等待按键 统计日志 认证服务
功能 breakpoint compile fx search search_cancel vci_code 模板 长度 长度_禁用
启停 pause_2 runCurrent runMain start stop
增删改 add_2 remove
存读 export_2 import_2 save_2
打开退出 folder_2
状态 tipinfo warning success failure running
应用 workbench open_project applet_new applet_rename applet_remove output log)");
    QStringList paths;
    for (const QString& folder : folders) {
        QStringList names = folder.split(QLatin1Char(' '));
        const QString path = QStringLiteral(":/icon/%1/%2.png").arg(names.takeFirst());
        for (const QString& name : qAsConst(names))
            paths << path.arg(name);
    }
    return paths;
}

QString doubleResolution(QString path)
{
    return path.insert(path.size() - int(qstrlen(".png")), QStringLiteral("@2x"));
}

QImage plain(const QImage& image)
{
    QImage result = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    result.setDevicePixelRatio(1.0);
    return result;
}

// The pixels that stand out from the background by at least `distance` grey levels of 255.
int visiblePixels(const QPixmap& icon, const QColor& background, int distance)
{
    QImage canvas(icon.size(), QImage::Format_RGB32);
    canvas.fill(background);
    QPainter painter(&canvas);
    painter.drawImage(QPoint(0, 0), plain(icon.toImage()));
    painter.end();
    int count = 0;
    for (int y = 0; y < canvas.height(); ++y) {
        for (int x = 0; x < canvas.width(); ++x)
            count += qAbs(qGray(canvas.pixel(x, y)) - qGray(background.rgb())) >= distance ? 1 : 0;
    }
    return count;
}

bool isReadable(const QPixmap& icon)
{
    constexpr int enough = 40;
    const QColor lightGrey(0xf0, 0xf0, 0xf0);
    QStyleOption option;
    option.palette = QApplication::palette();
    const QPixmap disabled =
        QApplication::style()->generatedIconPixmap(QIcon::Disabled, icon, &option);
    return visiblePixels(icon, Qt::white, 90) >= enough &&
           visiblePixels(icon, lightGrey, 90) >= enough &&
           visiblePixels(disabled, lightGrey, 50) >= enough;
}

bool isBorderClear(const QImage& image)
{
    const int last = image.width() - 1;
    for (int i = 0; i <= last; ++i) {
        for (const QPoint& place : {QPoint(i, 0), QPoint(i, last), QPoint(0, i), QPoint(last, i)}) {
            if (qAlpha(image.pixel(place)) != 0)
                return false;
        }
    }
    return true;
}

QImage shown(const QIcon& icon, bool inHighResolution)
{
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, inHighResolution);
    const QImage image = icon.pixmap(QSize(Edge, Edge)).toImage();
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, false);
    return plain(image);
}
} // namespace

class IconResourcesTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { qputenv("QT_SCALE_FACTOR", "2"); }

private slots:
    void iconsCanBeRead();
    void noTwoIconsAreAlike();
    void applicationIconIsServedLarge();
    void everySingleResolutionHasItsDouble();
};

void IconResourcesTest::iconsCanBeRead()
{
    QCOMPARE(qApp->devicePixelRatio(), 2.0);
    for (const QString& path : iconPaths()) {
        const QByteArray name = path.toUtf8();
        const QImage single(path);
        const QImage twofold(doubleResolution(path));
        QVERIFY2(single.size() == QSize(Edge, Edge), name);
        QVERIFY2(twofold.size() == QSize(2 * Edge, 2 * Edge), name);
        QVERIFY2(isBorderClear(single) && isBorderClear(twofold), name);
        // A device pixel must be a pixel of the file: an icon scaled by Qt would be blurred.
        const QIcon icon(path);
        QVERIFY2(shown(icon, true) == plain(twofold), name);
        QVERIFY2(shown(icon, false) == plain(single), name);
        QVERIFY2(isReadable(QPixmap(path)), name);
    }
}

void IconResourcesTest::noTwoIconsAreAlike()
{
    const QStringList paths = iconPaths();
    QVector<QImage> images;
    for (const QString& path : paths)
        images << plain(QImage(path));
    for (int i = 0; i < images.size(); ++i) {
        const int twin = images.indexOf(images.at(i), i + 1);
        QVERIFY2(twin < 0,
                 qUtf8Printable(paths.at(i) + QStringLiteral(" looks like ") + paths.value(twin)));
    }
}

void IconResourcesTest::applicationIconIsServedLarge()
{
    const QString path = QStringLiteral(":/icon/应用/workbench_128.png");
    QCOMPARE(QImage(path).size(), QSize(128, 128));
    QCOMPARE(QImage(doubleResolution(path)).size(), QSize(256, 256));
}

void IconResourcesTest::everySingleResolutionHasItsDouble()
{
    QStringList served;
    QDirIterator files(QStringLiteral(":/icon"), {QStringLiteral("*.png")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext())
        served.append(files.next());
    const QStringList doubles = served.filter(QStringLiteral("@2x"));
    for (const QString& path : qAsConst(served))
        QVERIFY2(doubles.contains(path) || doubles.contains(doubleResolution(path)),
                 qUtf8Printable(path));
    QCOMPARE(served.size(), 2 * doubles.size());
    QVERIFY(doubles.size() > iconPaths().size());
}

PE_WIDGET_TEST("icon_resources_test", IconResourcesTest)
#include "icon_resources_test.moc"
