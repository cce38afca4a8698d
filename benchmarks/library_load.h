// SPDX-License-Identifier: Apache-2.0
#pragma once

// Opens the shared library that the contender "library" calls. Ends the program when it cannot.
void openLibrary(const char* file);
