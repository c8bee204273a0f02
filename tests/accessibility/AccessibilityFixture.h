#pragma once

#include <gtest/gtest.h>

#include "accessibility/Application.h"
#include "platform/Platform.h"
#include "platform/sim/SimAccessibility.h"
#include "platform/sim/SimMainLoop.h"
#include "platform/sim/SimWorkspace.h"

namespace corvane::testing {

using platform::CFValue;
using platform::sim::SimAXCall;
using platform::sim::SimAXFault;
using platform::sim::SimWindowSetup;

// A simulated desktop with one application, pid 100, that has two windows:
// "Documents" (front, main) and "Downloads".
class AccessibilityTest : public ::testing::Test {
  protected:
    static constexpr pid_t appPid = 100;

    AccessibilityTest() {
        platform::sim::SimRunningApplication::Info info;
        info.processIdentifier = appPid;
        info.bundleIdentifier = "com.example.Files";
        info.localizedName = "Files";
        workspace.addRunning(info);
        downloads = sim.addWindow(appPid, SimWindowSetup::titled("Downloads"));
        documents = sim.addWindow(appPid, SimWindowSetup::titled("Documents"));
        loop.runUntilIdle();
    }

    platform::Services services() {
        platform::Services services;
        services.mainLoop = &loop;
        services.workspace = &workspace;
        services.accessibility = &sim;
        return services;
    }

    std::shared_ptr<Application> application() {
        return std::make_shared<Application>(sim.applicationElement(appPid));
    }
    std::shared_ptr<Application::Window> window(const platform::AXUIElementRef& handle) {
        return std::make_shared<Application::Window>(handle);
    }

    platform::sim::SimMainLoop loop;
    platform::sim::SimWorkspace workspace{loop};
    platform::sim::SimAccessibility sim{loop, &workspace};
    platform::ScopedInstall install{services()};
    platform::AXUIElementRef downloads;
    platform::AXUIElementRef documents;
};

}  // namespace corvane::testing
