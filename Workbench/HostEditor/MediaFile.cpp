#include "Workbench/HostEditor/MediaFile.h"

#include "Workbench/HostEditor/FileFault.h"
#include "Workbench/HostEditor/ProjectFile.h"

#include <glibmm.h>
#include <mlt++/Mlt.h>

#include <algorithm>
#include <string_view>
#include <utility>

namespace workbench {

namespace {

constexpr int StillSeconds = 10;
constexpr auto Unreadable = "it is no media file, or a damaged one";
constexpr auto Undecodable = "it is damaged: its first picture cannot be decoded";

using Opening = std::variant<OpenedFile, std::string>;

// A profile that adapts itself to what is opened with it first.
std::unique_ptr<Mlt::Profile> openProfile() {
    auto profile = std::make_unique<Mlt::Profile>();
    profile->set_explicit(0);
    return profile;
}

// For what has no picture rate of its own.
void makePlain(Mlt::Profile& profile) {
    constexpr int width = 1920;
    constexpr int height = 1080;
    constexpr int rate = 25;
    profile.set_frame_rate(rate, 1);
    profile.set_width(width);
    profile.set_height(height);
    profile.set_sample_aspect(1, 1);
    profile.set_display_aspect(16, 9);
    profile.set_progressive(1);
    profile.set_colorspace(709);
}

std::string_view service(Mlt::Producer& producer) {
    auto const* const name = producer.get("mlt_service");
    return name ? name : std::string_view{};
}

// The engine also opens text files, scripts and more; a timeline is for sound and pictures.
bool isMedia(Mlt::Producer& producer) {
    auto const name = service(producer);
    return producer.is_valid() && (name == "pixbuf" || name.starts_with("avformat"));
}

// A cover picture inside a sound file is a video stream, too, but one that never moves.
bool hasMovingPicture(Mlt::Producer& producer) {
    auto const streams = producer.get_int("meta.media.nb_streams");
    for (int index = 0; index < streams; ++index) {
        auto const prefix = "meta.media." + std::to_string(index);
        auto const* const type = producer.get((prefix + ".stream.type").c_str());
        auto const rate = producer.get_double((prefix + ".stream.frame_rate").c_str());
        if (type && std::string_view{type} == "video" && rate > 0 && rate < 1000)
            return true;
    }
    return false;
}

void shapeAs(Mlt::Profile& profile, Mlt::Producer& producer) {
    profile.from_producer(producer);
    // Chroma planes have half the size in both directions.
    profile.set_width(std::max(profile.width() & ~1, 2));
    profile.set_height(std::max(profile.height() & ~1, 2));
}

// The engine also plays what it cannot decode, with a picture of its own.
bool showsItsPicture(Mlt::Profile const& profile, Mlt::Producer& producer) {
    std::unique_ptr<Mlt::Frame> const frame{producer.get_frame()};
    auto format = mlt_image_yuv420p;
    auto width = profile.width();
    auto height = profile.height();
    return frame && frame->get_image(format, width, height) && frame->get_int("test_image") == 0;
}

SequenceFacts factsOf(std::filesystem::path const& path) {
    auto const uri = Glib::filename_to_uri(path.string());
    return {.key = uri,
            .uri = uri,
            .name = Glib::filename_display_basename(path.string()),
            .rate = {},
            .marks = {}};
}

Opening openClip(std::filesystem::path const& path) {
    auto profile = openProfile();
    auto facts = factsOf(path);
    auto isStill = false;
    {
        Mlt::Producer probe{*profile, path.c_str()};
        if (!isMedia(probe))
            return Unreadable;
        isStill = service(probe) == "pixbuf";
        facts.hasPicture = isStill || hasMovingPicture(probe);
        if (isStill || !facts.hasPicture)
            makePlain(*profile);
        else
            shapeAs(*profile, probe);
    }
    profile->set_explicit(1);
    // Once more: the first producer is bound to the rate that the profile had before it was known.
    auto producer = std::make_unique<Mlt::Producer>(*profile, path.c_str());
    if (!isMedia(*producer) || producer->get_playtime() <= 0)
        return Unreadable;
    if (facts.hasPicture && !showsItsPicture(*profile, *producer))
        return Undecodable;
    if (isStill) {
        auto const length = StillSeconds * profile->frame_rate_num() / profile->frame_rate_den();
        producer->set("length", length);
        producer->set_in_and_out(0, length - 1);
    }
    OpenedFile opened;
    opened.sequences.push_back(
        std::make_unique<Sequence>(std::move(profile), std::move(producer), std::move(facts)));
    return opened;
}

// Marks that the engine carries along as nested properties; the list may hold entries that are none.
std::vector<Mark> readMarkers(Mlt::Producer& producer) {
    std::vector<Mark> marks;
    std::unique_ptr<Mlt::Properties> const list{producer.get_props("shotcut:markers")};
    for (int index = 0; list && list->is_valid() && index < list->count(); ++index) {
        std::unique_ptr<Mlt::Properties> const entry{list->get_props_at(index)};
        if (!entry || !entry->is_valid() || !entry->get("start"))
            continue;
        auto const start = producer.time_to_frames(entry->get("start"));
        auto const end = entry->get("end") ? producer.time_to_frames(entry->get("end")) : start;
        marks.push_back({start, std::max(end - start, 0), entry->get("text") ? entry->get("text") : ""});
    }
    return marks;
}

// A project as a whole when `text` is empty.
std::unique_ptr<Sequence> openProjectPart(std::filesystem::path const& path, std::string const& text,
                                          SequenceFacts facts) {
    auto profile = openProfile();
    auto producer = text.empty() ? std::make_unique<Mlt::Producer>(*profile, "xml", path.c_str())
                                 : std::make_unique<Mlt::Producer>(*profile, "xml-string", text.c_str());
    if (!producer->is_valid() || producer->get_playtime() <= 0)
        return nullptr;
    profile->set_explicit(1);
    if (facts.marks.empty())
        facts.marks = readMarkers(*producer);
    return std::make_unique<Sequence>(std::move(profile), std::move(producer), std::move(facts));
}

std::vector<std::string> notesOn(ProjectFile const& project) {
    std::vector<std::string> notes;
    for (auto const& file : project.missingMedia())
        notes.push_back("it uses " + file + ", which is missing");
    if (auto const titles = project.undrawnTitles(); titles > 0)
        notes.push_back(titles == 1 ? "a title is not drawn"
                                    : std::to_string(titles) + " titles are not drawn");
    return notes;
}

void openSequences(OpenedFile& opened, ProjectFile const& project, std::filesystem::path const& path) {
    auto const active = project.activeUuid();
    for (auto const& entry : project.sequences()) {
        auto facts = factsOf(path);
        facts.key += "#" + entry.uuid;
        facts.marks = readGuides(entry.guides);
        if (!entry.name.empty())
            facts.name = entry.name;
        auto sequence = openProjectPart(path, project.textShowing(entry), std::move(facts));
        if (!sequence) {
            opened.notes.push_back("its sequence " + entry.name + " cannot be opened");
            continue;
        }
        if (entry.uuid == active)
            opened.active = opened.sequences.size();
        opened.sequences.push_back(std::move(sequence));
    }
}

Opening openProject(std::filesystem::path const& path) {
    auto read = ProjectFile::read(path);
    if (auto const* const reason = std::get_if<std::string>(&read))
        return *reason;
    auto const& project = std::get<ProjectFile>(read);
    OpenedFile opened{.sequences = {}, .notes = notesOn(project)};
    openSequences(opened, project, path);
    if (opened.sequences.empty()) {
        auto facts = factsOf(path);
        if (auto title = project.title(); !title.empty())
            facts.name = std::move(title);
        if (auto whole = openProjectPart(path, {}, std::move(facts)))
            opened.sequences.push_back(std::move(whole));
    }
    if (opened.sequences.empty())
        return "it holds no sequence that can be opened";
    return opened;
}

} // namespace

Opening openMediaFile(std::filesystem::path const& given) {
    if (auto fault = faultOfFile(given); !fault.empty())
        return fault;
    auto const path = std::filesystem::absolute(given).lexically_normal();
    if (ProjectFile::isProject(path))
        return openProject(path);
    return beginsAsText(path) ? Opening{"it is a text file"} : openClip(path);
}

} // namespace workbench
