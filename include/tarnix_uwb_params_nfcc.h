/* SPDX-License-Identifier: Apache-2.0 */
#ifndef TARNIX_UWB_PARAMS_NFCC_H_
#define TARNIX_UWB_PARAMS_NFCC_H_

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** The size in bytes of a whole calibration block. */
#define TARNIX_UWB_PARAMS_SIZE 82

/**
 * Produces the UWB calibration block that the NFC controller needs.
 *
 * Reads, afresh at every call:
 *   - the system properties "ro.vendor.uwb.calibration.calibrationpaths" (one more path file, tried
 *     first) and "vendor.uwb.calibration.country_code" (replaces "<country>" in calibration paths);
 *   - the path files, in this order: the one that the property names, if it is set,
 *     "/vendor/etc/uwb_calib_paths.conf", "/vendor/etc/calib_paths", "./uwb_calib_paths.conf",
 *     "./calib_paths". Relative paths start at the process's current directory;
 *   - the calibration files that a path file lists. The first path file from which one of them can
 *     be read decides, whether its calibration is valid or not. No later one is opened.
 * Nothing of one call is seen by the next.
 *
 * @param buffer    receives the block. Owned by the caller, at any alignment. May be null: then
 *                  nothing is read and the result is 0.
 * @param capacity  the number of bytes that `buffer` can take. A smaller one than
 *                  TARNIX_UWB_PARAMS_SIZE is no error: the block's first `capacity` bytes are
 *                  written. Bytes behind the block are left untouched.
 *
 * @return the number of bytes written, min(TARNIX_UWB_PARAMS_SIZE, capacity). Take less than
 *         TARNIX_UWB_PARAMS_SIZE for a truncated block. 0 when there is no valid calibration (the
 *         log then says why), when `buffer` is null, and when `capacity` is 0; the buffer is then
 *         left untouched. A block is complete, yet not always made of all files: one with a bad
 *         value is left there, which the log says, and other files may have set what it then
 *         lacks. The block's multi-byte fields lie most significant byte first, whatever the
 *         host's order.
 *
 * Calls must not overlap: callers on several threads take a lock of their own around it.
 *
 * Failures of files and of their contents are never thrown. An allocation that fails while a
 * calibration file is read or parsed is logged, and the load goes on without the rest of that file
 * or all of it. Any other leaves the call as a C++ exception (std::bad_alloc or std::length_error)
 * with the buffer untouched; the next call works as any other. A caller in C cannot catch it: its
 * process ends.
 */
uint32_t load_uwb_params_from_files(void* buffer, unsigned int capacity);

#ifdef __cplusplus
}
#endif

#endif /* TARNIX_UWB_PARAMS_NFCC_H_ */
