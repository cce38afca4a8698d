// SPDX-License-Identifier: Apache-2.0
#pragma once

// Besides tests/kit/log_capture.h: whether log lines are kept. Not where there are too many.
void keepLog(bool keep);
