#include "Workbench/ContainerApp/CsvWriter.h"

#include "Workbench/ContainerApp/CsvProtection.h"

#include <array>
#include <charconv>
#include <string_view>
#include <utility>

namespace workbench {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view lineEnd = "\r\n";

// The shortest digits that read back as the same number, in any locale.
std::string numberText(double number) {
    auto digits = std::array<char, 400>{};
    auto const end =
        std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed);
    return {digits.data(), end.ptr};
}

std::string inQuotes(std::string_view text) {
    auto field = std::string{'"'};
    for (auto const character : text) {
        if (character == '"')
            field += '"';
        field += character;
    }
    return field + '"';
}

std::string fieldOf(std::string_view text) {
    auto const field = protectedFromFormulas(text);
    return field.find_first_of("\",\r\n") == std::string::npos ? field : inQuotes(field);
}

} // namespace

CsvWriter::CsvWriter(std::optional<FrameCount> theFrameCount, std::vector<Comment> theComments)
    : frameCount{theFrameCount}
    , comments{std::move(theComments)} {}

void CsvWriter::write(TextSink const& sink) const {
    sink(header());
    for (auto const& comment : comments)
        sink(line(comment));
}

std::string CsvWriter::header() {
    return std::string{byteOrderMark} +
           "id,timecode,frame,seconds,duration,author,text,resolved,parent,colour" + std::string{lineEnd};
}

std::string CsvWriter::line(Comment const& comment) const {
    auto line = fieldOf(comment.id) + ',';
    if (frameCount) {
        auto const frame = frameAt(comment.start, frameCount->rate);
        line += timecode(frame, *frameCount) + ',' + std::to_string(frame) + ',';
    } else {
        line += ",,";
    }
    line += numberText(comment.start) + ',' + numberText(comment.duration) + ',';
    line += fieldOf(comment.author) + ',' + fieldOf(comment.text) + ',';
    line += comment.resolved ? "true," : "false,";
    line += fieldOf(comment.parentId.value_or("")) + ',' + fieldOf(comment.colour.value_or(""));
    return line + std::string{lineEnd};
}

} // namespace workbench
