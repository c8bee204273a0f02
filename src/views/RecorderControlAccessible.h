#pragma once

#include <QAccessibleActionInterface>
#include <QAccessibleWidget>

namespace platform::qt {

class RecorderControlWidget;

// What a screen reader sees of a recorder control: a button named by its
// label, with the value in words as its description, and three actions:
// press (start recording), cancel and delete (while recording).
class RecorderControlAccessible final : public QAccessibleWidget {
  public:
    static constexpr const char* cancelActionName = "Cancel";
    static constexpr const char* deleteActionName = "Delete";

    explicit RecorderControlAccessible(RecorderControlWidget* widget);

    QString text(QAccessible::Text t) const override;
    QStringList actionNames() const override;
    void doAction(const QString& actionName) override;
    QStringList keyBindingsForAction(const QString& actionName) const override;

  private:
    RecorderControlWidget* control() const;
};

// Lets Qt's accessibility find the interface for every recorder control.
void installRecorderControlAccessibility();

}  // namespace platform::qt
