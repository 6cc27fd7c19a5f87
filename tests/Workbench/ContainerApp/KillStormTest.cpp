#include "Workbench/ContainerApp/ContainerFixture.h"

#include <csignal>
#include <random>
#include <set>
#include <sstream>

namespace workbench {

namespace {

// How many commands are under way at any time, and how many answers a storm lives to see at most.
constexpr std::size_t underWay = 32;
constexpr int longestStorm = 150;

constexpr int listLength = 40;

// Writes without a pause, and knows what was promised. Single comments go to one sequence, whole lists of one
// generation each to another.
class KillStormTest : public ContainerFixture {
protected:
    void SetUp() override {}

    int upTo(int most) { return std::uniform_int_distribution{0, most}(dice); }

    void sendOne() {
        auto const kind = upTo(9);
        if (kind == 0) {
            sendList();
            return;
        }
        if (kind < 3 && !kept.empty()) {
            auto const id = *kept.begin();
            kept.erase(kept.begin());
            pending.emplace_back(client.send("deleteComment", {{"commentId", id}}),
                                 [this, id] { gone.insert(id); });
            return;
        }
        auto const id = "c" + std::to_string(++comments);
        pending.emplace_back(
            client.send("syncComment", {{"comment", {{"id", id}, {"seconds", comments}, {"text", id}}}}),
            [this, id] { kept.insert(id); });
    }

    void sendList() {
        auto const generation = ++generations;
        auto list = Json::array();
        for (auto place = 0; place < listLength; ++place)
            list.push_back({{"id", std::to_string(place)},
                            {"seconds", place},
                            {"text", std::to_string(generation)},
                            {"sequenceId", "list"}});
        pending.emplace_back(client.send("syncAllComments", {{"comments", list}}),
                             [this, generation] { promised = std::max(promised, generation); });
    }

    // What was answered was promised; it must be true.
    void takeAnswers() {
        std::erase_if(pending, [this](auto const& each) {
            auto const answers = client.answers(each.first);
            if (answers.empty())
                return false;
            EXPECT_EQ(std::vector{Json(true)}, answers);
            each.second();
            ++answered;
            return true;
        });
    }

    void storm() {
        auto const lived = answered + upTo(longestStorm);
        EXPECT_TRUE(client.waitFor([&] {
            while (pending.size() < underWay)
                sendOne();
            takeAnswers();
            return answered >= lived;
        }));
    }

    void killContainer() {
        // While it starts, while it works, or while it ends.
        auto const kind = upTo(4);
        container = std::make_unique<ContainerProcess>(
            std::vector<std::string>{"--no-window", "--database", database});
        if (kind > 0) {
            ASSERT_TRUE(container->isReady()) << container->complaints();
            storm();
        }
        if (kind == 1)
            container->signal(SIGTERM);
        pauseUpTo(kind == 0 ? 40'000 : 3000);
        container->signal(SIGKILL);
        auto const code = container->wait();
        ASSERT_TRUE(code == -SIGKILL || (kind == 1 && code == 0)) << code << container->complaints();
        killed += code == -SIGKILL ? 1 : 0;
        // Answers that were sent before the end count as well; the others will never come.
        client.settleWithBus();
        takeAnswers();
        pending.clear();
    }

    void pauseUpTo(int microseconds) {
        auto const pause = timespec{0, 1000L * upTo(microseconds)};
        ::nanosleep(&pause, nullptr);
    }

    void check() const {
        EXPECT_EQ("ok\n", sql("PRAGMA integrity_check"));
        auto stored = std::set<std::string>{};
        auto rows =
            std::istringstream{sql("SELECT comments.id FROM comments JOIN sequences s ON s.id = sequence_id "
                                   "WHERE key = 'default'")};
        for (auto id = std::string{}; rows >> id;)
            stored.insert(id);
        for (auto const& id : kept)
            EXPECT_TRUE(stored.contains(id)) << id << " is lost";
        for (auto const& id : gone)
            EXPECT_FALSE(stored.contains(id)) << id << " is back";
        auto list = std::istringstream{
            sql("SELECT count(*) || ' ' || min(body + 0) || ' ' || max(body + 0) FROM comments JOIN "
                "sequences s ON s.id = sequence_id WHERE key = 'list'")};
        auto count = 0;
        auto oldest = 0;
        auto newest = 0;
        list >> count >> oldest >> newest;
        EXPECT_EQ(oldest, newest); // whole
        EXPECT_GE(newest, promised);
        EXPECT_EQ(newest > 0 ? listLength : 0, count);
    }

    std::mt19937 dice{20260711}; // the same storm every time, as far as the storm decides
    std::set<std::string> kept;
    std::set<std::string> gone;
    std::vector<std::pair<std::string, std::function<void()>>> pending;
    int comments = 0;
    int generations = 0;
    int promised = 0; // the newest list that was acknowledged
    int answered = 0;
    int killed = 0;
};

} // namespace

TEST_F(KillStormTest, LosesNothingThatWasAcknowledged) {
    for (auto round = 0; round < KILLS && !HasFailure(); ++round) {
        killContainer();
        check();
    }
    EXPECT_GE(killed, KILLS * 3 / 4);
    EXPECT_GT(answered, KILLS * 10);
    RecordProperty("kills", killed);
    RecordProperty("acknowledged", answered);
}

} // namespace workbench
