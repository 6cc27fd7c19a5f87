#pragma once

#include <functional>
#include <memory>
#include <string>

struct _GDBusConnection;

namespace workbench {

// True for what may be handed to the desktop: http and https with a host, and mailto. Nothing else ever.
[[nodiscard]] bool isOpenable(std::string const& url);

// Opens links with the desktop's default handler. Main thread only.
class LinkOpener {
public:
    using Opened = std::function<void(bool)>;

    LinkOpener() = default;
    ~LinkOpener();

    LinkOpener(LinkOpener const&) = delete;
    LinkOpener& operator=(LinkOpener const&) = delete;

    // Calls `done` exactly once, at once or later. False when the link may not be opened or nothing opens it.
    void open(std::string const& url, Opened done);

private:
    struct Unref {
        void operator()(_GDBusConnection* ended) const;
    };

    void tameProcessBus();

    std::unique_ptr<_GDBusConnection, Unref> connection;
};

} // namespace workbench
