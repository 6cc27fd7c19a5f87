#include "Workbench/ContainerApp/KdenliveReader.h"

#include "Workbench/ContainerApp/CommentReader.h"
#include "Workbench/ContainerApp/ImportError.h"
#include "Workbench/ContainerApp/KdenliveCategories.h"

#include <cmath>
#include <iterator>

namespace workbench {

namespace {

// What the parser reads, with a count of the lines that it has come to.
class CountingIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = char const*;
    using reference = char const&;

    CountingIterator(std::string_view::const_iterator theAt, std::size_t& theLine)
        : at{theAt}
        , line{&theLine} {}

    reference operator*() const { return *at; }

    CountingIterator& operator++() {
        *line += *at == '\n' ? 1 : 0;
        ++at;
        return *this;
    }

    friend bool operator==(CountingIterator const& a, CountingIterator const& b) { return a.at == b.at; }

private:
    std::string_view::const_iterator at;
    std::size_t* line;
};

struct Guides {
    Json list;
    std::vector<std::size_t> lines; // where each begins
};

Guides parse(std::string_view text) {
    auto guides = Guides{};
    auto line = std::size_t{1};
    auto atEnd = std::size_t{0};
    auto const note = [&](int depth, Json::parse_event_t event, Json const&) {
        if (depth == 1 && event == Json::parse_event_t::object_start)
            guides.lines.push_back(line);
        return true;
    };
    guides.list =
        Json::parse(CountingIterator{text.begin(), line}, CountingIterator{text.end(), atEnd}, note, false);
    if (guides.list.is_discarded())
        throw ImportError(line, "the text is no JSON from here on: export the guides once more");
    if (!guides.list.is_array() || guides.lines.size() != guides.list.size())
        throw ImportError(1, "guides are a JSON array of objects: export them from the list of guides");
    return guides;
}

// A count of frames; `otherwise` without the member.
std::int64_t frames(Json const& guide, char const* key, std::size_t line,
                    std::optional<std::int64_t> otherwise) {
    auto const& value = member(guide, key);
    if (value.is_null() && otherwise)
        return *otherwise;
    auto const number = readNumber(value);
    if (!number || *number < 0 || *number > 9.0e15 || *number != std::floor(*number))
        throw ImportError(line, std::string{"the guide's \""} + key +
                                    "\" is no count of frames from 0: correct it, or remove the guide");
    return static_cast<std::int64_t>(*number);
}

std::string colourOf(Json const& guide) {
    auto const type = readNumber(member(guide, "type")).value_or(0);
    for (std::size_t category = 1; category < kdenliveCategories.size(); ++category)
        if (type == static_cast<double>(category))
            return hexText(kdenliveCategories[category].colour);
    return {};
}

std::string textOf(Json const& guide, std::size_t line) {
    auto const& value = member(guide, "comment");
    if (!value.is_null() && !value.is_string())
        throw ImportError(line, R"(the guide's "comment" is no text: put it into quotes)");
    return value.is_null() ? "" : value.get<std::string>();
}

} // namespace

std::vector<ImportedComment> readKdenliveGuides(std::string_view text, FrameRate rate) {
    auto const guides = parse(text);
    auto comments = std::vector<ImportedComment>{};
    for (std::size_t place = 0; place < guides.lines.size(); ++place) {
        auto const& guide = guides.list[place];
        auto const line = guides.lines[place];
        auto comment = ImportedComment{};
        comment.line = line;
        comment.text = textOf(guide, line);
        comment.start = secondsOf(frames(guide, "pos", line, {}), rate);
        comment.duration = secondsOf(frames(guide, "duration", line, 0), rate);
        comment.colour = colourOf(guide);
        comments.push_back(std::move(comment));
    }
    return comments;
}

} // namespace workbench
