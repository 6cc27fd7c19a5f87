#pragma once

#include "Platform/Cocoa/CocoaUserInterface.h"

#include <memory>

namespace fcp {

class PanelAdapters;
class ViewController;

// One panel: its native views and what decides about them. It belongs to the system's view controller, which
// outlives it. Main thread only.
class Panel {
public:
    Panel(NSViewController* owner, PanelAdapters& adapters);
    ~Panel();

    Panel(Panel const&) = delete;
    Panel& operator=(Panel const&) = delete;

    [[nodiscard]] ViewController& viewController() const { return *controller; }

private:
    CocoaUserInterface userInterface;
    std::shared_ptr<ViewController> const controller;
};

} // namespace fcp
