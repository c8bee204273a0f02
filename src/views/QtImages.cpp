#include "views/QtImages.h"

#include <QFile>
#include <QString>

#include "views/PaintedIcon.h"

// Static libraries drop resources nobody refers to; this refers to ours.
static void initialiseViewResources() {
    Q_INIT_RESOURCE(views);
}

namespace platform::qt {

namespace {

QIcon resourceIcon(const std::string& name) {
    if (name == "StatusBarIcon")
        return statusBarIcon();
    static const bool initialised = (initialiseViewResources(), true);
    (void)initialised;
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
