#include "Workbench/HostEditor/Accessible.h"

#include <gtk/gtk.h>

namespace workbench {

void setAccessibleName(Gtk::Widget& widget, std::string const& name) {
    gtk_accessible_update_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_LABEL, name.c_str(),
                                   -1);
}

void setAccessibleDescription(Gtk::Widget& widget, std::string const& text) {
    gtk_accessible_update_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_DESCRIPTION,
                                   text.c_str(), -1);
}

void setAccessibleValue(Gtk::Widget& widget, double value, double last, std::string const& words) {
    gtk_accessible_update_property(GTK_ACCESSIBLE(widget.gobj()), GTK_ACCESSIBLE_PROPERTY_VALUE_MIN, 0.0,
                                   GTK_ACCESSIBLE_PROPERTY_VALUE_MAX, last, GTK_ACCESSIBLE_PROPERTY_VALUE_NOW,
                                   value, GTK_ACCESSIBLE_PROPERTY_VALUE_TEXT, words.c_str(), -1);
}

void setAccessibleRole(Gtk::Widget& widget, GtkAccessibleRole role) {
    g_object_set(widget.gobj(), "accessible-role", role, nullptr);
}

} // namespace workbench
