#pragma once

#include "Ports/View.h"

#include <functional>

namespace fcp {

// The panel's native views as descriptions, one function for each visible thing. `bounds` are the container's
// bounds when the overlay is built; labels and spinner keep the frame that they get then.

[[nodiscard]] ViewDescription containerView();

[[nodiscard]] ViewDescription loadingOverlayView(Rect const& bounds);
[[nodiscard]] ViewDescription loadingSpinner();
[[nodiscard]] ViewDescription loadingStatusLabel(Rect const& bounds);

[[nodiscard]] ViewDescription errorOverlayView(Rect const& bounds);
[[nodiscard]] ViewDescription accentBar(Rect const& bounds);
[[nodiscard]] ViewDescription offlineLabel(Rect const& bounds);
[[nodiscard]] ViewDescription connectionPausedLabel(Rect const& bounds);
[[nodiscard]] ViewDescription errorDetailText(Rect const& bounds);
[[nodiscard]] ViewDescription retryConnectionButton(std::function<void()> action);

} // namespace fcp
