#include "support/Alert.h"

namespace quillbox {

const Alert::SuppressionButtonOption& Alert::SuppressionButtonOption::hide() {
    static const SuppressionButtonOption hidden{};
    return hidden;
}

Alert::SuppressionButtonOption Alert::SuppressionButtonOption::show(
    std::function<void(bool checked)> onSubmit) {
    SuppressionButtonOption option;
    option.onSubmit = std::move(onSubmit);
    return option;
}

}  // namespace quillbox
