#include "Platform/Gtk/GtkUserContentController.h"

#include "FcpExtension/FatalError.h"
#include "Platform/Gtk/Conversions.h"
#include "Platform/Gtk/GSignal.h"

#include <utility>

namespace fcp {

// One name and its handler. It outlives its removal for as long as a message is being delivered.
class GtkUserContentController::Registration final : public std::enable_shared_from_this<Registration> {
public:
    Registration(std::weak_ptr<GtkUserContentController> controller,
                 std::shared_ptr<ScriptMessageHandler> target, std::string messageName)
        : owner(std::move(controller))
        , handler(std::move(target))
        , name(std::move(messageName)) {}

    void listen(WebKitUserContentManager* manager) {
        auto const signal = "script-message-received::" + name;
        received = GSignal::connect<&Registration::receive>(manager, signal.c_str(), this);
    }

private:
    void receive(WebKitUserContentManager*, JSCValue* value) {
        auto const controller = owner.lock();
        if (!controller)
            return;
        if (auto body = messageBody(value))
            handler->userContentController(*controller, {name, std::move(*body)});
    }

    std::weak_ptr<GtkUserContentController> const owner;
    std::shared_ptr<ScriptMessageHandler> const handler;
    std::string const name;
    GSignal received;
};

GtkUserContentController::GtkUserContentController()
    : contentManager(GRef<WebKitUserContentManager>::adopt(webkit_user_content_manager_new())) {}

GtkUserContentController::~GtkUserContentController() {
    removeAllScriptMessageHandlers();
}

void GtkUserContentController::addScriptMessageHandler(std::shared_ptr<ScriptMessageHandler> handler,
                                                       std::string const& name) {
    auto const registration = std::make_shared<Registration>(weak_from_this(), std::move(handler), name);
    if (!registrations.emplace(name, registration).second)
        fatalError("A script message handler named \"" + name + "\" exists already");
    registration->listen(manager());
    webkit_user_content_manager_register_script_message_handler(manager(), name.c_str(), nullptr);
}

void GtkUserContentController::removeAllScriptMessageHandlers() {
    for (auto const& [name, registration] : std::exchange(registrations, {}))
        webkit_user_content_manager_unregister_script_message_handler(manager(), name.c_str(), nullptr);
}

} // namespace fcp
