#pragma once

#include "Workbench/HostEditor/Picture.h"
#include "Workbench/HostEditor/TimeToFrame.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace workbench {

// Runs a command line; false when it fails. Its output goes where the test's goes.
bool runCommand(std::string const& command);

// A film of 320x180 with a tone, in which each frame carries its number as sixteen dark or bright fields from
// left to right, the lowest bit first. Key frames are far apart, as in films that were made to be small.
std::filesystem::path makeClip(std::filesystem::path const& file, FrameRate rate, int frames);

// The number on such a picture; none when a field is neither dark nor bright.
std::optional<std::int64_t> numberOn(Picture const& picture);

// Bytes that mean nothing to anybody, always the same.
std::string noise(std::size_t size);

// What ffmpeg makes of these arguments.
std::filesystem::path makeMedia(std::filesystem::path const& file, std::string const& arguments);

} // namespace workbench
