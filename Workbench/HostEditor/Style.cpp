#include "Workbench/HostEditor/Style.h"

#include <gdkmm/display.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/settings.h>
#include <gtkmm/stylecontext.h>

namespace workbench {

namespace {

constexpr auto Rules = R"css(
window.workbench { background: #171714; }
window.workbench.solid-csd { padding: 0; margin: 0; border: none; outline: none; box-shadow: none; border-radius: 0; }
window.workbench > headerbar {
    background: #1f1f1c; color: #d9d6cb; border: none; box-shadow: none; min-height: 40px;
    border-bottom: 1px solid #2b2b27;
}
window.workbench > headerbar:backdrop { background: #1f1f1c; color: #a5a297; }
window.workbench > headerbar windowcontrols button { color: #a5a297; }
window.workbench paned > separator {
    background: #2b2b27; min-width: 1px; margin: 0; padding: 0; border: none; box-shadow: none;
}

.workbench-stage { background: #171714; color: #d9d6cb; }
.workbench-picture { background: #0d0d0c; color: #d9d6cb; }
.workbench-light { background: #1f1f1c; border: 1px solid #2b2b27; border-radius: 7px; padding: 3px 0; }
.workbench-panel { background: #171714; color: #d9d6cb; }
.workbench-panel-message { margin: 24px; }
.workbench-heading { font-weight: 600; font-size: 15px; margin-bottom: 8px; }
.workbench-quiet { color: #9a988d; font-size: 13px; font-feature-settings: "tnum"; }

.workbench-transport { padding: 8px 12px; border-top: 1px solid #2b2b27; background: #1b1b18; }
.workbench-transport box { border-spacing: 12px; }
.workbench-transport .workbench-buttons { border-spacing: 0; }
.workbench-timecode { font-family: monospace; font-size: 17px; color: #f0eee4; }
.workbench-transport button.workbench-entry-button { min-width: 0; min-height: 28px; padding: 0 6px; margin-left: -6px; }
.workbench-transport entry {
    color: #f0eee4; background: #0d0d0c; border: none; outline: 1px solid #7d94b3; box-shadow: none; border-radius: 6px;
    min-height: 28px; padding: 0 6px; margin-left: -6px;
}
.workbench-transport entry selection { background: #3d4650; color: #f0eee4; }
.workbench-transport popover > contents { background: #3d2c25; color: #e6c9bb; border: 1px solid #5a4338; border-radius: 6px; padding: 6px 10px; font-size: 13px; }
.workbench-transport popover > arrow { background: #3d2c25; border: 1px solid #5a4338; }
.workbench-transport button {
    color: #d9d6cb; background: none; border: none; box-shadow: none; min-width: 30px; min-height: 30px; padding: 0;
    border-radius: 6px;
}
.workbench-transport button:hover { background: #2b2b27; }
.workbench-transport button:active, .workbench-transport button:checked { background: #34342f; color: #f0eee4; }
.workbench-transport button:disabled, .workbench-transport:disabled label { color: #55534c; }

.workbench-timeline { background: #131311; color: #d9d6cb; padding: 0; border-top: 1px solid #2b2b27; }
.workbench-stretch { background: none; border: none; padding: 0; }
.workbench-stretch trough { background: none; }
.workbench-stretch slider { background: #55534c; border: none; border-radius: 3px; min-height: 4px; min-width: 24px; margin: 2px 0; }
.workbench-stretch slider:hover { background: #85837a; }
.workbench-playhead { color: #f0eee4; }
.workbench-stage *:focus-visible { outline: 1px solid #7d94b3; outline-offset: -1px; }
.workbench-pin { padding: 0; margin: 0; border: none; min-width: 0; min-height: 0; background: none; border-radius: 6px; }
.workbench-pin:hover { background: #34342f; }

.workbench-notices { background: #2a201c; color: #e6c9bb; padding: 8px 12px; border-bottom: 1px solid #3d2c25; }
.workbench-notices label { font-size: 13px; }
.workbench-notices button {
    color: #e6c9bb; background: #3d2c25; border: none; box-shadow: none; text-shadow: none; margin-left: 12px;
    padding: 2px 12px; min-height: 24px; font-size: 13px; border-radius: 6px;
}
.workbench-notices button:hover { background: #4d382f; }

.workbench-notices scrollbar { background: none; border: none; }
.workbench-notices scrollbar slider { background: #5a4338; }

window.workbench:drop(active) .workbench-stage { box-shadow: inset 0 0 0 2px #7d94b3; }
.workbench-open button {
    color: #d9d6cb; background: #2b2b27; border: none; box-shadow: none; text-shadow: none; min-height: 26px;
    padding: 0 12px; border-radius: 6px; font-weight: normal;
}
.workbench-open > button { border-radius: 6px 0 0 6px; margin-right: 1px; }
.workbench-open menubutton > button { border-radius: 0 6px 6px 0; padding: 0 6px; min-width: 16px; }
.workbench-open button:hover { background: #34342f; }
.workbench-open button:disabled { color: #55534c; }
.workbench-open popover > contents { background: #262622; color: #d9d6cb; border: 1px solid #3a3a35; border-radius: 4px; box-shadow: none; padding: 4px; }
.workbench-open popover > arrow { background: #262622; border: 1px solid #3a3a35; }
.workbench-open popover button { background: none; padding: 0 8px; min-height: 30px; border-radius: 4px; }
.workbench-open popover button:hover { background: #34342f; }

.workbench-sequences > button {
    color: #d9d6cb; background: #2b2b27; border: none; box-shadow: none; text-shadow: none; min-height: 26px;
    padding: 0 10px; border-radius: 6px;
}
.workbench-sequences > button:hover { background: #34342f; }
.workbench-sequences popover > contents { background: #262622; color: #d9d6cb; border: 1px solid #3a3a35; border-radius: 4px; box-shadow: none; }
.workbench-sequences popover listview { background: none; color: #d9d6cb; }
.workbench-sequences popover listview > row:hover { background: #34342f; }
.workbench-sequences popover listview > row:selected { background: #3d4650; color: #f0eee4; }
)css";

}

void installStyle() {
    // For what the rules do not name: menus, tooltips, the theme's own edges.
    Gtk::Settings::get_default()->property_gtk_application_prefer_dark_theme() = true;
    auto const provider = Gtk::CssProvider::create();
    provider->load_from_data(Rules);
    Gtk::StyleContext::add_provider_for_display(Gdk::Display::get_default(), provider,
                                                GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

} // namespace workbench
