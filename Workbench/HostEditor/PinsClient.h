#pragma once

#include "Workbench/HostEditor/Pin.h"
#include "Workbench/HostEditor/SessionBus.h"

#include <glibmm/variant.h>

#include <memory>
#include <string>
#include <vector>

namespace workbench {

// Follows the container's comments of one sequence: asks for them when the container appears, when it says
// that they have changed, and when another sequence is to be followed. One question is under way at a time.
// Main thread.
class PinsClient final : public sigc::trackable, public std::enable_shared_from_this<PinsClient> {
public:
    // The bus outlives the client.
    [[nodiscard]] static std::shared_ptr<PinsClient> create(SessionBus& bus);

    ~PinsClient();
    PinsClient(PinsClient const&) = delete;
    PinsClient& operator=(PinsClient const&) = delete;

    // Empty: none. The pins of the sequence before are dropped at once.
    void follow(std::string sequenceKey);

    [[nodiscard]] std::vector<Pin> const& pins() const { return known; }

    // False while no container is there: the pins are the last that it told.
    [[nodiscard]] bool isLive() const { return live; }

    sigc::signal<void()>& signalChanged() { return changed; }

private:
    explicit PinsClient(SessionBus& sessionBus);
    void begin();
    void end();
    void disconnect();
    void setLive(bool present);
    void markersChanged(Glib::VariantContainerBase const& arguments);
    void pull();
    void pulled(Glib::VariantContainerBase const* answer, std::string const& sequenceKey); // null: none came
    void settle(Glib::VariantContainerBase const& answer);

    SessionBus& bus;
    Glib::RefPtr<Gio::DBus::Connection> followed; // null: nowhere
    unsigned watch = 0;
    unsigned subscription = 0;
    bool live = false;
    bool isAsking = false;
    bool askAgain = false;
    std::string key;
    std::vector<Pin> known;
    sigc::signal<void()> changed;
};

// One marker as it comes over the bus. What is missing or of another type counts as absent.
[[nodiscard]] Pin readPin(Glib::VariantBase const& marker);

} // namespace workbench
