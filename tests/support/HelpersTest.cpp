#include <gtest/gtest.h>

#include <any>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/MultiError.h"
#include "support/Nfurcate.h"
#include "support/OptionalError.h"
#include "support/SimpleError.h"
#include "support/Unwrap.h"
#include "support/Withable.h"

using namespace quillbox;

TEST(ErrorTexts, NameTheTypeTheMessageAndThePlace) {
    EXPECT_STREQ(OptionalError::nilValue<int>("no window").what(),
                 "OptionalError.nilValue of int - no window");
    EXPECT_EQ(OptionalError::nilValue<std::vector<double>>().debugDescription(),
              "OptionalError.nilValue of std::vector<double, std::allocator<double> >");

    const SimpleError error("disk full", "free some space", 12, "save()", "Store.cpp");
    EXPECT_EQ(error.description(), "SimpleError: 'disk full'");
    EXPECT_EQ(error.debugDescription(), "SimpleError: 'disk full' in Store.cpp:12 - save()");
    EXPECT_EQ(error.userRecoverySuggestion(), "free some space");
    EXPECT_NE(SimpleError("here").file().find("HelpersTest.cpp"), std::string::npos);

    const MultiError errors{std::make_exception_ptr(std::runtime_error("first")),
                            std::make_exception_ptr(SimpleError("second"))};
    EXPECT_STREQ(errors.what(), "MultiError: [first, SimpleError: 'second']");
}

TEST(Unwrap, GivesThePresentValueAndRaisesForAnEmptyOne) {
    EXPECT_EQ(unwrap(std::optional<std::string>("moved")), "moved");
    try {
        unwrap(std::optional<int>(), "the window");
        FAIL() << "no error";
    } catch (const OptionalError& error) {
        EXPECT_EQ(error.debugDescription(), "OptionalError.nilValue of int - the window");
        EXPECT_NE(error.file().find("HelpersTest.cpp"), std::string::npos);
    }
    EXPECT_THROW(unwrapOrThrow(std::optional<int>(), 42), int);
    EXPECT_THROW(unwrapOrError(std::optional<int>(), std::out_of_range("x")), std::out_of_range);
    EXPECT_EQ(unwrapOrError(std::optional<int>(5), std::out_of_range("x")), 5);
}

namespace {
struct Shape {
    virtual ~Shape() = default;
};
struct Circle : Shape {};
struct Square : Shape {};
}  // namespace

TEST(Unwrap, CastsThePresentValueAndNamesTheTargetTypeWhenTheCastFails) {
    std::optional<std::shared_ptr<Shape>> shape = std::make_shared<Circle>();
    EXPECT_TRUE(unwrapCast<std::shared_ptr<Circle>>(shape));
    EXPECT_THROW(unwrapCast<std::shared_ptr<Square>>(shape), OptionalError);

    std::optional<std::any> any = std::string("text");
    EXPECT_EQ(unwrapCast<std::string>(any), "text");
    try {
        unwrapCast<int>(any, "not a number");
        FAIL() << "no error";
    } catch (const OptionalError& error) {
        EXPECT_EQ(error.ofType(), "int");
        EXPECT_EQ(error.message(), "not a number");
    }
    EXPECT_THROW(unwrapCast<int>(std::optional<std::any>()), OptionalError);
}

TEST(UnwrapDeathTest, FatalUnwrapStopsWithFileLineAndMessage) {
    EXPECT_EQ(unwrapOrFatalError(std::optional<int>(1), "never"), 1);
    EXPECT_DEATH(unwrapOrFatalError(std::optional<int>(), "the selected app"),
                 "HelpersTest\\.cpp:[0-9]+ - the selected app");
    EXPECT_DEATH(unwrapCastOrFatalError<int>(std::optional<std::any>(std::string("text")), "cast"),
                 "HelpersTest\\.cpp:[0-9]+ - cast");
}

namespace {
struct Settings : Withable<Settings> {
    int width = 1;
};
}  // namespace

TEST(CollectionHelpers, NfurcateKeepsCollectionOrderAndWithChangesOnlyACopy) {
    const std::vector<std::string> names{"apple", "avocado", "banana", "apricot", "blueberry"};
    const auto groups = nfurcate(names, [](const std::string& name) { return name.front(); });
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(groups.at('a'), (std::vector<std::string>{"apple", "avocado", "apricot"}));
    EXPECT_EQ(groups.at('b'), (std::vector<std::string>{"banana", "blueberry"}));

    const Settings original;
    const auto changed = original.with([](Settings& copy) { copy.width = 7; });
    EXPECT_EQ(changed.width, 7);
    EXPECT_EQ(original.width, 1);
}
