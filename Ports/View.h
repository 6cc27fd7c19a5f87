#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>

namespace fcp {

// Points, in a coordinate system whose origin is the bottom-left corner and whose y grows upwards.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

// Components from 0 to 1.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
};

// Which parts of a frame follow when the superview is resized. The values are AppKit's own.
enum class Autoresizing : unsigned {
    None = 0,
    FlexibleLeftMargin = 1,
    FlexibleWidth = 2,
    FlexibleRightMargin = 4,
    FlexibleBottomMargin = 8,
    FlexibleHeight = 16,
    FlexibleTopMargin = 32,
};

[[nodiscard]] constexpr Autoresizing operator|(Autoresizing a, Autoresizing b) {
    return static_cast<Autoresizing>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}

[[nodiscard]] constexpr bool includes(Autoresizing mask, Autoresizing part) {
    return (static_cast<unsigned>(mask) & static_cast<unsigned>(part)) != 0;
}

enum class FontWeight { Regular, Semibold, Bold };

// The system font.
struct Font {
    double size = 0; // points
    FontWeight weight = FontWeight::Regular;
};

enum class LineBreak { TruncatingTail, WordWrapping };

// A read-only text: no border, no background of its own, neither editable nor selectable.
struct LabelContent {
    std::string text;
    Font font;
    Color color;
    LineBreak lineBreak = LineBreak::TruncatingTail;
    int maximumNumberOfLines = 1;
};

// Spinning style, indeterminate, its animation started.
struct SpinnerContent {};

// A push button: rounded bezel, bordered. It says the same in two ways, and a platform takes its own: buttons
// with a target and a message send `selector` to the panel's principal object, others run `action`, on the
// main thread; `action` must not own the view.
struct ButtonContent {
    std::string title;
    Font font;
    Color cellBackground;
    std::string selector;
    std::function<void()> action;
};

enum class AccessibleRole { Generic, Alert };

// What a view looks like, in full. The panel describes, a platform draws: so both platforms draw the same.
struct ViewDescription {
    Rect frame;
    Autoresizing autoresizing = Autoresizing::None;
    std::optional<Color> layerBackground;
    bool hidden = false;
    std::string accessibleName; // empty: the platform's own
    AccessibleRole accessibleRole = AccessibleRole::Generic;
    std::variant<std::monostate, LabelContent, SpinnerContent, ButtonContent> content;
};

// A view on the screen. Main thread only. A superview shares the ownership of its subviews.
class View {
public:
    virtual ~View() = default;

    // Origin (0, 0) and the current size.
    [[nodiscard]] virtual Rect bounds() const = 0;

    // Puts `subview` above the subviews that are there already.
    virtual void addSubview(std::shared_ptr<View> subview) = 0;

    virtual void show() = 0;
    virtual void hide() = 0;

    // Replaces the text of a label; nothing for other views.
    virtual void setText(std::string const& text) = 0;

    [[nodiscard]] virtual bool isInWindow() const = 0;

    // Asks the window that holds this view to give the keyboard to `responder`; null clears it.
    virtual void makeFirstResponder(View* responder) = 0;
};

// Makes views and takes the one that fills the panel. Main thread only.
class UserInterface {
public:
    virtual ~UserInterface() = default;

    [[nodiscard]] virtual std::shared_ptr<View> makeView(ViewDescription const& description) = 0;

    // Installs `view` as the panel's own view, which the host shows.
    virtual void installView(std::shared_ptr<View> view) = 0;
};

} // namespace fcp
