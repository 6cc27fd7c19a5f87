#include "Workbench/ReviewPage/PageUnderTest.h"

#include <gtest/gtest.h>

#include <chrono>

template <>
struct fcp::GRefTraits<WebKitUserScript> {
    static void retain(WebKitUserScript* script) { webkit_user_script_ref(script); }

    static void release(WebKitUserScript* script) { webkit_user_script_unref(script); }
};

namespace workbench {

namespace {

constexpr auto HandlerName = "fcpBridge";
constexpr std::chrono::seconds Patience{20};

// What one evaluation came to.
struct Evaluation {
    bool done = false;
    std::string error;
    Json value;

    static void finish(GObject* view, GAsyncResult* result, gpointer self) {
        auto* const evaluation = static_cast<Evaluation*>(self);
        GError* error = nullptr;
        auto const value = fcp::GRef<JSCValue>::adopt(
            webkit_web_view_call_async_javascript_function_finish(WEBKIT_WEB_VIEW(view), result, &error));
        fcp::GErrorPtr const failure{error};
        if (failure)
            evaluation->error = failure->message;
        else if (fcp::GCharPtr const text{jsc_value_to_json(value.get(), 0)})
            evaluation->value = Json::parse(text.get());
        evaluation->done = true;
    }
};

struct Pasting {
    bool done = false;
    std::string text;

    static void finish(GObject* clipboard, GAsyncResult* result, gpointer self) {
        auto* const pasting = static_cast<Pasting*>(self);
        fcp::GCharPtr const text{gdk_clipboard_read_text_finish(GDK_CLIPBOARD(clipboard), result, nullptr)};
        pasting->text = text ? text.get() : "(nothing)";
        pasting->done = true;
    }
};

bool waitFor(std::function<bool()> const& condition) {
    auto const deadline = std::chrono::steady_clock::now() + Patience;
    // Wakes the loop, so that a condition that nothing announces is looked at again.
    auto const pulse = g_timeout_add(10, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
    auto holds = condition();
    while (!holds && std::chrono::steady_clock::now() < deadline) {
        g_main_context_iteration(nullptr, TRUE);
        holds = condition();
    }
    g_source_remove(pulse);
    return holds;
}

std::string base64(std::string const& bytes) {
    fcp::GCharPtr const text{g_base64_encode(reinterpret_cast<guchar const*>(bytes.data()), bytes.size())};
    return text.get();
}

// One for all pages of the process: each would start a network process of its own.
WebKitNetworkSession* session() {
    static auto const shared = fcp::GRef<WebKitNetworkSession>::adopt(webkit_network_session_new_ephemeral());
    return shared.get();
}

GtkWindow* makeWindow(WebKitWebView* view) {
    auto* const window = GTK_WINDOW(gtk_window_new());
    gtk_window_set_decorated(window, FALSE);
    gtk_window_set_default_size(window, 400, 700);
    gtk_window_set_child(window, GTK_WIDGET(view));
    gtk_window_present(window);
    return window;
}

} // namespace

std::string typed(std::string const& selector, std::string const& text) {
    return "{ const field = document.querySelector(" + Json(selector).dump() +
           "); field.value = " + Json(text).dump() +
           "; field.dispatchEvent(new Event('input', { bubbles: true })); }";
}

PageUnderTest::PageUnderTest(Surroundings surroundings) {
    g_setenv("GDK_DEBUG", "gl-glx", TRUE); // else EGL's driver is tried first, unloaded, and seen to leak
    gtk_init();
    EXPECT_EQ(server.start(), std::nullopt);
    view = WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "network-session", session(), nullptr));
    webkit_settings_set_hardware_acceleration_policy(webkit_web_view_get_settings(view),
                                                     WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER);
    window = makeWindow(view);
    if (surroundings == Surroundings::Panel) {
        auto* const manager = webkit_web_view_get_user_content_manager(view);
        g_signal_connect(manager, "script-message-received::fcpBridge", G_CALLBACK(received), this);
        webkit_user_content_manager_register_script_message_handler(manager, HandlerName, nullptr);
    }
}

PageUnderTest::~PageUnderTest() {
    g_signal_handlers_disconnect_by_data(webkit_web_view_get_user_content_manager(view), this);
    gtk_window_destroy(window);
    while (g_main_context_iteration(nullptr, FALSE)) {
    }
}

void PageUnderTest::answer(std::string const& command, Json const& value) {
    answers[command] = [value](Json const&) { return value; };
}

void PageUnderTest::answerWith(std::string const& command, Answer answer) {
    answers[command] = std::move(answer);
}

void PageUnderTest::neverAnswer(std::string const& command) {
    answers.erase(command);
}

void PageUnderTest::addScript(char const* source) {
    auto const script = fcp::GRef<WebKitUserScript>::adopt(
        webkit_user_script_new(source, WEBKIT_USER_CONTENT_INJECT_TOP_FRAME,
                               WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, nullptr, nullptr));
    webkit_user_content_manager_add_script(webkit_web_view_get_user_content_manager(view), script.get());
}

void PageUnderTest::reset() {
    // A page of the same origin: another one would get a new engine process. What the page writes when it
    // goes is gone too.
    loadAddress(server.pageURL() + "/nothing");
    run("localStorage.clear();");
    webkit_user_content_manager_remove_all_scripts(webkit_web_view_get_user_content_manager(view));
    answers.clear();
    posted.clear();
}

void PageUnderTest::load() {
    loadAddress(server.pageURL());
}

void PageUnderTest::loadAddress(std::string const& address) {
    bool finished = false;
    auto const handler = g_signal_connect(
        view, "load-changed", G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent event, gpointer flag) {
            *static_cast<bool*>(flag) |= event == WEBKIT_LOAD_FINISHED;
        }),
        &finished);
    webkit_web_view_load_uri(view, address.c_str());
    EXPECT_TRUE(waitFor([&] { return finished; }));
    g_signal_handler_disconnect(view, handler);
}

void PageUnderTest::send(std::string const& event, Json const& detail) {
    auto const script = "(function() { window.dispatchEvent(new CustomEvent('" + event +
                        "', { detail: JSON.parse(atob('" + base64(detail.dump()) + "')) })); })();";
    webkit_web_view_evaluate_javascript(view, script.c_str(), -1, nullptr, nullptr, nullptr, nullptr,
                                        nullptr);
}

void PageUnderTest::resolve(Json const& message, Json const& value) {
    send("fcp:resolve", {{"resolveId", message.at("resolveId")}, {"value", value.dump()}});
}

Json PageUnderTest::evaluate(std::string const& body) {
    Evaluation evaluation;
    webkit_web_view_call_async_javascript_function(view, body.c_str(), -1, nullptr, nullptr, nullptr, nullptr,
                                                   Evaluation::finish, &evaluation);
    // Its address is with the engine, so it is waited for without a limit; the test run has one.
    while (!evaluation.done)
        g_main_context_iteration(nullptr, TRUE);
    EXPECT_EQ(evaluation.error, "") << body;
    return evaluation.value;
}

bool PageUnderTest::eventually(std::string const& expression) {
    return waitFor([&] { return evaluate("return Boolean(" + expression + ");") == true; });
}

std::string PageUnderTest::text(std::string const& selector) {
    return evaluate("return document.querySelector(" + Json(selector).dump() + ")?.textContent ?? '(none)';");
}

void PageUnderTest::click(std::string const& selector) {
    EXPECT_EQ(evaluate("const found = document.querySelector(" + Json(selector).dump() +
                       "); found?.click(); return found !== null;"),
              true)
        << selector;
}

void PageUnderTest::addComment(std::string const& comment, double seconds) {
    send("fcp:playhead-changed", {{"seconds", seconds}});
    run(typed("#new-comment", comment) + "document.getElementById('add').requestSubmit();");
}

std::string PageUnderTest::clipboard() {
    Pasting pasting;
    gdk_clipboard_read_text_async(gtk_widget_get_clipboard(GTK_WIDGET(view)), nullptr, Pasting::finish,
                                  &pasting);
    while (!pasting.done)
        g_main_context_iteration(nullptr, TRUE);
    return pasting.text;
}

std::vector<Json> PageUnderTest::messages(std::string const& command) const {
    std::vector<Json> found;
    for (auto const& message : posted)
        if (message.at("command") == command)
            found.push_back(message);
    return found;
}

bool PageUnderTest::hears(std::string const& command, std::size_t count) const {
    return waitFor([&] { return messages(command).size() >= count; }) && messages(command).size() == count;
}

void PageUnderTest::received(WebKitUserContentManager*, JSCValue* value, gpointer data) {
    auto* const self = static_cast<PageUnderTest*>(data);
    fcp::GCharPtr const text{jsc_value_to_json(value, 0)};
    auto const& message = self->posted.emplace_back(Json::parse(text.get()));
    auto const found = self->answers.find(message.at("command"));
    if (found == self->answers.end())
        return;
    if (auto const answer = found->second(message))
        self->resolve(message, *answer);
}

} // namespace workbench
