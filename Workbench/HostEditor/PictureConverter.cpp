#include "Workbench/HostEditor/PictureConverter.h"

extern "C" {
#include <libswscale/swscale.h>
}

#include <array>
#include <cstddef>

namespace workbench {

namespace {

constexpr int BytesPerPixel = 4;

int standardOf(int colourSpace) {
    switch (colourSpace) {
    case 601:
        return SWS_CS_ITU601;
    case 240:
        return SWS_CS_SMPTE240M;
    case 2020:
        return SWS_CS_BT2020;
    default:
        return SWS_CS_ITU709;
    }
}

void setColours(SwsContext* context, PlanarImage const& image) {
    auto const* const matrix = sws_getCoefficients(standardOf(image.colourSpace));
    constexpr int unity = 1 << 16;
    sws_setColorspaceDetails(context, matrix, image.isFullRange ? 1 : 0, sws_getCoefficients(SWS_CS_DEFAULT),
                             1, 0, unity, unity);
}

std::array<std::uint8_t const*, 4> planesOf(PlanarImage const& image) {
    auto const luma = std::ptrdiff_t{image.size.width} * image.size.height;
    return {image.data, image.data + luma, image.data + luma + luma / 4, nullptr};
}

} // namespace

void PictureConverter::Free::operator()(SwsContext* old) const {
    sws_freeContext(old);
}

PictureConverter::PictureConverter() = default;
PictureConverter::~PictureConverter() = default;

Picture PictureConverter::convert(PlanarImage const& image, PixelSize target, double displayAspect) {
    // An odd last column or row has no chroma of its own: it is left out.
    auto const width = image.size.width & ~1;
    auto const height = image.size.height & ~1;
    if (width < 2 || height < 2)
        return {};
    context.reset(sws_getCachedContext(context.release(), width, height, AV_PIX_FMT_YUV420P, target.width,
                                       target.height, AV_PIX_FMT_BGRA, SWS_BILINEAR, nullptr, nullptr,
                                       nullptr));
    if (!context)
        return {};
    setColours(context.get(), image);
    auto const planes = planesOf(image);
    std::array<int, 4> const strides = {image.size.width, image.size.width / 2, image.size.width / 2, 0};
    auto const stride = target.width * BytesPerPixel;
    auto const bytes = static_cast<std::size_t>(stride) * static_cast<std::size_t>(target.height);
    // The scaler's vector code may write a little beyond the last row.
    constexpr std::size_t slack = 64;
    auto* const pixels = static_cast<std::uint8_t*>(g_malloc(bytes + slack));
    std::array<std::uint8_t*, 4> const out = {pixels, nullptr, nullptr, nullptr};
    std::array<int, 4> const outStrides = {stride, 0, 0, 0};
    sws_scale(context.get(), planes.data(), strides.data(), 0, height, out.data(), outStrides.data());
    return {Glib::wrap(g_bytes_new_take(pixels, bytes)), target, displayAspect};
}

} // namespace workbench
