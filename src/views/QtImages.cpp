#include "views/QtImages.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
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
            icon.addFile(sizes.filePath(file));
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
            return QFile::exists(QString::fromStdString(image.path.string()))
                       ? QIcon(QString::fromStdString(image.path.string()))
                       : QIcon();
    }
    return QIcon();
}

}  // namespace platform::qt
