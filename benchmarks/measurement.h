// SPDX-License-Identifier: Apache-2.0
#pragma once

// The instrument that a program is linked with looks at what happens between these two.
void startMeasurement();
void stopMeasurement();
