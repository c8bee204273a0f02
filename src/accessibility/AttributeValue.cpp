#include "accessibility/AttributeValue.h"

#include <sstream>

#include "accessibility/UIElement.h"

namespace corvane {

namespace {

using platform::CFValue;

template <typename... Ts>
struct Overloaded : Ts... {
    using Ts::operator()...;
};
// Spelled out for compilers that don't deduce aggregate arguments yet.
template <typename... Ts>
Overloaded(Ts...) -> Overloaded<Ts...>;

std::string number(double value) {
    std::ostringstream text;
    text << value;
    return text.str();
}

std::string describe(platform::CGPoint point) {
    return "(x: " + number(point.x) + ", y: " + number(point.y) + ")";
}

std::string describe(platform::CGSize size) {
    return "(width: " + number(size.width) + ", height: " + number(size.height) + ")";
}

std::string describe(platform::CGRect rect) {
    return "(origin: " + describe(rect.origin) + ", size: " + describe(rect.size) + ")";
}

std::string describe(platform::CFRange range) {
    return "(location: " + std::to_string(range.location) +
           ", length: " + std::to_string(range.length) + ")";
}

std::string describe(const platform::AXValue& box) {
    return std::visit(Overloaded{
                          [](std::monostate) -> std::string { return "<AXValue illegal>"; },
                          [](platform::AXErrorCode code) { return AXError(code).description(); },
                          [](const auto& geometry) { return describe(geometry); },
                      },
                      box.value);
}

template <typename Items, typename DescribeItem>
std::string list(const Items& items, DescribeItem describeItem, const char* empty) {
    if (items.empty())
        return empty;
    std::string text = "[";
    for (const auto& item : items) {
        if (text.size() > 1)
            text += ", ";
        text += describeItem(item);
    }
    return text + "]";
}

}  // namespace

CFValue packAXValue(const AttributeValue& value) {
    return std::visit(
        Overloaded{
            [](const std::shared_ptr<UIElement>& element) {
                return element ? CFValue(element->element()) : CFValue();
            },
            [](platform::CFRange range) { return CFValue(platform::AXValue::range(range)); },
            [](platform::CGPoint point) { return CFValue(platform::AXValue::point(point)); },
            [](platform::CGRect rect) { return CFValue(platform::AXValue::rect(rect)); },
            [](platform::CGSize size) { return CFValue(platform::AXValue::size(size)); },
            [](const AXError& error) { return CFValue(platform::AXValue::error(error.code)); },
            [](const CFValue& object) { return object; },
        },
        value);
}

std::string describe(const CFValue& value) {
    return std::visit(Overloaded{
                          [](platform::CFNull) -> std::string { return "<null>"; },
                          [](bool flag) -> std::string { return flag ? "true" : "false"; },
                          [](std::int64_t integer) { return std::to_string(integer); },
                          [](double real) { return number(real); },
                          [](const std::string& text) { return "\"" + text + "\""; },
                          [](const platform::CFURL& url) { return "file://" + url.path.string(); },
                          [](const platform::AXUIElementRef& handle) {
                              return handle ? handle->description() : std::string("<null>");
                          },
                          [](const platform::AXValue& box) { return describe(box); },
                          [](const CFValue::Array& array) {
                              return list(
                                  array, [](const CFValue& item) { return describe(item); }, "[]");
                          },
                          [](const CFValue::Dictionary& dictionary) {
                              return list(
                                  dictionary,
                                  [](const auto& entry) {
                                      return "\"" + entry.first + "\": " + describe(entry.second);
                                  },
                                  "[:]");
                          },
                      },
                      value.value());
}

std::string describe(const AttributeValue& value) {
    return std::visit(Overloaded{
                          [](const std::shared_ptr<UIElement>& element) {
                              return element ? element->description() : std::string("<null>");
                          },
                          [](const AXError& error) { return error.description(); },
                          [](const CFValue& object) { return describe(object); },
                          [](const auto& geometry) { return describe(geometry); },
                      },
                      value);
}

}  // namespace corvane
