#include "Workbench/HostEditor/FileFault.h"

#include <glib.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <optional>
#include <string_view>
#include <unistd.h>

namespace workbench {

namespace {

// The bytes of one file, read in small pieces from anywhere.
class Bytes {
public:
    explicit Bytes(std::filesystem::path const& path)
        : stream(path, std::ios::binary)
        , length(static_cast<std::uint64_t>(stream.seekg(0, std::ios::end).tellg())) {}

    [[nodiscard]] std::uint64_t size() const { return length; }

    // Exactly `count` bytes, at most 16, or nothing.
    std::optional<std::string> at(std::uint64_t offset, std::size_t count) {
        if (offset > length || length - offset < count)
            return {};
        std::string piece(count, '\0');
        stream.clear();
        stream.seekg(static_cast<std::streamoff>(offset));
        if (!stream.read(piece.data(), static_cast<std::streamsize>(count)))
            return {};
        return piece;
    }

private:
    std::ifstream stream;
    std::uint64_t length;
};

std::uint64_t bigEndian(std::string_view bytes) {
    std::uint64_t value = 0;
    for (auto const byte : bytes)
        value = value << 8 | static_cast<std::uint8_t>(byte);
    return value;
}

// The size that a box at `offset` announces; nothing where it reaches to the end of the file or makes no
// sense.
std::optional<std::uint64_t> boxSize(Bytes& file, std::uint64_t offset) {
    auto const head = file.at(offset, 8);
    if (!head)
        return {};
    auto const size = bigEndian(std::string_view{*head}.substr(0, 4));
    if (size != 1)
        return size >= 8 ? std::optional{size} : std::nullopt;
    auto const wide = file.at(offset + 8, 8);
    auto const wideSize = wide ? bigEndian(*wide) : 0;
    return wideSize >= 16 ? std::optional{wideSize} : std::nullopt;
}

// MP4 and its relatives: a chain of boxes, each with its size.
std::uint64_t endOfBoxes(Bytes& file) {
    std::uint64_t offset = 0;
    while (offset < file.size()) {
        auto const size = boxSize(file, offset);
        if (!size)
            return 0;
        if (*size > UINT64_MAX - offset)
            return UINT64_MAX;
        offset += *size;
    }
    return offset;
}

struct Number {
    std::uint64_t value;
    std::uint64_t width;
    bool isUnknown; // all bits set: "until the end"
};

std::optional<Number> variableNumber(Bytes& file, std::uint64_t offset) {
    auto const first = file.at(offset, 1);
    if (!first || first->front() == 0)
        return {};
    auto const lead = static_cast<std::uint8_t>(first->front());
    std::uint64_t const width = static_cast<std::uint64_t>(__builtin_clz(lead)) - 23;
    auto const bytes = file.at(offset, width);
    if (!bytes)
        return {};
    auto const mask = (std::uint64_t{1} << (7 * width)) - 1;
    auto const value = bigEndian(*bytes) & mask;
    return Number{value, width, value == mask};
}

// Matroska and WebM: a header element, then one segment that holds all the rest.
std::uint64_t endOfSegment(Bytes& file) {
    auto const header = variableNumber(file, 4);
    if (!header || header->isUnknown)
        return 0;
    auto const segment = 4 + header->width + header->value;
    if (file.at(segment, 4) != std::string{"\x18\x53\x80\x67"})
        return 0;
    auto const size = variableNumber(file, segment + 4);
    return size && !size->isUnknown ? segment + 4 + size->width + size->value : 0;
}

// Where the file says that it ends; 0 when it does not say.
std::uint64_t announcedEnd(Bytes& file) {
    auto const beginning = file.at(0, 8);
    if (!beginning)
        return 0;
    if (beginning->substr(4) == "ftyp")
        return endOfBoxes(file);
    if (beginning->substr(0, 4) == "\x1a\x45\xdf\xa3")
        return endOfSegment(file);
    return 0;
}

} // namespace

std::string faultOfFile(std::filesystem::path const& path) {
    std::error_code error;
    auto const status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status))
        return status.type() == std::filesystem::file_type::not_found ? "there is no such file"
                                                                      : error.message();
    if (std::filesystem::is_directory(status))
        return "it is a folder";
    if (!std::filesystem::is_regular_file(status))
        return "it is no ordinary file";
    if (access(path.c_str(), R_OK) != 0)
        return std::strerror(errno);
    Bytes file{path};
    if (file.size() == 0)
        return "the file is empty";
    auto const end = announcedEnd(file);
    if (end > file.size())
        return "the file is cut short: it holds " + std::to_string(file.size()) + " of " +
               std::to_string(end) + " bytes";
    return {};
}

bool beginsAsText(std::filesystem::path const& path) {
    std::string beginning(1024, '\0');
    std::ifstream stream{path, std::ios::binary};
    stream.read(beginning.data(), static_cast<std::streamsize>(beginning.size()));
    beginning.resize(static_cast<std::size_t>(std::max<std::streamsize>(stream.gcount(), 0)));
    auto const isControl = [](char each) {
        return each >= 0 && each < ' ' && !std::isspace(each) && each != '\x1b';
    };
    if (std::ranges::any_of(beginning, isControl))
        return false;
    char const* end = nullptr;
    g_utf8_validate(beginning.data(), static_cast<gssize>(beginning.size()), &end);
    // The last character may be cut in two; a vector drawing is text, too.
    auto const valid = end - beginning.data();
    return valid + 4 > static_cast<std::ptrdiff_t>(beginning.size()) &&
           beginning.find("<svg") == std::string::npos;
}

} // namespace workbench
