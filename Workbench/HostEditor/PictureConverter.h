#pragma once

#include "Workbench/HostEditor/Picture.h"

#include <cstdint>
#include <memory>

struct SwsContext;

namespace workbench {

// An image as the engine delivers it: a luma plane and two chroma planes of half its size, one after the
// other. Borrowed for the length of a call.
struct PlanarImage {
    std::uint8_t const* data = nullptr;
    PixelSize size;
    int colourSpace = 709;
    bool isFullRange = false;
};

// Scales and converts images for the screen. One thread at a time.
class PictureConverter final {
public:
    PictureConverter();
    ~PictureConverter();
    PictureConverter(PictureConverter const&) = delete;
    PictureConverter& operator=(PictureConverter const&) = delete;

    // A picture of the size `target`; none when the image is too small to have chroma.
    [[nodiscard]] Picture convert(PlanarImage const& image, PixelSize target, double displayAspect);

private:
    struct Free {
        void operator()(SwsContext* old) const;
    };

    std::unique_ptr<SwsContext, Free> context; // kept as long as the sizes stay
};

} // namespace workbench
