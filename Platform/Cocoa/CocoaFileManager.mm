#include "Platform/Cocoa/CocoaFileManager.h"

#include "Platform/Cocoa/Conversions.h"

namespace fcp {

bool CocoaFileManager::fileExists(std::string const& path) const {
    return [[NSFileManager defaultManager] fileExistsAtPath:makeString(path).get()];
}

} // namespace fcp
