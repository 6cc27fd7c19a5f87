#import <QuartzCore/QuartzCore.h>
#include <objc/runtime.h>

#include "Platform/Cocoa/RetainPtr.h"

#include <map>

// Layers, accessibility and the rest that the library's views lack. A layer's color is drawn by its view.

using fcp::RetainPtr;

namespace {

struct Extras {
    RetainPtr<CALayer*> layer;
    bool isElement = false;
    RetainPtr<NSString*> label;
    RetainPtr<NSString*> role;
    NSInteger lines = 1;
};

// By view, until that is deallocated.
std::map<id, Extras>& extras() {
    static auto* const all = new std::map<id, Extras>;
    return *all;
}

Extras const& extrasOf(id view) {
    static Extras const none;
    auto const found = extras().find(view);
    return found == extras().end() ? none : found->second;
}

using AnyFunction = void (*)();

template <typename Function>
IMP replace(Class cls, SEL selector, Function* function) {
    auto* const method = class_getInstanceMethod(cls, selector);
    return method_setImplementation(method, reinterpret_cast<IMP>(reinterpret_cast<AnyFunction>(function)));
}

IMP originalDealloc = nullptr;

void deallocView(id self, SEL selector) {
    extras().erase(self);
    auto const original = reinterpret_cast<AnyFunction>(originalDealloc);
    reinterpret_cast<void (*)(id, SEL)>(original)(self, selector);
}

void drawLayer(id self, SEL, NSRect) {
    auto* const color = static_cast<NSColor*>([extrasOf(self).layer.get() backgroundColor]);
    if (!color)
        return;
    [color set];
    NSRectFillUsingOperation([self bounds], NSCompositeSourceOver);
}

// The system tells a controller that its view was made.
id loadedView(id self, SEL) {
    auto* const ivar = class_getInstanceVariable([NSViewController class], "view");
    if (!object_getIvar(self, ivar)) {
        [self loadView];
        if (object_getIvar(self, ivar))
            [self viewDidLoad];
    }
    return object_getIvar(self, ivar);
}

} // namespace

@interface StandinAppKit : NSObject
@end

@implementation StandinAppKit

// A category would not always win over the library's own methods.
+ (void)load {
    @autoreleasepool {
        originalDealloc = replace([NSView class], @selector(dealloc), deallocView);
        replace([NSView class], @selector(drawRect:), drawLayer);
        replace([NSViewController class], @selector(view), loadedView);
    }
}

@end

@implementation NSFont (Standin)

// The library knows two weights.
+ (NSFont*)systemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight {
    return weight >= NSFontWeightSemibold ? [self boldSystemFontOfSize:size] : [self systemFontOfSize:size];
}

@end

// Declared by the library without being there.
@implementation NSColor (Standin)

- (CGColorRef)CGColor {
    return reinterpret_cast<CGColorRef>(self);
}

@end

@implementation CALayer

- (CGColorRef)backgroundColor {
    return reinterpret_cast<CGColorRef>(color);
}

- (void)setBackgroundColor:(CGColorRef)newColor {
    auto* const kept = [reinterpret_cast<NSColor*>(newColor) retain];
    [color release];
    color = kept;
}

- (void)dealloc {
    [color release];
    [super dealloc];
}

@end

@implementation NSView (Standin)

- (BOOL)wantsLayer {
    return extrasOf(self).layer ? YES : NO;
}

- (void)setWantsLayer:(BOOL)wanted {
    extras()[self].layer =
        RetainPtr<CALayer*>::adopt(wanted ? [[CALayer alloc] init] : static_cast<CALayer*>(nil));
}

- (CALayer*)layer {
    return extrasOf(self).layer.get();
}

- (BOOL)isAccessibilityElement {
    return extrasOf(self).isElement ? YES : NO;
}

- (void)setAccessibilityElement:(BOOL)isElement {
    extras()[self].isElement = isElement;
}

- (NSString*)accessibilityLabel {
    return extrasOf(self).label.get();
}

- (void)setAccessibilityLabel:(NSString*)label {
    extras()[self].label = RetainPtr<NSString*>::adopt([label copy]);
}

- (NSString*)accessibilityRole {
    return extrasOf(self).role.get();
}

- (void)setAccessibilityRole:(NSString*)role {
    extras()[self].role = RetainPtr<NSString*>::adopt([role copy]);
}

@end

@implementation NSTextField (Standin)

- (NSInteger)maximumNumberOfLines {
    return extrasOf(self).lines;
}

- (void)setMaximumNumberOfLines:(NSInteger)lines {
    extras()[self].lines = lines;
}

@end

@implementation NSTextFieldCell (Standin)

// On the system a change of the border takes the bezel away too.
- (void)setBordered:(BOOL)bordered {
    _cell.is_bordered = bordered ? 1 : 0;
    _cell.is_bezeled = 0;
}

@end

@implementation NSViewController (Standin)

- (void)viewDidLoad {
}

@end
