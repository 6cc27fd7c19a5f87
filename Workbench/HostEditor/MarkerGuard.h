#pragma once

#include <filesystem>
#include <string>
#include <sys/types.h>

namespace workbench {

// One particular file, told from a later one of the same name.
struct FileIdentity {
    dev_t device = 0;
    ino_t node = 0;
};

// Removes the file of this name if it is still the one meant. Safe after a fork.
void removeIfSame(char const* path, FileIdentity const& identity);

// A small process that outlives this one by a moment and removes a file that this one had no time to remove:
// when it was killed, or when its display went away and the toolkit ended it. Best made early, while the
// process that it is a copy of is small and has one thread.
class MarkerGuard final {
public:
    MarkerGuard(std::filesystem::path const& file, FileIdentity const& meant);
    ~MarkerGuard(); // the file is removed afterwards
    MarkerGuard(MarkerGuard const&) = delete;
    MarkerGuard& operator=(MarkerGuard const&) = delete;

private:
    std::string path;
    FileIdentity identity;
    pid_t guard = -1; // where there is none, only an orderly end removes the file
    int lifeline = -1; // closed by the kernel, whatever ends this process
};

} // namespace workbench
