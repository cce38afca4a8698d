// SPDX-License-Identifier: Apache-2.0
#pragma once

// The function of the platform's liblog that this project uses, with the same signature.
#ifdef __cplusplus
extern "C" {
#endif

enum {
  ANDROID_LOG_DEBUG = 3,
  ANDROID_LOG_INFO = 4,
  ANDROID_LOG_WARN = 5,
  ANDROID_LOG_ERROR = 6,
};

// Writes one line to the log, and to the standard error on a host. `tag` may be null.
int __android_log_print(int prio, const char* tag, const char* fmt, ...)
    __attribute__((__format__(printf, 3, 4)));

#ifdef __cplusplus
}
#endif
