#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "platform/Application.h"
#include "shortcuts/SRShortcut.h"
#include "support/DefaultsManager.h"

// Every preference the program keeps. All reads and writes go through
// quillbox::DefaultsManager::shared(); nothing else touches the store.
namespace tarnwick {

namespace detail {

// A set of texts kept as an array; the order in the store carries no
// meaning, and a repeated element reads once.
inline quillbox::Transform<std::set<std::string>, std::vector<std::string>> textSetAsArray() {
    return {[](const std::vector<std::string>& array) -> std::optional<std::set<std::string>> {
                return std::set<std::string>(array.begin(), array.end());
            },
            [](const std::set<std::string>& set) -> std::optional<std::vector<std::string>> {
                return std::vector<std::string>(set.begin(), set.end());
            }};
}

// The policy by its raw value, both ways. A value the platform doesn't name
// is applied as it stands, as the platform's own type would carry it.
inline quillbox::Transform<platform::ActivationPolicy, std::int64_t> activationPolicyAsInteger() {
    return {[](const std::int64_t& raw) -> std::optional<platform::ActivationPolicy> {
                return static_cast<platform::ActivationPolicy>(raw);
            },
            [](const platform::ActivationPolicy& policy) -> std::optional<std::int64_t> {
                return static_cast<std::int64_t>(policy);
            }};
}

}  // namespace detail

// The chord that brings up the list window, in its stored form; absent when
// the user cleared it.
inline const auto activationShortcut =
    quillbox::Key<lirixkro::SRShortcut::SelfCodable, platform::PropertyList::Data>(
        quillbox::autoCodingValueWithKey, "activationShortcut");

// Bundle identifiers of the applications kept out of the list.
inline const auto hiddenApps =
    quillbox::KeyWithDefault<std::set<std::string>, std::vector<std::string>>(
        "harrowmere.hiddenApps", {})
        .withTransform(detail::textSetAsArray());

// Bundle identifiers of the applications shown first.
inline const auto favoriteApps =
    quillbox::KeyWithDefault<std::set<std::string>, std::vector<std::string>>(
        "harrowmere.favoriteApps", {})
        .withTransform(detail::textSetAsArray());

// The policy applied while no managed window is open. Nothing in the program
// writes it; it can only be changed from outside.
inline const auto activationPolicy =
    quillbox::KeyWithDefault<platform::ActivationPolicy, std::int64_t>(
        "harrowmere.activationPolicy", platform::ActivationPolicy::accessory)
        .withTransform(detail::activationPolicyAsInteger());

// True until the onboarding instructions have been shown once.
inline const quillbox::KeyWithDefault<bool> needsShowingInstructions("needsShowingInstructions",
                                                                     true);

// The update channel: "default" for releases, "staging" for betas.
inline const quillbox::KeyWithDefault<std::string> releaseChannel("harrowmere.releaseChannel",
                                                                  "default");

}  // namespace tarnwick
