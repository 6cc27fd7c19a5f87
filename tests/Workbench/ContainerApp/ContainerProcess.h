#pragma once

#include "Workbench/ContainerApp/TemporaryFolder.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace workbench {

inline constexpr auto usualPatience = std::chrono::seconds{20};

// Waits until `condition` holds; false when it does not in time.
[[nodiscard]] bool waitUntil(std::function<bool()> const& condition,
                             std::chrono::seconds patience = usualPatience);

// What a program sees in the place of a folder, while all others see what is there.
struct Disk {
    enum class Kind { Small, ReadOnly };

    std::string folder;
    Kind kind = Kind::Small;
    unsigned long size = 0; // in bytes, of a small one, which is empty
};

struct ProcessLimits {
    bool obeysPermissions = false; // also where the tests run as root
    std::optional<unsigned long> fileSize; // in bytes; a write beyond it fails
    std::optional<Disk> disk;
};

// The real program as a process of its own. Killed when its owner goes.
class ContainerProcess {
public:
    explicit ContainerProcess(std::vector<std::string> arguments, ProcessLimits const& limits = {});
    ~ContainerProcess();

    ContainerProcess(ContainerProcess const&) = delete;
    ContainerProcess& operator=(ContainerProcess const&) = delete;

    // Waits for the start-up line.
    [[nodiscard]] bool isReady();

    // Where others find a file as this program sees it.
    [[nodiscard]] std::string seen(std::string const& file) const {
        return "/proc/" + std::to_string(process) + "/root" + file;
    }

    void signal(int number) const;

    // Waits for the end: the exit code, or minus the signal's number.
    [[nodiscard]] int wait(std::chrono::seconds patience = usualPatience);

    [[nodiscard]] pid_t pid() const { return process; }

    [[nodiscard]] std::string output() const { return contentsOf(folder / "out"); }

    [[nodiscard]] std::string complaints() const { return contentsOf(folder / "err"); }

private:
    TemporaryFolder folder;
    pid_t process = 0;
};

} // namespace workbench
