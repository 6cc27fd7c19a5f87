#pragma once

#import <AppKit/AppKit.h>

#include <memory>

namespace fcp {
class Panel;
}

// The extension's principal class, which the host's extension runtime makes by this name for each panel that
// the user opens. It passes the system's calls on and decides nothing.
@interface ViewController : NSViewController {
    std::unique_ptr<fcp::Panel> panel;
}

- (instancetype)initWithNibName:(NSString*)nibName bundle:(NSBundle*)bundle;
- (instancetype)initWithCoder:(NSCoder*)coder;
- (void)loadView;
- (void)viewDidLoad;

// The retry button's message.
- (void)retryConnection;

@end
