#pragma once

#include "Ports/WebView.h"

#include <optional>
#include <string>
#include <vector>

namespace fcp {

enum class LoadPhase { Idle, Provisional, Committed };

// What the delegate is to hear after an event of the engine.
struct NavigationReport {
    enum class Kind { Nothing, Finished, Failed, FailedProvisionally };

    Kind kind = Kind::Nothing;
    NavigationError error; // for the two failures
};

// Follows the load events of one web view and tells what each means to the navigation delegate: the engine
// says "finished" after every failure, announces pages that were never allowed, and fails loads that were
// only replaced. Pure: it calls nothing and knows no clock. Addresses are compared as the engine spells them.
class NavigationTracker {
public:
    // The panel asked for a load of its own.
    void requested(std::string const& uri);

    // The policy's answer to a navigation of any frame or to a new window.
    void decided(std::string const& uri, NavigationActionPolicy policy);

    // An allowed new window comes a second time, when the engine is about to create it.
    void newWindowAllowed(std::string const& uri);
    [[nodiscard]] bool takeAllowedNewWindow(std::string const& uri);

    void started(std::string const& uri);
    void redirected();
    [[nodiscard]] NavigationReport committed(std::string const& uri);
    [[nodiscard]] NavigationReport failed(LoadPhase during, std::string const& uri,
                                          NavigationError const& error);
    [[nodiscard]] NavigationReport finished();

    void mainResourceCompleted();

    // The time for the main resource is over, and the load is being stopped. What the engine has begun ends
    // with a cancellation, which is then reported in its place.
    [[nodiscard]] NavigationReport timedOut();

    // Neither the running load nor a requested one will be heard of again.
    void processTerminated();

    // True from a request or a start until the main resource is complete or the load is over.
    [[nodiscard]] bool awaitsMainResource() const;

private:
    [[nodiscard]] bool isFragmentOfShownPage(std::string const& uri) const;
    [[nodiscard]] bool isRestrictedPortSubstitute(std::string const& uri) const;
    [[nodiscard]] bool isExpected(std::string const& uri, NavigationError const& error) const;

    // What is known of the load that the engine is busy with.
    struct Load {
        LoadPhase phase = LoadPhase::Idle;
        std::string startedAt; // empty when the policy had not allowed that address
        bool redirected = false;
        bool mainResourceComplete = false;
        bool replaced = false; // by a load of our own: its cancellation is no failure
        bool timedOut = false; // its cancellation is a time-out
        bool conclusive = false; // reported, or not to be reported at all: "finished" says nothing more
    };

    // A load of our own that has not started yet.
    struct Request {
        std::string uri;
        bool allowed = false; // by the policy, which the engine asks first
        bool afterBegun = false; // the one before may have begun, though its start is not heard of yet
    };

    [[nodiscard]] bool isRequested(std::string const& uri) const;

    Load load;
    std::optional<Request> request;
    std::optional<std::string> ignoredUri; // the latest that the policy turned down
    std::string allowedUri; // the latest that it did not
    bool abandoned = false; // a request timed out before its start: should it start yet, that says nothing
    std::string shownUri;
    std::vector<std::string> allowedNewWindows;
};

} // namespace fcp
