#pragma once

#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <string>

namespace fcp::test {

template <typename Generator>
class UuidGeneratorContract : public testing::Test {
protected:
    Generator generator;
};

TYPED_TEST_SUITE_P(UuidGeneratorContract);

TYPED_TEST_P(UuidGeneratorContract, UuidsAreUpperCaseHexadecimalInFiveGroups) {
    std::regex const form("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}");
    for (int i = 0; i < 200; ++i) {
        auto const uuid = this->generator.uuid();
        EXPECT_TRUE(std::regex_match(uuid, form)) << uuid;
    }
}

TYPED_TEST_P(UuidGeneratorContract, NoTwoAreAlike) {
    std::set<std::string> made;
    for (int i = 0; i < 1000; ++i)
        made.insert(this->generator.uuid());
    EXPECT_EQ(made.size(), 1000U);
}

REGISTER_TYPED_TEST_SUITE_P(UuidGeneratorContract, UuidsAreUpperCaseHexadecimalInFiveGroups, NoTwoAreAlike);

} // namespace fcp::test
