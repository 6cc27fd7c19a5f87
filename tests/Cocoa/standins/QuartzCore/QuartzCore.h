#pragma once

#import <AppKit/AppKit.h>

// A layer as the public reference describes it: what the back end uses, and no more.
@interface CALayer : NSObject {
    NSColor* color;
}
@property(nonatomic) CGColorRef backgroundColor;
@end
