// SPDX-License-Identifier: Apache-2.0
#pragma once

// As open(2), with the directory of the descriptor `root` as the root and the working directory:
// neither `path` nor a link on its way leads out of it. For flags that create no file.
int openInRoot(int root, const char* path, int flags);
