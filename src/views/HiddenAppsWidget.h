#pragma once

#include <QWidget>
#include <string>
#include <vector>

#include "settings/SettingsWindowView.h"

class QGroupBox;
class QPushButton;
class QToolButton;
class QVBoxLayout;

namespace platform::qt {

// The Settings window's "Hidden Apps": a disclosure group, closed at first,
// over a group box that lists each hidden application that is installed,
// with its icon, its name and "Unhide".
class HiddenAppsWidget final : public QWidget {
  public:
    explicit HiddenAppsWidget(tarnwick::SettingsWindowView& view, QWidget* parent = nullptr);

    // Lists the rows anew when they changed.
    void redraw();

    QToolButton* disclosure() const { return disclosure_; }
    bool isOpen() const;
    QGroupBox* list() const { return list_; }
    // The "Unhide" buttons, in the order of the rows.
    std::vector<QPushButton*> unhideButtons() const;

  private:
    void setOpen(bool open);
    void addRow(const tarnwick::SettingsWindowView::HiddenAppRow& row);

    tarnwick::SettingsWindowView& view_;
    QToolButton* disclosure_;
    QGroupBox* list_;
    QVBoxLayout* rows_;
    std::vector<std::string> shown_;
};

}  // namespace platform::qt
