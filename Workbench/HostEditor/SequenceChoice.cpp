#include "Workbench/HostEditor/SequenceChoice.h"

#include "Workbench/HostEditor/Accessible.h"

#include <gtkmm/label.h>
#include <gtkmm/listitem.h>
#include <gtkmm/signallistitemfactory.h>
#include <gtkmm/stringobject.h>

#include <algorithm>

namespace workbench {

namespace {

Glib::RefPtr<Gtk::SignalListItemFactory> shortenedNames() {
    auto const factory = Gtk::SignalListItemFactory::create();
    factory->signal_setup().connect([](Glib::RefPtr<Gtk::ListItem> const& item) {
        constexpr int characters = 32;
        auto* const label = Gtk::make_managed<Gtk::Label>();
        label->set_ellipsize(Pango::EllipsizeMode::MIDDLE);
        label->set_max_width_chars(characters);
        label->set_width_chars(characters / 2);
        label->set_xalign(0);
        item->set_child(*label);
    });
    factory->signal_bind().connect([](Glib::RefPtr<Gtk::ListItem> const& item) {
        auto* const label = dynamic_cast<Gtk::Label*>(item->get_child());
        auto const text = std::dynamic_pointer_cast<Gtk::StringObject>(item->get_item());
        if (label && text)
            label->set_text(text->get_string());
    });
    return factory;
}

} // namespace

SequenceChoice::SequenceChoice()
    : names(Gtk::StringList::create({})) {
    add_css_class("workbench-sequences");
    setAccessibleName(*this, "Sequence");
    set_tooltip_text("The active sequence");
    set_factory(shortenedNames());
    set_model(names);
    property_selected().signal_changed().connect([this] {
        if (!isShowing && get_selected() != GTK_INVALID_LIST_POSITION)
            chosen.emit(get_selected());
    });
}

void SequenceChoice::offer(std::vector<SequenceFacts> const& sequences) {
    isShowing = true;
    names->splice(0, names->get_n_items(), {});
    for (auto const& sequence : sequences)
        names->append(sequence.name);
    set_visible(!sequences.empty());
    isShowing = false;
}

void SequenceChoice::showActive(std::optional<std::size_t> index) {
    isShowing = true;
    set_selected(index ? static_cast<guint>(*index) : GTK_INVALID_LIST_POSITION);
    isShowing = false;
}

} // namespace workbench
