#pragma once

#include <cstdint>

// Media times as the public reference describes them: what the back end uses, and no more.

extern "C" {

using Float64 = double;
using CMTimeFlags = std::uint32_t;

enum : CMTimeFlags {
    kCMTimeFlags_Valid = 1U << 0,
    kCMTimeFlags_HasBeenRounded = 1U << 1,
    kCMTimeFlags_PositiveInfinity = 1U << 2,
    kCMTimeFlags_NegativeInfinity = 1U << 3,
    kCMTimeFlags_Indefinite = 1U << 4,
};

#pragma pack(push, 4)

typedef struct {
    std::int64_t value;
    std::int32_t timescale;
    CMTimeFlags flags;
    std::int64_t epoch;
} CMTime;

#pragma pack(pop)

Float64 CMTimeGetSeconds(CMTime time);
CMTime CMTimeMakeWithSeconds(Float64 seconds, std::int32_t preferredTimescale);
}
