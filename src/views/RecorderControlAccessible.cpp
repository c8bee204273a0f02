#include "views/RecorderControlAccessible.h"

#include "views/RecorderControlWidget.h"

namespace platform::qt {

namespace {

QAccessibleInterface* recorderControlFactory(const QString& className, QObject* object) {
    if (className == QLatin1String(RecorderControlWidget::staticMetaObject.className()) && object &&
        object->isWidgetType()) {
        return new RecorderControlAccessible(static_cast<RecorderControlWidget*>(object));
    }
    return nullptr;
}

}  // namespace

RecorderControlAccessible::RecorderControlAccessible(RecorderControlWidget* widget)
    : QAccessibleWidget(widget, QAccessible::Button) {}

RecorderControlWidget* RecorderControlAccessible::control() const {
    return static_cast<RecorderControlWidget*>(widget());
}

QString RecorderControlAccessible::text(QAccessible::Text t) const {
    const auto& recorder = *control()->control();
    switch (t) {
        case QAccessible::Name:
            return QString::fromStdString(recorder.accessibilityLabel());
        case QAccessible::Description:
            return QString::fromStdString(recorder.accessibilityValue());
        default:
            return QAccessibleWidget::text(t);
    }
}

QStringList RecorderControlAccessible::actionNames() const {
    return {pressAction(), QString::fromLatin1(cancelActionName),
            QString::fromLatin1(deleteActionName)};
}

void RecorderControlAccessible::doAction(const QString& actionName) {
    auto& recorder = *control()->control();
    if (actionName == pressAction())
        recorder.accessibilityPerformPress();
    else if (actionName == QLatin1String(cancelActionName))
        recorder.accessibilityPerformCancel();
    else if (actionName == QLatin1String(deleteActionName))
        recorder.accessibilityPerformDelete();
}

QStringList RecorderControlAccessible::keyBindingsForAction(const QString& actionName) const {
    if (actionName == pressAction())
        return {QStringLiteral("Space")};
    if (actionName == QLatin1String(cancelActionName))
        return {QStringLiteral("Escape")};
    if (actionName == QLatin1String(deleteActionName))
        return {QStringLiteral("Backspace")};
    return {};
}

void installRecorderControlAccessibility() {
    static const bool installed = [] {
        QAccessible::installFactory(recorderControlFactory);
        return true;
    }();
    (void)installed;
}

}  // namespace platform::qt
