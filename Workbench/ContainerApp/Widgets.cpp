#include "Workbench/ContainerApp/Widgets.h"

#include <gtk/gtk.h>
#include <gtkmm/signallistitemfactory.h>
#include <gtkmm/stringlist.h>
#include <gtkmm/stringobject.h>

namespace workbench {

namespace {

// The narrowest that a choice gets, in characters.
constexpr int fewestCharacters = 8;

Glib::RefPtr<Gtk::ListItemFactory> makeFactory() {
    auto const factory = Gtk::SignalListItemFactory::create();
    factory->signal_setup().connect([](Glib::RefPtr<Gtk::ListItem> const& item) {
        auto& label = leftAligned(*Gtk::make_managed<Gtk::Label>());
        label.set_width_chars(fewestCharacters);
        item->set_child(label);
    });
    factory->signal_bind().connect([](Glib::RefPtr<Gtk::ListItem> const& item) {
        auto const text = std::dynamic_pointer_cast<Gtk::StringObject>(item->get_item())->get_string();
        dynamic_cast<Gtk::Label&>(*item->get_child()).set_text(text);
    });
    return factory;
}

} // namespace

Gtk::Label& leftAligned(Gtk::Label& label) {
    label.set_xalign(0);
    label.set_ellipsize(Pango::EllipsizeMode::END);
    return label;
}

void setClass(Gtk::Widget& widget, char const* name, bool on) {
    if (on)
        widget.add_css_class(name);
    else
        widget.remove_css_class(name);
}

void setAccessibleName(Gtk::Widget& widget, char const* name) {
    gtk_accessible_update_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL, name, -1);
}

void setChoices(Gtk::DropDown& choice, std::vector<Glib::ustring> const& texts) {
    if (!choice.get_factory())
        choice.set_factory(makeFactory());
    choice.set_model(Gtk::StringList::create(texts));
}

} // namespace workbench
