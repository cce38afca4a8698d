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
 *   - the first of the path files from which a calibration file can be read, and the calibration
 *     files that it lists. Relative paths start at the process's current directory.
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
 *         left untouched. The block's multi-byte fields lie most significant byte first, whatever
 *         the host's order.
 *
 * Calls must not overlap: callers on several threads take a lock of their own around it.
 *
 * Failures of files and of their contents are never thrown. A failed allocation may leave the call
 * as a C++ exception (std::bad_alloc or std::length_error); the next call works as any other.
 */
uint32_t load_uwb_params_from_files(void* buffer, unsigned int capacity);

#ifdef __cplusplus
}
#endif

#endif /* TARNIX_UWB_PARAMS_NFCC_H_ */
