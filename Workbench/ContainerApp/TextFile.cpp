#include "Workbench/ContainerApp/TextFile.h"

#include "Workbench/ContainerApp/ImportError.h"

#include <glib.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sys/stat.h>

namespace workbench {

namespace {

// 100,000 comments take some 15 MB; somebody who picks a film by mistake shall not wait for it.
constexpr std::int64_t largestFile = 256LL * 1024 * 1024;

void checkFile(std::string const& file) {
    struct stat status{};
    if (::stat(file.c_str(), &status) != 0)
        throw ImportError(std::string{"it cannot be read: "} + std::strerror(errno));
    if (!S_ISREG(status.st_mode))
        throw ImportError("it is no file: choose the file that holds the comments");
    if (status.st_size > largestFile)
        throw ImportError("it is larger than 256 MB, so it holds no comments: choose another one");
}

void checkText(std::string const& text) {
    char const* end = nullptr;
    if (g_utf8_validate(text.data(), static_cast<gssize>(text.size()), &end))
        return;
    auto const line = 1 + std::count(text.data(), end, '\n');
    throw ImportError(static_cast<std::size_t>(line), "the text is not UTF-8 there: save the file with the "
                                                      "character set \"UTF-8\"");
}

} // namespace

std::string textOfFile(std::string const& file) {
    checkFile(file);
    auto stream = std::ifstream{file, std::ios::binary};
    if (!stream)
        throw ImportError(std::string{"it cannot be read: "} + std::strerror(errno));
    auto text = std::string{std::istreambuf_iterator<char>{stream}, {}};
    checkText(text);
    return text;
}

} // namespace workbench
