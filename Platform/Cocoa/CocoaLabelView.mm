#include "Platform/Cocoa/CocoaLabelView.h"

#include "Platform/Cocoa/Conversions.h"
#include "Platform/Cocoa/Drawing.h"

namespace fcp {

namespace {

RetainPtr<NSTextField*> makeField(LabelContent const& content, Rect const& frame) {
    auto field = RetainPtr<NSTextField*>::adopt([[NSTextField alloc] initWithFrame:makeRect(frame)]);
    auto* const label = field.get();
    [label setStringValue:makeString(content.text).get()];
    [label setFont:makeFont(content.font)];
    [label setTextColor:makeColor(content.color)];
    [label setBackgroundColor:[NSColor clearColor]];
    [label setBordered:NO];
    [label setEditable:NO];
    [label setSelectable:NO];
    [label setDrawsBackground:NO];
    [[label cell] setLineBreakMode:NSLineBreakByTruncatingTail];
    if (content.lineBreak == LineBreak::WordWrapping) {
        [[label cell] setLineBreakMode:NSLineBreakByWordWrapping];
        [label setMaximumNumberOfLines:content.maximumNumberOfLines];
    }
    return field;
}

} // namespace

CocoaLabelView::CocoaLabelView(LabelContent const& content, Rect const& frame)
    : CocoaView(makeField(content, frame).get()) {}

void CocoaLabelView::setText(std::string const& text) {
    [static_cast<NSTextField*>(native()) setStringValue:makeString(text).get()];
}

} // namespace fcp
