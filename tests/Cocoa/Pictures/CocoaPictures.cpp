#include "Cocoa/Pictures/PictureFiles.h"
#include "Cocoa/PrincipalFixture.h"

namespace fcp::test {

namespace {

// Writes the panel's pictures for the test that compares them.
class CocoaPictures : public PrincipalFixture, public testing::WithParamInterface<std::pair<int, int>> {
protected:
    void draw(std::string const& state) { panel->draw(pictureFile("cocoa", state, GetParam())); }
};

TEST_P(CocoaPictures, AreWritten) {
    panel = std::make_unique<PrincipalPanel>();
    panel->show(GetParam().first, GetParam().second);
    draw("loading");
    page().failProvisionally({"NSURLErrorDomain", -1009, "offline"});
    draw("error");
}

INSTANTIATE_TEST_SUITE_P(Sizes, CocoaPictures, testing::ValuesIn(pictureSizes));

} // namespace

} // namespace fcp::test
