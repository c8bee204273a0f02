#include "shortcuts/SRSymbolicKeyCodeTransformer.h"

#include "shortcuts/SRKeyCodeTranslator.h"

namespace lirixkro {

std::shared_ptr<const SRSymbolicKeyCodeTransformer>
SRSymbolicKeyCodeTransformer::sharedTransformer() {
    static const std::shared_ptr<const SRSymbolicKeyCodeTransformer> shared(
        new SRSymbolicKeyCodeTransformer(std::shared_ptr<detail::SRKeyCodeTranslator>(
            std::shared_ptr<void>(), &detail::SRKeyCodeTranslator::shared())));
    return shared;
}

std::shared_ptr<const SRSymbolicKeyCodeTransformer>
SRSymbolicKeyCodeTransformer::makeWithInputSource(
    std::shared_ptr<platform::InputSource> inputSource) {
    return std::shared_ptr<const SRSymbolicKeyCodeTransformer>(new SRSymbolicKeyCodeTransformer(
        std::make_shared<detail::SRKeyCodeTranslator>(std::move(inputSource))));
}

std::optional<std::string> SRSymbolicKeyCodeTransformer::transformedValue(
    const SRValue& value, SRModifierFlags implicitModifierFlags,
    SRModifierFlags explicitModifierFlags, SRLayoutDirection direction) const {
    return transformKeyCode("Key Code -> Symbol", Form::symbolic, value, implicitModifierFlags,
                            explicitModifierFlags, direction);
}

}  // namespace lirixkro
