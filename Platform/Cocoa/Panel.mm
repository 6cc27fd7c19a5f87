#include "Platform/Cocoa/Panel.h"

#include "FcpExtension/ViewController.h"
#include "Platform/Cocoa/PanelAdapters.h"

namespace fcp {

Panel::Panel(NSViewController* owner, PanelAdapters& adapters)
    : userInterface(owner)
    , controller(ViewController::create(adapters.platform(userInterface))) {}

Panel::~Panel() = default;

} // namespace fcp
