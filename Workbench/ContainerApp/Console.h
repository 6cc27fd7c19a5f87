#pragma once

#include <string>

namespace workbench {

// The program's lines, each written whole and at once.
class Console {
public:
    enum class Detail { Quiet, Verbose };

    explicit Console(Detail detail);

    [[nodiscard]] bool isVerbose() const { return detail == Detail::Verbose; }

    // On standard output.
    void say(std::string const& line) const;

    // On standard output, for those who asked for details.
    void tell(std::string const& line) const;

    // On standard error, under the program's name.
    void complain(std::string const& sentence) const;

private:
    Detail detail;
};

} // namespace workbench
