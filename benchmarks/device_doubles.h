// SPDX-License-Identifier: Apache-2.0
#pragma once

// The log and the properties of the device, in place of the real ones: the country code is "US", no
// other property is set, and log lines go nowhere.

// Has each log line formatted, as the real log does before it passes the line on. Off at first.
void formatLog(bool formats);
