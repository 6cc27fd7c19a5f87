#include "Platform/Gtk/GtkView.h"

#include "Platform/Gtk/Autoresizing.h"
#include "Platform/Gtk/FrameLayout.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace fcp {

namespace {

int pixels(double points) {
    return static_cast<int>(std::lround(points));
}

int length(double points) {
    return std::max(0, pixels(points)); // a margin may have eaten more than the view had
}

} // namespace

GtkView::GtkView(GtkWidget* widget, Rect const& frame, Autoresizing autoresizing)
    : shown(GRef<GtkWidget>::retain(widget))
    , area(frame)
    , mask(autoresizing) {}

GtkView::~GtkView() {
    for (auto const& subview : subviews)
        gtk_widget_unparent(subview->widget());
    if (!subviews.empty())
        gtk_widget_set_layout_manager(widget(), nullptr); // it refers to this view
}

Rect GtkView::bounds() const {
    return {0, 0, area.width, area.height};
}

void GtkView::addSubview(std::shared_ptr<View> subview) {
    if (subviews.empty())
        Layout::install(widget(), std::make_unique<FrameLayout>(*this));
    auto view = std::static_pointer_cast<GtkView>(std::move(subview));
    gtk_widget_set_parent(view->widget(), widget()); // GTK draws later children above earlier ones
    subviews.push_back(std::move(view));
}

void GtkView::show() {
    gtk_widget_set_visible(widget(), TRUE);
}

void GtkView::hide() {
    gtk_widget_set_visible(widget(), FALSE);
}

void GtkView::setText(std::string const&) {}

bool GtkView::isInWindow() const {
    return gtk_widget_get_root(widget()) != nullptr;
}

void GtkView::makeFirstResponder(View* responder) {
    auto* const window = gtk_widget_get_root(widget());
    if (!window)
        return;
    if (responder)
        gtk_widget_grab_focus(static_cast<GtkView*>(responder)->widget());
    else
        gtk_root_set_focus(window, nullptr);
}

void GtkView::resize(double width, double height) {
    auto const widthChange = width - area.width;
    auto const heightChange = height - area.height;
    area.width = width;
    area.height = height;
    for (auto const& subview : subviews)
        subview->followSuperview(widthChange, heightChange);
}

void GtkView::followSuperview(double widthChange, double heightChange) {
    auto const followed = autoresized(area, mask, widthChange, heightChange);
    area.x = followed.x;
    area.y = followed.y;
    resize(followed.width, followed.height);
}

void GtkView::fill(int width, int height) {
    area.x = area.y = 0;
    resize(width, height);
    allocate(height);
}

void GtkView::allocateSubviews() const {
    for (auto const& subview : subviews) {
        if (gtk_widget_should_layout(subview->widget()))
            subview->allocate(area.height);
    }
}

void GtkView::allocate(double superviewHeight) const {
    GtkAllocation const place{pixels(area.x), pixels(superviewHeight - area.y - area.height),
                              length(area.width), length(area.height)};
    // GTK wants to be asked for a widget's needs before it is placed, even by a layout that ignores them.
    gtk_widget_measure(widget(), GTK_ORIENTATION_HORIZONTAL, -1, nullptr, nullptr, nullptr, nullptr);
    gtk_widget_size_allocate(widget(), &place, -1);
}

} // namespace fcp
