#include "Workbench/HostEditor/MediaFile.h"

#include "Workbench/HostEditor/Clips.h"
#include "Workbench/HostEditor/ProjectFile.h"
#include "Workbench/HostEditor/StartEngine.h"
#include "Workbench/HostEditor/TemporaryFolder.h"

#include <glibmm.h>
#include <gtest/gtest.h>
#include <mlt++/Mlt.h>

#include <cstdlib>

namespace workbench {
namespace {

std::string uriOf(std::filesystem::path const& file) {
    return Glib::filename_to_uri(file.string());
}

class MediaFile : public testing::Test {
protected:
    static void SetUpTestSuite() {
        startEngine();
        media = std::make_unique<TemporaryFolder>();
        makeClip(media->path / "clip.mp4", {30000, 1001}, 45);
    }

    static void TearDownTestSuite() { media.reset(); }

    static OpenedFile opened(std::filesystem::path const& file) {
        auto result = openMediaFile(file);
        if (auto const* const reason = std::get_if<std::string>(&result)) {
            ADD_FAILURE() << file << ": " << *reason;
            return {};
        }
        return std::get<OpenedFile>(std::move(result));
    }

    static std::string refusal(std::filesystem::path const& file) {
        auto const result = openMediaFile(file);
        auto const* const reason = std::get_if<std::string>(&result);
        return reason ? *reason : "opened";
    }

    static std::filesystem::path clip() { return media->path / "clip.mp4"; }

    static inline std::unique_ptr<TemporaryFolder> media;
};

TEST_F(MediaFile, ReadsRateAndLengthOfAFilmExactly) {
    for (auto const rate :
         {FrameRate{24000, 1001}, FrameRate{25, 1}, FrameRate{30000, 1001}, FrameRate{60000, 1001}}) {
        auto const frames = 37;
        auto const file = media->path / ("film-" + std::to_string(rate.numerator) + ".mp4");
        auto const result = opened(makeClip(file, rate, frames));
        ASSERT_EQ(result.sequences.size(), 1U);
        EXPECT_EQ(result.sequences[0]->facts().rate, rate);
        EXPECT_EQ(result.sequences[0]->facts().length, frames);
        EXPECT_TRUE(result.notes.empty());
    }
}

TEST_F(MediaFile, NamesAFilmByItsFile) {
    auto const facts = opened(clip()).sequences.at(0)->facts();
    EXPECT_EQ(facts.name, "clip.mp4");
    EXPECT_EQ(facts.uri, uriOf(clip()));
    EXPECT_EQ(facts.key, facts.uri);
    EXPECT_TRUE(facts.hasPicture);
    EXPECT_NEAR(facts.displayAspect, 16.0 / 9, 0.01);
}

TEST_F(MediaFile, OpensFilesWhoseNamesMeanSomethingToTheEngine) {
    for (auto const* const name :
         {"a:b.mp4", "what?.mp4", "color:red.mp4", "100%d.mp4", "Über mich.mp4", "'.mp4"}) {
        std::filesystem::copy_file(clip(), media->path / name);
        EXPECT_EQ(opened(media->path / name).sequences.at(0)->facts().length, 45) << name;
    }
}

TEST_F(MediaFile, OpensAFileByARelativeName) {
    auto const before = std::filesystem::current_path();
    std::filesystem::current_path(media->path);
    auto const result = opened("clip.mp4");
    std::filesystem::current_path(before);
    EXPECT_EQ(result.sequences.at(0)->facts().key, uriOf(clip()));
}

TEST_F(MediaFile, ShowsAStillForTenSeconds) {
    auto const still = makeMedia(media->path / "still.png", "-f lavfi -i testsrc2=s=300x200 -frames:v 1");
    auto const facts = opened(still).sequences.at(0)->facts();
    EXPECT_EQ(facts.rate, (FrameRate{25, 1}));
    EXPECT_EQ(facts.length, 250);
    EXPECT_NEAR(facts.displayAspect, 16.0 / 9, 0.01);
    EXPECT_TRUE(facts.hasPicture);
}

TEST_F(MediaFile, GivesSoundARateOfItsOwn) {
    auto const sound = makeMedia(media->path / "tone.wav", "-f lavfi -i sine=f=440:r=48000 -t 2");
    auto const facts = opened(sound).sequences.at(0)->facts();
    EXPECT_EQ(facts.rate, (FrameRate{25, 1}));
    EXPECT_EQ(facts.length, 50);
    EXPECT_FALSE(facts.hasPicture);
}

TEST_F(MediaFile, IsNotFooledByTheCoverOfASong) {
    auto const cover = makeMedia(media->path / "cover.png", "-f lavfi -i testsrc2=s=200x200 -frames:v 1");
    auto const song =
        makeMedia(media->path / "song.mp3", "-f lavfi -i sine=r=48000:d=2 -i '" + cover.string() +
                                                "' -map 0 -map 1 -c:v copy -disposition:v attached_pic");
    auto const facts = opened(song).sequences.at(0)->facts();
    EXPECT_FALSE(facts.hasPicture);
    EXPECT_EQ(facts.rate, (FrameRate{25, 1}));
}

TEST_F(MediaFile, RefusesWhatIsNoMediaWithAReason) {
    EXPECT_EQ(refusal(media->path / "nowhere.mp4"), "there is no such file");
    EXPECT_EQ(refusal(media->path), "it is a folder");
    EXPECT_EQ(refusal(media->write("notes.txt", "Hello\n")), "it is a text file");
    EXPECT_EQ(refusal(media->write("text.mp4", "Hello\n")), "it is a text file");
    EXPECT_EQ(refusal(media->write("noise.mp4", noise(20'000))), "it is no media file, or a damaged one");
}

TEST_F(MediaFile, RefusesAFilmThatWasCutShort) {
    auto const faststart =
        makeMedia(media->path / "fast.mp4", "-i '" + clip().string() + "' -c copy -movflags +faststart");
    for (auto const& whole : {clip(), faststart}) {
        auto const cut = media->path / "cut.mp4";
        std::filesystem::copy_file(whole, cut, std::filesystem::copy_options::overwrite_existing);
        std::filesystem::resize_file(cut, std::filesystem::file_size(whole) / 2);
        EXPECT_EQ(refusal(cut).rfind("the file is cut short: it holds ", 0), 0U) << refusal(cut);
    }
}

TEST_F(MediaFile, RefusesAFilmWhosePicturesAreDamaged) {
    auto const faststart =
        makeMedia(media->path / "head.mp4", "-i '" + clip().string() + "' -c copy -movflags +faststart");
    std::ifstream stream{faststart, std::ios::binary};
    std::string bytes{std::istreambuf_iterator<char>{stream}, {}};
    auto const pictures = bytes.find("mdat") + 4;
    auto const count = bytes.size() - pictures;
    bytes.replace(pictures, count, noise(count));
    EXPECT_EQ(refusal(media->write("head.mp4", bytes)), "it is damaged: its first picture cannot be decoded");
}

std::string plainProject(std::string const& resource) {
    return R"(<?xml version="1.0" encoding="utf-8"?>
<mlt LC_NUMERIC="C" title="Rough cut">
  <profile width="320" height="180" progressive="1" sample_aspect_num="1" sample_aspect_den="1"
    display_aspect_num="16" display_aspect_den="9" frame_rate_num="30000" frame_rate_den="1001" colorspace="709"/>
  <producer id="a" in="0" out="44"><property name="resource">)" +
           resource + R"(</property><property name="mlt_service">avformat</property></producer>
  <playlist id="main"><entry producer="a" in="5" out="24"/><entry producer="a" in="0" out="9"/></playlist>
  <tractor id="tractor0" in="0" out="29"><track producer="main"/>
    <properties name="shotcut:markers">
      <property name="odd">1</property>
      <properties name="0"><property name="text">Cut here</property><property name="start">00:00:00.500</property>
        <property name="end">00:00:00.700</property></properties>
    </properties>
  </tractor>
</mlt>
)";
}

TEST_F(MediaFile, OpensAProjectWithItsCutsTitleAndMarks) {
    auto const facts = opened(media->write("cut.mlt", plainProject("clip.mp4"))).sequences.at(0)->facts();
    EXPECT_EQ(facts.name, "Rough cut");
    EXPECT_EQ(facts.rate, (FrameRate{30000, 1001}));
    EXPECT_EQ(facts.length, 30);
    EXPECT_EQ(facts.marks, (std::vector<Mark>{{15, 6, "Cut here"}}));
}

TEST_F(MediaFile, SaysWhichFilesOfAProjectAreMissing) {
    auto const result = opened(media->write("poor.mlt", plainProject("gone.mp4")));
    EXPECT_EQ(result.notes, (std::vector<std::string>{"it uses gone.mp4, which is missing"}));
}

TEST_F(MediaFile, SaysThatTitlesAreNotDrawn) {
    auto text = plainProject("clip.mp4");
    text.insert(text.find("  <playlist"), R"(  <producer id="t" in="0" out="9"><property name="resource"/>
    <property name="mlt_service">kdenlivetitle</property></producer>
)");
    EXPECT_EQ(opened(media->write("titled.mlt", text)).notes,
              (std::vector<std::string>{"a title is not drawn"}));
}

TEST_F(MediaFile, NamesTheLineInWhichAProjectIsDamaged) {
    EXPECT_EQ(refusal(media->write("broken.mlt", "<mlt>\n<profile>\n</mlt>\n"))
                  .rfind("the project's text is damaged in line 3: ", 0),
              0U);
    EXPECT_EQ(refusal(media->write("other.mlt", "<html/>")),
              "it is no project: its text begins with another element");
    EXPECT_EQ(refusal(media->write("bare.mlt", "<mlt/>")), "it holds no sequence that can be opened");
}

// Three sequences as a project of several has them: each with its own length, a background track that is much
// longer, and a last element that stands for the whole project.
std::string sequenceTractor(std::string const& id, std::string const& name, int out,
                            std::string const& guides) {
    return R"(  <tractor id=")" + id + R"(" in="0" out=")" + std::to_string(out) + R"(">
    <property name="kdenlive:uuid">{)" +
           id + R"(}</property><property name="kdenlive:clipname">)" + name + R"(</property>
    <property name="kdenlive:sequenceproperties.guides">)" +
           guides + R"(</property>
    <track producer="black"/><track producer="main"/>
  </tractor>
)";
}

std::string projectOfSeveral() {
    auto text = plainProject("clip.mp4");
    text.erase(text.find("  <tractor"));
    text += R"(  <producer id="black" in="0" out="90000"><property name="resource">black</property>
    <property name="mlt_service">color</property></producer>
)";
    text += sequenceTractor("one", "Opening", 29, R"([{"comment":"Start","pos":4,"type":0,"duration":10}])");
    text += sequenceTractor("two", "Middle &amp; end", 19, "no list");
    text +=
        R"(  <playlist id="main_bin"><property name="kdenlive:docproperties.activetimeline">{two}</property></playlist>
  <tractor id="whole" in="0" out="29"><property name="kdenlive:projectTractor">1</property>
    <track producer="one" in="0" out="29"/></tractor>
</mlt>
)";
    return text;
}

TEST_F(MediaFile, OpensEverySequenceOfAProjectAtItsOwnLength) {
    auto const file = media->write("several.kdenlive", projectOfSeveral());
    auto const result = opened(file);
    ASSERT_EQ(result.sequences.size(), 2U);
    EXPECT_EQ(result.sequences[0]->facts().name, "Opening");
    EXPECT_EQ(result.sequences[0]->facts().length, 30);
    EXPECT_EQ(result.sequences[1]->facts().name, "Middle & end");
    EXPECT_EQ(result.sequences[1]->facts().length, 20);
    EXPECT_EQ(result.active, 1U);
    EXPECT_EQ(result.sequences[0]->facts().key, uriOf(file) + "#{one}");
    EXPECT_EQ(result.sequences[0]->facts().marks, (std::vector<Mark>{{4, 10, "Start"}}));
    EXPECT_TRUE(result.sequences[1]->facts().marks.empty());
    EXPECT_TRUE(result.notes.empty());
}

TEST_F(MediaFile, FindsTheMediaOfASequenceBesideItsProject) {
    auto const result = opened(media->write("several.kdenlive", projectOfSeveral()));
    // The engine shows a picture of its own where it finds no file.
    auto& producer = result.sequences.at(0)->producer();
    producer.seek(3);
    std::unique_ptr<Mlt::Frame> const frame{producer.get_frame()};
    auto format = mlt_image_yuv420p;
    int width = 320;
    int height = 180;
    ASSERT_NE(frame->get_image(format, width, height), nullptr);
    EXPECT_EQ(frame->get_int("test_image"), 0);
}

TEST(Guides, AreReadFromTheirList) {
    EXPECT_EQ(
        readGuides(R"([{"pos":3,"comment":"a"},{"pos":"x"},7,null,{"comment":"b"},{"pos":9,"duration":-4}])"),
        (std::vector<Mark>{{3, 0, "a"}, {9, 0, ""}}));
    EXPECT_TRUE(readGuides("").empty());
    EXPECT_TRUE(readGuides("{}").empty());
    EXPECT_TRUE(readGuides("[[[").empty());
}

} // namespace
} // namespace workbench
