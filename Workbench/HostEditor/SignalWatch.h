#pragma once

#include <array>
#include <functional>

namespace workbench {

// Turns the signals that ask a program to end into a call on the main loop, so that it leaves nothing behind.
// A second one of a kind ends the process at once. Main thread.
class SignalWatch final {
public:
    explicit SignalWatch(std::function<void(int number)> whenAsked);
    ~SignalWatch();
    SignalWatch(SignalWatch const&) = delete;
    SignalWatch& operator=(SignalWatch const&) = delete;

private:
    struct Source {
        SignalWatch* watch = nullptr;
        int number = 0;
        unsigned id = 0; // 0: it has come already
    };

    std::function<void(int)> asked;
    std::array<Source, 3> sources;
};

} // namespace workbench
