#pragma once

#include "Ports/View.h"

#include <gtk/gtk.h>

#include <memory>

namespace fcp {

class GtkView;
class Stylesheet;

// Makes one panel's native views and shows them in the panel's root widget.
class GtkUserInterface final : public UserInterface {
public:
    // `panelRoot` is an empty box, which outlives this. It is borrowed: the panel lives as long as its root,
    // and must not keep it alive.
    GtkUserInterface(GtkWidget* panelRoot, Stylesheet& sharedStyles);

    // Empties the root.
    ~GtkUserInterface() override;

    GtkUserInterface(GtkUserInterface const&) = delete;
    GtkUserInterface& operator=(GtkUserInterface const&) = delete;

    [[nodiscard]] std::shared_ptr<View> makeView(ViewDescription const& description) override;

    // Once. The view fills the root whatever its mask, and its size is what the root would like to have.
    void installView(std::shared_ptr<View> view) override;

private:
    GtkWidget* const root;
    Stylesheet& styles;
    std::shared_ptr<GtkView> installed;
};

} // namespace fcp
