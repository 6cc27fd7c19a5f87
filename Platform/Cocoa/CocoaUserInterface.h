#pragma once

#include "Ports/View.h"

#import <AppKit/AppKit.h>

namespace fcp {

// Makes one panel's native views and installs the outermost one in the panel's view controller.
class CocoaUserInterface final : public UserInterface {
public:
    // Borrowed: the controller owns the panel, and is what its buttons send their messages to.
    explicit CocoaUserInterface(NSViewController* panelsController)
        : controller(panelsController) {}

    [[nodiscard]] std::shared_ptr<View> makeView(ViewDescription const& description) override;
    void installView(std::shared_ptr<View> view) override;

private:
    NSViewController* const controller;
};

} // namespace fcp
