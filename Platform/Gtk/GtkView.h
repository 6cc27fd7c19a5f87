#pragma once

#include "Platform/Gtk/GRef.h"
#include "Ports/View.h"

#include <gtk/gtk.h>

#include <memory>
#include <vector>

namespace fcp {

// A view over one GTK widget. It keeps its frame itself, in points from the bottom-left corner, because GTK
// allocates whole pixels from the top-left one: sizes travel through the views, from the outermost inwards
// and to the hidden ones as well, so that resizing back ends exactly where it began. Main thread only.
class GtkView : public View {
public:
    // Shares the ownership of `widget`, taking over a floating reference. A widget serves one view, which is
    // a subview of one view at most.
    GtkView(GtkWidget* widget, Rect const& frame, Autoresizing autoresizing = Autoresizing::None);

    // Takes the subviews' widgets out of this view's widget.
    ~GtkView() override;

    GtkView(GtkView const&) = delete;
    GtkView& operator=(GtkView const&) = delete;

    [[nodiscard]] Rect bounds() const override;

    // `subview` is a GtkView, like every view of this back end.
    void addSubview(std::shared_ptr<View> subview) override;

    void show() override;
    void hide() override;
    void setText(std::string const& text) override;
    [[nodiscard]] bool isInWindow() const override;
    void makeFirstResponder(View* responder) override;

    [[nodiscard]] GtkWidget* widget() const { return shown.get(); }

    // In the coordinates of the superview.
    [[nodiscard]] Rect const& frame() const { return area; }

    void setAutoresizing(Autoresizing autoresizing) { mask = autoresizing; }

    // Takes a new size, which the subviews follow by their masks, and theirs in turn.
    void resize(double width, double height);

    // Takes all of the widget that holds this view's widget. For the outermost view, which has no superview.
    void fill(int width, int height);

    // Gives the widget of every visible subview its place. For the layout of this view's widget.
    void allocateSubviews() const;

private:
    void followSuperview(double widthChange, double heightChange);
    void allocate(double superviewHeight) const;

    GRef<GtkWidget> const shown;
    Rect area;
    Autoresizing mask;
    std::vector<std::shared_ptr<GtkView>> subviews;
};

} // namespace fcp
