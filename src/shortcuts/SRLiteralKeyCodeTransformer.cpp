#include "shortcuts/SRLiteralKeyCodeTransformer.h"

#include "shortcuts/SRKeyCodeTranslator.h"

namespace lirixkro {

std::shared_ptr<const SRLiteralKeyCodeTransformer>
SRLiteralKeyCodeTransformer::sharedTransformer() {
    static const std::shared_ptr<const SRLiteralKeyCodeTransformer> shared(
        new SRLiteralKeyCodeTransformer(std::shared_ptr<detail::SRKeyCodeTranslator>(
            std::shared_ptr<void>(), &detail::SRKeyCodeTranslator::shared())));
    return shared;
}

std::shared_ptr<const SRLiteralKeyCodeTransformer> SRLiteralKeyCodeTransformer::makeWithInputSource(
    std::shared_ptr<platform::InputSource> inputSource) {
    return std::shared_ptr<const SRLiteralKeyCodeTransformer>(new SRLiteralKeyCodeTransformer(
        std::make_shared<detail::SRKeyCodeTranslator>(std::move(inputSource))));
}

std::optional<std::string> SRLiteralKeyCodeTransformer::transformedValue(
    const SRValue& value, SRModifierFlags implicitModifierFlags,
    SRModifierFlags explicitModifierFlags, SRLayoutDirection direction) const {
    return transformKeyCode("Key Code -> Literal", Form::literal, value, implicitModifierFlags,
                            explicitModifierFlags, direction);
}

}  // namespace lirixkro
