// Engine and bus together, both bare: a message from the page becomes a command, its answer an event. What
// this takes beyond the floors of the two is the price of having them in one process, whoever writes it.

#include "benches/Sides/BareBus.h"
#include "benches/Sides/BareWindow.h"
#include "benches/Sides/SideOptions.h"

namespace {

using namespace fcp::bench;

// The page's own identifier goes over the bus, so that there is nothing to look up.
void forward(BareBus& bus, std::vector<Comment> const& comments, JSCValue* message) {
    auto const resolveId = textMember(message, "resolveId");
    if (textMember(message, "command") == "deleteComment")
        return bus.sendCommand(resolveId);
    g_free(jsc_value_to_json(message, 0)); // the same comments are at hand already
    bus.sendCommand(resolveId, comments);
}

} // namespace

int main(int argc, char** argv) {
    auto const options = readSideOptions(argc, argv);
    endWithParent();
    auto const comments = makeComments(commentsOfOneMegabyte);
    BareWindow* shown = nullptr;
    BareBus bus([&shown](std::string const& requestId) { shown->resolve(requestId, "true"); });
    BareWindow window(options, [&](JSCValue* message) { forward(bus, comments, message); });
    shown = &window;
    window.run();
}
