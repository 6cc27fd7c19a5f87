#pragma once

#import <Foundation/Foundation.h>

#include <utility>

#if __has_feature(objc_arc)
#error "References are counted by hand here: build without automatic reference counting."
#endif

namespace fcp {

// Owns one reference to an Objective-C object, or nothing. There are two named ways in, so that every call
// says whose reference it is. As thread-safe as the object's own counting.
template <typename Pointer>
class RetainPtr {
public:
    RetainPtr() = default;

    RetainPtr(RetainPtr const& other)
        : RetainPtr(retain(other.object)) {}

    RetainPtr(RetainPtr&& other) noexcept
        : object(std::exchange(other.object, nil)) {}

    ~RetainPtr() { [object release]; }

    RetainPtr& operator=(RetainPtr other) noexcept {
        std::swap(object, other.object);
        return *this;
    }

    // For the reference that alloc, new, copy and create functions give.
    [[nodiscard]] static RetainPtr adopt(Pointer object) { return RetainPtr(object); }

    // For an object that somebody else owns, an autorelease pool included.
    [[nodiscard]] static RetainPtr retain(Pointer object) {
        [object retain];
        return RetainPtr(object);
    }

    [[nodiscard]] Pointer get() const { return object; }

    [[nodiscard]] explicit operator bool() const { return object != nil; }

    void reset() { *this = RetainPtr(); }

private:
    explicit RetainPtr(Pointer owned)
        : object(owned) {}

    Pointer object = nil;
};

} // namespace fcp
