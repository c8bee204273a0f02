#include <gtest/gtest.h>

#include <unordered_set>

#include "accessibility/UIElement.h"

namespace corvane {
namespace {

struct ErrorTexts {
    platform::AXErrorCode code;
    const char* description;
    const char* debugDescription;
};

TEST(AXErrorTest, BothTextsOfEveryCodeAndOfUnknownOnes) {
    const ErrorTexts table[] = {
        {0, "AXError.Success", "AXError.success"},
        {-25200, "AXError.Failure", "AXError.failure"},
        {-25201, "AXError.IllegalArgument", "AXError.illegalArgument"},
        {-25202, "AXError.InvalidUIElement", "AXError.invalidUIElement"},
        {-25203, "AXError.InvalidUIElementObserver", "AXError.invalidUIElementObserver"},
        {-25204, "AXError.CannotComplete", "AXError.cannotComplete"},
        {-25205, "AXError.AttributeUnsupported", "AXError.attributeUnsupported"},
        {-25206, "AXError.ActionUnsupported", "AXError.actionUnsupported"},
        {-25207, "AXError.NotificationUnsupported", "AXError.notificationUnsupported"},
        {-25208, "AXError.NotImplemented", "AXError.notImplemented"},
        {-25209, "AXError.NotificationAlreadyRegistered", "AXError.notificationAlreadyRegistered"},
        {-25210, "AXError.NotificationNotRegistered", "AXError.notificationNotRegistered"},
        {-25211, "AXError.APIDisabled", "AXError.apiDisabled"},
        {-25212, "AXError.NoValue", "AXError.noValue"},
        {-25213, "AXError.ParameterizedAttributeUnsupported",
         "AXError.parameterizedAttributeUnsupported"},
        {-25214, "AXError.NotEnoughPrecision", "AXError.notEnoughPrecision"},
        {1, "AXError.<Unknown>", "AXError (Unknown error - 1"},
        {-25215, "AXError.<Unknown>", "AXError (Unknown error - -25215"},
    };
    for (const auto& row : table) {
        const AXError error(row.code);
        EXPECT_EQ(error.description(), row.description) << row.code;
        EXPECT_STREQ(error.what(), row.description) << row.code;
        EXPECT_EQ(error.debugDescription(), row.debugDescription) << row.code;
    }
    EXPECT_EQ(AXError::errorDomain, "ApplicationServices.AXError");
}

TEST(VocabularyTest, EveryTypeHasItsWordsInOrder) {
    using E = UIElement;
    EXPECT_EQ(E::AXNotification::allCases().size(), 35u);
    EXPECT_EQ(E::Action::allCases().size(), 11u);
    EXPECT_EQ(E::Attribute::allCases().size(), 156u);
    EXPECT_EQ(E::Attribute::textMembers().size(), 2u);
    EXPECT_EQ(E::Role::allCases().size(), 55u);
    EXPECT_EQ(E::Role::Subrole::allCases().size(), 29u);

    EXPECT_EQ(E::AXNotification::allCases().front(), E::AXNotification::mainWindowChanged);
    EXPECT_EQ(E::AXNotification::allCases().back().rawValue, "AXAnnouncementRequested");
    EXPECT_EQ(E::Action::allCases().back(), E::Action::showDefaultUI);
    EXPECT_EQ(E::Attribute::allCases().front().rawValue, "AXRole");
    EXPECT_EQ(E::Attribute::allCases()[132].rawValue, "AXVerticalUnitDescription");
    EXPECT_EQ(E::Attribute::allCases()[133].rawValue, "AXLayoutSizeForScreenSizeParameterized");
    EXPECT_EQ(E::Attribute::allCases().back(), E::Attribute::childrenInNavigationOrder);
    EXPECT_EQ(E::Role::allCases().back().rawValue, "AXHandle");
    EXPECT_EQ(E::Role::Subrole::allCases()[27], E::Role::Subrole::switchSubrole);

    const auto& attributes = E::Attribute::allCases();
    EXPECT_EQ(std::unordered_set<E::Attribute>(attributes.begin(), attributes.end()).size(),
              attributes.size());
}

TEST(VocabularyTest, NamesFollowThePlatformWordWithItsExceptionsAndOddMembers) {
    using E = UIElement;
    EXPECT_EQ(E::AXNotification::uiElementDestroyed.rawValue, "AXUIElementDestroyed");
    EXPECT_EQ(E::Attribute::url.rawValue, "AXURL");
    EXPECT_EQ(E::Attribute::rtfForRangeParameterized.rawValue, "AXRTFForRangeParameterized");
    EXPECT_EQ(E::Role::Subrole::switchSubrole.rawValue, "AXSwitch");
    EXPECT_EQ(E::Action::deleteAction.rawValue, "AXDelete");
    // The same word in two types stays two constants.
    EXPECT_EQ(E::Attribute::closeButton.rawValue, E::Role::Subrole::closeButton.rawValue);
    // The two text members are constructor texts without their closing parenthesis.
    EXPECT_EQ(
        E::Attribute::textMembers(),
        (std::vector<std::string>{"Attribute(rawValue: AXLayoutPointForScreenPointParameterized",
                                  "Attribute(rawValue: AXScreenPointForLayoutPointParameterized"}));
    EXPECT_EQ(E::Attribute::textMembers().back(),
              E::Attribute::screenPointForLayoutPointParameterized);

    // Words without constants are carried and compare by their text.
    const E::Attribute a("AXSomethingNew");
    EXPECT_EQ(a, E::Attribute(std::string("AXSomethingNew")));
    EXPECT_EQ(std::hash<E::Attribute>{}(a),
              std::hash<E::Attribute>{}(E::Attribute("AXSomethingNew")));
    EXPECT_NE(a, E::Attribute::role);

    EXPECT_EQ(E::orientationFromRawValue(2), E::Orientation::horizontal);
    EXPECT_EQ(E::orientationFromRawValue(3), std::nullopt);
}

}  // namespace
}  // namespace corvane
