#pragma once

#include <QFont>
#include <QPainter>
#include <QPixmap>

#include "recorder/SRRecorderControlStyleResourceLoader.h"
#include "recorder/SRStyleInfo.h"

namespace platform::qt {

class RecorderControlWidget;

// The font of a label's attributes: the widget's own font for the system
// font, else the named family; in the platform's points, which are pixels
// at 1x.
QFont labelFont(const lirixkro::SRTextAttributes& attributes, const QFont& widgetFont);

// A style image at the widget's scale: the 2x file on a screen that has
// more than one pixel to the point, where there is one.
QPixmap styleImage(const lirixkro::SRStyleImage& image, double devicePixelRatio);

// Draws a recorder control: its bezel, its label, its two buttons while
// recording, its focus ring.
class RecorderControlPainter {
  public:
    explicit RecorderControlPainter(RecorderControlWidget& widget);
    void paint();

  private:
    void drawBezel();
    void drawLabel();
    void drawButtons();
    void drawFocusRing();
    double deviceRatio();

    RecorderControlWidget& widget_;
    QPainter painter_;
};

}  // namespace platform::qt
