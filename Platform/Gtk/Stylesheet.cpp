#include "Platform/Gtk/Stylesheet.h"

namespace fcp {

namespace {

// The panel is dark under every theme, so that nothing here is taken from the theme. The focus ring lies
// inside the button, which touches the text above it. The theme's spinner is a vector picture, and the
// library that reads those costs more memory than all of the panel; so ours is drawn by a shadow, without a
// border, which would move it.
constexpr char const* fixedSheet = R"(
.fcp-label { margin: 0; padding: 0; min-width: 0; min-height: 0; }

.fcp-spinner {
    min-width: 0; min-height: 0; -gtk-icon-source: none; border-radius: 50%;
    box-shadow: inset 0 0 0 2px rgba(154, 150, 140, 0.3), inset 0 3px 0 0 rgb(154, 150, 140);
}
.fcp-spinner:checked { animation: fcp-turn 1s linear infinite; }
@keyframes fcp-turn { to { transform: rotate(1turn); } }

.fcp-button {
    margin: 0; padding: 0 8px; min-width: 0; min-height: 0;
    border: 1px solid rgb(74, 73, 69); border-radius: 6px;
    background-image: none; box-shadow: none; text-shadow: none; -gtk-icon-shadow: none;
    color: rgb(240, 237, 227); transition: none;
}
.fcp-button:hover { background-image: image(rgba(255, 255, 255, 0.07)); }
.fcp-button:active { background-image: image(rgba(255, 255, 255, 0.14)); }
.fcp-button:focus { outline: 2px solid rgb(74, 144, 217); outline-offset: -2px; }
)";

} // namespace

Stylesheet::Stylesheet(GdkDisplay* shownOn)
    : display(GRef<GdkDisplay>::retain(shownOn))
    , provider(GRef<GtkCssProvider>::adopt(gtk_css_provider_new())) {
    load();
    gtk_style_context_add_provider_for_display(display.get(), GTK_STYLE_PROVIDER(provider.get()),
                                               GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

Stylesheet::~Stylesheet() {
    gtk_style_context_remove_provider_for_display(display.get(), GTK_STYLE_PROVIDER(provider.get()));
}

void Stylesheet::addKind(GtkWidget* widget, char const* kind) {
    gtk_widget_add_css_class(widget, (std::string("fcp-") + kind).c_str());
}

void Stylesheet::addLook(GtkWidget* widget, std::string const& declarations) {
    auto const [entry, isNew] = classes.try_emplace(declarations);
    if (isNew) {
        entry->second = "fcp-look-" + std::to_string(classes.size());
        load();
    }
    gtk_widget_add_css_class(widget, entry->second.c_str());
}

void Stylesheet::load() const {
    std::string sheet = fixedSheet;
    for (auto const& [declarations, name] : classes)
        sheet.append(".").append(name).append(" {").append(declarations).append("}\n");
    gtk_css_provider_load_from_data(provider.get(), sheet.c_str(), static_cast<gssize>(sheet.size()));
}

} // namespace fcp
