#pragma once

#include "Platform/Gtk/DlHostRuntime.h"
#include "Platform/Gtk/GLibLogSystem.h"
#include "Platform/Gtk/GLibMainLoop.h"
#include "Platform/Gtk/GLibUuidGenerator.h"
#include "Platform/Gtk/GioWorkspace.h"
#include "Platform/Gtk/GtkUserInterface.h"
#include "Platform/Gtk/GtkWebEngine.h"
#include "Platform/Gtk/RationalMediaTime.h"
#include "Platform/Gtk/SdBusNotificationCenter.h"
#include "Platform/Gtk/Stylesheet.h"

#include <memory>
#include <string>

namespace fcp {

class ViewController;

}

namespace fcp::bench {

struct SideOptions;

// The whole panel over this platform's own adapters, except for two: it believes itself in development mode
// without a marker file, and the development address leads to the measured page. So it needs nothing that
// belongs to the whole machine.
class BenchPanel {
public:
    // Shows the panel in `root`, an empty box that outlives this, and starts loading.
    BenchPanel(GtkWidget* root, SideOptions const& options);
    ~BenchPanel();

    BenchPanel(BenchPanel const&) = delete;
    BenchPanel& operator=(BenchPanel const&) = delete;

    [[nodiscard]] MainLoop& mainLoop() { return loop; }

private:
    class DevelopmentMode;
    class MeasuredPage;
    class Engine;

    std::unique_ptr<DevelopmentMode> const files;
    std::unique_ptr<MeasuredPage> const addresses;
    GLibMainLoop loop;
    GLibLogSystem logs;
    DlHostRuntime hostRuntime;
    RationalMediaTime mediaTime;
    SdBusNotificationCenter notificationCenter{loop};
    GLibUuidGenerator uuids;
    std::unique_ptr<Engine> const engine;
    GioWorkspace workspace;
    Stylesheet styles;
    GtkUserInterface userInterface;
    std::shared_ptr<ViewController> const controller;
};

} // namespace fcp::bench
