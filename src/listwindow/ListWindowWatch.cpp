#include "listwindow/ListWindowWatch.h"

#include "listwindow/ListWindowViewModel.h"

namespace tarnwick {

namespace {

using corvane::AXError;
using corvane::UIElement;
using Notification = UIElement::AXNotification;

}  // namespace

ListWindowWatch::ListWindowWatch(ListWindowViewModel& model, WindowChanged windowChanged)
    : model_(model), windowChanged_(std::move(windowChanged)) {
    stateChanges_ = model_.stateChanged().connect(lifetime_.guard([this] { followSelection(); }));
    followSelection();
}

ListWindowWatch::~ListWindowWatch() {
    if (observer_)
        observer_->stop();
}

// A platform that refuses the subscription leaves the rows to be read
// again when the panel is next shown: nothing is reported.
void ListWindowWatch::followSelection() {
    const auto& selected = model_.app().axApp;
    if (selected == followed_)
        return;
    if (observer_)
        observer_->stop();
    observer_.reset();
    followed_ = selected;
    if (!selected)
        return;
    auto observer = selected->createObserver(corvane::Observer::Callback(lifetime_.guard(
        [this](corvane::Observer&, const std::shared_ptr<UIElement>& element, const Notification&) {
            if (element)
                windowChanged_(platform::CFHash(element->element()));
        })));
    if (!observer)
        return;
    for (const auto* notification :
         {&Notification::titleChanged, &Notification::uiElementDestroyed,
          &Notification::windowMiniaturized, &Notification::mainWindowChanged}) {
        try {
            observer->addNotification(*notification, *selected);
        } catch (const AXError&) {
        }
    }
    observer_ = std::move(observer);
}

}  // namespace tarnwick
