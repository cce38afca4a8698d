// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "tools/block/fields.h"

// The fields in which two blocks differ, and those that only one of them has completely.
std::vector<const BlockField*> differingFields(const Bytes& a, const Bytes& b);
