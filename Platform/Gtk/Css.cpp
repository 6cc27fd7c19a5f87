#include "Platform/Gtk/Css.h"

#include "Platform/Gtk/GRef.h"

#include <gdk/gdk.h>

#include <array>

namespace fcp {

namespace {

// GLib's writers keep the decimal point in every locale.
std::string number(double value) {
    std::array<char, G_ASCII_DTOSTR_BUF_SIZE> text{};
    return g_ascii_formatd(text.data(), static_cast<int>(text.size()), "%.6g", value);
}

std::string text(Color const& color) {
    GdkRGBA const rgba{static_cast<float>(color.red), static_cast<float>(color.green),
                       static_cast<float>(color.blue), static_cast<float>(color.alpha)};
    GCharPtr const written(gdk_rgba_to_string(&rgba));
    return written.get();
}

int weight(FontWeight weight) {
    switch (weight) {
    case FontWeight::Regular:
        return 400;
    case FontWeight::Semibold:
        return 600;
    case FontWeight::Bold:
        return 700;
    }
    return 400;
}

} // namespace

std::string cssBackground(Color const& color) {
    return "background-color:" + text(color) + ";";
}

std::string cssColor(Color const& color) {
    return "color:" + text(color) + ";";
}

std::string cssFont(Font const& font) {
    return "font-size:" + number(font.size) + "px;font-weight:" + std::to_string(weight(font.weight)) + ";";
}

} // namespace fcp
