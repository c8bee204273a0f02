#include "shortcuts/LirixkroStrings.h"

#include <mutex>
#include <utility>

namespace lirixkro {

namespace {

using Table = std::map<std::string, std::string, std::less<>>;

std::mutex tableMutex;

Table& table() {
    static Table current;
    return current;
}

}  // namespace

std::string SRLoc(std::string_view key) {
    std::lock_guard lock(tableMutex);
    auto found = table().find(key);
    return found == table().end() ? std::string(key) : found->second;
}

ScopedStringTable::ScopedStringTable(Table replacement) {
    std::lock_guard lock(tableMutex);
    previous_ = std::exchange(table(), std::move(replacement));
}

ScopedStringTable::~ScopedStringTable() {
    std::lock_guard lock(tableMutex);
    table() = std::move(previous_);
}

std::string SRFormatObjects(std::string_view format,
                            std::initializer_list<std::string_view> texts) {
    std::string result;
    auto next = texts.begin();
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] == '%' && i + 1 < format.size() && format[i + 1] == '@') {
            if (next != texts.end())
                result += *next++;
            ++i;
        } else {
            result += format[i];
        }
    }
    return result;
}

}  // namespace lirixkro
