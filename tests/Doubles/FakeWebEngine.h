#pragma once

#include "Doubles/FakeView.h"
#include "Doubles/Journal.h"
#include "Ports/WebView.h"

#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace fcp::test {

// One event as a page would have heard it.
struct PageEvent {
    std::string name;
    Json detail;
};

// Reads an event script back: the base64 text between the first pair of quotes after atob, and the name.
[[nodiscard]] inline PageEvent readEventScript(std::string const& script) {
    auto const between = [&script](std::string const& before, std::string const& after) {
        auto const begin = script.find(before) + before.size();
        return script.substr(begin, script.find(after, begin) - begin);
    };
    std::string bytes;
    unsigned bits = 0;
    int held = 0;
    for (char const c : between("atob('", "'")) {
        static std::string const alphabet =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        auto const value = alphabet.find(c);
        if (value == std::string::npos)
            break;
        bits = bits << 6 | static_cast<unsigned>(value);
        held += 6;
        if (held >= 8) {
            held -= 8;
            bytes += static_cast<char>(bits >> held & 0xFF);
        }
    }
    return {between("new CustomEvent('", "'"), Json::parse(bytes)};
}

class FakeUserContentController final : public UserContentController {
public:
    explicit FakeUserContentController(Journal& sharedJournal)
        : journal(sharedJournal) {}

    void addScriptMessageHandler(std::shared_ptr<ScriptMessageHandler> handler,
                                 std::string const& name) override {
        journal.note("add handler " + name);
        if (!handlers.emplace(name, std::move(handler)).second)
            throw std::logic_error("a second handler under " + name);
    }

    void removeAllScriptMessageHandlers() override {
        journal.note("remove all handlers");
        handlers.clear();
    }

    // Delivers what a page posted under the name, if anybody listens.
    void deliver(Json body, std::string const& name = "fcpBridge") {
        if (auto const found = handlers.find(name); found != handlers.end()) {
            auto const handler = found->second;
            handler->userContentController(*this, {name, std::move(body)});
        }
    }

    std::map<std::string, std::shared_ptr<ScriptMessageHandler>> handlers;

private:
    Journal& journal;
};

class FakeWebView final : public WebView, public std::enable_shared_from_this<FakeWebView> {
public:
    FakeWebView(Journal& sharedJournal, std::string viewName)
        : name(std::move(viewName))
        , journal(sharedJournal) {}

    ~FakeWebView() override { journal.note(name + " destroyed"); }

    void setNavigationDelegate(std::weak_ptr<NavigationDelegate> newDelegate) override {
        journal.note(name + " setNavigationDelegate");
        delegate = std::move(newDelegate);
    }

    void setAutoresizing(Autoresizing mask) override {
        journal.note(name + " setAutoresizing");
        autoresizing = mask;
    }

    [[nodiscard]] bool markInspectable() override {
        if (supportsInspection)
            journal.note(name + " marked inspectable");
        return supportsInspection;
    }

    void load(UrlRequest const& request) override {
        journal.note(name + " load " + request.url.absoluteString);
        requests.push_back(request);
    }

    void loadHTMLString(std::string const& html) override {
        journal.note(name + " load HTML");
        pages.push_back(html);
    }

    [[nodiscard]] std::optional<Url> url() const override { return currentUrl; }

    void evaluateJavaScript(std::string const& script, EvaluationDone done) override {
        journal.note("event " + readEventScript(script).name);
        scripts.push_back(script);
        completions.push_back(std::move(done));
    }

    [[nodiscard]] std::shared_ptr<View> view() override {
        return std::make_shared<FakeView>(journal, name, ViewDescription{});
    }

    // Every event so far.
    [[nodiscard]] std::vector<PageEvent> events() const {
        std::vector<PageEvent> found;
        for (auto const& script : scripts)
            found.push_back(readEventScript(script));
        return found;
    }

    // The names of the events so far.
    [[nodiscard]] std::vector<std::string> eventNames() const {
        std::vector<std::string> names;
        for (auto const& event : events())
            names.push_back(event.name);
        return names;
    }

    // What the page got for a request, parsed as a page parses it. None without an answer.
    [[nodiscard]] std::optional<Json> answerTo(std::string const& resolveId) const {
        for (auto const& event : events()) {
            if (event.name == "fcp:resolve" && event.detail.at("resolveId") == resolveId)
                return Json::parse(event.detail.at("value").get<std::string>());
        }
        return std::nullopt;
    }

    std::string const name;
    std::weak_ptr<NavigationDelegate> delegate;
    Autoresizing autoresizing = Autoresizing::None;
    bool supportsInspection = false;
    std::vector<UrlRequest> requests;
    std::vector<std::string> pages;
    std::vector<std::string> scripts;
    std::vector<EvaluationDone> completions;
    std::optional<Url> currentUrl;

private:
    Journal& journal;
};

// Web views are named "web view 1", "web view 2" in the order of their making.
class FakeWebEngine final : public WebEngine {
public:
    explicit FakeWebEngine(Journal& sharedJournal)
        : journal(sharedJournal) {}

    [[nodiscard]] std::shared_ptr<UserContentController> makeUserContentController() override {
        journal.note("make content controller");
        controller = std::make_shared<FakeUserContentController>(journal);
        return controller;
    }

    [[nodiscard]] std::shared_ptr<WebView> makeWebView() override { return make(" with defaults"); }

    [[nodiscard]] std::shared_ptr<WebView>
    makeWebView(Rect const& newFrame, WebViewConfiguration const& newConfiguration) override {
        frame = newFrame;
        configuration = newConfiguration;
        return make("");
    }

    // The one made last; gone when its owner let go.
    [[nodiscard]] std::shared_ptr<FakeWebView> current() const { return views.back().lock(); }

    std::shared_ptr<FakeUserContentController> controller;
    std::vector<std::weak_ptr<FakeWebView>> views;
    Rect frame;
    WebViewConfiguration configuration;
    bool supportsInspection = false;

private:
    std::shared_ptr<WebView> make(std::string const& how) {
        auto view = std::make_shared<FakeWebView>(journal, "web view " + std::to_string(views.size() + 1));
        view->supportsInspection = supportsInspection;
        journal.note("make " + view->name + how);
        views.push_back(view);
        return view;
    }

    Journal& journal;
};

} // namespace fcp::test
