#pragma once

#include <filesystem>

namespace fcp {

// True when the kernel offers a device to render on, which is how a graphics processor shows.
[[nodiscard]] bool hasGraphicsProcessor(std::filesystem::path const& devices = "/dev/dri");

// Makes GTK draw with the processor where there is no other way, unless the user has chosen: its default
// there is graphics code run by the processor, which takes twice as long to start. GTK looks when it makes
// its first window, so this helps only before that.
void preferPlainDrawingWithoutGraphicsProcessor();

} // namespace fcp
