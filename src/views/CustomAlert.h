#pragma once

#include <QMessageBox>
#include <map>
#include <memory>

#include "support/Alert.h"

namespace platform::qt {

// The dialogue of an Alert: a message box whose buttons run the alert's
// closures. Return answers only a default button; with several defaults the
// last one set wins, as the toolkit has one default per dialogue. Escape
// closes the box without answering any button.
class CustomAlert final : public QMessageBox {
  public:
    explicit CustomAlert(QWidget* parent = nullptr);

    // A button with the action's title, answering Return only if the action
    // is a default one; clicking it runs the action and ends the alert.
    QPushButton* addButtonWithTitle(const quillbox::Alert::Action& action);
    const std::map<QAbstractButton*, quillbox::Alert::Action>& actions() const { return actions_; }

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void runAction(QAbstractButton* sender);

    std::map<QAbstractButton*, quillbox::Alert::Action> actions_;
};

// The alert as a dialogue, ready to show or run modally. An alert without
// actions gets the toolkit's OK button, which runs nothing. The suppression
// option is carried by the value and not shown.
std::unique_ptr<CustomAlert> createAlert(const quillbox::Alert& alert, QWidget* parent = nullptr);

}  // namespace platform::qt
