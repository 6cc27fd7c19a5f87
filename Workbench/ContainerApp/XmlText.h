#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace workbench {

// Writes well-formed XML, indented, whatever its texts hold: characters that XML cannot carry become U+FFFD,
// and line breaks in attributes survive the reader. Texts are UTF-8. One thread at a time.
class XmlText {
public:
    // `doctype` may be empty.
    XmlText(std::string const& root, std::string const& doctype);
    ~XmlText();

    XmlText(XmlText const&) = delete;
    XmlText& operator=(XmlText const&) = delete;

    void open(std::string const& element);
    void attribute(std::string const& name, std::string const& value);
    void attribute(std::string const& name, std::int64_t value);
    void text(std::string const& value);
    void close();

    // What has been written since the last call.
    [[nodiscard]] std::string take();

    // Closes whatever is open, and takes the rest.
    [[nodiscard]] std::string finish();

private:
    struct Parts;

    std::unique_ptr<Parts> parts;
};

} // namespace workbench
