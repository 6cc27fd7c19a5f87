#include "Workbench/HostEditor/NoticeList.h"

#include "Workbench/HostEditor/Accessible.h"

#include <gtkmm/button.h>
#include <gtkmm/label.h>

namespace workbench {

NoticeList::NoticeList()
    : Gtk::Box(Gtk::Orientation::HORIZONTAL) {
    constexpr int highest = 112;
    add_css_class("workbench-notices");
    setAccessibleRole(*this, GTK_ACCESSIBLE_ROLE_ALERT);
    setAccessibleName(*this, "Messages");
    scroller.set_policy(Gtk::PolicyType::NEVER, Gtk::PolicyType::AUTOMATIC);
    scroller.set_overlay_scrolling(false); // whoever has more to read must see it
    scroller.set_propagate_natural_height(true);
    scroller.set_max_content_height(highest);
    scroller.set_hexpand(true);
    scroller.set_child(lines);
    append(scroller);
    auto* const dismiss = Gtk::make_managed<Gtk::Button>("Dismiss");
    dismiss->set_valign(Gtk::Align::START);
    dismiss->set_focus_on_click(false);
    setAccessibleName(*dismiss, "Dismiss messages");
    dismiss->signal_clicked().connect([this] { clear(); });
    append(*dismiss);
    set_visible(false);
}

void NoticeList::add(std::string const& line) {
    auto* const label = Gtk::make_managed<Gtk::Label>(line);
    label->set_xalign(0);
    label->set_wrap(true);
    label->set_wrap_mode(Pango::WrapMode::WORD_CHAR);
    label->set_selectable(true);
    label->set_focusable(false);
    lines.append(*label);
    set_visible(true);
}

void NoticeList::clear() {
    while (auto* const line = lines.get_first_child())
        lines.remove(*line);
    set_visible(false);
}

} // namespace workbench
