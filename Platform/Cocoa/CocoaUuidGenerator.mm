#include "Platform/Cocoa/CocoaUuidGenerator.h"

#include "Platform/Cocoa/Conversions.h"

namespace fcp {

std::string CocoaUuidGenerator::uuid() {
    @autoreleasepool {
        return readString([[NSUUID UUID] UUIDString]).value();
    }
}

} // namespace fcp
