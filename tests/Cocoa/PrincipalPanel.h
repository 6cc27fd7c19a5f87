#pragma once

#include "Ports/View.h"

#include <optional>
#include <string>
#include <vector>

namespace fcp::test {

struct LabelLook {
    double fontSize = 0;
    bool isBold = false;
    Color color;
    bool isBordered = false;
    bool isBezeled = false;
    bool isEditable = false;
    bool isSelectable = false;
    bool drawsBackground = false;
    bool wrapsByWords = false;
    int lines = 0;
};

struct ButtonLook {
    double fontSize = 0;
    bool isRounded = false;
    bool isBordered = false;
    Color cellBackground;
    std::string message;
};

// What a native view shows of itself.
struct NativeLook {
    std::string kind; // the native class
    std::string text; // of labels and buttons
    std::string accessibleName; // empty for none
    std::string accessibleRole;
    Rect frame;
    unsigned mask = 0;
    bool isHidden = false;
    std::optional<Color> layer;
    std::optional<LabelLook> label;
    std::optional<ButtonLook> button;
    bool isSpinner = false; // of the kind that turns, without an end in sight
    std::vector<NativeLook> subviews;
};

// Of a view that is made and put nowhere.
[[nodiscard]] NativeLook lookOfNewView(ViewDescription const& description);

// The principal class as the system and the host treat it: found by its name, made, asked for its view, put
// into a window, let go. Main thread only.
class PrincipalPanel {
public:
    enum class Way { NibName, Coder };

    // One whose initialiser gave nothing is not made.
    explicit PrincipalPanel(Way way = Way::NibName);

    ~PrincipalPanel();

    PrincipalPanel(PrincipalPanel const&) = delete;
    PrincipalPanel& operator=(PrincipalPanel const&) = delete;

    [[nodiscard]] bool isMade() const;

    // Asks for the view, as the system does to show the panel.
    void open();

    // Puts the view into a window of that size.
    void show(int width, int height);

    // The controller goes; a window that shows the view keeps it.
    void letGo();

    [[nodiscard]] NativeLook look() const;

    // By the text that a label shows or by an overlay's accessible name; also what is hidden.
    [[nodiscard]] bool hasText(std::string const& text) const;
    [[nodiscard]] bool isHidden(std::string const& accessibleName) const;

    // As a click does.
    void pressRetry() const;
    [[nodiscard]] bool buttonHasTarget() const;
    [[nodiscard]] bool buttonHasKeyboard() const;

    // How often the superclass's own were called since the last call of this.
    struct SuperclassCalls {
        int loadView = 0;
        int viewDidLoad = 0;

        bool operator==(SuperclassCalls const&) const = default;
    };

    [[nodiscard]] static SuperclassCalls takeSuperclassCalls();

    // Writes what the view draws.
    void draw(std::string const& file) const;

private:
    void* controller;
    void* window = nullptr;
    void* view = nullptr; // borrowed from one of them
};

// Controllers that exist.
[[nodiscard]] int principalPanels();

// Makes the superclass's initialiser give nothing.
void failCoderInitialiser(bool fail);

} // namespace fcp::test
