#include "Workbench/ContainerApp/ImportService.h"

#include <systemd/sd-bus.h>

#include <cstdint>
#include <exception>
#include <utility>

namespace workbench {

namespace {

constexpr char const* containerName = "com.zelvix.fcp.Container";
constexpr char const* objectPath = "/com/zelvix/fcp/Container";
constexpr char const* interfaceName = "com.zelvix.fcp.Container1";

// As long as 100,000 comments may take on a busy machine.
constexpr std::uint64_t patienceMicroseconds = 120ULL * 1000 * 1000;

struct FreeError {
    void operator()(sd_bus_error* error) const { sd_bus_error_free(error); }
};

// The container that is running may be another program.
std::string refusal(sd_bus_error const& error) {
    auto const text = std::string{error.message ? error.message : "its answer cannot be read"};
    auto const isOurs = sd_bus_error_has_name(&error, SD_BUS_ERROR_FAILED) > 0;
    return isOurs ? text : "the container that is running did not import: " + text;
}

} // namespace

ImportService::ImportService(Bus& theBus, Import theImport)
    : bus{theBus}
    , import{std::move(theImport)} {}

sd_bus_vtable const* ImportService::methods() {
    static auto const import = [](sd_bus_message* call, void* self, sd_bus_error*) {
        return static_cast<ImportService*>(self)->importFile(call);
    };
    static sd_bus_vtable const table[] = {
        SD_BUS_VTABLE_START(0),
        SD_BUS_METHOD_WITH_ARGS("Import", SD_BUS_ARGS("s", file, "s", sequenceKey),
                                SD_BUS_RESULT("s", sentence), import, SD_BUS_VTABLE_UNPRIVILEGED),
        SD_BUS_VTABLE_END};
    return table;
}

bool ImportService::publish() {
    sd_bus_slot* slot = nullptr;
    auto const status =
        sd_bus_add_object_vtable(bus.handle(), &slot, objectPath, interfaceName, methods(), this);
    object.reset(slot);
    return status >= 0;
}

int ImportService::importFile(sd_bus_message* call) {
    char const* file = nullptr;
    char const* key = nullptr;
    if (auto const status = sd_bus_message_read(call, "ss", &file, &key); status < 0)
        return status;
    try {
        return sd_bus_reply_method_return(call, "s", import(file, key).c_str());
    } catch (std::exception const& error) {
        return sd_bus_reply_method_errorf(call, SD_BUS_ERROR_FAILED, "%s", error.what());
    }
}

ImportAnswer askToImport(std::string const& file, std::string const& sequenceKey, std::string& sentence) {
    auto problem = std::string{};
    auto const bus = Bus::open(problem);
    if (!bus)
        return ImportAnswer::Nobody;
    auto const call = bus->methodCall(containerName, objectPath, interfaceName, "Import");
    if (!call || sd_bus_message_append(call.get(), "ss", file.c_str(), sequenceKey.c_str()) < 0) {
        sentence = "the bus does not carry the name " + file;
        return ImportAnswer::Refused;
    }
    auto error = sd_bus_error{};
    auto const freed = std::unique_ptr<sd_bus_error, FreeError>{&error};
    sd_bus_message* answer = nullptr;
    auto const status = sd_bus_call(bus->handle(), call.get(), patienceMicroseconds, &error, &answer);
    auto const owned = BusMessage{answer};
    if (sd_bus_error_has_name(&error, SD_BUS_ERROR_SERVICE_UNKNOWN) ||
        sd_bus_error_has_name(&error, SD_BUS_ERROR_NAME_HAS_NO_OWNER))
        return ImportAnswer::Nobody;
    char const* text = nullptr;
    if (status < 0 || sd_bus_message_read(answer, "s", &text) < 0) {
        sentence = refusal(error);
        return ImportAnswer::Refused;
    }
    sentence = text;
    return ImportAnswer::Imported;
}

} // namespace workbench
