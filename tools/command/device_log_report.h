// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tools/command/command.h"

// Compares the load that a device's log tells of with the same load in the tree, and names the
// lines behind its errors.
Outcome explainDeviceLog(const Options& options, const Paint& paint);
