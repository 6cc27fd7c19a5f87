#pragma once

#include <sys/types.h>
#include <vector>

namespace fcp::bench {

// The engine's web processes that descend from `ancestor`, at whatever depth: it confines them behind
// launchers.
[[nodiscard]] std::vector<pid_t> webProcesses(pid_t ancestor);

// Proportional set size in MiB: pages that several processes share count in parts. Throws std::runtime_error
// for a process that is gone or may not be looked at.
[[nodiscard]] double proportionalSetSize(pid_t process);

// Milliseconds that all threads of a process have had a processor; those that ended meanwhile are missing,
// and of a process that is gone all are.
[[nodiscard]] double processorTime(pid_t process);

} // namespace fcp::bench
