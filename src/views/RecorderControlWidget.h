#pragma once

#include <QWidget>
#include <memory>

#include "recorder/SRRecorderControl.h"
#include "recorder/SRRecorderControlHost.h"

namespace platform::qt {

// The recorder control's view: it draws what the control says and hands it
// the toolkit's events in the platform's numbering. Every rule lives in the
// control.
class RecorderControlWidget final : public QWidget, public lirixkro::SRRecorderControlHost {
    Q_OBJECT

  public:
    // A new control when none is given.
    explicit RecorderControlWidget(std::shared_ptr<lirixkro::SRRecorderControl> control = nullptr,
                                   QWidget* parent = nullptr);
    ~RecorderControlWidget() override;

    const std::shared_ptr<lirixkro::SRRecorderControl>& control() const { return control_; }
    // Beeps so far: each is the server's bell on X11.
    int alertCount() const { return alertCount_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    // The control's view.
    bool isFirstResponder() const override;
    bool makeFirstResponder() override;
    void resignFirstResponder() override;
    bool canBecomeKeyView() const override;
    platform::CGSize bounds() const override;
    void setNeedsDisplay() override;
    void setNeedsLayout() override;
    void setToolTip(const std::string& toolTip) override;
    void playAlert() override;
    void postAccessibilityNotification(lirixkro::SRAccessibilityNotification notification) override;
    bool presentErrorAsSheet(const lirixkro::SRValidationError& error) override;
    lirixkro::SRToolkitAppearance toolkitAppearance() const override;

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    bool handleKey(QKeyEvent* event);
    double labelWidth(const std::string& text) const;

    std::shared_ptr<lirixkro::SRRecorderControl> control_;
    int alertCount_ = 0;
};

}  // namespace platform::qt
