#pragma once

#include "Workbench/ReviewPage/SessionDesk.h"

#include <libsoup/soup.h>

#include <string>
#include <string_view>

namespace workbench {

// The page server's paths of a recorded or a replayed run. There are only those of the desk:
//
//     POST /fcp-panel/session/lines       recording: what the page has said and heard
//     GET  /fcp-panel/session/recording   replay: what is played back
//     POST /fcp-panel/session/playhead    replay: the seconds to move to
//     POST /fcp-panel/session/sequence    replay: the sequence to make active
//     POST /fcp-panel/session/report      replay: how it ended
//
// Only the served page itself may post: a request says from which page it comes, and another page's is
// refused. Main thread.
class SessionRoutes final {
public:
    // What the desk points to outlives the routes.
    explicit SessionRoutes(SessionDesk atDesk)
        : desk(atDesk) {}

    // What the page finds in its head, so that it listens before the panel speaks; empty: nothing to do.
    [[nodiscard]] std::string task() const;

    // Before the body is read: the status of a POST, 200 where its body is wanted.
    [[nodiscard]] SoupStatus verdictOnPost(SoupServerMessage* message, std::string_view path,
                                           std::string_view ownHost) const;

    // False: the path is none of these.
    bool answer(SoupServerMessage* message, std::string_view path) const;

private:
    [[nodiscard]] bool takesPosts(std::string_view path) const;

    SessionDesk desk;
};

} // namespace workbench
