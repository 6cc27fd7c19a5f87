#pragma once

namespace workbench {

// The media engine's stay in this process: made once, on the main thread, after the toolkit and before
// anything else of the engine; destroyed after all of it.
class MediaEngine final {
public:
    MediaEngine();
    ~MediaEngine();
    MediaEngine(MediaEngine const&) = delete;
    MediaEngine& operator=(MediaEngine const&) = delete;
};

} // namespace workbench
