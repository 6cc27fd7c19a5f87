#pragma once

#include "Platform/Gtk/GRef.h"
#include "Ports/WebView.h"

#include <webkit/webkit.h>

#include <map>
#include <memory>
#include <string>

namespace fcp {

// Message handlers over WebKit's content manager. A name that is taken already is a programming error and
// aborts. Messages are decoded and delivered inside the engine's own callback.
class GtkUserContentController final : public UserContentController,
                                       public std::enable_shared_from_this<GtkUserContentController> {
public:
    GtkUserContentController();
    ~GtkUserContentController() override;

    GtkUserContentController(GtkUserContentController const&) = delete;
    GtkUserContentController& operator=(GtkUserContentController const&) = delete;

    void addScriptMessageHandler(std::shared_ptr<ScriptMessageHandler> handler,
                                 std::string const& name) override;
    void removeAllScriptMessageHandlers() override;

    // Borrowed; for the web views that show pages with these handlers.
    [[nodiscard]] WebKitUserContentManager* manager() const { return contentManager.get(); }

private:
    class Registration;

    GRef<WebKitUserContentManager> const contentManager;
    std::map<std::string, std::shared_ptr<Registration>> registrations;
};

} // namespace fcp
