#include "Contract/Picture.h"

#include "Contract/TurnUntil.h"

#include <cstdlib>

namespace fcp::test {

namespace {

// Runs the loop until the window has drawn `widget` anew.
void draw(GtkWidget* widget) {
    auto drawn = false;
    auto* const clock = gtk_widget_get_frame_clock(widget);
    auto const note = +[](GdkFrameClock*, gpointer flag) { *static_cast<bool*>(flag) = true; };
    auto const id = g_signal_connect(clock, "after-paint", G_CALLBACK(note), &drawn);
    gtk_widget_queue_draw(widget);
    EXPECT_TRUE(turnUntil([&] { return drawn; }));
    g_signal_handler_disconnect(clock, id);
}

} // namespace

bool isClose(Pixel const& a, Pixel const& b) {
    return std::abs(a[0] - b[0]) <= 1 && std::abs(a[1] - b[1]) <= 1 && std::abs(a[2] - b[2]) <= 1;
}

Picture::Picture(GtkWidget* widget)
    : width(gtk_widget_get_width(widget))
    , height(gtk_widget_get_height(widget))
    , bytes(static_cast<std::size_t>(width * height) * 4) {
    draw(widget);
    auto const paintable = GRef<GdkPaintable>::adopt(gtk_widget_paintable_new(widget));
    auto* const snapshot = gtk_snapshot_new();
    gdk_paintable_snapshot(paintable.get(), snapshot, width, height);
    auto* const node = gtk_snapshot_free_to_node(snapshot);
    graphene_rect_t const area{{0, 0}, {static_cast<float>(width), static_cast<float>(height)}};
    auto* const renderer = gtk_native_get_renderer(gtk_widget_get_native(widget));
    texture = GRef<GdkTexture>::adopt(gsk_renderer_render_texture(renderer, node, &area));
    gsk_render_node_unref(node);
    gdk_texture_download(texture.get(), bytes.data(), static_cast<std::size_t>(width) * 4);
}

Pixel Picture::at(int x, int y) const {
    auto const* const pixel = &bytes[static_cast<std::size_t>(y * width + x) * 4];
    return {pixel[2], pixel[1], pixel[0]};
}

int Picture::inked(Place const& place, Pixel const& background) const {
    return place.width * place.height - count(place, background);
}

bool Picture::shows(Place const& place, Pixel const& color) const {
    return count(place, color) > 0;
}

void Picture::save(std::string const& file) const {
    EXPECT_TRUE(gdk_texture_save_to_png(texture.get(), file.c_str())) << file;
}

int Picture::count(Place const& place, Pixel const& color) const {
    int found = 0;
    for (int y = place.y; y < place.y + place.height; ++y) {
        for (int x = place.x; x < place.x + place.width; ++x)
            found += isClose(at(x, y), color) ? 1 : 0;
    }
    return found;
}

} // namespace fcp::test
