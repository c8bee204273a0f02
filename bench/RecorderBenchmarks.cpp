// The cost of one key event in the recorder control and in the local
// monitor: what a key press costs the program while the user records a
// shortcut, and while a view hands its keys to a monitor.
#include <benchmark/benchmark.h>

#include "SimLayoutsDesktop.h"
#include "recorder/SRRecorderControl.h"
#include "shortcuts/SRLocalShortcutMonitor.h"

namespace {

using lirixkro::SRModifierFlags;

using Desktop = benchsupport::SimLayoutsDesktop;

// A view that does nothing, so that only the control's own work counts.
class SilentHost final : public lirixkro::SRRecorderControlHost {
  public:
    bool isFirstResponder() const override { return true; }
    bool makeFirstResponder() override { return true; }
    void resignFirstResponder() override {}
    bool canBecomeKeyView() const override { return true; }
    platform::CGSize bounds() const override { return {160, 22}; }
    void setNeedsDisplay() override {}
    void setNeedsLayout() override {}
    void setToolTip(const std::string&) override {}
    void playAlert() override {}
    void postAccessibilityNotification(lirixkro::SRAccessibilityNotification) override {}
    lirixkro::SRToolkitAppearance toolkitAppearance() const override { return {}; }
};

// A control on a silent view, recording unless told otherwise; the shared
// monitor is left alone.
struct Recorder {
    explicit Recorder(bool recording = true, bool modifiersAlone = false) {
        control.setHost(&host);
        control.pausesGlobalShortcutMonitorWhileRecording = false;
        control.allowsModifierFlagsOnlyShortcut = modifiersAlone;
        if (recording)
            control.beginRecording();
    }
    Desktop desktop;
    SilentHost host;
    lirixkro::SRRecorderControl control;
};

platform::Event keyEvent(platform::EventType type, platform::KeyCode keyCode,
                         SRModifierFlags flags) {
    platform::Event event;
    event.type = type;
    event.keyCode = keyCode;
    event.modifierFlags = flags;
    event.characters = "k";
    event.charactersIgnoringModifiers = "k";
    return event;
}

// A key the rules refuse: the control beeps and goes on recording.
void RecorderRefusedKey(benchmark::State& state) {
    Recorder recorder;
    const auto event = keyEvent(platform::EventType::keyDown, 40, 0);
    for (auto _ : state)
        benchmark::DoNotOptimize(recorder.control.keyDown(event));
}
BENCHMARK(RecorderRefusedKey)->Unit(benchmark::kMicrosecond);

// A modifier key while recording: the held flags and the label follow.
void RecorderModifierKey(benchmark::State& state) {
    Recorder recorder(true, true);
    const auto down = keyEvent(platform::EventType::flagsChanged, 59, lirixkro::SRControlFlag);
    for (auto _ : state) {
        recorder.control.flagsChanged(down);
        benchmark::DoNotOptimize(recorder.control.drawingLabel());
    }
}
BENCHMARK(RecorderModifierKey)->Unit(benchmark::kMicrosecond);

// A whole recording: begin, an accepted key that ends it, the new label.
void RecorderAcceptedKey(benchmark::State& state) {
    Recorder recorder(false);
    auto& control = recorder.control;
    const auto event =
        keyEvent(platform::EventType::keyDown, 40, lirixkro::SRControlFlag | lirixkro::SRShiftFlag);
    for (auto _ : state) {
        control.beginRecording();
        control.keyDown(event);
        benchmark::DoNotOptimize(control.drawingLabel());
    }
}
BENCHMARK(RecorderAcceptedKey)->Unit(benchmark::kMicrosecond);

class Responder final : public lirixkro::SRShortcutActionTarget {
  public:
    Responder() {
        setMethod("moveForward:", Method::withoutArguments([] { return true; }));
    }
};

// A key of the standard table, performed on a text view's target; and a
// key that no action has.
void LocalMonitorKey(benchmark::State& state) {
    Desktop desktop;
    auto monitor = lirixkro::SRLocalShortcutMonitor::standardShortcuts();
    auto target = std::make_shared<Responder>();
    const auto event =
        keyEvent(platform::EventType::keyDown, state.range(0) ? 3 : 5, lirixkro::SRControlFlag);
    for (auto _ : state)
        benchmark::DoNotOptimize(monitor->handleEvent(event, target));
}
BENCHMARK(LocalMonitorKey)->Arg(1)->Arg(0)->ArgName("performs")->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
