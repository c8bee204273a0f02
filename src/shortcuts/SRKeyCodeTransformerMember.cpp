#include "shortcuts/SRKeyCodeTransformerMember.h"

#include "shortcuts/SRASCIILiteralKeyCodeTransformer.h"
#include "shortcuts/SRASCIISymbolicKeyCodeTransformer.h"
#include "shortcuts/SRKeyCodeASCIITranslator.h"
#include "shortcuts/SRKeyCodeTranslator.h"
#include "shortcuts/SRLiteralKeyCodeTransformer.h"
#include "shortcuts/SRSymbolicKeyCodeTransformer.h"

namespace lirixkro {

template <typename Self, typename Translator>
std::shared_ptr<const Self> SRKeyCodeTransformerMember<Self, Translator>::sharedTransformer() {
    // The process-wide translator lives as long as the process: not owned.
    static const std::shared_ptr<const Self> shared(
        new Self(std::shared_ptr<detail::SRKeyCodeTranslator>(std::shared_ptr<void>(),
                                                              &Translator::shared())));
    return shared;
}

template <typename Self, typename Translator>
std::shared_ptr<const Self> SRKeyCodeTransformerMember<Self, Translator>::makeWithInputSource(
    std::shared_ptr<platform::InputSource> inputSource) {
    return std::shared_ptr<const Self>(
        new Self(std::make_shared<Translator>(std::move(inputSource))));
}

template <typename Self, typename Translator>
std::optional<std::string> SRKeyCodeTransformerMember<Self, Translator>::transformedValue(
    const SRValue& value, SRModifierFlags implicitModifierFlags,
    SRModifierFlags explicitModifierFlags, SRLayoutDirection direction) const {
    return transformKeyCode(Self::activity, Self::form, value, implicitModifierFlags,
                            explicitModifierFlags, direction);
}

template <typename Self, typename Translator>
Translator& SRKeyCodeTransformerMember<Self, Translator>::translator() const {
    // Every instance is made with its layout's translator.
    return static_cast<Translator&>(SRKeyCodeTransformer::translator());
}

template class SRKeyCodeTransformerMember<SRLiteralKeyCodeTransformer, detail::SRKeyCodeTranslator>;
template class SRKeyCodeTransformerMember<SRSymbolicKeyCodeTransformer,
                                          detail::SRKeyCodeTranslator>;
template class SRKeyCodeTransformerMember<SRASCIILiteralKeyCodeTransformer,
                                          detail::SRKeyCodeASCIITranslator>;
template class SRKeyCodeTransformerMember<SRASCIISymbolicKeyCodeTransformer,
                                          detail::SRKeyCodeASCIITranslator>;

}  // namespace lirixkro
