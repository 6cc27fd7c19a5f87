#pragma once

// The media engine's classes, for headers that only pass them on: its own headers are large.
namespace Mlt { // NOLINT(readability-identifier-naming): the engine's choice
class Consumer;
class Event;
class Frame;
class Producer;
class Profile;
} // namespace Mlt
