#include "Cocoa/RecordedLog.h"

#include <os/log.h>

#include <mutex>
#include <string_view>
#include <utility>

// Keeps lines instead of writing them.

@interface StandinLog : NSObject <OS_os_log> {
@public
    std::string subsystem;
    std::string category;
}
@end

@implementation StandinLog
@end

namespace {

std::mutex mutex;
std::vector<fcp::test::LoggedLine> lines;
fcp::test::Journal* journal = nullptr;

char const* levelName(os_log_type_t type) {
    switch (type) {
    case OS_LOG_TYPE_INFO:
        return "info";
    case OS_LOG_TYPE_DEBUG:
        return "debug";
    case OS_LOG_TYPE_ERROR:
        return "error";
    default:
        return "other";
    }
}

} // namespace

os_log_t os_log_create(char const* subsystem, char const* category) {
    auto* const log = [[StandinLog alloc] init];
    log->subsystem = subsystem;
    log->category = category;
    return log;
}

os_log_t standinDefaultLog() {
    static auto* const log = [[StandinLog alloc] init];
    return log;
}

void standinWrite(os_log_t log, os_log_type_t type, char const* format, id value) {
    @autoreleasepool {
        auto* const origin = static_cast<StandinLog*>(log);
        auto* const text =
            std::string_view(format) == "%{public}@" ? [[value description] UTF8String] : "<private>";
        std::lock_guard const guard(mutex);
        lines.push_back({origin->subsystem, origin->category, type, text});
        if (journal)
            journal->note((origin->category.empty() ? "default " : "") + std::string(levelName(type)) + ": " +
                          text);
    }
}

namespace fcp::test {

void noteLoggedLines(Journal* linesJournal) {
    std::lock_guard const guard(mutex);
    journal = linesJournal;
}

std::vector<LoggedLine> takeLoggedLines() {
    std::lock_guard const guard(mutex);
    return std::exchange(lines, {});
}

} // namespace fcp::test
