#include "Workbench/HostEditor/PanelPane.h"

#include "Workbench/HostEditor/Accessible.h"

#include <gtkmm/label.h>

namespace workbench {

namespace {

Gtk::Label* wrapped(std::string const& text, char const* style) {
    auto* const label = Gtk::make_managed<Gtk::Label>(text);
    label->add_css_class(style);
    label->set_wrap(true);
    label->set_wrap_mode(Pango::WrapMode::WORD_CHAR);
    label->set_justify(Gtk::Justification::CENTER);
    label->set_selectable(true);
    return label;
}

} // namespace

PanelPane::PanelPane()
    : Gtk::Box(Gtk::Orientation::VERTICAL) {
    add_css_class("workbench-panel");
    set_size_request(LeastWidth, -1);
    set_overflow(Gtk::Overflow::HIDDEN);
    setAccessibleName(*this, "Review panel");
}

void PanelPane::hold(GtkWidget* panel) {
    gtk_widget_set_hexpand(panel, TRUE);
    gtk_widget_set_vexpand(panel, TRUE);
    gtk_box_append(gobj(), panel);
}

void PanelPane::say(std::string const& heading, std::string const& detail) {
    auto* const words = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL);
    words->add_css_class("workbench-panel-message");
    words->set_valign(Gtk::Align::CENTER);
    words->set_vexpand(true);
    words->append(*wrapped(heading, "workbench-heading"));
    words->append(*wrapped(detail, "workbench-quiet"));
    append(*words);
}

} // namespace workbench
