#include "views/QtImages.h"

#include <QDir>
#include <QFile>
#include <QString>

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

// The application's icon, rendered at each size the icon theme uses, so
// that small sizes are drawn for their size rather than scaled down.
QIcon applicationIcon() {
    QIcon icon;
    const QDir sizes(QStringLiteral(":/icons/AppIcon"));
    for (const QString& file : sizes.entryList(QDir::Files))
        icon.addFile(sizes.filePath(file));
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
