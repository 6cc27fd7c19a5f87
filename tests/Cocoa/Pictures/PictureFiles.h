#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>

namespace fcp::test {

inline constexpr auto pictureSizes = {std::pair(400, 700), std::pair(800, 500)};

// The file of one picture, in the folder that all programs here are told.
inline std::string pictureFile(std::string const& platform, std::string const& state,
                               std::pair<int, int> const& size) {
    auto const* const told = std::getenv("FCP_PICTURES");
    std::filesystem::path const folder = told ? told : "pictures";
    std::filesystem::create_directories(folder);
    auto const name =
        platform + "-" + state + "-" + std::to_string(size.first) + "x" + std::to_string(size.second);
    return folder / (name + ".png");
}

} // namespace fcp::test
