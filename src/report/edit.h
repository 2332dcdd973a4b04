#pragma once

/// @file
/// One edit of a repeat.

namespace quorix {

/// A difference between a repeat and perfect copies of its unit. Kinds: 'M', the base at `position`
/// does not match its unit character; 'I', that base has no unit character; 'D', a unit character
/// is missing just before that base.
struct Edit {
  const char* position;
  char kind;
};

}  // namespace quorix
