#include "platform/sqlite/ValueOrder.h"

namespace platform::sqlite {

namespace {

// The rank of a value's kind in the order.
int rank(const AttributeValue& value) {
    if (std::holds_alternative<std::monostate>(value))
        return 0;
    if (std::holds_alternative<std::string>(value))
        return 2;
    if (std::holds_alternative<std::vector<std::uint8_t>>(value))
        return 3;
    return 1;
}

double number(const AttributeValue& value) {
    if (auto* integer = std::get_if<std::int64_t>(&value))
        return static_cast<double>(*integer);
    if (auto* flag = std::get_if<bool>(&value))
        return *flag ? 1 : 0;
    return std::get<double>(value);
}

template <typename T>
int threeWay(const T& left, const T& right) {
    return left < right ? -1 : (right < left ? 1 : 0);
}

}  // namespace

int compareValues(const AttributeValue& left, const AttributeValue& right) {
    const int leftRank = rank(left);
    const int rightRank = rank(right);
    if (leftRank != rightRank)
        return threeWay(leftRank, rightRank);
    switch (leftRank) {
        case 1: {
            auto* leftInteger = std::get_if<std::int64_t>(&left);
            auto* rightInteger = std::get_if<std::int64_t>(&right);
            if (leftInteger && rightInteger)
                return threeWay(*leftInteger, *rightInteger);
            return threeWay(number(left), number(right));
        }
        case 2:
            return threeWay(std::get<std::string>(left), std::get<std::string>(right));
        case 3:
            return threeWay(std::get<std::vector<std::uint8_t>>(left),
                            std::get<std::vector<std::uint8_t>>(right));
        default:
            return 0;
    }
}

// As in the store's queries, no value is equal only to no value, and is
// neither smaller nor larger than anything.
bool satisfies(const AttributeValue& value, const Comparison& condition) {
    const bool absent = std::holds_alternative<std::monostate>(value) ||
                        std::holds_alternative<std::monostate>(condition.value);
    const int order = compareValues(value, condition.value);
    switch (condition.op) {
        case Comparison::Operator::equal:
            return order == 0;
        case Comparison::Operator::notEqual:
            return order != 0;
        case Comparison::Operator::less:
            return !absent && order < 0;
        case Comparison::Operator::lessOrEqual:
            return !absent && order <= 0;
        case Comparison::Operator::greater:
            return !absent && order > 0;
        case Comparison::Operator::greaterOrEqual:
            return !absent && order >= 0;
    }
    return false;
}

}  // namespace platform::sqlite
