#pragma once

#include "Doubles/Journal.h"
#include "Ports/FileManager.h"
#include "Ports/Url.h"
#include "Ports/UuidGenerator.h"
#include "Ports/Workspace.h"

#include <cstdio>
#include <set>
#include <string>
#include <vector>

namespace fcp::test {

class FakeFileManager final : public FileManager {
public:
    explicit FakeFileManager(Journal& sharedJournal)
        : journal(sharedJournal) {}

    [[nodiscard]] bool fileExists(std::string const& path) const override {
        journal.note("exists " + path);
        return files.contains(path);
    }

    std::set<std::string> files;

private:
    Journal& journal;
};

class FakeWorkspace final : public Workspace {
public:
    explicit FakeWorkspace(Journal& sharedJournal)
        : journal(sharedJournal) {}

    void open(Url const& url) override {
        journal.note("open " + url.absoluteString);
        opened.push_back(url.absoluteString);
    }

    std::vector<std::string> opened;

private:
    Journal& journal;
};

// Counts: the first is 000001-..., the second 000002-...
class FakeUuidGenerator final : public UuidGenerator {
public:
    [[nodiscard]] std::string uuid() override {
        char text[40];
        std::snprintf(text, sizeof text, "%06XAB-1234-4321-9ABC-0123456789AB", ++made);
        return text;
    }

private:
    unsigned made = 0;
};

// Takes the host from between "//" and the next "/" or ":"; refuses what a test names.
class FakeUrlParser final : public UrlParser {
public:
    [[nodiscard]] std::optional<Url> parse(std::string const& text) const override {
        if (refused.contains(text))
            return std::nullopt;
        auto const slashes = text.find("//");
        if (slashes == std::string::npos)
            return Url{text, std::nullopt};
        auto const begin = slashes + 2;
        return Url{text, text.substr(begin, text.find_first_of(":/", begin) - begin)};
    }

    std::set<std::string> refused;
};

} // namespace fcp::test
