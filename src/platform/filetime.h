// A FILETIME as one unsigned count of 100-nanosecond ticks since
// 1601-01-01 00:00:00 UTC. The record holds the count in two 32-bit halves,
// low half first; code that does arithmetic on a moment joins the halves
// with to_ticks and splits the count back with to_file_time.
#pragma once

#include <cstdint>

#include "kz_basis.h"

namespace kz::os {

inline constexpr std::uint64_t kTicksPerMillisecond = 10'000;
inline constexpr std::uint64_t kTicksPerSecond = 1000 * kTicksPerMillisecond;
inline constexpr std::uint64_t kTicksPerDay = 86'400 * kTicksPerSecond;

constexpr std::uint64_t to_ticks(const FILETIME& moment) {
  return (static_cast<std::uint64_t>(moment.dwHighDateTime) << 32) | moment.dwLowDateTime;
}

constexpr FILETIME to_file_time(std::uint64_t ticks) {
  return {static_cast<std::uint32_t>(ticks), static_cast<std::uint32_t>(ticks >> 32)};
}

// The time calls take only counts with the top bit clear; a count with it
// set is no moment (all ones is the usual "no time").
constexpr bool is_moment(std::uint64_t ticks) { return ticks >> 63 == 0; }

}  // namespace kz::os
