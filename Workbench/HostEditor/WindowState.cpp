#include "Workbench/HostEditor/WindowState.h"

#include <glibmm/error.h>
#include <glibmm/fileutils.h>
#include <glibmm/keyfile.h>

#include <cmath>
#include <system_error>

namespace workbench {

namespace {

constexpr auto Window = "window";
constexpr auto Files = "files";

// A window of this size can be on some screen.
bool isLength(int pixels) {
    return pixels >= 100 && pixels <= 32767;
}

// Nothing when the key is missing or holds something else.
template <typename Read>
auto valueOf(Read const& read) -> std::optional<decltype(read())> {
    try {
        return read();
    } catch (Glib::Error const&) {
        return {};
    }
}

std::optional<int> lengthOf(Glib::KeyFile const& keys, char const* key) {
    auto const pixels = valueOf([&] { return keys.get_integer(Window, key); });
    return pixels && isLength(*pixels) ? pixels : std::nullopt;
}

WindowState stateIn(Glib::KeyFile const& keys) {
    WindowState state;
    auto const width = lengthOf(keys, "width");
    auto const height = lengthOf(keys, "height");
    if (width && height)
        state.size = PixelSize{*width, *height};
    state.panelWidth = lengthOf(keys, "panel");
    state.isMaximized = valueOf([&] { return keys.get_boolean(Window, "maximized"); }).value_or(false);
    auto const times = valueOf([&] { return keys.get_double(Window, "magnification"); }).value_or(1);
    state.magnification = std::isfinite(times) && times >= 1 ? times : 1;
    auto const recent = valueOf([&] { return keys.get_string_list(Files, "recent"); });
    if (recent)
        state.recentFiles.assign(recent->begin(), recent->end());
    return state;
}

} // namespace

std::filesystem::path windowStateFile() {
    return std::filesystem::path{g_get_user_state_dir()} / "zelvix" / "workbench.ini";
}

ReadState readWindowState(std::filesystem::path const& file) {
    std::error_code error;
    if (!std::filesystem::exists(file, error))
        return {};
    auto const keys = Glib::KeyFile::create();
    try {
        keys->load_from_file(file.string());
        return {stateIn(*keys), {}};
    } catch (Glib::Error const& problem) {
        return {{}, "the window begins anew: " + file.string() + ": " + problem.what()};
    }
}

std::string writeWindowState(std::filesystem::path const& file, WindowState const& state) {
    auto const keys = Glib::KeyFile::create();
    if (state.size) {
        keys->set_integer(Window, "width", state.size->width);
        keys->set_integer(Window, "height", state.size->height);
    }
    if (state.panelWidth)
        keys->set_integer(Window, "panel", *state.panelWidth);
    keys->set_boolean(Window, "maximized", state.isMaximized);
    keys->set_double(Window, "magnification", state.magnification);
    keys->set_string_list(Files, "recent", {state.recentFiles.begin(), state.recentFiles.end()});
    try {
        std::filesystem::create_directories(file.parent_path());
        keys->save_to_file(file.string());
        return {};
    } catch (Glib::Error const& problem) {
        return std::string{"the window's state is not kept: "} + problem.what();
    } catch (std::filesystem::filesystem_error const& problem) {
        return std::string{"the window's state is not kept: "} + problem.what();
    }
}

} // namespace workbench
