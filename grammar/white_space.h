// SPDX-License-Identifier: Apache-2.0
#pragma once

// True for the blank and the control characters from tab to carriage return, in any locale. A
// lambda, so that algorithms inline it. Its first comparison refuses most characters.
inline constexpr auto isWhiteSpace = [](char c) {
  return c <= ' ' && (c == ' ' || (c >= '\t' && c <= '\r'));
};
