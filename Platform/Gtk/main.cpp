#include "FcpExtension/ProExtensionHost.h"
#include "Platform/Gtk/GraphicsProcessor.h"
#include "Platform/Gtk/Panel.h"
#include "Platform/Gtk/PanelAdapters.h"

GtkWidget* fcpExtensionMakePanel() {
    if (!gtk_is_initialized())
        return nullptr;
    fcp::preferPlainDrawingWithoutGraphicsProcessor();
    return fcp::Panel::make(fcp::PanelAdapters::ofProcess());
}
