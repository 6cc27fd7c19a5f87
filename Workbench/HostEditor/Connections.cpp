#include "Workbench/HostEditor/Connections.h"

namespace workbench {

namespace {

std::string state(char const* name, bool isThere) {
    return std::string{name} + (isThere ? " connected" : " away");
}

} // namespace

std::string describe(Connections const& connections) {
    return std::string{"Host: "} +
           (connections.host ? "the panel follows the timeline" : "the panel does not follow the timeline") +
           "\nPage: " + (connections.page ? "it has called the panel" : "nothing has been heard of it") +
           "\nContainer: " + (connections.container ? "it is on the bus" : "it is not on the bus");
}

std::string summary(Connections const& connections) {
    return state("host", connections.host) + ", " + state("page", connections.page) + ", " +
           state("container", connections.container);
}

} // namespace workbench
