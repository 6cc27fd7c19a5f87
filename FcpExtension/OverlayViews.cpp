#include "FcpExtension/OverlayViews.h"

namespace fcp {

namespace {

constexpr Color panelBackground{0.09, 0.09, 0.08, 1.0};
constexpr Color loadingBackground{0.09, 0.09, 0.08,
                                  0.92}; // translucent on purpose; the error overlay is opaque
constexpr Color accent{0.88, 0.4, 0.32, 1.0};
constexpr Color headline{0.94, 0.93, 0.89, 1.0};
constexpr Color status{0.6, 0.59, 0.55, 1.0};
constexpr Color retryBackground{0.12, 0.12, 0.11, 1.0};

constexpr auto flexibleSize = Autoresizing::FlexibleWidth | Autoresizing::FlexibleHeight;

ViewDescription makeLabel(std::string text, double fontSize, FontWeight weight, Color const& color,
                          Rect const& frame) {
    ViewDescription label;
    label.frame = frame;
    label.content = LabelContent{.text = std::move(text), .font = {fontSize, weight}, .color = color};
    return label;
}

} // namespace

ViewDescription containerView() {
    ViewDescription container;
    container.frame = {0, 0, 400, 700};
    container.autoresizing = flexibleSize;
    container.layerBackground = panelBackground;
    return container;
}

ViewDescription loadingOverlayView(Rect const& bounds) {
    ViewDescription overlay;
    overlay.frame = bounds;
    overlay.autoresizing = flexibleSize;
    overlay.layerBackground = loadingBackground;
    overlay.accessibleName = "Loading";
    return overlay;
}

ViewDescription loadingSpinner() {
    ViewDescription spinner;
    spinner.frame = {20, 30, 16, 16};
    spinner.accessibleName = "Loading";
    spinner.content = SpinnerContent{};
    return spinner;
}

ViewDescription loadingStatusLabel(Rect const& bounds) {
    return makeLabel("Opening your review workspace\u2026", 10, FontWeight::Regular, status,
                     {42, 30, bounds.width - 50, 16});
}

ViewDescription errorOverlayView(Rect const& bounds) {
    ViewDescription overlay;
    overlay.frame = bounds;
    overlay.autoresizing = flexibleSize;
    overlay.layerBackground = panelBackground;
    overlay.hidden = true;
    overlay.accessibleName = "Connection error";
    overlay.accessibleRole = AccessibleRole::Alert; // spoken when it appears
    return overlay;
}

ViewDescription accentBar(Rect const& bounds) {
    ViewDescription bar;
    bar.frame = {8, 8, 3, bounds.height - 16};
    bar.autoresizing = Autoresizing::FlexibleHeight | Autoresizing::FlexibleTopMargin;
    bar.layerBackground = accent;
    return bar;
}

ViewDescription offlineLabel(Rect const& bounds) {
    return makeLabel("ZELVIX / OFFLINE", 9, FontWeight::Bold, accent, {20, 70, bounds.width - 28, 12});
}

ViewDescription connectionPausedLabel(Rect const& bounds) {
    return makeLabel("Connection paused", 14, FontWeight::Semibold, headline,
                     {20, 48, bounds.width - 28, 18});
}

ViewDescription errorDetailText(Rect const& bounds) {
    // This text is never seen: whoever shows the error overlay sets a message first.
    auto label = makeLabel("Check your connection and try again.", 10, FontWeight::Regular, status,
                           {20, 28, bounds.width - 28, 14});
    auto& content = std::get<LabelContent>(label.content);
    content.lineBreak = LineBreak::WordWrapping;
    content.maximumNumberOfLines = 3;
    return label;
}

ViewDescription retryConnectionButton(std::function<void()> action) {
    ViewDescription button;
    button.frame = {20, 4, 140, 24};
    button.autoresizing = Autoresizing::FlexibleRightMargin | Autoresizing::FlexibleTopMargin;
    button.content = ButtonContent{.title = "Retry connection",
                                   .font = {10, FontWeight::Semibold},
                                   .cellBackground = retryBackground,
                                   .selector = "retryConnection",
                                   .action = std::move(action)};
    return button;
}

} // namespace fcp
