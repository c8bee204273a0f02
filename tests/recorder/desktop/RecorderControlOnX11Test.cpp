#include <gtest/gtest.h>

#include <QAccessible>
#include <QDir>
#include <QImage>
#include <QLineEdit>
#include <QPainter>
#include <QVBoxLayout>

#include "RecorderDesktop.h"
#include "settings/ShortcutView.h"
#include "views/QtTestSupport.h"
#include "views/RecorderControlWidget.h"
#include "views/ShortcutViewWidget.h"

namespace recordertest {
namespace {

using lirixkro::SRShortcut;
using lirixkro::SRShortcutRef;
using platform::qt::RecorderControlWidget;

enum class Look { light, dark, highContrast };

QPalette paletteFor(Look look) {
    QPalette palette;
    const auto set = [&](QColor window, QColor text, QColor button) {
        palette.setColor(QPalette::Window, window);
        palette.setColor(QPalette::Base, window);
        palette.setColor(QPalette::Button, button);
        for (auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            palette.setColor(role, text);
        palette.setColor(QPalette::Highlight, QColor(0x0A, 0x64, 0xD6));
    };
    switch (look) {
        case Look::light:
            set(QColor(0xEC, 0xEC, 0xEC), QColor(0x1D, 0x1D, 0x1F), QColor(0xF5, 0xF5, 0xF5));
            break;
        case Look::dark:
            set(QColor(0x2B, 0x2B, 0x2D), QColor(0xEC, 0xEC, 0xEC), QColor(0x3A, 0x3A, 0x3C));
            break;
        case Look::highContrast:
            set(Qt::white, Qt::black, Qt::white);
            break;
    }
    return palette;
}

// The Settings window's shortcut field in a window of its own, beside a
// text field that has the focus first.
class RecorderControlOnX11 : public RecorderDesktop {
  protected:
    void SetUp() override {
        RecorderDesktop::SetUp();
        if (HasFatalFailure())
            return;
        window = std::make_unique<QWidget>();
        auto* layout = new QVBoxLayout(window.get());
        other = new QLineEdit(window.get());
        layout->addWidget(other);
        field = new platform::qt::ShortcutViewWidget(view, window.get());
        layout->addWidget(field);
        window->setGeometry(100, 100, 260, 90);
        window->show();
        window->activateWindow();
        other->setFocus();
        ASSERT_TRUE(waitFor([&] { return window->isActiveWindow() && control()->isVisible(); }));
    }
    void TearDown() override {
        window.reset();
        RecorderDesktop::TearDown();
    }

    RecorderControlWidget* control() const { return field->recorderControl(); }
    lirixkro::SRRecorderControl& recorder() const { return *control()->control(); }

    void clickControl() {
        const QPoint centre = control()->mapToGlobal(QPoint(24, control()->height() / 2));
        click(centre.x(), centre.y());
        ASSERT_TRUE(waitFor([&] { return recorder().isRecording(); })) << "the click began nothing";
    }
    void waitForEnd() {
        ASSERT_TRUE(waitFor([&] { return !recorder().isRecording(); }));
    }

    bool recording = false;
    SRShortcutRef stored;
    tarnwick::ShortcutView view{
        quillbox::Binding<bool>([this] { return recording; }, [this](bool v) { recording = v; }),
        quillbox::Binding<SRShortcutRef>([this] { return stored; },
                                         [this](SRShortcutRef v) { stored = std::move(v); })};
    std::unique_ptr<QWidget> window;
    platform::qt::ShortcutViewWidget* field = nullptr;
    QLineEdit* other = nullptr;
};

TEST_F(RecorderControlOnX11, RecordsAShortcutAChordCancelsWithEscapeAndClearsWithDelete) {
    clickControl();
    EXPECT_TRUE(control()->hasFocus());
    EXPECT_TRUE(recording) << "the binding heard the beginning";
    EXPECT_EQ(recorder().drawingLabel(), "Press keys now");

    pressChord({xkey::leftControl, xkey::leftShift}, xkey::k);
    waitForEnd();
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->keyCode(), 40);
    EXPECT_EQ(stored->modifierFlags(), lirixkro::SRControlFlag | lirixkro::SRShiftFlag);
    EXPECT_EQ(recorder().drawingLabel(), "⌃⇧K");
    EXPECT_FALSE(recording);

    clickControl();
    pressChord({xkey::leftControl, xkey::leftAlt, xkey::leftShift});
    waitForEnd();
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->keyCode(), lirixkro::SRKeyCodeNone);
    EXPECT_EQ(stored->modifierFlags(),
              lirixkro::SRControlFlag | lirixkro::SROptionFlag | lirixkro::SRShiftFlag);
    EXPECT_EQ(recorder().drawingLabel(), "⌃⌥⇧");

    clickControl();
    input->tap(xkey::escape);
    input->sync();
    waitForEnd();
    ASSERT_TRUE(stored) << "Escape keeps the value";
    EXPECT_EQ(recorder().drawingLabel(), "⌃⌥⇧");

    clickControl();
    input->tap(xkey::backSpace);
    input->sync();
    waitForEnd();
    EXPECT_EQ(stored, nullptr);
    EXPECT_EQ(recorder().drawingLabel(), "Record Shortcut");
}

// Key codes name places on the keyboard: on a German layout the key
// labelled Z sits where the US layout has Y, and is shown as Z.
TEST_F(RecorderControlOnX11, OnAGermanLayoutTheKeyIsRecordedByItsPlaceAndShownByItsLabel) {
    ASSERT_TRUE(setSuiteLayouts("de"));
    const auto current = [&] {
        auto layout = layouts->copyCurrentKeyboardLayoutInputSource();
        return layout ? layout->identifier().value_or("") : std::string();
    };
    ASSERT_TRUE(waitFor([&] { return current() == "xkb:de"; })) << current();
    clickControl();
    pressChord({xkey::leftControl}, xkey::y);
    waitForEnd();
    setSuiteLayouts("us");
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->keyCode(), 16);
    EXPECT_EQ(recorder().drawingLabel(), "⌃Z");
}

TEST_F(RecorderControlOnX11, APlainLetterRingsTheServersBellAndRecordingGoesOn) {
    const int before = bellsRung();
    clickControl();
    input->tap(xkey::a);
    input->sync();
    EXPECT_TRUE(waitFor([&] { return bellsRung() > before; }));
    EXPECT_TRUE(recorder().isRecording());
    EXPECT_EQ(control()->alertCount(), 1);
    input->tap(xkey::escape);
    input->sync();
    waitForEnd();
}

TEST_F(RecorderControlOnX11, AScreenReaderPressesCancelsAndDeletes) {
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(control());
    ASSERT_TRUE(accessible);
    EXPECT_EQ(accessible->role(), QAccessible::Button);
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("Record Shortcut"));
    auto* actions = accessible->actionInterface();
    ASSERT_TRUE(actions);
    EXPECT_EQ(
        actions->actionNames(),
        (QStringList{QStringLiteral("Press"), QStringLiteral("Cancel"), QStringLiteral("Delete")}));

    recorder().setObjectValue(SRShortcut::shortcutWithCode(40, lirixkro::SRCommandFlag));
    EXPECT_EQ(accessible->text(QAccessible::Description), QStringLiteral("Command-K"));
    actions->doAction(QStringLiteral("Press"));
    EXPECT_TRUE(recorder().isRecording());
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("⌘K"));
    actions->doAction(QStringLiteral("Cancel"));
    EXPECT_FALSE(recorder().isRecording());
    actions->doAction(QStringLiteral("Press"));
    actions->doAction(QStringLiteral("Delete"));
    EXPECT_EQ(recorder().objectValue(), nullptr);
}

// Renders the control as it is now, at the scale given, on the window's
// background.
QImage render(QWidget& widget, double scale) {
    QImage picture(widget.size() * scale, QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(scale);
    picture.fill(widget.palette().color(QPalette::Window));
    widget.render(&picture, QPoint(), QRegion(), QWidget::DrawChildren);
    return picture;
}

TEST_F(RecorderControlOnX11, LooksRightInLightDarkAndHighContrast) {
    const std::pair<Look, const char*> looks[] = {
        {Look::light, "light"}, {Look::dark, "dark"}, {Look::highContrast, "high-contrast"}};
    QDir folder(QStringLiteral(TARNWICK_ARTIFACTS_DIR));
    folder.mkpath(QStringLiteral("."));
    for (const auto& [look, name] : looks) {
        SCOPED_TRACE(name);
        window->setPalette(paletteFor(look));
        viewtest::runQtFor(50);
        const auto& bezel = recorder().style()->look().bezelNormalLeft.name;
        EXPECT_EQ(bezel.find("darkaqua") != std::string::npos, look == Look::dark) << bezel;
        EXPECT_EQ(bezel.find("-acc") != std::string::npos, look == Look::highContrast) << bezel;

        // Idle and recorded with the focus elsewhere, recording with it.
        other->setFocus();
        recorder().setObjectValue(nullptr);
        std::vector<QImage> states[2];
        const auto shoot = [&](const char* state) {
            for (int i = 0; i < 2; ++i) {
                QImage picture = render(*control(), i + 1);
                picture.save(folder.filePath(QStringLiteral("recorder-%1-%2%3.png")
                                                 .arg(QLatin1String(name), QLatin1String(state),
                                                      QLatin1String(i ? "@2x" : ""))));
                states[i].push_back(picture);
            }
        };
        shoot("idle");
        ASSERT_TRUE(recorder().beginRecording());
        shoot("recording");
        recorder().endRecordingWithObjectValue(
            SRShortcut::shortcutWithCode(40, lirixkro::SRControlFlag | lirixkro::SRShiftFlag));
        other->setFocus();
        shoot("recorded");
        ASSERT_TRUE(recorder().beginRecording());
        shoot("recording-with-value");
        recorder().endRecording();

        // The face of the bezel is dark in the dark look only.
        const QImage& idle = states[0][0];
        const QColor face = idle.pixelColor(idle.width() / 2, 3);
        EXPECT_EQ(face.lightness() < 128, look == Look::dark) << face.name().toStdString();
    }
}

}  // namespace
}  // namespace recordertest
