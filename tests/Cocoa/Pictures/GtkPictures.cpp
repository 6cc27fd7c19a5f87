#include "Cocoa/Pictures/PictureFiles.h"
#include "Contract/Picture.h"

namespace fcp::test {

namespace {

// Writes the panel's pictures for the test that compares them.
class GtkPictures : public NativeViews, public testing::WithParamInterface<std::pair<int, int>> {
protected:
    void draw(std::string const& state) const { Picture(root).save(pictureFile("gtk", state, GetParam())); }
};

TEST_P(GtkPictures, AreWritten) {
    present(GetParam().first, GetParam().second);
    draw("loading");
    showError();
    detail->setText("You appear to be offline. Reconnect to the internet, then retry.");
    draw("error");
}

INSTANTIATE_TEST_SUITE_P(Sizes, GtkPictures, testing::ValuesIn(pictureSizes));

} // namespace

} // namespace fcp::test
