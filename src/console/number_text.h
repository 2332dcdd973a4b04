#pragma once

/// @file
/// Numbers as the text that the program prints.

namespace quorix {

/// Formats a number into one shared static buffer and returns that buffer: "%d" for int, "%u" for
/// unsigned int, "%lg" for double and "%g" for float (6 significant digits, shortest form: 1.0F is
/// "1", 0.25F is "0.25").
///
/// The text is valid until the next call of any overload, so print it at once.
const char* number2str(int value);
const char* number2str(unsigned int value);
const char* number2str(double value);
const char* number2str(float value);

}  // namespace quorix
