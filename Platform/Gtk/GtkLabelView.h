#pragma once

#include "Platform/Gtk/GtkView.h"

namespace fcp {

class Stylesheet;

// A read-only text in a frame that never grows with it: what does not fit is not shown.
class GtkLabelView final : public GtkView {
public:
    GtkLabelView(LabelContent const& content, Rect const& frame, Autoresizing autoresizing,
                 Stylesheet& styles);

    void setText(std::string const& text) override;

private:
    [[nodiscard]] GtkWidget* label() const;
};

} // namespace fcp
