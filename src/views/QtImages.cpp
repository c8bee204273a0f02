#include "views/QtImages.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QPixmap>
#include <QString>
#include <limits>

#include "views/PaintedIcon.h"

// Static libraries drop resources nobody refers to; this refers to ours.
static void initialiseViewResources() {
    Q_INIT_RESOURCE(views);
}

namespace platform::qt {

namespace {

void ensureViewResources() {
    static const bool initialised = (initialiseViewResources(), true);
    (void)initialised;
}

// The image in the file, read as the format its name says. A reader left
// to detect the format offers the file to every image format plugin before
// the formats the toolkit reads itself, loading each plugin on the way.
QImage readAsNamed(const QString& path) {
    QImageReader reader(path, QFileInfo(path).suffix().toLatin1());
    reader.setAutoDetectImageFormat(false);
    return reader.read();
}

// A file's icon. Drawings stay drawings, sharp at every size; a picture
// misnamed is read for what it is.
QIcon fileIcon(const QString& path) {
    if (!QFile::exists(path))
        return QIcon();
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix != QLatin1String("svg") && suffix != QLatin1String("svgz")) {
        if (const QImage image = readAsNamed(path); !image.isNull())
            return QIcon(QPixmap::fromImage(image));
    }
    return QIcon(path);
}

// The largest window icon worth its pixels' transfer.
constexpr int largestWindowIcon = 64;

// The application's icon, rendered at each size the icon theme uses up to
// the largest asked for, so that small sizes are drawn for their size rather
// than scaled down. The files are named after their size.
QIcon applicationIcon(int largest = std::numeric_limits<int>::max()) {
    ensureViewResources();
    QIcon icon;
    const QDir sizes(QStringLiteral(":/icons/AppIcon"));
    for (const QString& file : sizes.entryList(QDir::Files)) {
        if (QFileInfo(file).baseName().toInt() <= largest)
            icon.addPixmap(QPixmap::fromImage(readAsNamed(sizes.filePath(file))));
    }
    return icon;
}

QIcon resourceIcon(const std::string& name) {
    if (name == "StatusBarIcon")
        return statusBarIcon();
    ensureViewResources();
    if (name == "AppIcon")
        return applicationIcon();
    const QString path = QStringLiteral(":/images/%1.png").arg(QString::fromStdString(name));
    return QFile::exists(path) ? QIcon(path) : QIcon();
}

}  // namespace

void useApplicationIconForWindows() {
    QApplication::setWindowIcon(applicationIcon(largestWindowIcon));
}

QIcon iconFor(const Image& image) {
    switch (image.kind) {
        case Image::Kind::resource:
            return resourceIcon(image.name);
        case Image::Kind::systemSymbol: {
            const QString name = QString::fromStdString(image.name);
            const QIcon drawn = symbolIcon(name);
            return drawn.isNull() ? QIcon::fromTheme(name) : drawn;
        }
        case Image::Kind::file:
            return fileIcon(QString::fromStdString(image.path.string()));
    }
    return QIcon();
}

}  // namespace platform::qt
