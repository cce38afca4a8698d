# SPDX-License-Identifier: Apache-2.0
# The flags with which the platform builds a library for the device, as far as they shape its code:
# what builds here should build there. -fno-rtti is left out: Android.bp says why.
option(TARNIX_DEVICE_FLAGS "Build the library with the flags of the device" OFF)

# The overflow of an unsigned number ends the device's process, as Android.bp has it.
option(TARNIX_DEVICE_SANITIZERS "Watch the library for what the device watches it for" OFF)

# `objects` is the library's code, `library` what is linked of it.
function(use_device_flags objects library)
  if(TARNIX_DEVICE_SANITIZERS)
    target_compile_options(${objects} PRIVATE -fsanitize=unsigned-integer-overflow)
  endif()
  if(NOT TARNIX_DEVICE_FLAGS)
    return()
  endif()
  target_compile_options(${objects} PRIVATE
    -mthumb -Os -flto=thin -ffunction-sections -fdata-sections -fstack-protector-strong
    -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
  target_link_options(${library} PRIVATE
    -flto=thin LINKER:--gc-sections,--no-undefined,--icf=safe,--hash-style=gnu)
endfunction()
