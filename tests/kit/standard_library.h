// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

// The C++ libraries differ in one point that a calibration file can show: where a number ends.
//
// libstdc++ stops at the first character that its base does not allow, so `08` is 0 and `12abc` 12.
// libc++ takes all characters that any base allows and then rejects what is no number as a whole.
#ifdef _LIBCPP_VERSION
inline constexpr bool kNumberMustEndAtItsText = true;
#else
inline constexpr bool kNumberMustEndAtItsText = false;
#endif
