#include "Workbench/HostEditor/DevelopmentMarker.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace workbench {

DevelopmentMarker::DevelopmentMarker(Use use, Paths files)
    : paths(std::move(files)) {
    if (use == Use::Select)
        make();
    lookAround(use);
}

DevelopmentMarker::~DevelopmentMarker() = default;

bool DevelopmentMarker::isPresent() const {
    std::error_code error;
    return std::filesystem::exists(paths.development, error);
}

void DevelopmentMarker::make() {
    constexpr mode_t everyoneReads = 0644;
    auto const file = open(paths.development.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, everyoneReads);
    if (file >= 0) {
        struct stat status{};
        fstat(file, &status);
        close(file);
        guard.emplace(paths.development, FileIdentity{status.st_dev, status.st_ino});
    } else if (errno != EEXIST) {
        found.push_back("cannot make " + paths.development.string() + " (" + std::strerror(errno) +
                        "): the panel loads the published page");
    }
}

void DevelopmentMarker::lookAround(Use use) {
    std::error_code error;
    auto const wins = std::filesystem::exists(paths.diagnostic, error);
    if (isPresent() && !guard && use == Use::Select)
        found.push_back(paths.development.string() +
                        " was there already, from another workbench or left over; " +
                        "it is left there at the end");
    if (isPresent() && use == Use::LeaveAlone)
        found.push_back(paths.development.string() +
                        " is there: the panel loads from this machine all the same");
    if (wins)
        found.push_back(paths.diagnostic.string() +
                        " is there and wins: the panel shows no page (docs/modes.md says why)");
}

} // namespace workbench
