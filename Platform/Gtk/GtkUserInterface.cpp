#include "Platform/Gtk/GtkUserInterface.h"

#include "Platform/Gtk/Css.h"
#include "Platform/Gtk/GtkLabelView.h"
#include "Platform/Gtk/PanelLayout.h"
#include "Platform/Gtk/Stylesheet.h"

#include <utility>

namespace fcp {

namespace {

using Action = std::function<void()>;

// A widget takes its role only while it is made.
GtkWidget* makeWidget(GType type, GtkAccessibleRole role) {
    return GTK_WIDGET(g_object_new(type, "accessible-role", role, nullptr));
}

GtkWidget* makeBox(AccessibleRole role) {
    return makeWidget(GTK_TYPE_BOX,
                      role == AccessibleRole::Alert ? GTK_ACCESSIBLE_ROLE_ALERT : GTK_ACCESSIBLE_ROLE_GROUP);
}

GtkWidget* makeSpinner() {
    auto* const spinner = makeWidget(GTK_TYPE_SPINNER, GTK_ACCESSIBLE_ROLE_PROGRESS_BAR);
    Stylesheet::addKind(spinner, "spinner");
    gtk_spinner_start(GTK_SPINNER(spinner));
    return spinner;
}

void runAction(GtkButton*, gpointer action) noexcept {
    (*static_cast<Action const*>(action))();
}

void deleteAction(gpointer action, GClosure*) {
    delete static_cast<Action const*>(action);
}

GtkWidget* makeButton(ButtonContent const& content, Stylesheet& styles) {
    auto* const button = gtk_button_new_with_label(content.title.c_str());
    Stylesheet::addKind(button, "button");
    styles.addLook(button, cssFont(content.font) + cssBackground(content.cellBackground));
    // The signal owns the action, and keeps it while it runs: it may take the button away.
    g_signal_connect_data(button, "clicked", G_CALLBACK(runAction), new Action(content.action), deleteAction,
                          GConnectFlags{});
    return button;
}

// Makes the widget of each kind of content.
class ContentMaker {
public:
    ContentMaker(ViewDescription const& viewDescription, Stylesheet& sharedStyles)
        : description(viewDescription)
        , styles(sharedStyles) {}

    std::shared_ptr<GtkView> operator()(std::monostate) const {
        return view(makeBox(description.accessibleRole));
    }

    std::shared_ptr<GtkView> operator()(LabelContent const& label) const {
        return std::make_shared<GtkLabelView>(label, description.frame, description.autoresizing, styles);
    }

    std::shared_ptr<GtkView> operator()(SpinnerContent const&) const { return view(makeSpinner()); }

    std::shared_ptr<GtkView> operator()(ButtonContent const& button) const {
        return view(makeButton(button, styles));
    }

private:
    [[nodiscard]] std::shared_ptr<GtkView> view(GtkWidget* widget) const {
        return std::make_shared<GtkView>(widget, description.frame, description.autoresizing);
    }

    ViewDescription const& description;
    Stylesheet& styles;
};

} // namespace

GtkUserInterface::GtkUserInterface(GtkWidget* panelRoot, Stylesheet& sharedStyles)
    : root(panelRoot)
    , styles(sharedStyles) {}

GtkUserInterface::~GtkUserInterface() {
    if (!installed)
        return;
    gtk_widget_unparent(installed->widget());
    gtk_widget_set_layout_manager(root, nullptr); // it refers to the view
}

std::shared_ptr<View> GtkUserInterface::makeView(ViewDescription const& description) {
    auto view = std::visit(ContentMaker(description, styles), description.content);
    auto* const widget = view->widget();
    gtk_widget_set_overflow(widget, GTK_OVERFLOW_HIDDEN);
    gtk_widget_set_visible(widget, !description.hidden);
    if (description.layerBackground)
        styles.addLook(widget, cssBackground(*description.layerBackground));
    if (!description.accessibleName.empty())
        gtk_accessible_update_property(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                       description.accessibleName.c_str(), -1);
    return view;
}

void GtkUserInterface::installView(std::shared_ptr<View> view) {
    installed = std::static_pointer_cast<GtkView>(std::move(view));
    Layout::install(root, std::make_unique<PanelLayout>(*installed));
    gtk_widget_set_parent(installed->widget(), root);
}

} // namespace fcp
