#include "Workbench/HostEditor/TimecodeEntry.h"

#include "Workbench/HostEditor/Timecode.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <vector>

namespace workbench {

namespace {

using Answer = std::variant<std::int64_t, std::string>;

constexpr std::string_view Separators = ":;.,";
constexpr std::size_t MostFields = 4;
constexpr std::size_t MostDigits = 9; // of a field; all sums stay far below 2^63

struct Fields {
    std::array<std::int64_t, MostFields> values{}; // hours, minutes, seconds, frames
    std::size_t given = 0;
};

std::string_view trimmed(std::string_view text) {
    auto const first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::vector<std::string_view> splitAtSeparators(std::string_view text) {
    std::vector<std::string_view> parts;
    for (auto at = text.find_first_of(Separators); at != std::string_view::npos;
         at = text.find_first_of(Separators)) {
        parts.push_back(text.substr(0, at));
        text.remove_prefix(at + 1);
    }
    parts.push_back(text);
    return parts;
}

// Digits alone are fields of two from the right; the last one has as many as the rate's labels.
std::vector<std::string_view> splitDigits(std::string_view text, int frameDigits) {
    std::vector<std::string_view> parts;
    auto wanted = static_cast<std::size_t>(frameDigits);
    while (parts.size() + 1 < MostFields && text.size() > wanted) {
        parts.insert(parts.begin(), text.substr(text.size() - wanted));
        text.remove_suffix(wanted);
        wanted = 2;
    }
    parts.insert(parts.begin(), text);
    return parts;
}

std::variant<Fields, std::string> readFields(std::string_view text, FrameRate rate) {
    if (text.empty())
        return "type a timecode, such as 1:02:03";
    if (auto const wrong = text.find_first_not_of("0123456789:;.,"); wrong != std::string_view::npos)
        return "a timecode has digits and colons only: " + std::string{text};
    auto const isPlain = text.find_first_of(Separators) == std::string_view::npos;
    auto const parts = isPlain ? splitDigits(text, frameDigits(rate)) : splitAtSeparators(text);
    if (parts.size() > MostFields)
        return "a timecode has four fields: hours, minutes, seconds, frames";
    Fields fields{.given = parts.size()};
    for (std::size_t index = 0; index < parts.size(); ++index) {
        auto const part = parts[index];
        if (part.size() > MostDigits)
            return std::string{part} + " is too large";
        auto& value = fields.values[MostFields - parts.size() + index];
        std::from_chars(part.data(), part.data() + part.size(), value); // an empty field is zero
    }
    return fields;
}

// The first field may be large: "90:00" is a minute and a half.
std::optional<std::string> complaint(Fields const& fields, FrameRate rate) {
    auto const first = MostFields - fields.given;
    std::array<std::int64_t, MostFields> const limits = {0, 60, 60, labelsPerSecond(rate)};
    std::array<char const*, MostFields> const names = {"hours", "minutes", "seconds", "frames"};
    for (auto index = first + 1; index < MostFields; ++index)
        if (fields.values[index] >= limits[index])
            return std::to_string(fields.values[index]) + " " + names[index] + ": there are 0 to " +
                   std::to_string(limits[index] - 1);
    return {};
}

std::int64_t secondsOf(Fields const& fields) {
    return (fields.values[0] * 60 + fields.values[1]) * 60 + fields.values[2];
}

Answer inside(std::int64_t frame, TimecodeContext const& context) {
    if (frame < 0)
        return "that lies before the beginning";
    if (frame >= context.length)
        return "the last frame is " + timecode(std::max<std::int64_t>(context.length, 1) - 1, context.rate);
    return frame;
}

Answer absolute(Fields const& fields, TimecodeContext const& context) {
    auto const label = secondsOf(fields) * labelsPerSecond(context.rate) + fields.values[3];
    if (auto const frame = frameOfLabel(label, context.rate))
        return inside(*frame, context);
    return labelText(label, context.rate) + " is left out; the next is " +
           timecode(frameAtOrAfter(label, context.rate), context.rate);
}

Answer relative(Fields const& fields, int sign, TimecodeContext const& context) {
    auto const label =
        labelOf(context.frame, context.rate) + sign * secondsOf(fields) * labelsPerSecond(context.rate);
    if (label < 0)
        return inside(label, context);
    return inside(frameAtOrAfter(label, context.rate) + sign * fields.values[3], context);
}

} // namespace

Answer readTimecode(std::string_view typed, TimecodeContext const& context) {
    auto text = trimmed(typed);
    auto const isRelative = text.starts_with('+') || text.starts_with('-');
    auto const sign = text.starts_with('-') ? -1 : 1;
    if (isRelative)
        text = trimmed(text.substr(1));
    auto const read = readFields(text, context.rate);
    if (auto const* const wrong = std::get_if<std::string>(&read))
        return *wrong;
    auto const& fields = std::get<Fields>(read);
    if (auto wrong = complaint(fields, context.rate))
        return *std::move(wrong);
    return isRelative ? relative(fields, sign, context) : absolute(fields, context);
}

} // namespace workbench
