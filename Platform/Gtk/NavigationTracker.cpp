#include "Platform/Gtk/NavigationTracker.h"

#include "Platform/Gtk/NavigationErrors.h"

#include <algorithm>
#include <utility>

namespace fcp {

namespace {

using Kind = NavigationReport::Kind;

bool isHttp(std::string const& uri) {
    return uri.starts_with("http://") || uri.starts_with("https://");
}

} // namespace

void NavigationTracker::requested(std::string const& uri) {
    // A jump within the page has no load events at all, so nothing may wait for them.
    if (isFragmentOfShownPage(uri))
        return;
    request = Request{.uri = uri, .afterBegun = request && request->allowed};
    load.replaced = load.phase != LoadPhase::Idle;
}

void NavigationTracker::decided(std::string const& uri, NavigationActionPolicy policy) {
    if (policy == NavigationActionPolicy::Allow) {
        allowedUri = uri;
        abandoned = false;
        if (isRequested(uri))
            request->allowed = true;
        if (ignoredUri == uri)
            ignoredUri.reset();
        return;
    }
    ignoredUri = uri;
    if (isRequested(uri)) {
        request.reset();
        load.replaced = false;
    }
}

void NavigationTracker::newWindowAllowed(std::string const& uri) {
    allowedNewWindows.push_back(uri);
}

bool NavigationTracker::takeAllowedNewWindow(std::string const& uri) {
    auto const found = std::ranges::find(allowedNewWindows, uri);
    if (found == allowedNewWindows.end())
        return false;
    allowedNewWindows.erase(found);
    return true;
}

void NavigationTracker::started(std::string const& uri) {
    load = {};
    load.phase = LoadPhase::Provisional;
    if (request && !request->allowed && std::exchange(request->afterBegun, false)) {
        load.replaced = true; // the one before, which the request replaces
        return;
    }
    request.reset();
    load.conclusive = std::exchange(abandoned, false);
    // The engine names the address that was asked for last, which may still be waiting for its own start.
    if (uri == allowedUri)
        load.startedAt = uri;
}

void NavigationTracker::redirected() {
    load.redirected = true;
}

NavigationReport NavigationTracker::committed(std::string const& uri) {
    bool const restrictedPort = isRestrictedPortSubstitute(uri);
    load.phase = LoadPhase::Committed;
    shownUri = uri;
    allowedNewWindows.clear();
    if (restrictedPort) {
        load.conclusive = true;
        return {Kind::FailedProvisionally, restrictedPortError()};
    }
    // The engine commits an empty page under an address that was turned down as a view's very first load.
    if (ignoredUri == uri)
        load.conclusive = true;
    return {};
}

NavigationReport NavigationTracker::failed(LoadPhase during, std::string const& uri,
                                           NavigationError const& error) {
    bool const silent = load.conclusive || isExpected(uri, error);
    bool const expired = load.timedOut && isCancellation(error);
    load = {};
    load.conclusive = true;
    if (silent)
        return {};
    return {during == LoadPhase::Committed ? Kind::Failed : Kind::FailedProvisionally,
            expired ? timedOutError() : error};
}

NavigationReport NavigationTracker::finished() {
    bool const silent = std::exchange(load, Load{}).conclusive;
    return {silent ? Kind::Nothing : Kind::Finished, {}};
}

void NavigationTracker::mainResourceCompleted() {
    load.mainResourceComplete = true;
}

NavigationReport NavigationTracker::timedOut() {
    if (!awaitsMainResource())
        return {};
    // A request that is stopped before its start is mostly not heard of again, so nothing else would report
    // it.
    if (request) {
        request.reset();
        abandoned = true;
        return {Kind::FailedProvisionally, timedOutError()};
    }
    load.timedOut = true;
    return {};
}

void NavigationTracker::processTerminated() {
    load = {};
    request.reset();
    abandoned = false;
    shownUri.clear();
    allowedNewWindows.clear();
}

bool NavigationTracker::awaitsMainResource() const {
    return request || (load.phase != LoadPhase::Idle && !load.mainResourceComplete);
}

bool NavigationTracker::isRequested(std::string const& uri) const {
    return request && request->uri == uri;
}

bool NavigationTracker::isFragmentOfShownPage(std::string const& uri) const {
    auto const hash = uri.find('#');
    return hash != std::string::npos && !shownUri.empty() &&
           uri.substr(0, hash) == shownUri.substr(0, shownUri.find('#'));
}

bool NavigationTracker::isRestrictedPortSubstitute(std::string const& uri) const {
    // A refused port raises no error: the engine commits an empty page in place of the address.
    return uri == "about:blank" && isHttp(load.startedAt) && !load.redirected;
}

bool NavigationTracker::isExpected(std::string const& uri, NavigationError const& error) const {
    if (isPolicyInterruption(error))
        return ignoredUri == uri;
    return load.replaced && isCancellation(error);
}

} // namespace fcp
