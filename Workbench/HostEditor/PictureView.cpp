#include "Workbench/HostEditor/PictureView.h"

#include "Workbench/HostEditor/Accessible.h"

#include <gdkmm/memorytexture.h>
#include <gtkmm/snapshot.h>
#include <pangomm/layout.h>

#include <utility>

namespace workbench {

namespace {

constexpr int BytesPerPixel = 4;
constexpr int LeastWidth = 160;
constexpr int LeastHeight = 90;

graphene_rect_t centred(PixelSize size, PixelSize inside) {
    // Whole pixels: a picture of just this size is then copied, not filtered.
    auto const left = (inside.width - size.width) / 2;
    auto const top = (inside.height - size.height) / 2;
    graphene_rect_t rectangle;
    graphene_rect_init(&rectangle, static_cast<float>(left), static_cast<float>(top),
                       static_cast<float>(size.width), static_cast<float>(size.height));
    return rectangle;
}

} // namespace

PictureView::PictureView() {
    set_expand(true);
    set_overflow(Gtk::Overflow::HIDDEN);
    add_css_class("workbench-picture");
    setAccessibleRole(*this, GTK_ACCESSIBLE_ROLE_IMG);
    setAccessibleName(*this, "Picture");
}

void PictureView::show(Picture const& picture) {
    if (!picture)
        return;
    heading.clear();
    pictureAspect = picture.displayAspect;
    // The texture only reads them.
    auto const pixels = std::const_pointer_cast<Glib::Bytes>(picture.pixels);
    texture = Gdk::MemoryTexture::create(picture.size.width, picture.size.height,
                                         Gdk::MemoryTexture::Format::B8G8R8A8_PREMULTIPLIED, pixels,
                                         static_cast<gsize>(picture.size.width) * BytesPerPixel);
    isNew = true;
    queue_draw();
}

void PictureView::say(std::string const& newHeading, std::string const& newDetail) {
    texture.reset();
    heading = newHeading;
    detail = newDetail;
    queue_draw();
}

void PictureView::setShape(double displayAspect) {
    shape = displayAspect;
    queue_draw();
}

void PictureView::snapshot_vfunc(Glib::RefPtr<Gtk::Snapshot> const& snapshot) {
    if (!heading.empty())
        drawWords(snapshot);
    if (!texture)
        return;
    PixelSize const all{get_width(), get_height()};
    // A clip of another shape than its sequence lies inside the sequence's frame.
    auto const frame = fitted(shape, all);
    auto const place = centred(fitted(pictureAspect, frame), all);
    if (std::exchange(isNew, false))
        ++paintedSoFar;
    gtk_snapshot_append_texture(snapshot->gobj(), texture->gobj(), &place);
}

void PictureView::drawWords(Glib::RefPtr<Gtk::Snapshot> const& snapshot) {
    auto const layout = create_pango_layout({});
    constexpr int margin = 24;
    layout->set_width((get_width() - 2 * margin) * Pango::SCALE);
    layout->set_alignment(Pango::Alignment::CENTER);
    layout->set_wrap(Pango::WrapMode::WORD_CHAR);
    layout->set_markup("<span size='13pt' weight='600'>" + Glib::Markup::escape_text(heading) +
                       "</span>\n<span size='9.5pt' alpha='65%'>" + Glib::Markup::escape_text(detail) +
                       "</span>");
    int width = 0;
    int height = 0;
    layout->get_pixel_size(width, height);
    auto const top = (get_height() - height) / 2;
    graphene_point_t const corner{margin, static_cast<float>(top)};
    auto const colour = get_style_context()->get_color();
    snapshot->save();
    gtk_snapshot_translate(snapshot->gobj(), &corner);
    gtk_snapshot_append_layout(snapshot->gobj(), layout->gobj(), colour.gobj());
    snapshot->restore();
}

void PictureView::measure_vfunc(Gtk::Orientation orientation, int, int& minimum, int& natural,
                                int& minimumBaseline, int& naturalBaseline) const {
    minimum = natural = orientation == Gtk::Orientation::HORIZONTAL ? LeastWidth : LeastHeight;
    minimumBaseline = naturalBaseline = -1;
}

void PictureView::size_allocate_vfunc(int width, int height, int) {
    auto const scale = get_scale_factor();
    areaChanged.emit({width * scale, height * scale});
}

} // namespace workbench
