#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

// The contract between the panel and the program that hosts it. On Linux it is the one header that a host
// needs: it implements FCPXHost and what hangs from it, exports ProExtensionHostSingleton, opens the module
// libfcp-extension.so, and shows the widget that fcpExtensionMakePanel returns.
//
// Host and module are compiled with the same compiler family and standard library. Names are the editor's.

namespace fcp {

// A media time: `value / timescale` seconds.
struct CMTime {
    // Bits of `flags`. A time without Valid, or Indefinite, is no number of seconds.
    static constexpr std::uint32_t Valid = 1U << 0;
    static constexpr std::uint32_t HasBeenRounded = 1U << 1;
    static constexpr std::uint32_t PositiveInfinity = 1U << 2;
    static constexpr std::uint32_t NegativeInfinity = 1U << 3;
    static constexpr std::uint32_t Indefinite = 1U << 4;

    std::int64_t value = 0;
    std::int32_t timescale = 0; // units in a second
    std::uint32_t flags = 0;
    std::int64_t epoch = 0;
};

// Implemented by the panel, called by the host on a thread of its choosing. Neither call carries data: the
// observer asks the host for the new state, from inside the call.
class FCPXTimelineObserver {
public:
    virtual ~FCPXTimelineObserver() = default;

    // The playhead has moved.
    virtual void playheadTimeChanged() {}

    // Another sequence became active.
    virtual void activeSequenceChanged() {}
};

// Answers may be asked for on any thread that the host notifies on, and on the main thread.
class FCPXSequence {
public:
    virtual ~FCPXSequence() = default;
    [[nodiscard]] virtual std::optional<std::string> name() const = 0; // UTF-8
    [[nodiscard]] virtual CMTime duration() const = 0;
    [[nodiscard]] virtual CMTime frameDuration() const = 0;

    // Part of the contract, never asked for: the panel reports a constant start timecode.
    [[nodiscard]] virtual CMTime start() const = 0;
};

class FCPXTimeline {
public:
    virtual ~FCPXTimeline() = default;
    [[nodiscard]] virtual CMTime playheadTime() const = 0;

    // Any time may be asked for: beyond both ends, and one that is no number of seconds.
    virtual void movePlayheadTo(CMTime time) = 0;

    // Null when no sequence is open.
    [[nodiscard]] virtual std::shared_ptr<FCPXSequence> activeSequence() const = 0;

    // The host shares the observer's ownership until `remove`, which may also name one that was never added.
    virtual void add(std::shared_ptr<FCPXTimelineObserver> observer) = 0;
    virtual void remove(std::shared_ptr<FCPXTimelineObserver> observer) = 0;
};

class FCPXHost {
public:
    virtual ~FCPXHost() = default;

    // Null when there is no timeline.
    [[nodiscard]] virtual std::shared_ptr<FCPXTimeline> timeline() const = 0;
};

} // namespace fcp

extern "C" {

// Defined and exported by the host (on Linux: -rdynamic, or -Wl,--export-dynamic-symbol with this name),
// found by the panel by name at run time. The object lives as long as the process; null means that there is
// none.
__attribute__((visibility("default"))) fcp::FCPXHost* ProExtensionHostSingleton();

typedef struct _GtkWidget GtkWidget;

// Linux: exported by the module, looked up with dlsym after dlopen(RTLD_NOW | RTLD_LOCAL). Makes a panel and
// returns its widget with a floating reference; the panel lives as long as the widget. Call it on the thread
// that runs the default main context, after gtk_init. The module stays loaded: dlclose does not unload it.
__attribute__((visibility("default"))) GtkWidget* fcpExtensionMakePanel();
}
