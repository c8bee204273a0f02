#include <gtest/gtest.h>

#include <QDir>
#include <QIcon>
#include <QImage>
#include <QImageReader>
#include <QPainter>
#include <QPixmap>
#include <cstdlib>
#include <string>

#include "platform/xdg/DesktopEntry.h"
#include "platform/xdg/DesktopEntryIcons.h"
#include "platform/xdg/XdgRunningApplication.h"
#include "views/QtImages.h"
#include "xdg/DesktopEntryTestTree.h"

namespace {

using platform::xdg::DesktopEntry;
using platform::xdg::DesktopEntryIcons;
using platform::xdg::XdgRunningApplication;
using platform::xdg::fixtures::DesktopEntryTestTree;

// A red disc on a transparent square: drawn, its middle is red and its
// corners are clear.
constexpr const char* disc =
    "<svg xmlns='http://www.w3.org/2000/svg' width='24' height='24' viewBox='0 0 24 24'>"
    "<circle cx='12' cy='12' r='10' fill='#ff0000'/></svg>";

// Applications that ship their icon only as SVG, plain or compressed, in the
// icon theme's scalable folder or a sized one, and named with or without
// the file's extension.
class ApplicationIconsTest : public ::testing::Test {
  protected:
    QIcon iconOfApplication(const std::string& id, const std::string& icon) {
        const auto path = tree.writeApplication(DesktopEntryTestTree::system + id + ".desktop", id,
                                                id, "Icon=" + icon + "\n");
        const auto entry = DesktopEntry::load(path, id + ".desktop");
        EXPECT_TRUE(entry);
        const DesktopEntryIcons icons(tree.directories());
        const auto image = XdgRunningApplication::identityOf(*entry, icons).icon;
        EXPECT_TRUE(image) << id << ": no icon found";
        return image ? platform::qt::iconFor(*image) : QIcon();
    }

    void compress(const std::filesystem::path& file) {
        const auto command = "gzip -n -S z '" + file.string() + "'";
        ASSERT_EQ(std::system(command.c_str()), 0);
    }

    DesktopEntryTestTree tree;
};

TEST_F(ApplicationIconsTest, AnApplicationWithOnlySvgIconsIsDrawnAtTheSizeAsked) {
    ASSERT_TRUE(QImageReader::supportedImageFormats().contains("svg"))
        << "Qt's SVG image plugin is missing (scripts/setup.sh installs it)";
    tree.write("usr/share/icons/hicolor/scalable/apps/org.example.Scalable.svg", disc);
    tree.write("usr/share/icons/hicolor/48x48/apps/org.example.Sized.svg", disc);
    compress(tree.write("usr/share/icons/hicolor/scalable/apps/org.example.Packed.svg", disc));
    tree.write("usr/share/pixmaps/named-with-extension.svg", disc);
    const std::pair<std::string, std::string> applications[] = {
        {"org.example.Scalable", "org.example.Scalable"},
        {"org.example.Sized", "org.example.Sized"},
        {"org.example.Packed", "org.example.Packed"},
        {"org.example.Named", "named-with-extension.svg"},
    };

    QImage row(4 * 72, 72, QImage::Format_ARGB32_Premultiplied);
    row.fill(Qt::white);
    QPainter painter(&row);
    int column = 0;
    for (const auto& [id, icon] : applications) {
        SCOPED_TRACE(id);
        const QIcon drawn = iconOfApplication(id, icon);
        ASSERT_FALSE(drawn.isNull());
        for (const int side : {16, 64}) {
            const QImage image = drawn.pixmap(side, side).toImage();
            ASSERT_EQ(image.size(), QSize(side, side)) << "drawn for the size, not scaled";
            EXPECT_EQ(image.pixelColor(side / 2, side / 2), QColor(Qt::red)) << side;
            EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0) << side;
        }
        painter.drawPixmap(column++ * 72 + 4, 4, drawn.pixmap(64, 64));
    }
    painter.end();
    QDir().mkpath(TARNWICK_ARTIFACTS_DIR);
    row.save(QStringLiteral(TARNWICK_ARTIFACTS_DIR "/svg-application-icons.png"));
}

}  // namespace
