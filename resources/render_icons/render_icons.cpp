// Build-time tool: renders the SVG icons named by a manifest to PNG, in single and double
// resolution, and writes the .qrc that serves them.
//
//   render_icons <manifest> <output folder> <qrc file>
//
// A manifest line holds a resource path, the SVG file relative to the manifest and, optionally, the
// edge length in pixels, separated by tabs; '#' begins a comment line. Every icon becomes x.png and
// x@2x.png. The rendered files are named after the SVG, so that only the .qrc carries names outside
// ASCII. The exit code is 0 only if every icon was rendered; each fault is reported on stderr.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QSaveFile>
#include <QSet>
#include <QSvgRenderer>
#include <QTextStream>
#include <QXmlStreamWriter>
#include <QtMath>

namespace {
constexpr int DefaultEdge = 26;
constexpr int ManifestColumns = 3;

struct IconEntry
{
    QString resourcePath;
    QString svgFile;
    int edge = DefaultEdge;
};

bool fail(const QString& message)
{
    QTextStream(stderr) << QStringLiteral("render_icons: ") << message << QLatin1Char('\n');
    return false;
}

bool parseLine(const QString& line, const QDir& folder, IconEntry* entry)
{
    const QStringList columns = line.split(QLatin1Char('\t'));
    if (columns.size() < 2 || columns.size() > ManifestColumns)
        return fail(QStringLiteral("expected two or three columns: ") + line);
    entry->resourcePath = columns.at(0);
    entry->svgFile = folder.filePath(columns.at(1));
    if (!entry->resourcePath.endsWith(QLatin1String(".png")))
        return fail(QStringLiteral("not a .png path: ") + line);
    bool isNumber = true;
    if (columns.size() == ManifestColumns)
        entry->edge = columns.at(2).toInt(&isNumber);
    if (!isNumber || entry->edge <= 0)
        return fail(QStringLiteral("not a size in pixels: ") + line);
    return true;
}

bool readManifest(const QString& fileName, QVector<IconEntry>* entries)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return fail(fileName + QStringLiteral(": ") + file.errorString());
    const QDir folder = QFileInfo(fileName).absoluteDir();
    QSet<QString> seen;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString& raw : lines) {
        const QString line = raw.trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        IconEntry entry;
        if (!parseLine(line, folder, &entry))
            return false;
        if (seen.contains(entry.resourcePath))
            return fail(QStringLiteral("listed twice: ") + entry.resourcePath);
        seen.insert(entry.resourcePath);
        entries->append(entry);
    }
    return !entries->isEmpty() || fail(QStringLiteral("empty manifest: ") + fileName);
}

bool renderPng(QSvgRenderer& renderer, int edge, const QString& fileName)
{
    QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, QRectF(0, 0, edge, edge));
    painter.end();
    return image.save(fileName, "PNG") || fail(QStringLiteral("cannot write ") + fileName);
}

// The file name below the output folder, without ".png": group and name of the SVG, and the edge
// where it isn't the usual one.
QString renderedName(const IconEntry& entry)
{
    const QFileInfo svg(entry.svgFile);
    const QString name = svg.dir().dirName() + QLatin1Char('_') + svg.completeBaseName();
    return entry.edge == DefaultEdge ? name : name + QLatin1Char('_') + QString::number(entry.edge);
}

bool renderIcon(const IconEntry& entry, const QDir& folder, QXmlStreamWriter& qrc)
{
    QSvgRenderer renderer(entry.svgFile);
    if (!renderer.isValid())
        return fail(QStringLiteral("not a readable SVG: ") + entry.svgFile);
    const QString alias = entry.resourcePath.chopped(int(qstrlen(".png")));
    for (const int factor : {1, 2}) {
        const QString suffix = factor == 1 ? QStringLiteral(".png") : QStringLiteral("@2x.png");
        const QString file = folder.absoluteFilePath(renderedName(entry) + suffix);
        if (!renderPng(renderer, entry.edge * factor, file))
            return false;
        qrc.writeStartElement(QStringLiteral("file"));
        qrc.writeAttribute(QStringLiteral("alias"), alias + suffix);
        qrc.writeCharacters(file);
        qrc.writeEndElement();
    }
    return true;
}

bool renderAll(const QVector<IconEntry>& entries, const QDir& folder, const QString& qrcName)
{
    QSaveFile file(qrcName);
    if (!file.open(QIODevice::WriteOnly))
        return fail(qrcName + QStringLiteral(": ") + file.errorString());
    QXmlStreamWriter qrc(&file);
    qrc.setAutoFormatting(true);
    qrc.writeStartElement(QStringLiteral("RCC"));
    qrc.writeStartElement(QStringLiteral("qresource"));
    qrc.writeAttribute(QStringLiteral("prefix"), QStringLiteral("/icon"));
    for (const IconEntry& entry : entries) {
        if (!renderIcon(entry, folder, qrc))
            return false;
    }
    qrc.writeEndElement();
    qrc.writeEndElement();
    return file.commit() || fail(qrcName + QStringLiteral(": ") + file.errorString());
}
} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() != 4) {
        fail(QStringLiteral("usage: render_icons <manifest> <output folder> <qrc file>"));
        return 2;
    }
    const QDir folder(arguments.at(2));
    QVector<IconEntry> entries;
    if (!readManifest(arguments.at(1), &entries))
        return 1;
    if (!folder.mkpath(QStringLiteral("."))) {
        fail(QStringLiteral("cannot make ") + folder.path());
        return 1;
    }
    return renderAll(entries, folder, arguments.at(3)) ? 0 : 1;
}
