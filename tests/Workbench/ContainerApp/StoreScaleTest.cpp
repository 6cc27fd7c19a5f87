#include "Workbench/ContainerApp/CommentReader.h"
#include "Workbench/ContainerApp/Store.h"
#include "Workbench/ContainerApp/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <malloc.h>

namespace workbench {

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto many = 100'000;

// Ten times what a machine that does nothing else takes for a build that is not optimised.
constexpr auto syncPatience = 60s;
constexpr auto lookupPatience = 10ms;

class StoreScaleTest : public testing::Test {
protected:
    StoreScaleTest() {
        store.comments.setObserver([](auto const&...) {});
    }

    // Some overlap, some have an answer; `round` tells the texts apart.
    static std::vector<CommentDraft> drafts(int round) {
        auto list = std::vector<CommentDraft>{};
        list.reserve(many);
        for (auto number = 0; number < many; ++number) {
            auto draft = CommentDraft{};
            draft.comment.id = "comment-" + std::to_string(number);
            draft.comment.author = "Ana";
            draft.comment.text = "Round " + std::to_string(round) + ": the grade drifts here";
            draft.comment.start = 0.5 * number;
            draft.comment.duration = number % 10 == 0 ? 20 : 0;
            draft.hasStart = true;
            draft.raw = R"({"id": "comment-)" + std::to_string(number) + R"(", "drawing": [1, 2, 3]})";
            list.push_back(std::move(draft));
        }
        return list;
    }

    Clock::duration sync(int round) {
        auto list = drafts(round);
        auto const begun = Clock::now();
        EXPECT_TRUE(store.comments.syncAll(std::move(list)));
        return Clock::now() - begun;
    }

    // Bytes that are in use, whatever the allocator keeps for later.
    static std::size_t memory() { return ::mallinfo2().uordblks + ::mallinfo2().hblkhd; }

    [[nodiscard]] std::uintmax_t storeSize() const {
        return std::filesystem::file_size(file) + std::filesystem::file_size(file + "-wal");
    }

    TemporaryFolder folder;
    std::string const file = folder / "store";
    Store store{file};
};

} // namespace

TEST_F(StoreScaleTest, FindsAMarkerAmongAHundredThousandComments) {
    sync(0);
    constexpr auto lookups = 200;
    auto const begun = Clock::now();
    for (auto number = 0; number < lookups; ++number) {
        auto const seconds = number * 0.5 * many / lookups;
        ASSERT_TRUE(store.markers.at(seconds, 0.5)) << seconds;
    }
    EXPECT_LT((Clock::now() - begun) / lookups, lookupPatience);
}

TEST_F(StoreScaleTest, StaysAsLargeAsItIsHoweverOftenAllIsSyncedAnew) {
    EXPECT_LT(sync(0), syncPatience);
    EXPECT_LT(sync(1), syncPatience);
    store.database.takeLogIn();
    auto const memoryBefore = memory();
    auto const sizeBefore = storeSize();
    for (auto round = 2; round < 5; ++round) {
        EXPECT_LT(sync(round), syncPatience);
        store.database.takeLogIn(); // as the program does when it is idle
    }
    EXPECT_LT(memory(), memoryBefore + 1'000'000);
    EXPECT_LT(storeSize(), sizeBefore + sizeBefore / 2);
    EXPECT_EQ(many, store.comments.count());
}

} // namespace workbench
