#pragma once

#include "Workbench/HostEditor/SequenceFacts.h"

#include <filesystem>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace workbench {

// A project as its file tells it: what the engine does not say when it opens one. The file is untrusted
// input; nothing in it is fetched from elsewhere.
class ProjectFile final {
public:
    struct Entry {
        std::string id; // of the element
        std::string uuid; // of the sequence, over all projects
        std::string name;
        std::string guides; // JSON text, may be empty
    };

    // Whether the file calls for this reader, by its name or by how it begins.
    [[nodiscard]] static bool isProject(std::filesystem::path const& path);

    // The project, or the reason in one line.
    [[nodiscard]] static std::variant<ProjectFile, std::string> read(std::filesystem::path const& path);

    ProjectFile(ProjectFile&&) noexcept;
    ProjectFile& operator=(ProjectFile&&) noexcept;
    ~ProjectFile();

    [[nodiscard]] std::string title() const;

    // Empty when the project does not tell its sequences apart: then the file as a whole is the one.
    [[nodiscard]] std::vector<Entry> sequences() const;

    [[nodiscard]] std::string activeUuid() const;

    // The project's text, changed so that the engine opens this one of its sequences, cut to its own length.
    [[nodiscard]] std::string textShowing(Entry const& entry) const;

    // Files that the project names and that are not there, each once.
    [[nodiscard]] std::vector<std::string> missingMedia() const;

    // How many titles need a drawing module that this program leaves out.
    [[nodiscard]] int undrawnTitles() const;

private:
    struct Document;
    explicit ProjectFile(std::unique_ptr<Document> content);

    std::unique_ptr<Document> document;
};

// The marks in a sequence's JSON list of guides; entries that are no guides are left out.
[[nodiscard]] std::vector<Mark> readGuides(std::string const& text);

} // namespace workbench
