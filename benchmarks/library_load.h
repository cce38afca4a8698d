// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "include/tarnix_uwb_params_nfcc.h"

using Load = decltype(&load_uwb_params_from_files);

// Opens the shared library and returns its function. Ends the program when it cannot.
Load openLibrary(const char* file);
