#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "recorder/SRRecorderControlStyleComponents.h"
#include "recorder/SRRecorderControlStyleResourceLoader.h"
#include "recorder/SRRecorderControlStyling.h"

namespace lirixkro {

// The look of a recorder control as data: a style identifier and the
// components of the look wanted. The resource loader finds the style's
// measures and images that fit the toolkit's look best; the style lays the
// control out from the measures.
class SRRecorderControlStyle : public SRRecorderControlStyling {
  public:
    // The style the control has unless given another.
    static constexpr const char* defaultIdentifier = "sr-mojave";

    // No identifier: the default style. No components: all unspecified,
    // each then taken from the toolkit's look.
    explicit SRRecorderControlStyle(
        std::optional<std::string> identifier = std::nullopt,
        std::optional<SRRecorderControlStyleComponents> components = std::nullopt,
        SRRecorderControlStyleResourceLoader* loader = nullptr);

    std::string identifier() const override { return identifier_; }
    const SRRecorderControlStyleComponents& preferredComponents() const {
        return preferredComponents_;
    }
    const SRRecorderControlStyleComponents& effectiveComponents() const {
        return effectiveComponents_;
    }

    std::optional<std::string> noValueNormalLabel() const override;
    std::optional<std::string> noValueDisableLabel() const override;
    std::optional<std::string> noValueRecordingLabel() const override;

    void prepareForRecorderControl(SRRecorderControl& control) override;
    void prepareForRemoval() override;
    SRRecorderControl* recorderControl() const override { return recorderControl_; }
    void recorderControlAppearanceDidChange() override;

    const SRRecorderControlLook& look() const override { return look_; }

    // Builds the four constraint sets from the measures.
    void addConstraints();
    const std::vector<SRLayoutConstraint>& alwaysConstraints() const { return alwaysConstraints_; }
    const std::vector<SRLayoutConstraint>& displayingConstraints() const {
        return displayingConstraints_;
    }
    const std::vector<SRLayoutConstraint>& recordingWithNoValueConstraints() const {
        return recordingWithNoValueConstraints_;
    }
    const std::vector<SRLayoutConstraint>& recordingWithValueConstraints() const {
        return recordingWithValueConstraints_;
    }
    void updateActiveConstraints(SRRecorderControlLayoutState state) override;
    SRRecorderControlLayoutState activeState() const { return activeState_; }
    // The names of the constraints in force, the set that always is first.
    std::vector<std::string> activeConstraintNames() const;
    SRRecorderControlLayoutGuides layoutGuides(platform::CGSize bounds) const override;

  private:
    SRRecorderControlStyleComponents computeEffectiveComponents() const;
    void loadLook();
    SRStyleImage image(const std::string& name) const;
    double constant(const std::string& name) const;

    std::string identifier_;
    SRRecorderControlStyleComponents preferredComponents_;
    SRRecorderControlStyleComponents effectiveComponents_;
    SRRecorderControlStyleResourceLoader* loader_;
    SRRecorderControl* recorderControl_ = nullptr;
    bool loaded_ = false;
    SRRecorderControlLook look_;
    std::vector<SRLayoutConstraint> alwaysConstraints_;
    std::vector<SRLayoutConstraint> displayingConstraints_;
    std::vector<SRLayoutConstraint> recordingWithNoValueConstraints_;
    std::vector<SRLayoutConstraint> recordingWithValueConstraints_;
    SRRecorderControlLayoutState activeState_ = SRRecorderControlLayoutState::displaying;
};

}  // namespace lirixkro
