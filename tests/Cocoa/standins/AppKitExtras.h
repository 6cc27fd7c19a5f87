#pragma once

#import <AppKit/AppKit.h>

// What the library lacks of the members that the back end uses, as the public reference describes them.
// Included ahead of everything: sources know the system's own header alone.

@class CALayer;

using NSAutoresizingMaskOptions = NSUInteger;
using NSFontWeight = CGFloat;

constexpr auto NSProgressIndicatorStyleSpinning = NSProgressIndicatorSpinningStyle;
constexpr auto NSBezelStyleRounded = NSRoundedBezelStyle;

@interface NSFont (Standin)
+ (NSFont*)systemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight;
@end

@interface NSView (Standin)
@property(nonatomic) BOOL wantsLayer;
@property(nonatomic, readonly) CALayer* layer;
@property(nonatomic, getter=isAccessibilityElement) BOOL accessibilityElement;
@property(nonatomic, copy) NSString* accessibilityLabel;
@property(nonatomic, copy) NSString* accessibilityRole;
@end

@interface NSTextField (Standin)
@property(nonatomic) NSInteger maximumNumberOfLines;
@end

@interface NSViewController (Standin)
- (void)viewDidLoad;
@end
