#include "AccessibilityFixture.h"
#include "accessibility/SystemWideElement.h"

namespace corvane::testing {
namespace {

namespace ax = platform::axError;
using platform::AXValue;
using platform::CGPoint;
using platform::CGRect;
using platform::CGSize;

using UIElementTest = AccessibilityTest;
using UIElementDeathTest = AccessibilityTest;

TEST_F(UIElementTest, TypedReadsConvertOrThrowIllegalArgument) {
    const UIElement element(documents);
    EXPECT_EQ(element.attribute<std::string>("AXTitle"), "Documents");
    EXPECT_EQ(element.attribute<bool>("AXMain"), true);
    EXPECT_EQ(element.attribute<CGPoint>("AXPosition"), (CGPoint{100, 100}));
    EXPECT_EQ(*element.attribute<std::shared_ptr<UIElement>>("AXParent").value(), *application());
    EXPECT_THROW(element.attribute<bool>("AXTitle"), AXError);
    EXPECT_THROW(element.arrayAttribute<AttributeValue>("AXTitle"), AXError);
    EXPECT_EQ(element.arrayAttribute<std::shared_ptr<UIElement>>("AXChildren")->size(), 3u);
    EXPECT_EQ(element.role(), UIElement::Role::window);
    EXPECT_EQ(element.subrole(), UIElement::Role::Subrole::standardWindow);

    sim.setAttribute(documents, "AXRowCount", CFValue(std::int64_t{1} << 40));
    EXPECT_EQ(element.attribute<std::int64_t>("AXRowCount"), std::int64_t{1} << 40);
    EXPECT_THROW(element.attribute<std::int32_t>("AXRowCount"), AXError);
    EXPECT_EQ(element.attribute<double>("AXRowCount"), static_cast<double>(std::int64_t{1} << 40));
}

TEST_F(UIElementTest, BoxedValuesUnpackByTheirTypeCode) {
    const UIElement element(documents);
    const CGRect rect{{1, 2}, {3, 4}};
    const std::pair<AXValue, AttributeValue> table[] = {
        {AXValue::point({1, 2}), CGPoint{1, 2}},
        {AXValue::size({3, 4}), CGSize{3, 4}},
        {AXValue::rect(rect), rect},
        {AXValue::range({5, 6}), platform::CFRange{5, 6}},
        {AXValue::error(ax::cannotComplete), AXError::cannotComplete},
    };
    for (const auto& [box, expected] : table) {
        sim.setAttribute(documents, "AXValue", CFValue(box));
        const auto value = element.attribute("AXValue").value();
        EXPECT_EQ(value.index(), expected.index()) << static_cast<int>(box.type);
        EXPECT_EQ(describe(value), describe(expected));
    }
    sim.setAttribute(documents, "AXValue", CFValue(AXValue{}));
    EXPECT_TRUE(std::holds_alternative<CFValue>(*element.attribute("AXValue")));
}

TEST_F(UIElementTest, WritesPackGeometryAndPassElementsAsTheirHandle) {
    const UIElement element(documents);
    element.setAttribute("AXPosition", CGPoint{300, 200});
    EXPECT_EQ(element.attribute<CGPoint>("AXPosition"), (CGPoint{300, 200}));
    sim.setAttribute(documents, "AXLinkedUIElements", std::nullopt, true);
    element.setAttribute("AXLinkedUIElements", std::make_shared<UIElement>(downloads));
    const auto stored = sim.value(documents, "AXLinkedUIElements");
    ASSERT_TRUE(stored && stored->is<platform::AXUIElementRef>());
    EXPECT_TRUE(platform::CFEqual(*stored->get<platform::AXUIElementRef>(), downloads));
}

TEST_F(UIElementTest, MultipleReadSkipsMissingValuesAndAbortsOnHardErrors) {
    const UIElement element(documents);
    auto reply = [&](CFValue::Array values) {
        sim.injectFault(SimAXCall::copyMultipleAttributeValues, SimAXFault::value(values));
    };
    using A = UIElement::Attribute;
    reply({CFValue(), CFValue(AXValue::error(ax::noValue)), CFValue("Documents")});
    const auto values = element.getMultipleAttributes(A::role, A::subrole, A::title);
    ASSERT_EQ(values.size(), 1u);
    EXPECT_EQ(attributeCast<std::string>(values.at(A::title)), "Documents");

    for (auto code : {ax::cannotComplete, ax::success}) {
        reply({CFValue("AXWindow"), CFValue(AXValue::error(code))});
        EXPECT_THROW(element.getMultipleAttributes(A::role, A::title), AXError) << code;
    }
    sim.clearFaults();

    const auto before = sim.callCount();
    EXPECT_TRUE(element.getMultipleAttributes(std::vector<A>{}).empty());
    EXPECT_GT(sim.callCount(), before);

    sim.injectFault(SimAXCall::copyAttributeValue, SimAXFault::error(ax::attributeUnsupported),
                    documents, "AXSubrole");
    const auto byName =
        element.getMultipleAttributes(std::vector<std::string>{"AXRole", "AXSubrole"});
    EXPECT_EQ(byName.size(), 1u);
    EXPECT_TRUE(byName.count("AXRole"));
}

TEST_F(UIElementTest, NameListsOfActionsAndParametersDropWhatIsNotText) {
    const UIElement element(documents);
    EXPECT_EQ(element.actionsAsStrings(), std::vector<std::string>{"AXRaise"});
    sim.injectFault(SimAXCall::copyActionNames, SimAXFault::value(CFValue::Array{"AXRaise", 4}));
    EXPECT_TRUE(element.actions().empty());
    sim.injectFault(SimAXCall::copyParameterizedAttributeNames, SimAXFault::value(CFValue("x")));
    EXPECT_TRUE(element.parameterizedAttributes().empty());
    sim.injectFault(SimAXCall::copyActionDescription, SimAXFault::value(CFValue(7)));
    EXPECT_EQ(element.actionDescription("AXRaise"), std::nullopt);
    // Reserved operations are not implemented.
    EXPECT_THROW(element.attributeBool(UIElement::Attribute::main), AXError);
    EXPECT_THROW(element.elementAtPosition(CGPoint{1, 1}), AXError);
}

TEST_F(UIElementTest, SupportAndCountsOfAttributesWithoutValues) {
    const UIElement element(documents);
    sim.setAttribute(documents, "AXDocument", std::nullopt);
    EXPECT_TRUE(element.attributeIsSupported("AXDocument"));
    EXPECT_FALSE(element.attributeIsSupported("AXNoSuchThing"));
    EXPECT_EQ(element.valueCountForAttribute("AXChildren"), 3);
    EXPECT_EQ(element.valueCountForAttribute("AXNoSuchThing"), std::nullopt);
    EXPECT_THROW(element.valueCountForAttribute("AXDocument"), AXError);
    EXPECT_EQ(element.valuesForAttribute<std::shared_ptr<UIElement>>("AXChildren", 1, 5)->size(),
              2u);
}

TEST_F(UIElementTest, MessagingTimeoutsAreClampedAndTheTrustTestPassesItsPromptFlag) {
    UIElement element(documents);
    element.setMessagingTimeout(-3);
    EXPECT_EQ(element.messagingTimeout(), 0);
    EXPECT_EQ(sim.messagingTimeoutOf(documents), 0.0f);
    element.setMessagingTimeout(2.5f);
    EXPECT_EQ(sim.messagingTimeoutOf(documents), 2.5f);

    const float previous = UIElement::globalMessagingTimeout();
    UIElement::setGlobalMessagingTimeout(4);
    EXPECT_EQ(sim.messagingTimeoutOf(sim.createSystemWide()), 4.0f);
    UIElement::setGlobalMessagingTimeout(previous);

    sim.endProcess(appPid);
    element.setMessagingTimeout(1);  // invalidUIElement is accepted
    EXPECT_EQ(element.messagingTimeout(), 1);

    EXPECT_TRUE(UIElement::isProcessTrusted(true));
    EXPECT_EQ(sim.lastTrustPrompt(), true);
    sim.setProcessTrusted(false);
    EXPECT_FALSE(checkIsProcessTrusted(false));
    EXPECT_EQ(sim.lastTrustPrompt(), false);
}

TEST_F(UIElementTest, IdentityRestsOnTheHandleAndDescriptionsNameRoleDetailAndPid) {
    const auto app = application();
    EXPECT_EQ(UIElement(sim.applicationElement(appPid)), *app);
    EXPECT_EQ(std::hash<UIElement>{}(UIElement(sim.applicationElement(appPid))),
              std::hash<UIElement>{}(*app));
    EXPECT_FALSE(UIElement(documents) == UIElement(downloads));

    const auto closeButton = sim.button(documents, "AXCloseButton");
    struct Case {
        platform::AXUIElementRef element;
        std::string expected;
    };
    sim.addWindow(appPid, SimWindowSetup{});
    const auto untitled = sim.windows(appPid).front();
    const Case cases[] = {
        {documents, "<AXWindow \"Documents\" (pid=100)>"},
        {untitled, "<AXWindow \"\" (pid=100)>"},
        {sim.applicationElement(appPid), "<AXApplication \"com.example.Files\" (pid=100)>"},
        {closeButton, "<AXButton \"" + closeButton->description() + "\" (pid=100)>"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(UIElement(c.element).description(), c.expected);

    sim.removeAttribute(documents, "AXRole");
    EXPECT_EQ(UIElement(documents).description(),
              "<UIElementNoRole \"" + documents->description() + "\" (pid=100)>");
    sim.injectFault(SimAXCall::copyAttributeValue, SimAXFault::error(ax::cannotComplete));
    EXPECT_EQ(UIElement(downloads).description(),
              "<UnknownUIElement \"" + downloads->description() + "\" (pid=100)>");

    // An application the workspace doesn't know has an empty detail.
    sim.clearFaults();
    sim.addProcess(300, "Helper");
    EXPECT_EQ(UIElement(sim.applicationElement(300)).description(),
              "<AXApplication \"\" (pid=300)>");
}

TEST_F(UIElementTest, InspectListsEveryAttribute) {
    const auto text = UIElement(documents).inspect();
    EXPECT_NE(text.find("\"AXTitle\": \"Documents\""), std::string::npos) << text;
    EXPECT_NE(text.find("\"AXPosition\": (x: 100, y: 100)"), std::string::npos) << text;
}

TEST_F(UIElementDeathTest, FatalStopsSayWhy) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    UIElement element(documents);
    sim.injectFault(SimAXCall::setMessagingTimeout, SimAXFault::error(ax::cannotComplete));
    EXPECT_DEATH(element.setMessagingTimeout(1),
                 "Unexpected error setting messaging timeout: AXError.CannotComplete");
    sim.clearFaults();

    sim.setAttribute(documents, "AXChildren", CFValue(CFValue::Array{"not an element"}));
    EXPECT_DEATH(element.arrayAttribute<std::shared_ptr<UIElement>>("AXChildren"),
                 "Could not cast a member of AXChildren to the requested type");

    sim.injectFault(SimAXCall::copyAttributeNames, SimAXFault::value(CFValue::Array{1}));
    EXPECT_DEATH(element.attributes(), "Attribute name is not a text");

    sim.setParameterizedAttribute(documents, "AXEcho", [](const CFValue& p) { return p; });
    EXPECT_DEATH(element.parameterizedAttribute<bool>("AXEcho", CFValue("x")),
                 "Could not cast the value of AXEcho to the requested type");
}

}  // namespace
}  // namespace corvane::testing
