#pragma once

#include "Platform/Gtk/GRef.h"
#include "Workbench/ReviewPage/PageServer.h"

#include <gtk/gtk.h>
#include <nlohmann/json.hpp>
#include <webkit/webkit.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

using Json = nlohmann::json;

// The script of somebody who types into a field.
[[nodiscard]] std::string typed(std::string const& selector, std::string const& text);

// The served page in the real engine, at the panel's size, with a stand-in for the panel: it records what the
// page posts and answers the way the panel does. Its port is its own, and so is its storage.
class PageUnderTest final {
public:
    enum class Surroundings { Panel, Browser };

    // An answer by command; a command without one is never answered.
    using Answer = std::function<std::optional<Json>(Json const& message)>;

    explicit PageUnderTest(Surroundings surroundings = Surroundings::Panel);
    ~PageUnderTest();
    PageUnderTest(PageUnderTest const&) = delete;
    PageUnderTest& operator=(PageUnderTest const&) = delete;

    void answer(std::string const& command, Json const& value);
    void answerWith(std::string const& command, Answer answer);
    void neverAnswer(std::string const& command);

    // Runs in every document before its own scripts.
    void addScript(char const* source);

    // As new again, but in the same engine process, which takes a while to start: no document, no answers, no
    // scripts, no messages, nothing stored.
    void reset();

    // Loads, or loads again; returns when the page's scripts have run.
    void load();

    // One event, carried by a script as the panel carries it.
    void send(std::string const& event, Json const& detail);

    // Answers a message of an earlier moment.
    void resolve(Json const& message, Json const& value);

    // What the body of an asynchronous function returns; a failure of the script fails the test.
    [[nodiscard]] Json evaluate(std::string const& body);

    void run(std::string const& body) { static_cast<void>(evaluate(body)); }

    // Whether the expression becomes true within 20 s.
    [[nodiscard]] bool eventually(std::string const& expression);

    // The text of the element that the selector finds, "(none)" without one.
    [[nodiscard]] std::string text(std::string const& selector);

    void click(std::string const& selector);
    void addComment(std::string const& comment, double seconds);

    // What another program would paste.
    [[nodiscard]] std::string clipboard();

    [[nodiscard]] std::vector<Json> messages(std::string const& command) const;

    // Whether `count` messages of that command have come within 20 s.
    [[nodiscard]] bool hears(std::string const& command, std::size_t count) const;

private:
    void loadAddress(std::string const& address);
    static void received(WebKitUserContentManager* manager, JSCValue* value, gpointer data);

    PageServer server{0};
    GtkWindow* window;
    WebKitWebView* view;
    std::map<std::string, Answer> answers;
    std::vector<Json> posted;
};

} // namespace workbench
