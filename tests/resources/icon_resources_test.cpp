// The icons as the application sees them: the paths the editor and the workbench ask for, in both
// resolutions, distinguishable and readable. The program runs at a device pixel ratio of 2, so that
// QIcon's choice between the two resolutions is under test as well.

#include "tests/support/test_program.h"

#include <QApplication>
#include <QDirIterator>
#include <QIcon>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>
#include <QTest>

namespace {
constexpr int Edge = 26;

struct Group
{
    QString folder;
    QStringList names;
};

QStringList words(const QString& text)
{
    return text.split(QLatin1Char(' '));
}

QStringList iconPaths()
{
    const Group groups[] = {
        {QStringLiteral("stepIcon"),
         words(QStringLiteral(
             "if else else_if end for while do_while break continue go_to api函数 语句 表达式 序列 "
             "弹窗 延时 发送CAN 接收CAN 蜂鸣器 诊断服务 文件下载 安全访问 CSV绑定变量 设置变量 "
             "库计算变量 等待按键 统计日志 认证服务"))},
        {QStringLiteral("功能"),
         words(QStringLiteral(
             "breakpoint compile fx search search_cancel vci_code 模板 长度 长度_禁用"))},
        {QStringLiteral("启停"), words(QStringLiteral("pause_2 runCurrent runMain start stop"))},
        {QStringLiteral("增删改"), words(QStringLiteral("add_2 remove"))},
        {QStringLiteral("存读"), words(QStringLiteral("export_2 import_2 save_2"))},
        {QStringLiteral("打开退出"), words(QStringLiteral("folder_2"))},
        {QStringLiteral("状态"), words(QStringLiteral("tipinfo warning success failure running"))},
        {QStringLiteral("应用"),
         words(QStringLiteral("workbench open_project applet_new applet_rename applet_remove "
                              "output log"))},
    };
    QStringList paths;
    for (const Group& group : groups) {
        for (const QString& name : group.names)
            paths << QStringLiteral(":/icon/%1/%2.png").arg(group.folder, name);
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
int visiblePixels(const QImage& icon, const QColor& background, int distance)
{
    QImage canvas(icon.size(), QImage::Format_RGB32);
    canvas.fill(background);
    QPainter painter(&canvas);
    painter.drawImage(QPoint(0, 0), plain(icon));
    painter.end();
    int count = 0;
    for (int y = 0; y < canvas.height(); ++y) {
        for (int x = 0; x < canvas.width(); ++x)
            count += qAbs(qGray(canvas.pixel(x, y)) - qGray(background.rgb())) >= distance ? 1 : 0;
    }
    return count;
}

bool isBorderClear(const QImage& image)
{
    const int last = image.width() - 1;
    for (int i = 0; i <= last; ++i) {
        const QRgb border[] = {image.pixel(i, 0), image.pixel(i, last), image.pixel(0, i),
                               image.pixel(last, i)};
        for (const QRgb pixel : border) {
            if (qAlpha(pixel) != 0)
                return false;
        }
    }
    return true;
}
} // namespace

class IconResourcesTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { qputenv("QT_SCALE_FACTOR", "2"); }

private slots:
    void pathIsServedInBothResolutions_data() { addPaths(); }
    void pathIsServedInBothResolutions();
    void drawingStaysInsideItsGrid_data() { addPaths(); }
    void drawingStaysInsideItsGrid();
    void iconOffersBothResolutions_data() { addPaths(); }
    void iconOffersBothResolutions();
    void iconIsReadable_data() { addPaths(); }
    void iconIsReadable();
    void noTwoIconsAreAlike();
    void applicationIconIsServedLarge();
    void everySingleResolutionHasItsDouble();

private:
    static void addPaths();
};

void IconResourcesTest::addPaths()
{
    QTest::addColumn<QString>("path");
    for (const QString& path : iconPaths())
        QTest::newRow(qUtf8Printable(path)) << path;
}

void IconResourcesTest::pathIsServedInBothResolutions()
{
    QFETCH(QString, path);
    const QImage single(path);
    const QImage twofold(doubleResolution(path));
    QCOMPARE(single.size(), QSize(Edge, Edge));
    QCOMPARE(twofold.size(), QSize(2 * Edge, 2 * Edge));
}

void IconResourcesTest::drawingStaysInsideItsGrid()
{
    QFETCH(QString, path);
    QVERIFY(isBorderClear(QImage(path)));
    QVERIFY(isBorderClear(QImage(doubleResolution(path))));
}

// A device pixel must be a pixel of the file: an icon scaled by Qt would be blurred.
void IconResourcesTest::iconOffersBothResolutions()
{
    QFETCH(QString, path);
    QCOMPARE(qApp->devicePixelRatio(), 2.0);
    const QIcon icon(path);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, true);
    const QPixmap twofold = icon.pixmap(QSize(Edge, Edge));
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, false);
    const QPixmap single = icon.pixmap(QSize(Edge, Edge));
    QVERIFY(!single.isNull() && !twofold.isNull());
    QCOMPARE(plain(twofold.toImage()), plain(QImage(doubleResolution(path))));
    QCOMPARE(plain(single.toImage()), plain(QImage(path)));
}

void IconResourcesTest::iconIsReadable()
{
    QFETCH(QString, path);
    constexpr int enough = 40;
    const QColor lightGrey(0xf0, 0xf0, 0xf0);
    const QPixmap pixmap(path);
    QStyleOption option;
    option.palette = QApplication::palette();
    const QPixmap disabled =
        QApplication::style()->generatedIconPixmap(QIcon::Disabled, pixmap, &option);
    QVERIFY(visiblePixels(pixmap.toImage(), Qt::white, 90) >= enough);
    QVERIFY(visiblePixels(pixmap.toImage(), lightGrey, 90) >= enough);
    QVERIFY(visiblePixels(disabled.toImage(), lightGrey, 50) >= enough);
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
    QSet<QString> served;
    QDirIterator files(QStringLiteral(":/icon"), {QStringLiteral("*.png")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext())
        served.insert(files.next());
    int singles = 0;
    for (const QString& path : qAsConst(served)) {
        if (path.contains(QLatin1String("@2x")))
            continue;
        ++singles;
        QVERIFY2(served.contains(doubleResolution(path)), qUtf8Printable(path));
    }
    QCOMPARE(served.size(), 2 * singles);
    QVERIFY(singles > iconPaths().size());
}

PE_WIDGET_TEST("icon_resources_test", IconResourcesTest)
#include "icon_resources_test.moc"
