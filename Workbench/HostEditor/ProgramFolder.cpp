#include "Workbench/HostEditor/ProgramFolder.h"

namespace workbench {

std::filesystem::path programFolder() {
    std::error_code error;
    auto const program = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::filesystem::current_path() : program.parent_path();
}

} // namespace workbench
