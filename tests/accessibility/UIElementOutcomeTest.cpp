#include <functional>

#include "AccessibilityFixture.h"

// How each operation turns the platform's codes into a value, a quiet empty
// result or a thrown error.

namespace corvane::testing {
namespace {

namespace ax = platform::axError;

enum class Outcome { value, quiet, thrown };

std::ostream& operator<<(std::ostream& out, Outcome outcome) {
    const char* names[] = {"value", "quiet", "thrown"};
    return out << names[static_cast<int>(outcome)];
}

// One operation: the call it makes, and what it gives for a success, for
// noValue, for attributeUnsupported, for another code with the out-parameter
// left empty, for that code with something in the out-parameter, and for
// illegalArgument with it empty. run answers whether the result was a value.
struct Row {
    const char* operation;
    SimAXCall call;
    std::function<bool(const UIElement&)> run;
    Outcome success, noValue, unsupported, otherEmpty, otherWritten, illegalArgument;
};

constexpr auto V = Outcome::value;
constexpr auto Q = Outcome::quiet;
constexpr auto T = Outcome::thrown;

template <typename Optional>
bool has(const Optional& result) {
    return result.has_value();
}

std::vector<Row> rows() {
    return {
        {"attributes", SimAXCall::copyAttributeNames,
         [](const UIElement& e) { return !e.attributes().empty(); }, V, Q, Q, Q, T, Q},
        {"attributeIsSupported", SimAXCall::copyAttributeValues,
         [](const UIElement& e) { return e.attributeIsSupported("AXTitle"); }, V, V, Q, T, T, T},
        {"attributeIsSettable", SimAXCall::isAttributeSettable,
         [](const UIElement& e) { return e.attributeIsSettable("AXMinimized"); }, V, Q, Q, T, T, T},
        {"rawAttribute", SimAXCall::copyAttributeValue,
         [](const UIElement& e) { return has(e.rawAttribute(UIElement::Attribute::title)); }, V, Q,
         Q, T, T, T},
        {"attribute", SimAXCall::copyAttributeValue,
         [](const UIElement& e) { return has(e.attribute<std::string>("AXTitle")); }, V, Q, Q, T, T,
         T},
        {"setAttribute", SimAXCall::setAttributeValue,
         [](const UIElement& e) { return e.setAttribute("AXMinimized", CFValue(false)), true; }, V,
         T, T, T, T, T},
        {"getMultipleAttributes", SimAXCall::copyMultipleAttributeValues,
         [](const UIElement& e) {
             return !e.getMultipleAttributes(UIElement::Attribute::title).empty();
         },
         V, T, T, T, T, T},
        {"arrayAttribute", SimAXCall::copyAttributeValue,
         [](const UIElement& e) { return has(e.arrayAttribute<AttributeValue>("AXChildren")); }, V,
         Q, Q, T, T, T},
        {"valuesForAttribute", SimAXCall::copyAttributeValues,
         [](const UIElement& e) {
             return has(e.valuesForAttribute<AttributeValue>("AXChildren", 0, 10));
         },
         V, Q, Q, Q, T, Q},
        {"valueCountForAttribute", SimAXCall::getAttributeValueCount,
         [](const UIElement& e) { return has(e.valueCountForAttribute("AXChildren")); }, V, T, Q, T,
         T, Q},
        {"parameterizedAttributes", SimAXCall::copyParameterizedAttributeNames,
         [](const UIElement& e) { return !e.parameterizedAttributes().empty(); }, V, Q, Q, Q, T, Q},
        {"parameterizedAttribute", SimAXCall::copyParameterizedAttributeValue,
         [](const UIElement& e) {
             return has(e.parameterizedAttribute<std::string>("AXEcho", CFValue("x")));
         },
         V, Q, Q, Q, T, Q},
        {"actions", SimAXCall::copyActionNames,
         [](const UIElement& e) { return !e.actions().empty(); }, V, Q, Q, Q, T, Q},
        {"actionDescription", SimAXCall::copyActionDescription,
         [](const UIElement& e) { return has(e.actionDescription("AXRaise")); }, V, Q, Q, T, T, T},
        {"performAction", SimAXCall::performAction,
         [](const UIElement& e) { return e.performAction("AXRaise"), true; }, V, T, T, T, T, T},
        {"pid", SimAXCall::getPid, [](const UIElement& e) { return e.pid(), true; }, V, T, T, T, T,
         T},
    };
}

Outcome outcomeOf(const Row& row, const UIElement& element) {
    try {
        return row.run(element) ? Outcome::value : Outcome::quiet;
    } catch (const AXError&) {
        return Outcome::thrown;
    }
}

class UIElementOutcomeTest : public AccessibilityTest {
  protected:
    UIElementOutcomeTest() {
        sim.setParameterizedAttribute(documents, "AXEcho",
                                      [](const CFValue& parameter) { return parameter; });
    }
};

TEST_F(UIElementOutcomeTest, EachOperationTreatsEachCodeAsItsTableSays) {
    const UIElement element(documents);
    struct Column {
        const char* name;
        SimAXFault fault;
        Outcome Row::*expected;
    };
    const CFValue written = CFValue::Array{CFValue("AXTitle")};
    const Column columns[] = {
        {"noValue", SimAXFault::error(ax::noValue), &Row::noValue},
        {"attributeUnsupported", SimAXFault::error(ax::attributeUnsupported), &Row::unsupported},
        {"cannotComplete, nothing written", SimAXFault::error(ax::cannotComplete),
         &Row::otherEmpty},
        {"cannotComplete, something written",
         SimAXFault::errorWithOutput(ax::cannotComplete, written), &Row::otherWritten},
        {"illegalArgument, nothing written", SimAXFault::error(ax::illegalArgument),
         &Row::illegalArgument},
    };
    for (const auto& row : rows()) {
        EXPECT_EQ(outcomeOf(row, element), row.success) << row.operation << " on success";
        for (const auto& column : columns) {
            sim.injectFault(row.call, column.fault);
            EXPECT_EQ(outcomeOf(row, element), row.*column.expected)
                << row.operation << " on " << column.name;
            sim.clearFaults();
        }
    }
}

TEST_F(UIElementOutcomeTest, ElementAtPositionToleratesOnlyNoValue) {
    const auto app = application();
    EXPECT_EQ(*app->elementAtPosition(150, 150), UIElement(documents));
    EXPECT_EQ(app->elementAtPosition(5000, 5000), nullptr);
    sim.injectFault(SimAXCall::copyElementAtPosition, SimAXFault::nullOutput());
    EXPECT_EQ(app->elementAtPosition(150, 150), nullptr);
    for (auto code : {ax::attributeUnsupported, ax::cannotComplete}) {
        sim.injectFault(SimAXCall::copyElementAtPosition, SimAXFault::error(code));
        EXPECT_THROW(app->elementAtPosition(150, 150), AXError) << code;
    }
}

TEST_F(UIElementOutcomeTest, AnEndedProcessReadsAsGoneRatherThanFailing) {
    const UIElement element(documents);
    sim.endProcess(appPid);
    EXPECT_TRUE(element.attributes().empty());
    EXPECT_TRUE(element.actions().empty());
    EXPECT_THROW(element.pid(), AXError);
    EXPECT_THROW(element.attribute("AXTitle"), AXError);
    EXPECT_EQ(element.description(),
              "<InvalidUIElement \"" + documents->description() + "\" (pid=?\?)>");
}

}  // namespace
}  // namespace corvane::testing
