// SPDX-License-Identifier: Apache-2.0
#pragma once

// What becomes of a link, or of "..", that leads out of the root.
enum class Leaving { StaysInside, Fails };

// As open(2), with the directory of the descriptor `root` as the root and the working directory.
// For flags that create no file. A link that leads out stays inside or fails with EXDEV.
int openInRoot(int root, const char* path, int flags, Leaving leaving = Leaving::StaysInside);
