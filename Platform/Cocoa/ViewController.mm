#include "Platform/Cocoa/ViewController.h"

#include "FcpExtension/ViewController.h"
#include "Platform/Cocoa/Panel.h"
#include "Platform/Cocoa/PanelAdapters.h"

@implementation ViewController

- (void)makePanel {
    panel = std::make_unique<fcp::Panel>(self, fcp::PanelAdapters::ofProcess());
}

- (instancetype)initWithNibName:(NSString*)nibName bundle:(NSBundle*)bundle {
    if ((self = [super initWithNibName:nibName bundle:bundle]))
        [self makePanel];
    return self;
}

- (instancetype)initWithCoder:(NSCoder*)coder {
    if ((self = [super initWithCoder:coder]))
        [self makePanel];
    return self;
}

// Without the superclass's own, which would look for a nib.
- (void)loadView {
    panel->viewController().loadView();
}

- (void)viewDidLoad {
    [super viewDidLoad];
    panel->viewController().viewDidLoad();
}

- (void)retryConnection {
    panel->viewController().retryConnection();
}

@end
