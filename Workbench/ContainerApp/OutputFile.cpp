#include "Workbench/ContainerApp/OutputFile.h"

#include <glib.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <random>
#include <unistd.h>
#include <utility>

namespace workbench {

namespace {

// Leaves room for a number, the extension and the mark of the temporary file in the 255 bytes of a name.
constexpr std::size_t longestName = 200;

std::string randomMark() {
    auto device = std::random_device{};
    char text[12];
    std::snprintf(text, sizeof text, "%08x", device());
    return text;
}

std::string numbered(std::string const& name, int number) {
    auto const dot = name.rfind('.');
    return name.substr(0, dot) + " (" + std::to_string(number) + ")" + name.substr(dot);
}

std::string trimmed(std::string const& text, char const* characters) {
    auto const from = text.find_first_not_of(characters);
    if (from == std::string::npos)
        return {};
    return text.substr(from, text.find_last_not_of(characters) - from + 1);
}

bool hasExtension(std::string const& name, std::string const& extension) {
    return name.size() > extension.size() &&
           g_ascii_strcasecmp(name.c_str() + name.size() - extension.size(), extension.c_str()) == 0;
}

// The renamed entry itself must reach the disk, too.
void flushFolder(std::string const& folder) {
    auto const descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

} // namespace

OutputFile::OutputFile(std::string const& theFolder, std::string const& theName)
    : folder{theFolder}
    , name{theName}
    , temporary{theFolder + "/." + theName + "." + randomMark() + ".part"}
    , descriptor{::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666)} {
    if (descriptor < 0)
        fail("cannot write in " + folder);
}

OutputFile::OutputFile(OutputFile&& other) noexcept
    : folder{std::move(other.folder)}
    , name{std::move(other.name)}
    , temporary{std::exchange(other.temporary, {})}
    , descriptor{std::exchange(other.descriptor, -1)} {}

OutputFile::~OutputFile() {
    if (descriptor >= 0)
        ::close(descriptor);
    if (!temporary.empty())
        ::unlink(temporary.c_str());
}

void OutputFile::write(std::string_view bytes) {
    while (!bytes.empty()) {
        auto const written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR)
            fail("cannot write " + name);
        bytes.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
}

void OutputFile::flush() {
    if (::fsync(descriptor) != 0)
        fail("cannot write " + name);
}

std::string OutputFile::publish(OnExists onExists) {
    auto path = folder + "/" + name;
    for (auto number = 2; !moveTo(path, onExists); ++number)
        path = folder + "/" + numbered(name, number);
    temporary.clear();
    flushFolder(folder);
    return path;
}

bool OutputFile::moveTo(std::string const& path, OnExists onExists) {
    if (onExists == OnExists::Replace) {
        if (::rename(temporary.c_str(), path.c_str()) != 0)
            fail("cannot write " + path);
        return true;
    }
    if (::renameat2(AT_FDCWD, temporary.c_str(), AT_FDCWD, path.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    // Some network disks know no such rename; a second name does not take the place of a file either.
    if (errno == EINVAL && ::link(temporary.c_str(), path.c_str()) == 0) {
        ::unlink(temporary.c_str());
        return true;
    }
    if (errno != EEXIST)
        fail("cannot write " + path);
    return false;
}

void OutputFile::fail(std::string const& whatFailed) const {
    throw OutputError(whatFailed + ": " + std::strerror(errno));
}

std::string plainFileName(std::string const& name, std::string const& otherwise,
                          std::string const& extension) {
    auto plain = name.substr(name.find_last_of("/\\") + 1);
    std::erase_if(plain, [](char character) { return g_ascii_iscntrl(character); });
    plain = trimmed(plain, " .");
    if (hasExtension(plain, extension))
        plain.resize(plain.size() - extension.size());
    if (plain.size() > longestName) {
        auto const* end = g_utf8_find_prev_char(plain.c_str(), plain.c_str() + longestName + 1);
        plain.resize(end ? static_cast<std::size_t>(end - plain.c_str()) : longestName);
    }
    return (plain.empty() ? otherwise : plain) + extension;
}

} // namespace workbench
