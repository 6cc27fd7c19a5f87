#include "Workbench/ContainerApp/FfmetadataWriter.h"

#include <string>
#include <string_view>

namespace workbench {

namespace {

std::string escaped(std::string const& text) {
    auto result = std::string{};
    for (auto const character : text) {
        if (std::string_view{"=;#\\"}.find(character) != std::string_view::npos)
            result += '\\';
        result += character;
    }
    // Escaped or not, the reader takes a line that ends in a backslash for one that goes on.
    return result.ends_with('\\') ? result + ' ' : result;
}

} // namespace

FfmetadataWriter::FfmetadataWriter(Timeline const& timeline)
    : rate{timeline.count.rate}
    , chapters{chaptersOf(timeline)} {}

void FfmetadataWriter::write(TextSink const& sink) const {
    auto const base = std::to_string(rate.denominator) + "/" + std::to_string(rate.numerator);
    sink(";FFMETADATA1\n");
    for (auto const& chapter : chapters)
        sink("\n[CHAPTER]\nTIMEBASE=" + base + "\nSTART=" + std::to_string(chapter.begin) + "\nEND=" +
             std::to_string(chapter.end) + "\ntitle=" + escaped(joined(chapter.remarks, " / ")) + "\n");
}

} // namespace workbench
