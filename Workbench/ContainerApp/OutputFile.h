#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace workbench {

// What went wrong, in a sentence for a person.
class OutputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

enum class OnExists { Rename, Replace };

// A file that appears under its name only when it is whole: it is written beside it, brought to the disk, and
// then renamed. Until then it is removed when the object goes. One thread at a time. Throws OutputError.
class OutputFile {
public:
    // `name` is one plain component.
    OutputFile(std::string const& folder, std::string const& name);
    ~OutputFile();

    OutputFile(OutputFile&& other) noexcept;
    OutputFile(OutputFile const&) = delete;
    OutputFile& operator=(OutputFile const&) = delete;
    OutputFile& operator=(OutputFile&&) = delete;

    void write(std::string_view bytes);

    // After this all that was written is on the disk.
    void flush();

    // Gives the file its name and returns its path. A name that is taken is replaced, or made different: "x
    // (2).csv".
    [[nodiscard]] std::string publish(OnExists onExists);

private:
    [[noreturn]] void fail(std::string const& whatFailed) const;
    [[nodiscard]] bool moveTo(std::string const& path, OnExists onExists);

    std::string folder;
    std::string name;
    std::string temporary; // empty once it is published
    int descriptor = -1;
};

// `name` reduced to one component that every system takes, with `extension` (".csv") at its end; `otherwise`
// when nothing is left of it.
[[nodiscard]] std::string plainFileName(std::string const& name, std::string const& otherwise,
                                        std::string const& extension);

} // namespace workbench
