#include "platform/sim/SimAccessibility.h"

#include <algorithm>
#include <stdexcept>

#include "platform/sim/SimWorkspace.h"

namespace platform::sim {

namespace ax = axError;

namespace {

template <typename Names>
CFValue nameArray(const Names& names) {
    CFValue::Array array;
    for (const auto& entry : names)
        array.emplace_back(entry.first);
    return array;
}

// A slice of a list attribute; a single value reads as a list of one.
CFValue::Array slice(const CFValue& value, std::int64_t index, std::int64_t maxValues) {
    const auto* list = value.get<CFValue::Array>();
    const CFValue::Array members = list ? *list : CFValue::Array{value};
    const auto begin = std::min<std::size_t>(static_cast<std::size_t>(index), members.size());
    const auto end =
        std::min<std::size_t>(begin + static_cast<std::size_t>(maxValues), members.size());
    return {members.begin() + static_cast<std::ptrdiff_t>(begin),
            members.begin() + static_cast<std::ptrdiff_t>(end)};
}

bool sameKind(const CFValue& a, const CFValue& b) {
    if (a.value().index() != b.value().index())
        return false;
    const auto* boxA = a.get<AXValue>();
    const auto* boxB = b.get<AXValue>();
    return !boxA || (boxA->type == boxB->type && boxA->value.index() == boxB->value.index());
}

}  // namespace

SimAccessibility::SimAccessibility(MainLoop& loop, SimWorkspace* workspace)
    : loop_(loop), workspace_(workspace) {
    auto& systemWide = makeElement({0, 0}, std::nullopt);
    systemWide.attributes = {{"AXRole", CFValue("AXSystemWide")},
                             {"AXRoleDescription", CFValue("system wide")},
                             {"AXFocusedApplication", std::nullopt}};
    if (!workspace_)
        return;
    terminationObserver_ =
        workspace_->addObserverForName(WorkspaceNotification::didTerminateApplication,
                                       [this](const WorkspaceNotificationInfo& info) {
                                           if (info.application)
                                               endProcess(info.application->processIdentifier());
                                       });
    frontmostSubscription_ = workspace_->observeFrontmostApplication(
        true, [this](const RunningApplicationRef& application) {
            frontmostChanged(application ? application->processIdentifier() : 0);
        });
}

SimAccessibility::~SimAccessibility() {
    if (workspace_) {
        workspace_->removeObserver(terminationObserver_,
                                   WorkspaceNotification::didTerminateApplication);
    }
}

SimAccessibility::Element& SimAccessibility::makeElement(SimAXElementKey key,
                                                         std::optional<SimAXElementKey> parent) {
    auto& element = elements_[key];
    element.handle = std::make_shared<SimAXUIElement>(key);
    element.parent = parent;
    return element;
}

SimAccessibility::Process* SimAccessibility::process(pid_t pid) {
    auto it = processes_.find(pid);
    if (it != processes_.end())
        return &it->second;
    if (!workspace_ || pid <= 0 || ended_.count(pid))
        return nullptr;
    auto running = workspace_->runningApplicationWithProcessIdentifier(pid);
    if (!running || running->isTerminated())
        return nullptr;
    addProcess(pid, running->localizedName().value_or(""));
    return &processes_.at(pid);
}

SimAccessibility::Element* SimAccessibility::find(const SimAXElementKey& key) {
    if (key.isApplication() && !process(key.pid))
        return nullptr;
    auto it = elements_.find(key);
    return it == elements_.end() ? nullptr : &it->second;
}

SimAccessibility::Element* SimAccessibility::find(const AXUIElementRef& element) {
    const auto* simulated = dynamic_cast<const SimAXUIElement*>(element.get());
    return simulated ? find(simulated->key()) : nullptr;
}

const SimAccessibility::Element* SimAccessibility::find(const AXUIElementRef& element) const {
    const auto* simulated = dynamic_cast<const SimAXUIElement*>(element.get());
    if (!simulated)
        return nullptr;
    auto it = elements_.find(simulated->key());
    return it == elements_.end() ? nullptr : &it->second;
}

SimAccessibility::Element& SimAccessibility::require(const AXUIElementRef& element,
                                                     const char* operation) {
    auto* found = find(element);
    if (!found)
        throw std::invalid_argument(std::string("SimAccessibility::") + operation +
                                    ": no such element");
    return *found;
}

std::optional<SimAccessibility::Answer> SimAccessibility::intercept(SimAXCall call,
                                                                    const AXUIElementRef& element,
                                                                    const std::string& name) {
    ++callCount_;
    auto fault = faults_.take(call, element, name);
    if (!fault)
        return std::nullopt;
    return Answer{fault->code, std::move(fault->output)};
}

namespace {

// How a fault's value reaches each kind of output.
auto into(std::optional<CFValue>& output) {
    return [&output](std::optional<CFValue> value) { output = std::move(value); };
}
template <typename Stored, typename Output>
auto intoScalar(Output& output) {
    return [&output](const std::optional<CFValue>& value) {
        if (const auto* stored = value ? value->get<Stored>() : nullptr)
            output = static_cast<Output>(*stored);
    };
}
const auto nowhere = [](const std::optional<CFValue>&) {};

}  // namespace

template <typename Deliver, typename Body>
AXErrorCode SimAccessibility::answer(SimAXCall call, const AXUIElementRef& element,
                                     const std::string& name, Deliver deliver, Body body) {
    if (auto fault = intercept(call, element, name)) {
        deliver(std::move(fault->value));
        return fault->code;
    }
    auto* found = find(element);
    return found ? body(*found) : ax::invalidUIElement;
}

AXUIElementRef SimAccessibility::createApplication(pid_t pid) {
    return std::make_shared<SimAXUIElement>(SimAXElementKey{pid, 0});
}

AXUIElementRef SimAccessibility::createSystemWide() {
    return std::make_shared<SimAXUIElement>(SimAXElementKey{0, 0});
}

AXErrorCode SimAccessibility::copyAttributeNames(const AXUIElementRef& element,
                                                 std::optional<CFValue>& names) {
    return answer(SimAXCall::copyAttributeNames, element, {}, into(names),
                  [&](const Element& found) {
                      names = nameArray(found.attributes);
                      return ax::success;
                  });
}

SimAccessibility::Answer SimAccessibility::readAttribute(const AXUIElementRef& element,
                                                         const std::string& attribute) {
    if (auto answer = intercept(SimAXCall::copyAttributeValue, element, attribute))
        return *answer;
    const auto* found = find(element);
    if (!found)
        return {ax::invalidUIElement, std::nullopt};
    auto it = found->attributes.find(attribute);
    if (it == found->attributes.end())
        return {ax::attributeUnsupported, std::nullopt};
    if (!it->second)
        return {ax::noValue, std::nullopt};
    return {ax::success, it->second};
}

AXErrorCode SimAccessibility::copyAttributeValue(const AXUIElementRef& element,
                                                 const std::string& attribute,
                                                 std::optional<CFValue>& value) {
    auto answer = readAttribute(element, attribute);
    value = std::move(answer.value);
    return answer.code;
}

AXErrorCode SimAccessibility::copyAttributeValues(const AXUIElementRef& element,
                                                  const std::string& attribute, std::int64_t index,
                                                  std::int64_t maxValues,
                                                  std::optional<CFValue>& values) {
    return answer(SimAXCall::copyAttributeValues, element, attribute, into(values),
                  [&](const Element& found) {
                      auto it = found.attributes.find(attribute);
                      if (it == found.attributes.end())
                          return ax::attributeUnsupported;
                      if (!it->second)
                          return ax::noValue;
                      if (index < 0 || maxValues < 0)
                          return ax::illegalArgument;
                      values = slice(*it->second, index, maxValues);
                      return ax::success;
                  });
}

AXErrorCode SimAccessibility::getAttributeValueCount(const AXUIElementRef& element,
                                                     const std::string& attribute,
                                                     std::int64_t& count) {
    return answer(SimAXCall::getAttributeValueCount, element, attribute,
                  intoScalar<std::int64_t>(count), [&](const Element& found) {
                      auto it = found.attributes.find(attribute);
                      if (it == found.attributes.end())
                          return ax::attributeUnsupported;
                      if (!it->second)
                          return ax::noValue;
                      const auto* list = it->second->get<CFValue::Array>();
                      if (!list)
                          return ax::illegalArgument;
                      count = static_cast<std::int64_t>(list->size());
                      return ax::success;
                  });
}

AXErrorCode SimAccessibility::isAttributeSettable(const AXUIElementRef& element,
                                                  const std::string& attribute, bool& settable) {
    return answer(SimAXCall::isAttributeSettable, element, attribute, intoScalar<bool>(settable),
                  [&](const Element& found) {
                      if (!found.attributes.count(attribute))
                          return ax::attributeUnsupported;
                      settable = found.settable.count(attribute) > 0;
                      return ax::success;
                  });
}

AXErrorCode SimAccessibility::setAttributeValue(const AXUIElementRef& element,
                                                const std::string& attribute,
                                                const CFValue& value) {
    return answer(SimAXCall::setAttributeValue, element, attribute, nowhere, [&](Element& found) {
        auto it = found.attributes.find(attribute);
        if (it == found.attributes.end() || !found.settable.count(attribute))
            return ax::attributeUnsupported;
        if (it->second && !sameKind(*it->second, value))
            return ax::illegalArgument;
        return write(found, attribute, value);
    });
}

AXErrorCode SimAccessibility::copyMultipleAttributeValues(
    const AXUIElementRef& element, const std::vector<std::string>& attributes,
    std::uint32_t /*options*/, std::optional<CFValue>& values) {
    if (auto answer = intercept(SimAXCall::copyMultipleAttributeValues, element)) {
        values = std::move(answer->value);
        return answer->code;
    }
    if (!find(element))
        return ax::invalidUIElement;
    // Each value as a single read gives it, so faults on single reads show
    // here too: a failure is embedded as its code, a missing value as null.
    CFValue::Array array;
    for (const auto& attribute : attributes) {
        auto answer = readAttribute(element, attribute);
        if (answer.code != ax::success) {
            array.emplace_back(AXValue::error(answer.code));
        } else {
            array.push_back(answer.value.value_or(CFValue(CFNull{})));
        }
    }
    values = std::move(array);
    return ax::success;
}

AXErrorCode SimAccessibility::copyParameterizedAttributeNames(const AXUIElementRef& element,
                                                              std::optional<CFValue>& names) {
    return answer(SimAXCall::copyParameterizedAttributeNames, element, {}, into(names),
                  [&](const Element& found) {
                      names = nameArray(found.parameterized);
                      return ax::success;
                  });
}

AXErrorCode SimAccessibility::copyParameterizedAttributeValue(const AXUIElementRef& element,
                                                              const std::string& attribute,
                                                              const CFValue& parameter,
                                                              std::optional<CFValue>& value) {
    return answer(SimAXCall::copyParameterizedAttributeValue, element, attribute, into(value),
                  [&](const Element& found) {
                      auto it = found.parameterized.find(attribute);
                      if (it == found.parameterized.end())
                          return ax::parameterizedAttributeUnsupported;
                      value = it->second(parameter);
                      return value ? ax::success : ax::noValue;
                  });
}

AXErrorCode SimAccessibility::copyActionNames(const AXUIElementRef& element,
                                              std::optional<CFValue>& names) {
    return answer(SimAXCall::copyActionNames, element, {}, into(names), [&](const Element& found) {
        names = nameArray(found.actions);
        return ax::success;
    });
}

AXErrorCode SimAccessibility::copyActionDescription(const AXUIElementRef& element,
                                                    const std::string& action,
                                                    std::optional<CFValue>& description) {
    return answer(SimAXCall::copyActionDescription, element, action, into(description),
                  [&](const Element& found) {
                      for (const auto& [name, text] : found.actions) {
                          if (name != action)
                              continue;
                          description = CFValue(text);
                          return ax::success;
                      }
                      return ax::actionUnsupported;
                  });
}

AXErrorCode SimAccessibility::performAction(const AXUIElementRef& element,
                                            const std::string& action) {
    return answer(SimAXCall::performAction, element, action, nowhere, [&](Element& found) {
        const auto& actions = found.actions;
        if (std::none_of(actions.begin(), actions.end(),
                         [&action](const auto& entry) { return entry.first == action; })) {
            return ax::actionUnsupported;
        }
        performed_.emplace_back(found.handle, action);
        return act(found, action);
    });
}

AXErrorCode SimAccessibility::getPid(const AXUIElementRef& element, pid_t& pid) {
    return answer(SimAXCall::getPid, element, {}, intoScalar<std::int64_t>(pid),
                  [&](const Element& found) {
                      pid = dynamic_cast<const SimAXUIElement&>(*found.handle).key().pid;
                      return ax::success;
                  });
}

AXErrorCode SimAccessibility::setMessagingTimeout(const AXUIElementRef& element, float seconds) {
    return answer(SimAXCall::setMessagingTimeout, element, {}, nowhere, [&](Element& found) {
        if (!(seconds >= 0))
            return ax::illegalArgument;
        found.messagingTimeout = seconds;
        return ax::success;
    });
}

AXErrorCode SimAccessibility::copyElementAtPosition(const AXUIElementRef& application, float x,
                                                    float y, AXUIElementRef& element) {
    if (auto answer = intercept(SimAXCall::copyElementAtPosition, application)) {
        if (const auto* handle = answer->value ? answer->value->get<AXUIElementRef>() : nullptr) {
            element = *handle;
        }
        return answer->code;
    }
    const auto* found = find(application);
    if (!found)
        return ax::invalidUIElement;
    const auto& key = dynamic_cast<const SimAXUIElement&>(*found->handle).key();
    if (!key.isApplication() && !key.isSystemWide())
        return ax::illegalArgument;
    const CGPoint point{x, y};
    for (const auto& [pid, running] : processes_) {
        if (key.isApplication() && pid != key.pid)
            continue;
        for (auto id : running.windows) {
            const auto& window = elements_.at({pid, id});
            const auto frame = frameOf(window);
            if (!flag(window, "AXMinimized") && frame && frame->contains(point)) {
                element = window.handle;
                return ax::success;
            }
        }
    }
    return ax::noValue;
}

bool SimAccessibility::isProcessTrustedWithOptions(const CFValue::Dictionary& options) {
    ++trustChecks_;
    auto it = options.find("AXTrustedCheckOptionPrompt");
    const auto* prompt = it == options.end() ? nullptr : it->second.get<bool>();
    lastTrustPrompt_ = prompt ? std::optional<bool>(*prompt) : std::nullopt;
    return trusted_;
}

void SimAccessibility::injectFault(SimAXCall call, SimAXFault fault, AXUIElementRef element,
                                   std::optional<std::string> name, int times) {
    faults_.add(call, std::move(fault), std::move(element), std::move(name), times);
}

}  // namespace platform::sim
