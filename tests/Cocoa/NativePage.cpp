#include "Cocoa/NativePage.h"

#include "Doubles/FakeWebEngine.h"

namespace fcp::test {

std::vector<std::string> NativePage::eventNames() const {
    std::vector<std::string> names;
    for (auto const& script : scripts())
        names.push_back(readEventScript(script).name);
    return names;
}

} // namespace fcp::test
