#pragma once

#include "Workbench/HostEditor/EngineTypes.h"
#include "Workbench/HostEditor/SequenceFacts.h"

#include <cstdint>
#include <memory>

namespace workbench {

// One sequence as the engine holds it, together with the place that its playhead was left at. The engine
// reads the producer on its own threads while a player holds the sequence. Main thread.
class Sequence final {
public:
    // Length, rate and shape are read from the two; the caller fills in the rest of `facts`.
    Sequence(std::unique_ptr<Mlt::Profile> profile, std::unique_ptr<Mlt::Producer> producer,
             SequenceFacts facts);
    ~Sequence();
    Sequence(Sequence const&) = delete;
    Sequence& operator=(Sequence const&) = delete;

    [[nodiscard]] SequenceFacts const& facts() const { return known; }

    [[nodiscard]] Mlt::Profile& profile() { return *shape; }

    [[nodiscard]] Mlt::Producer& producer() { return *source; }

    [[nodiscard]] std::int64_t lastFrame() const { return known.length - 1; }

    // The frame that was on the screen last.
    [[nodiscard]] std::int64_t position() const { return place; }

    void setPosition(std::int64_t frame) { place = frame; }

private:
    std::unique_ptr<Mlt::Profile> shape; // outlives the producer, which refers to it
    std::unique_ptr<Mlt::Producer> source;
    SequenceFacts known;
    std::int64_t place = 0;
};

} // namespace workbench
