#pragma once

#include "Workbench/HostEditor/SequenceFacts.h"
#include "Workbench/HostEditor/SessionBus.h"

#include <giomm/dbusinterfacevtable.h>
#include <giomm/dbusintrospection.h>
#include <glibmm/variant.h>

#include <map>
#include <optional>

namespace workbench {

// Tells the session bus which sequence is active, with its exact rate: the property ActiveSequence (a{sv},
// empty without one) of the interface com.zelvix.fcp.Editor1 on /com/zelvix/fcp/Editor, under the name
// com.zelvix.fcp.Editor. Without a bus it tells nobody. Main thread.
class EditorService final : public sigc::trackable {
public:
    explicit EditorService(SessionBus& sessionBus); // outlives the service
    ~EditorService();
    EditorService(EditorService const&) = delete;
    EditorService& operator=(EditorService const&) = delete;

    // When it returns, a bus that answers has passed the change on: whoever is told of it later, by another
    // way, finds it known.
    void setActiveSequence(std::optional<SequenceFacts> sequence);

private:
    using Dictionary = std::map<Glib::ustring, Glib::VariantBase>;

    void publish();
    void forget();
    void waitUntilTaken() const;
    [[nodiscard]] Glib::Variant<Dictionary> property() const;

    SessionBus& bus;
    Gio::DBus::InterfaceVTable table;
    std::optional<SequenceFacts> active;
    Glib::RefPtr<Gio::DBus::Connection> published; // null: nowhere
    unsigned object = 0;
    unsigned name = 0;
};

} // namespace workbench
