#pragma once

#include "Workbench/ContainerApp/Bus.h"

#include <functional>
#include <string>

struct sd_bus_vtable;

namespace workbench {

// Imports files for other programs, as this one when it is started to import and another one is running: the
// object /com/zelvix/fcp/Container with the interface com.zelvix.fcp.Container1. Main thread only.
class ImportService {
public:
    // Returns a sentence about what came of it. Throws std::exception with one about what did not.
    using Import = std::function<std::string(std::string const& file, std::string const& sequenceKey)>;

    ImportService(Bus& bus, Import import);

    ImportService(ImportService const&) = delete;
    ImportService& operator=(ImportService const&) = delete;

    // False when the bus refuses.
    [[nodiscard]] bool publish();

private:
    static sd_bus_vtable const* methods();

    [[nodiscard]] int importFile(sd_bus_message* call);

    Bus& bus;
    Import import;
    BusSlot object;
};

enum class ImportAnswer { Imported, Refused, Nobody };

// Asks the container that is running to import `file`, a full path, and waits for it. `sentence` says what
// came of it; Nobody where none is running and where there is no bus.
[[nodiscard]] ImportAnswer askToImport(std::string const& file, std::string const& sequenceKey,
                                       std::string& sentence);

} // namespace workbench
