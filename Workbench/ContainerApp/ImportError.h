#pragma once

#include <stdexcept>
#include <string>

namespace workbench {

// Why a file cannot be imported, in a sentence for a person that ends with a way out.
class ImportError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;

    // What is wrong with one line of a file, the first being 1.
    ImportError(std::size_t line, std::string const& sentence)
        : std::runtime_error{"line " + std::to_string(line) + ": " + sentence} {}
};

} // namespace workbench
