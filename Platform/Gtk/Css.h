#pragma once

#include "Ports/View.h"

#include <string>

namespace fcp {

// Parts of a description as style declarations.
[[nodiscard]] std::string cssBackground(Color const& color);
[[nodiscard]] std::string cssColor(Color const& color);

// A point of the panel is a CSS pixel, whatever the screen's density or the desktop's text scale: the frames
// that the text has to fit are fixed as well. The family stays the desktop's own.
[[nodiscard]] std::string cssFont(Font const& font);

} // namespace fcp
