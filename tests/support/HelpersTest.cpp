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

TEST(OptionalError, DescribesTheMissingTypeAndTheMessageWhenThereIsOne) {
    const auto withMessage = OptionalError::nilValue<int>("no window");
    EXPECT_EQ(withMessage.debugDescription(), "OptionalError.nilValue of int - no window");
    EXPECT_EQ(withMessage.errorDescription(), withMessage.debugDescription());
    EXPECT_EQ(withMessage.failureReason(), withMessage.debugDescription());
    EXPECT_EQ(withMessage.recoverySuggestion(), withMessage.debugDescription());
    EXPECT_EQ(withMessage.helpAnchor(), withMessage.debugDescription());
    EXPECT_STREQ(withMessage.what(), "OptionalError.nilValue of int - no window");

    const auto bare = OptionalError::nilValue<std::vector<double>>();
    EXPECT_EQ(bare.debugDescription(),
              "OptionalError.nilValue of std::vector<double, std::allocator<double> >");
}

TEST(SimpleError, DescriptionsCarryTheMessageAndThePlaceItWasMade) {
    const SimpleError error("disk full", "free some space", 12, "save()", "Store.cpp");
    EXPECT_EQ(error.description(), "SimpleError: 'disk full'");
    EXPECT_EQ(error.debugDescription(), "SimpleError: 'disk full' in Store.cpp:12 - save()");
    EXPECT_EQ(error.errorDescription(), error.debugDescription());
    EXPECT_EQ(error.userRecoverySuggestion(), "free some space");

    const SimpleError here("here");
    EXPECT_NE(here.file().find("HelpersTest.cpp"), std::string::npos);
    EXPECT_GT(here.line(), 0);
}

TEST(MultiError, CollectsTheTextsOfItsErrors) {
    const MultiError errors{std::make_exception_ptr(std::runtime_error("first")),
                            std::make_exception_ptr(SimpleError("second"))};
    EXPECT_EQ(errors.errors().size(), 2u);
    EXPECT_STREQ(errors.what(), "MultiError: [first, SimpleError: 'second']");
}

TEST(Unwrap, GivesThePresentValueAndRaisesForAnEmptyOne) {
    EXPECT_EQ(unwrap(std::optional<int>(3), "with a message"), 3);
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

TEST(UnwrapDeathTest, FatalUnwrapStopsWithFileLineAndMessage) {
    EXPECT_EQ(unwrapOrFatalError(std::optional<int>(1), "never"), 1);
    EXPECT_DEATH(unwrapOrFatalError(std::optional<int>(), "the selected app"),
                 "HelpersTest\\.cpp:[0-9]+ - the selected app");
    EXPECT_DEATH(unwrapCastOrFatalError<int>(std::optional<std::any>(std::string("text")), "cast"),
                 "HelpersTest\\.cpp:[0-9]+ - cast");
}

namespace {
struct Shape {
    virtual ~Shape() = default;
};
struct Circle : Shape {};
struct Square : Shape {};
}  // namespace

TEST(UnwrapCast, CastsThePresentValueAndNamesTheTargetTypeWhenTheCastFails) {
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

TEST(Nfurcate, GroupsElementsByKeyKeepingCollectionOrder) {
    const std::vector<std::string> names{"apple", "avocado", "banana", "apricot", "blueberry"};
    const auto groups = nfurcate(names, [](const std::string& name) { return name.front(); });
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(groups.at('a'), (std::vector<std::string>{"apple", "avocado", "apricot"}));
    EXPECT_EQ(groups.at('b'), (std::vector<std::string>{"banana", "blueberry"}));

    EXPECT_TRUE(nfurcate(std::vector<int>{}, [](int n) { return n % 2; }).empty());
    EXPECT_THROW(nfurcate(std::vector<int>{1, 2},
                          [](int n) -> int {
                              if (n == 2)
                                  throw std::runtime_error("no key");
                              return n;
                          }),
                 std::runtime_error);
}

namespace {
struct Settings : Withable<Settings> {
    int width = 1;
    std::string title = "untitled";
};
}  // namespace

TEST(Withable, ChangesACopyAndLeavesTheOriginal) {
    const Settings original;
    const auto changed = original.with([](Settings& copy) {
        copy.width = 7;
        copy.title = "wide";
    });
    EXPECT_EQ(changed.width, 7);
    EXPECT_EQ(changed.title, "wide");
    EXPECT_EQ(original.width, 1);
    EXPECT_THROW(original.with([](Settings&) { throw std::runtime_error("refused"); }),
                 std::runtime_error);
}
