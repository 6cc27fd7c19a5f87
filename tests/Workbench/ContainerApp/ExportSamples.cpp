#include "Workbench/ContainerApp/ExportSamples.h"

#include "Workbench/ContainerApp/TemporaryFolder.h"

namespace workbench {

std::vector<SampleRate> const& sampleRates() {
    static auto const rates = std::vector<SampleRate>{
        {"23.976", {{24000, 1001}, 86'400, false}},     {"25", {{25, 1}, 90'000, false}},
        {"29.97 drop", {{30000, 1001}, 107'892, true}}, {"59.94", {{60000, 1001}, 216'000, false}},
        {"59.94 drop", {{60000, 1001}, 215'784, true}},
    };
    return rates;
}

std::vector<std::int64_t> const& telltaleFrames() {
    static auto const frames = std::vector<std::int64_t>{
        0, 1, 2, 23, 1799, 1800, 3599, 3600, 17'981, 17'982, 35'964, 107'892, 1'900'000};
    return frames;
}

double secondsAt(std::int64_t frame, FrameRate rate) {
    return static_cast<double>(frame * rate.denominator) / static_cast<double>(rate.numerator);
}

Comment commentAt(double start, std::string const& text) {
    auto comment = Comment{};
    comment.text = text;
    comment.start = start;
    return comment;
}

ExportContent contentAt(std::vector<std::int64_t> const& frames, FrameCount const& count) {
    auto content = ExportContent{.title = "Reel 1", .count = count, .durationFrames = 0, .comments = {}};
    for (auto const frame : frames) {
        auto const number = std::to_string(content.comments.size() + 1);
        content.comments.push_back(commentAt(secondsAt(frame, count.rate), "Comment " + number));
        content.comments.back().id = number;
    }
    return content;
}

ExportContent contentWithReply(FrameCount const& count) {
    auto content = contentAt({3, 7}, count);
    content.comments[0].author = "Ana";
    auto reply = commentAt(content.comments[0].start, "Larger?");
    reply.id = "r";
    reply.author = "Bo";
    reply.parentId = content.comments[0].id;
    content.comments.insert(content.comments.begin() + 1, reply);
    return content;
}

std::vector<HostileText> const& hostileTexts() {
    static auto const nothing = std::string{"(no text)"};
    static auto const long1 = std::string(200'000, 'x');
    static auto const texts = std::vector<HostileText>{
        {"", nothing},
        {" \t ", nothing},
        {"\x01\x02\x7F", nothing},
        {"\xC2\x85\xE2\x80\xA8\xE2\x80\xA9", nothing},
        {"a\x01"
         "b\x1B"
         "c",
         "a b c"},
        {"one\r\n\r\ntwo\rthree\n", "one two three"},
        {"she said \"no\", 'never'", "she said \"no\", 'never'"},
        {"00:00:01.000 --> 00:00:02.000", "00:00:01.000 --> 00:00:02.000"},
        {"-->", "-->"},
        {"]]>", "]]>"},
        {"<v Ana>&amp; <b>bold</b> &#10;", "<v Ana>&amp; <b>bold</b> &#10;"},
        {"<!-- --> <?x ?> <![CDATA[", "<!-- --> <?x ?> <![CDATA["},
        {"NOTE nothing", "NOTE nothing"},
        {"[CHAPTER]", "[CHAPTER]"},
        {R"(; # = \ \n \\)", R"(; # = \ \n \\)"},
        {"|C:ResolveColorRed |M:x |D:9", "|C:ResolveColorRed |M:x |D:9"},
        {"* LOC: 01:00:00:00 RED x", "* LOC: 01:00:00:00 RED x"},
        {"=1+1", "=1+1"},
        {R"({\an8}{"pos": 1})", R"({\an8}{"pos": 1})"},
        {"%s %n $(true) `true`", "%s %n $(true) `true`"},
        {"Café 日本 🎬👩‍👩‍👧", "Café 日本 🎬👩‍👩‍👧"},
        {"not \xFF text", "not \xEF\xBF\xBD text"},
        {long1, long1},
    };
    return texts;
}

ExportContent hostileContent(FrameCount const& count) {
    auto content =
        ExportContent{.title = "\"<&>\"\n]]> 🎬", .count = count, .durationFrames = 0, .comments = {}};
    for (auto const& text : hostileTexts()) {
        auto const frame = static_cast<std::int64_t>(content.comments.size());
        content.comments.push_back(commentAt(secondsAt(frame, count.rate), text.typed));
    }
    return content;
}

ExportContent longContent(FrameCount const& count) {
    auto frames = std::vector<std::int64_t>{};
    for (auto number = std::int64_t{0}; number < 5000; ++number)
        frames.push_back(10 * number);
    return contentAt(frames, count);
}

std::string written(CommentWriter const& writer) {
    auto text = std::string{};
    writer.write([&text](std::string_view piece) { text += piece; });
    return text;
}

std::string rateText(FrameRate rate) {
    return std::to_string(rate.numerator) + "/" + std::to_string(rate.denominator);
}

Json readBack(std::string const& name, std::string const& contents, std::string const& arguments) {
    auto const folder = TemporaryFolder{};
    writeFile(folder / "export", contents);
    auto const output = outputOf("'" EXPORT_PYTHON "' '" EXPORT_READERS "' " + name + " '" +
                                 folder / "export" + "' " + arguments);
    return Json::parse(output, nullptr, false);
}

Json labelsByMlt(std::vector<std::int64_t> frames, FrameCount const& count) {
    for (auto& frame : frames)
        frame += count.firstFrame;
    // Where none is left out, labels count as at the next whole rate.
    auto const whole =
        FrameRate{(count.rate.numerator + count.rate.denominator - 1) / count.rate.denominator, 1};
    return readBack("labels", Json(frames).dump(),
                    count.dropFrame ? rateText(count.rate) + " smpte_df" : rateText(whole) + " smpte_ndf");
}

Json each(Json const& list, std::string const& key) {
    auto values = Json::array();
    for (auto const& entry : list)
        values.push_back(entry.value(key, Json{}));
    return values;
}

} // namespace workbench
