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
 *   - the calibration files that a path file lists. The first path file with a calibration file
 *     that can be read decides, whether the calibration is valid or not: no later one is opened.
 * Nothing is kept between calls.
 *
 * @param buffer    receives the block. Owned by the caller, at any alignment. May be null: then
 *                  nothing is read and the result is 0.
 * @param capacity  the number of bytes that `buffer` can take. A smaller one than
 *                  TARNIX_UWB_PARAMS_SIZE is no error: the block's first `capacity` bytes are
 *                  written. Bytes after the block are left untouched.
 *
 * @return the number of bytes written, min(TARNIX_UWB_PARAMS_SIZE, capacity); fewer than
 *         TARNIX_UWB_PARAMS_SIZE mean a truncated block. 0 when there is no valid calibration (the
 *         log says why), when `buffer` is null, and when `capacity` is 0; the buffer is then left
 *         untouched. Multi-byte fields are stored most significant byte first on every host.
 *
 * Every parameter of a block was given by some file. Reading of a file stops at its first bad
 * value, which is logged; the parameters after it keep the values of other files.
 *
 * Calls must not overlap: callers on several threads hold a lock of their own. The process's global
 * C++ locale must be the classic one, as it is by default: numbers are read by it.
 *
 * Failures of files and of their contents are never thrown. When an allocation fails while a
 * calibration file is read or parsed, this is logged, and the load goes on without that file or its
 * rest. Any other failed allocation is thrown (std::bad_alloc or std::length_error), with the
 * buffer untouched; the next call is not affected. A caller in C cannot catch it: its process ends.
 */
uint32_t load_uwb_params_from_files(void* buffer, unsigned int capacity);

#ifdef __cplusplus
}
#endif

#endif /* TARNIX_UWB_PARAMS_NFCC_H_ */
