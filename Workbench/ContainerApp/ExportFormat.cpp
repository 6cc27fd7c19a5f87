#include "Workbench/ContainerApp/ExportFormat.h"

#include "Workbench/ContainerApp/CsvWriter.h"
#include "Workbench/ContainerApp/EdlWriter.h"
#include "Workbench/ContainerApp/FcpxmlWriter.h"
#include "Workbench/ContainerApp/FfmetadataWriter.h"
#include "Workbench/ContainerApp/KdenliveWriter.h"
#include "Workbench/ContainerApp/ShotcutWriter.h"
#include "Workbench/ContainerApp/WebVttWriter.h"

#include <algorithm>
#include <array>

namespace workbench {

namespace {

template <class Writer>
std::unique_ptr<CommentWriter> onTimeline(ExportContent const& content) {
    return std::make_unique<Writer>(timelineOf(content));
}

constexpr std::array formats{
    ExportFormat{"csv", "Table (CSV)", ".csv", false,
                 [](ExportContent const& content) -> std::unique_ptr<CommentWriter> {
                     return std::make_unique<CsvWriter>(content.count, content.comments);
                 }},
    ExportFormat{"edl", "Edit decision list (EDL)", ".edl", true, onTimeline<EdlWriter>},
    ExportFormat{"fcpxml", "FCPXML", ".fcpxml", true, onTimeline<FcpxmlWriter>},
    ExportFormat{"ffmetadata", "Chapters for FFmpeg", ".ffmeta", true, onTimeline<FfmetadataWriter>},
    ExportFormat{"kdenlive", "Guides for Kdenlive", ".json", true, onTimeline<KdenliveWriter>},
    ExportFormat{"shotcut", "Project for Shotcut", ".mlt", true, onTimeline<ShotcutWriter>},
    ExportFormat{"webvtt", "Chapters (WebVTT)", ".vtt", true, onTimeline<WebVttWriter>},
};

} // namespace

std::span<ExportFormat const> exportFormats() {
    return formats;
}

ExportFormat const* findExportFormat(std::string_view name) {
    auto const* const found = std::ranges::find(formats, name, &ExportFormat::name);
    return found == formats.end() ? nullptr : found;
}

std::string exportFormatNames() {
    auto names = std::string{};
    for (auto const& format : formats) {
        if (!names.empty())
            names += &format == &formats.back() ? " or " : ", ";
        names += '"' + std::string{format.name} + '"';
    }
    return names;
}

} // namespace workbench
