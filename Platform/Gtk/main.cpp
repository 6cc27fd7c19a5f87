#include "FcpExtension/ProExtensionHost.h"
#include "Platform/Gtk/GraphicsProcessor.h"
#include "Platform/Gtk/Panel.h"
#include "Platform/Gtk/PanelAdapters.h"

#include <gtkmm/init.h>

GtkWidget* fcpExtensionMakePanel() {
    if (!gtk_is_initialized())
        return nullptr;
    fcp::preferPlainDrawingWithoutGraphicsProcessor();
    Gtk::init_gtkmm_internals(); // the host may know the C library only
    return fcp::Panel::make(fcp::PanelAdapters::ofProcess());
}
