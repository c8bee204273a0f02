#include "recorder/SRStyleInfo.h"

#include <cmath>
#include <initializer_list>
#include <nlohmann/json.hpp>

#include "shortcuts/LirixkroStrings.h"
#include "shortcuts/SRExceptions.h"

namespace lirixkro {

namespace {

using nlohmann::json;

[[noreturn]] void fail(const std::string& path, std::string_view format,
                       std::initializer_list<std::string_view> details) {
    std::string text = SRFormatObjects("%@: ", {path});
    text += SRFormatObjects(format, details);
    throw SRInternalInconsistencyException(text);
}

std::string numberText(double value) {
    if (value == std::floor(value) && std::fabs(value) < 1e15)
        return std::to_string(static_cast<long long>(value));
    return std::to_string(value);
}

// A value of a dictionary that must be there.
const json& member(const json& object, const std::string& path, const char* key) {
    auto found = object.find(key);
    if (found == object.end())
        fail(path, "missing %@", {key});
    return *found;
}

void expectType(const json& value, const std::string& path, json::value_t type,
                const char* typeName) {
    const bool matches =
        type == json::value_t::number_float ? value.is_number() : value.type() == type;
    if (!matches)
        fail(path, "expected %@ but got %@", {typeName, value.type_name()});
}

// A dictionary with only the given keys, each of them optional here.
const json& dictionaryWithKeys(const json& value, const std::string& path,
                               std::initializer_list<const char*> keys) {
    expectType(value, path, json::value_t::object, "object");
    for (const auto& item : value.items()) {
        bool known = false;
        for (const char* allowed : keys)
            known = known || item.key() == allowed;
        if (!known)
            fail(path, "unexpected keys", {});
    }
    return value;
}

double number(const json& object, const std::string& path, const char* key) {
    const std::string memberPath = path + "." + key;
    const json& value = member(object, path, key);
    expectType(value, memberPath, json::value_t::number_float, "number");
    return value.get<double>();
}

double nonNegativeNumber(const json& object, const std::string& path, const char* key) {
    const double value = number(object, path, key);
    if (value < 0)
        fail(path + "." + key, "value < %@", {"0"});
    return value;
}

std::string text(const json& object, const std::string& path, const char* key) {
    const json& value = member(object, path, key);
    expectType(value, path + "." + key, json::value_t::string, "string");
    return value.get<std::string>();
}

platform::CGSize size(const json& object, const std::string& path, const char* key) {
    const std::string sizePath = path + "." + key;
    const json& value =
        dictionaryWithKeys(member(object, path, key), sizePath, {"width", "height"});
    return {nonNegativeNumber(value, sizePath, "width"),
            nonNegativeNumber(value, sizePath, "height")};
}

SREdgeInsets insets(const json& object, const std::string& path, const char* key) {
    const std::string insetsPath = path + "." + key;
    const json& value = dictionaryWithKeys(member(object, path, key), insetsPath,
                                           {"top", "left", "bottom", "right"});
    return {number(value, insetsPath, "top"), number(value, insetsPath, "left"),
            number(value, insetsPath, "bottom"), number(value, insetsPath, "right")};
}

SRTextAttributes textAttributes(const json& object, const std::string& path, const char* key) {
    const std::string attributesPath = path + "." + key;
    const json& value =
        dictionaryWithKeys(member(object, path, key), attributesPath,
                           {"fontName", "fontSize", "fontColorCatalogName", "fontColorName"});
    SRTextAttributes attributes;
    attributes.fontName = text(value, attributesPath, "fontName");
    attributes.isSystemFont = attributes.fontName == ".AppleSystemUIFont";
    attributes.fontSize = nonNegativeNumber(value, attributesPath, "fontSize");
    attributes.fontColorCatalogName = text(value, attributesPath, "fontColorCatalogName");
    attributes.fontColorName = text(value, attributesPath, "fontColorName");
    attributes.minimalDrawableWidth = std::ceil(attributes.fontSize);
    return attributes;
}

// An enumeration's number: an integer from 0 below the bound.
std::uint32_t enumeration(const json& object, const std::string& path, const char* key,
                          std::uint32_t bound) {
    if (!object.contains(key))
        return 0;
    const std::string memberPath = path + "." + key;
    const json& value = object.at(key);
    expectType(value, memberPath, json::value_t::number_float, "number");
    const double number = value.get<double>();
    if (number < 0)
        fail(memberPath, "value < %@", {"0"});
    if (number >= bound)
        fail(memberPath, "value >= %@", {numberText(bound)});
    return static_cast<std::uint32_t>(number);
}

// A set of bits within the mask.
std::uint32_t bits(const json& object, const std::string& path, const char* key,
                   std::uint32_t mask) {
    if (!object.contains(key))
        return 0;
    const std::string memberPath = path + "." + key;
    const json& value = object.at(key);
    expectType(value, memberPath, json::value_t::number_unsigned, "unsigned integer");
    const auto number = value.get<std::uint64_t>();
    if (number & ~std::uint64_t{mask})
        fail(memberPath, "value must be with mask %@", {numberText(mask)});
    return static_cast<std::uint32_t>(number);
}

SRRecorderControlStyleComponents components(const json& value, const std::string& path) {
    using C = SRRecorderControlStyleComponents;
    dictionaryWithKeys(value, path, {"appearance", "accessibility", "layoutDirection", "tint"});
    return C(static_cast<C::Appearance>(enumeration(value, path, "appearance", 5)),
             static_cast<C::Accessibility>(bits(value, path, "accessibility", 3)),
             static_cast<C::LayoutDirection>(enumeration(value, path, "layoutDirection", 3)),
             static_cast<C::Tint>(enumeration(value, path, "tint", 3)));
}

std::vector<SRRecorderControlStyleComponents> supportedComponents(const json& info,
                                                                  const std::string& path) {
    const std::string listPath = path + ".supportedComponents";
    const json& list = member(info, path, "supportedComponents");
    expectType(list, listPath, json::value_t::array, "array");
    std::vector<SRRecorderControlStyleComponents> all;
    for (std::size_t i = 0; i < list.size(); ++i)
        all.push_back(components(list[i], listPath + ".[" + std::to_string(i) + "]"));
    return all;
}

SRStyleMetrics metrics(const json& info, const std::string& path) {
    const std::string p = path + ".metrics";
    const json& m = dictionaryWithKeys(
        member(info, path, "metrics"), p,
        {"minSize", "labelToCancel", "cancelToClear", "buttonToAlignment", "baselineFromTop",
         "alignmentToLabel", "labelToAlignment", "baselineLayoutOffsetFromBottom",
         "baselineDrawingOffsetFromBottom", "focusRingCornerRadius", "focusRingInsets",
         "alignmentInsets", "normalLabelAttributes", "recordingLabelAttributes",
         "disabledLabelAttributes"});
    SRStyleMetrics metrics;
    metrics.minSize = size(m, p, "minSize");
    metrics.labelToCancel = number(m, p, "labelToCancel");
    metrics.cancelToClear = number(m, p, "cancelToClear");
    metrics.buttonToAlignment = number(m, p, "buttonToAlignment");
    metrics.baselineFromTop = number(m, p, "baselineFromTop");
    metrics.alignmentToLabel = number(m, p, "alignmentToLabel");
    metrics.labelToAlignment = number(m, p, "labelToAlignment");
    metrics.baselineLayoutOffsetFromBottom = number(m, p, "baselineLayoutOffsetFromBottom");
    metrics.baselineDrawingOffsetFromBottom = number(m, p, "baselineDrawingOffsetFromBottom");
    metrics.focusRingCornerRadius = size(m, p, "focusRingCornerRadius");
    metrics.focusRingInsets = insets(m, p, "focusRingInsets");
    metrics.alignmentInsets = insets(m, p, "alignmentInsets");
    metrics.normalLabelAttributes = textAttributes(m, p, "normalLabelAttributes");
    metrics.recordingLabelAttributes = textAttributes(m, p, "recordingLabelAttributes");
    metrics.disabledLabelAttributes = textAttributes(m, p, "disabledLabelAttributes");
    return metrics;
}

}  // namespace

SRStyleInfo SRStyleInfoFromJSON(std::string_view text, const std::string& name) {
    json info;
    try {
        info = json::parse(text);
    } catch (const json::parse_error& error) {
        throw SRInternalInconsistencyException(
            SRFormatObjects("%@ is an invalid JSON: %@", {name, error.what()}));
    }
    dictionaryWithKeys(info, name, {"supportedComponents", "metrics"});
    return {supportedComponents(info, name), metrics(info, name)};
}

}  // namespace lirixkro
