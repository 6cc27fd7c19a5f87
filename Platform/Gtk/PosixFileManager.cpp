#include "Platform/Gtk/PosixFileManager.h"

#include <unistd.h>

namespace fcp {

bool PosixFileManager::fileExists(std::string const& path) const {
    return access(path.c_str(), F_OK) == 0;
}

} // namespace fcp
