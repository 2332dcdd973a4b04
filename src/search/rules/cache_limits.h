#pragma once

/// @file
/// Limits of the extension cache, for the cache and for whoever plans with it. The idea is in
/// search/extension/extension_cache.h.

#include <cstddef>
#include <cstdint>

namespace quorix {

/// The longest unit, in bases, whose extensions are cached: a unit code has two bits for each base.
/// Seeds of longer units extend from edit site to edit site each time, so it pays to bound them for
/// longer.
inline constexpr std::int64_t kMaxCachedUnit = 28;

/// Edit sites that an extension meets before it asks the path cache. Few extensions meet more.
inline constexpr int kUncachedSites = 32;

/// Chosen edits that are remembered, in 640 KB.
inline constexpr std::size_t kMaxCachedEdits = std::size_t{1} << 14U;

/// Edit sites of cached paths, in 30 MB.
inline constexpr std::size_t kMaxCachedSites = std::size_t{1} << 19U;

/// The highest score that an extension with cached paths may come to, so that sums along paths fit
/// in 32 bits.
inline constexpr std::int64_t kMaxCachedScore = std::int64_t{1} << 30U;

}  // namespace quorix
