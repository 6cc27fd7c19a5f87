#pragma once

#include "Platform/Gtk/DlHostRuntime.h"
#include "Platform/Gtk/GLibLogSystem.h"
#include "Platform/Gtk/GLibMainLoop.h"
#include "Platform/Gtk/GLibUrlParser.h"
#include "Platform/Gtk/GLibUuidGenerator.h"
#include "Platform/Gtk/GioWorkspace.h"
#include "Platform/Gtk/GtkWebEngine.h"
#include "Platform/Gtk/PosixFileManager.h"
#include "Platform/Gtk/RationalMediaTime.h"
#include "Platform/Gtk/SdBusNotificationCenter.h"
#include "Platform/Gtk/Stylesheet.h"
#include "Ports/Platform.h"

namespace fcp {

// What all panels of a process share. A panel leaves tasks in the loop and observers in the notification
// center, which find these adapters when the panel itself is long gone. Main thread only; GTK is initialised.
class PanelAdapters {
public:
    PanelAdapters(PanelAdapters const&) = delete;
    PanelAdapters& operator=(PanelAdapters const&) = delete;

    // Made on the first call and never destroyed, so that the end of the process finds nothing half gone.
    [[nodiscard]] static PanelAdapters& ofProcess();

    // The ports of a panel with native views of its own.
    [[nodiscard]] Platform platform(UserInterface& userInterface);

    [[nodiscard]] Stylesheet& stylesheet() { return styles; }

private:
    PanelAdapters() = default;
    ~PanelAdapters() = default;

    PosixFileManager fileManager;
    DlHostRuntime hostRuntime;
    GLibLogSystem logs;
    GLibMainLoop mainLoop;
    RationalMediaTime mediaTime;
    SdBusNotificationCenter notificationCenter{mainLoop};
    GLibUrlParser urlParser;
    GLibUuidGenerator uuids;
    GtkWebEngine webEngine{mainLoop, logs};
    GioWorkspace workspace;
    Stylesheet styles{gdk_display_get_default()};
};

} // namespace fcp
