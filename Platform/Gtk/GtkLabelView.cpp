#include "Platform/Gtk/GtkLabelView.h"

#include "Platform/Gtk/ClipLayout.h"
#include "Platform/Gtk/Css.h"
#include "Platform/Gtk/Stylesheet.h"

namespace fcp {

namespace {

GtkWidget* makeLabel(LabelContent const& content, Stylesheet& styles) {
    auto* const widget = gtk_label_new(content.text.c_str());
    auto* const label = GTK_LABEL(widget);
    gtk_label_set_xalign(label, 0);
    gtk_label_set_yalign(label, 0);
    gtk_label_set_ellipsize(label, PANGO_ELLIPSIZE_END);
    if (content.lineBreak == LineBreak::WordWrapping) {
        gtk_label_set_wrap(label, TRUE);
        gtk_label_set_wrap_mode(label, PANGO_WRAP_WORD);
        gtk_label_set_lines(label, content.maximumNumberOfLines);
    }
    Stylesheet::addKind(widget, "label");
    styles.addLook(widget, cssFont(content.font) + cssColor(content.color));
    return widget;
}

GtkWidget* makeClip(GtkWidget* content) {
    auto* const clip = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_widget_set_overflow(clip, GTK_OVERFLOW_HIDDEN);
    Layout::install(clip, std::make_unique<ClipLayout>());
    gtk_widget_set_parent(content, clip);
    return clip;
}

} // namespace

GtkLabelView::GtkLabelView(LabelContent const& content, Rect const& frame, Autoresizing autoresizing,
                           Stylesheet& styles)
    : GtkView(makeClip(makeLabel(content, styles)), frame, autoresizing) {}

void GtkLabelView::setText(std::string const& text) {
    gtk_label_set_text(GTK_LABEL(label()), text.c_str());
}

GtkWidget* GtkLabelView::label() const {
    return gtk_widget_get_first_child(widget());
}

} // namespace fcp
