#include "Cocoa/RunLoop.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

// What a turn of the main run loop is in a program of the system: each test has a pool of its own.
class PoolPerTest final : public testing::EmptyTestEventListener {
    void OnTestStart(testing::TestInfo const&) override { pool.emplace(); }

    void OnTestEnd(testing::TestInfo const&) override { pool.reset(); }

    std::optional<fcp::test::Pool> pool;
};

} // namespace

int main(int argc, char** argv) {
    fcp::test::Pool const pool;
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new PoolPerTest);
    return RUN_ALL_TESTS();
}
