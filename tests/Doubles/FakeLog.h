#pragma once

#include "Doubles/Journal.h"
#include "Ports/Log.h"

#include <memory>
#include <string>

namespace fcp::test {

// Notes each line as "LEVEL: text"; those of the default log as "default LEVEL: text".
class FakeLog final : public Log {
public:
    FakeLog(Journal& sharedJournal, std::string linePrefix)
        : journal(sharedJournal)
        , prefix(std::move(linePrefix)) {}

    void debug(std::string const& line) override { journal.note(prefix + "debug: " + line); }

    void info(std::string const& line) override { journal.note(prefix + "info: " + line); }

    void error(std::string const& line) override { journal.note(prefix + "error: " + line); }

private:
    Journal& journal;
    std::string const prefix;
};

class FakeLogSystem final : public LogSystem {
public:
    explicit FakeLogSystem(Journal& sharedJournal)
        : journal(sharedJournal)
        , orphans(sharedJournal, "default ") {}

    [[nodiscard]] std::shared_ptr<Log> makeLog(std::string const& newSubsystem,
                                               std::string const& newCategory) override {
        subsystem = newSubsystem;
        category = newCategory;
        return std::make_shared<FakeLog>(journal, "");
    }

    [[nodiscard]] Log& defaultLog() override { return orphans; }

    std::string subsystem;
    std::string category;

private:
    Journal& journal;
    FakeLog orphans;
};

} // namespace fcp::test
