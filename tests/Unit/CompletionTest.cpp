#include "FcpExtension/Completion.h"

#include <gtest/gtest.h>

#include <optional>

namespace fcp::test {

namespace {

class CompletionTest : public testing::Test {
protected:
    [[nodiscard]] Completion<int> make() {
        return {"syncComment(_:)", [this](Outcome<int> const& outcome) { outcomes.push_back(outcome); }};
    }

    std::vector<Outcome<int>> outcomes;
};

TEST_F(CompletionTest, HandsItsValueOverOnceAndPrintsNothing) {
    testing::internal::CaptureStderr();
    make().resume(7);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    ASSERT_EQ(outcomes.size(), 1U);
    EXPECT_EQ(std::get<0>(outcomes[0]), 7);
}

TEST_F(CompletionTest, HandsAnErrorOver) {
    make().fail({"disk full"});
    ASSERT_EQ(outcomes.size(), 1U);
    EXPECT_EQ(std::get<OperationError>(outcomes[0]).description, "disk full");
}

TEST_F(CompletionTest, PrintsOneLineWithItsLabelWhenResumedTwiceAndCallsBackOnce) {
    testing::internal::CaptureStderr();
    auto completion = make();
    completion.resume(1);
    completion.fail({"late"});
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Completion of syncComment(_:) was resumed more than once.\n");
    EXPECT_EQ(outcomes.size(), 1U);
}

TEST_F(CompletionTest, PrintsOneLineWithItsLabelWhenDroppedUnresumed) {
    testing::internal::CaptureStderr();
    static_cast<void>(make());
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Completion of syncComment(_:) was dropped without being resumed.\n");
    EXPECT_TRUE(outcomes.empty());
}

TEST_F(CompletionTest, IsHandedAlongByMovingWithoutComplaint) {
    testing::internal::CaptureStderr();
    {
        auto first = make();
        auto second = std::move(first);
        second.resume(3);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(outcomes.size(), 1U);
    static_assert(!std::is_copy_constructible_v<Completion<int>>);
}

TEST_F(CompletionTest, MayBeDestroyedByItsOwnCallback) {
    std::optional<Completion<int>> holder;
    int calls = 0;
    holder.emplace("openURL(_:)", [&](Outcome<int> const&) {
        ++calls;
        holder.reset();
    });
    testing::internal::CaptureStderr();
    holder->resume(1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(calls, 1);
}

} // namespace

} // namespace fcp::test
