#include "shortcuts/SRShortcutActionTarget.h"

namespace lirixkro {

using Method = SRShortcutActionTarget::Method;

Method Method::withSender(std::function<bool(SRShortcutAction&)> body) {
    return {3, [body = std::move(body)](SRShortcutAction* sender) -> std::optional<bool> {
                return body(*sender);
            }};
}

Method Method::withSenderReturningNothing(std::function<void(SRShortcutAction&)> body) {
    return {3, [body = std::move(body)](SRShortcutAction* sender) -> std::optional<bool> {
                body(*sender);
                return std::nullopt;
            }};
}

Method Method::withoutArguments(std::function<bool()> body) {
    return {2,
            [body = std::move(body)](SRShortcutAction*) -> std::optional<bool> { return body(); }};
}

Method Method::withArgumentCount(int argumentCount) {
    return {argumentCount, [](SRShortcutAction*) -> std::optional<bool> { return true; }};
}

const Method* SRShortcutActionTarget::methodForSelector(std::string_view selector) const {
    auto found = methods_.find(selector);
    return found == methods_.end() ? nullptr : &found->second;
}

void SRShortcutActionTarget::setMethod(SRSelector selector, Method method) {
    methods_.insert_or_assign(std::move(selector), std::move(method));
}

std::shared_ptr<SRShortcutActionTarget> SRShortcutActionTarget::application() {
    static const auto shared = std::make_shared<SRShortcutActionTarget>();
    return shared;
}

}  // namespace lirixkro
