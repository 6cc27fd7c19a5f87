#pragma once

#include "Doubles/Journal.h"
#include "Ports/WebView.h"

#include <optional>
#include <string>
#include <vector>

namespace fcp::test {

// One load as the native web view was asked for it: a request, or a page's text.
struct Load {
    std::string address;
    std::string html;
    double timeout = 0; // seconds
    bool usesProtocolPolicy = false;

    bool operator==(Load const&) const = default;
};

// A native web view of the stand-in engine, which shows no pages: what it was told, and what a page or a
// server would do. The web view outlives this.
class NativePage {
public:
    explicit NativePage(WebView& shown);

    // Of the web view that was made last.
    [[nodiscard]] static NativePage latest();

    // False when nobody listens under the name.
    bool post(Json const& body, std::string const& name = "fcpBridge") const;

    void finish() const;
    void fail(NavigationError const& error) const;
    void failProvisionally(NavigationError const& error) const;

    // The answers that the decision handler got: true for each that allows. No address is a request without
    // one.
    [[nodiscard]] std::vector<bool> decide(std::optional<std::string> const& address) const;

    [[nodiscard]] std::vector<Load> loads() const;
    [[nodiscard]] std::vector<std::string> scripts() const;

    // The names of the events that the scripts carry.
    [[nodiscard]] std::vector<std::string> eventNames() const;

    // Ends every running script, with an error of that description or without one.
    void endScripts(std::optional<std::string> const& error) const;

    [[nodiscard]] bool isInspectable() const;
    [[nodiscard]] bool hasDeveloperExtras() const;
    [[nodiscard]] bool hasDelegate() const;
    [[nodiscard]] std::size_t handlers() const;
    [[nodiscard]] Rect frame() const;
    [[nodiscard]] unsigned mask() const;

private:
    explicit NativePage(void* nativeView)
        : native(nativeView) {}

    void* native;
};

// Notes from here on what native web views and their content controllers are told; null ends it. Web views
// are named "web view 1", "web view 2" in the order of their making since then.
void noteNativePages(Journal* pagesJournal);

// The web views that exist.
[[nodiscard]] std::size_t nativePages();

// Whether the system is one that knows inspectable web views. It is, at first.
void setKnowsInspection(bool knows);

} // namespace fcp::test
