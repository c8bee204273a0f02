#pragma once

#include <memory>

#include "firstrun/AboutWindowView.h"
#include "firstrun/LocalAppView.h"
#include "firstrun/OnboardingPages.h"
#include "platform/Window.h"

class QWidget;

namespace platform::qt {

// The onboarding window's two pages and the About window's content, each a
// fixed-size stack drawn from its view.
std::shared_ptr<ContentView> makePermissionsPageContentView(
    tarnwick::OnboardWindowPermissionsView& view);
std::shared_ptr<ContentView> makeInstructionsPageContentView(
    tarnwick::OnboardWindowInstructionsView& view);
std::shared_ptr<ContentView> makeAboutContentView(const tarnwick::AboutWindowView& view);

// One application bundle in a row: its icon, if it has one, then its name.
QWidget* makeLocalAppWidget(const tarnwick::LocalAppView& view, QWidget* parent = nullptr);

}  // namespace platform::qt
