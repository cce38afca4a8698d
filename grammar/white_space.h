// SPDX-License-Identifier: Apache-2.0
#pragma once

// White space is the blank and the control characters from tab to carriage return, in any locale.
// A function object rather than a function: it melts into the loops that are given it.
inline constexpr auto isWhiteSpace = [](char c) {
  return c <= ' ' && (c == ' ' || (c >= '\t' && c <= '\r'));
};
