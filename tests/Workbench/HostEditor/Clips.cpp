#include "Workbench/HostEditor/Clips.h"

#include <cstdlib>
#include <stdexcept>

namespace workbench {

namespace {

constexpr int Fields = 16;

}

bool runCommand(std::string const& command) {
    return std::system(command.c_str()) == 0;
}

std::string noise(std::size_t size) {
    std::string bytes;
    for (std::size_t index = 0; index < size; ++index)
        bytes += static_cast<char>(index * 7919 >> 4);
    return bytes;
}

std::filesystem::path makeMedia(std::filesystem::path const& file, std::string const& arguments) {
    if (!runCommand("ffmpeg -hide_banner -loglevel error -nostdin -y " + arguments + " '" + file.string() +
                    "'"))
        throw std::runtime_error{"ffmpeg made no " + file.string()};
    return file;
}

std::filesystem::path makeClip(std::filesystem::path const& file, FrameRate rate, int frames) {
    auto const fraction = std::to_string(rate.numerator) + "/" + std::to_string(rate.denominator);
    auto const seconds = std::to_string((frames + 0.5) * rate.denominator / rate.numerator);
    return makeMedia(
        file, "-f lavfi -i color=black:s=320x180:r=" + fraction + " -f lavfi -i sine=f=440:r=48000 -t " +
                  seconds + " -frames:v " + std::to_string(frames) +
                  " -vf \"geq=lum='16+219*mod(floor(N/pow(2\\,floor(X/20)))\\,2)':cb=128:cr=128\""
                  " -c:v libx264 -preset veryfast -g 48 -pix_fmt yuv420p -c:a aac");
}

std::optional<std::int64_t> numberOn(Picture const& picture) {
    gsize size = 0;
    auto const* const bytes =
        picture ? static_cast<std::uint8_t const*>(picture.pixels->get_data(size)) : nullptr;
    if (!bytes)
        return {};
    constexpr int dark = 64;
    constexpr int bright = 192;
    std::int64_t number = 0;
    for (int field = 0; field < Fields; ++field) {
        auto const x = (2 * field + 1) * picture.size.width / (2 * Fields);
        auto const green = bytes[(picture.size.height / 2 * picture.size.width + x) * 4 + 1];
        if (green > dark && green < bright)
            return {};
        if (green >= bright)
            number |= std::int64_t{1} << field;
    }
    return number;
}

} // namespace workbench
