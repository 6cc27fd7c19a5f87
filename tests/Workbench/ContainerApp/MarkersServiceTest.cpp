#include "Workbench/ContainerApp/ContainerFixture.h"

#include <chrono>

namespace workbench {

namespace {

class MarkersServiceTest : public ContainerFixture {
protected:
    static Json comment(std::string const& id, double seconds, std::string const& sequence) {
        return {{"id", id}, {"seconds", seconds}, {"sequenceId", sequence}};
    }

    std::string ids(std::string const& key) {
        auto text = std::string{};
        auto const answer = client.markers(key);
        for (auto const& marker : answer.at("markers"))
            text += marker.at("id").get<std::string>() + " ";
        return text;
    }

    [[nodiscard]] bool isTold(std::string const& key, std::uint64_t revision) {
        return client.waitFor([&] {
            return std::any_of(client.changes().begin(), client.changes().end(), [&](auto const& change) {
                return change.sequenceKey == key && change.revision == revision;
            });
        });
    }
};

} // namespace

TEST_F(MarkersServiceTest, TellsTheMarkersOfASequence) {
    auto marked = comment("a", 12.5, "one");
    marked.update(
        {{"duration", 2}, {"text", "Logo"}, {"author", "Ana"}, {"color", "#f2762e"}, {"resolved", true}});
    ASSERT_EQ(true, sync(marked));
    ASSERT_EQ(true, sync(comment("b", 1, "one")));
    ASSERT_EQ(true, sync(comment("c", 1, "two")));
    auto const first = Json{{"id", "b"},    {"start", 1.0}, {"duration", 0.0},  {"text", ""},
                            {"author", ""}, {"colour", ""}, {"resolved", false}};
    auto const second = Json{{"id", "a"},       {"start", 12.5},       {"duration", 2.0}, {"text", "Logo"},
                             {"author", "Ana"}, {"colour", "#f2762e"}, {"resolved", true}};
    EXPECT_EQ((Json{{"revision", 2}, {"markers", {first, second}}}), client.markers("one"));
}

TEST_F(MarkersServiceTest, TellsNoMarkersOfASequenceThatItDoesNotKnow) {
    EXPECT_EQ((Json{{"revision", 0}, {"markers", Json::array()}}), client.markers("never heard of"));
    EXPECT_EQ((Json{{"revision", 0}, {"markers", Json::array()}}), client.markers(""));
}

TEST_F(MarkersServiceTest, TellsRepliesNotAsMarkers) {
    auto marked = comment("a", 12.5, "one");
    marked["replies"] = Json::array({{{"id", "r"}}});
    ASSERT_EQ(true, sync(marked));
    EXPECT_EQ("a ", ids("one"));
}

TEST_F(MarkersServiceTest, TellsOnlyTheBeginningOfALongText) {
    auto marked = comment("a", 12.5, "one");
    auto text = std::string{};
    for (auto count = 0; count < 5000; ++count)
        text += "é";
    marked["text"] = text;
    ASSERT_EQ(true, sync(marked));
    EXPECT_EQ(Json(text.substr(0, 2000)), client.markers("one").at("markers").at(0).at("text"));
}

TEST_F(MarkersServiceTest, TellsOfEachKindOfWrite) {
    ASSERT_EQ(true, sync(comment("a", 1, "one")));
    EXPECT_TRUE(isTold("one", 1));
    EXPECT_EQ(true, client.request("syncAllComments",
                                   {{"comments", {comment("a", 1, "one"), comment("b", 1, "two")}}}));
    EXPECT_TRUE(isTold("one", 2));
    EXPECT_TRUE(isTold("two", 1));
    EXPECT_EQ(true, client.request("deleteComment", {{"commentId", "b"}}));
    EXPECT_TRUE(isTold("two", 2));
    EXPECT_EQ(true, sync({{"id", "c"}, {"seconds", 1}}));
    EXPECT_EQ(true, client.request("clearAllMarkers"));
    EXPECT_TRUE(isTold("default", 2));
}

TEST_F(MarkersServiceTest, TellsNothingWhenNothingWasWritten) {
    EXPECT_EQ(true, client.request("clearAllMarkers"));
    EXPECT_EQ(true, client.request("deleteComment", {{"commentId", "a"}}));
    EXPECT_EQ(false, sync({{"id", "a"}}));
    EXPECT_EQ(nullptr, markerAt(1));
    ASSERT_EQ(true, sync(comment("a", 1, "one")));
    ASSERT_TRUE(isTold("one", 1));
    EXPECT_EQ(1U, client.changes().size());
}

TEST_F(MarkersServiceTest, TellsABurstOfWritesInStepsOf50Milliseconds) {
    constexpr auto count = 500;
    auto const begun = std::chrono::steady_clock::now();
    for (auto number = 0; number < count; ++number)
        client.send("syncComment", {{"comment", comment(std::to_string(number), number, "one")}});
    ASSERT_TRUE(isTold("one", count));
    auto const steps = (std::chrono::steady_clock::now() - begun) / std::chrono::milliseconds{50};
    EXPECT_LE(static_cast<long>(client.changes().size()), steps + 2);
    auto revision = std::uint64_t{0};
    for (auto const& change : client.changes())
        EXPECT_LT(std::exchange(revision, change.revision), change.revision);
}

TEST_F(MarkersServiceTest, TellsAfterTheCommit) {
    ASSERT_EQ(true, sync(comment("a", 1, "one")));
    ASSERT_TRUE(isTold("one", 1));
    EXPECT_EQ("1\n", sql("SELECT revision FROM sequences"));
}

TEST_F(MarkersServiceTest, TellsTenThousandMarkers) {
    auto list = Json::array();
    for (auto number = 0; number < 10'000; ++number)
        list.push_back(comment(std::to_string(number), number, "one"));
    ASSERT_EQ(true, client.request("syncAllComments", {{"comments", list}}));
    EXPECT_EQ(10'000U, client.markers("one").at("markers").size());
}

TEST_F(MarkersServiceTest, RefusesAnAnswerThatWouldCutItOffFromTheBus) {
    ASSERT_EQ(true, sync(comment("a", 1, "one")));
    std::ignore =
        sql("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 40000) "
            "INSERT INTO comments(sequence_id, id, body, start_s, created_at, updated_at, raw, position) "
            "SELECT 1, i, hex(zeroblob(500)), i, '', '', '{}', i FROM n");
    EXPECT_EQ((Json{{"error", "org.freedesktop.DBus.Error.LimitsExceeded"}}), client.markers("one"));
    EXPECT_EQ(nullptr, markerAt(1e9));
}

TEST_F(MarkersServiceTest, SpeaksWithOtherProgramsOnTheBus) {
    auto const emitted = outputOf(
        "busctl --user emit /com/zelvix/fcp com.zelvix.fcp containerCommand 'a{sv}' 3 command s syncComment "
        "requestId s req-1-ABCDEF comment 'a{sv}' 3 id s a seconds d 12.5 sequenceId s one 2>&1");
    EXPECT_EQ("", emitted);
    ASSERT_TRUE(isTold("one", 1));
    client.settle();
    EXPECT_EQ(std::vector{Json(true)}, client.answers("req-1-ABCDEF"));
    EXPECT_EQ(
        "taa{sv} 1 1 7 \"id\" s \"a\" \"start\" d 12.5 \"duration\" d 0 \"text\" s \"\" \"author\" s \"\" "
        "\"colour\" s \"\" \"resolved\" b false\n",
        outputOf(
            "busctl --user call com.zelvix.fcp.Container /com/zelvix/fcp/Markers com.zelvix.fcp.Markers1 "
            "GetMarkers s one"));
    EXPECT_EQ(
        "(uint64 1, [{'id': <'a'>, 'start': <12.5>, 'duration': <0.0>, 'text': <''>, 'author': <''>, "
        "'colour': <''>, 'resolved': <false>}])\n",
        outputOf("gdbus call --session --dest com.zelvix.fcp.Container --object-path /com/zelvix/fcp/Markers "
                 "--method com.zelvix.fcp.Markers1.GetMarkers one"));
}

TEST_F(MarkersServiceTest, DescribesItselfToOtherPrograms) {
    auto const description =
        outputOf("gdbus introspect --session --dest com.zelvix.fcp.Container --object-path "
                 "/com/zelvix/fcp/Markers");
    for (auto const* line : {"GetMarkers(in  s sequenceKey,", "out t revision,", "out aa{sv} markers);",
                             "MarkersChanged(s sequenceKey,", "t revision);"})
        EXPECT_NE(std::string::npos, description.find(line)) << description;
}

} // namespace workbench
