# SPDX-License-Identifier: Apache-2.0
# The warnings that the library and everything around it compile without. The presets make them
# errors; a build with plain CMake does not, so that a newer compiler's new warning stops nobody.
add_library(project_warnings INTERFACE)
target_compile_options(project_warnings INTERFACE
  -Wall -Wextra -Wconversion -Wsign-conversion -Wcast-qual -Wformat=2 -Wundef
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast>
  $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wlogical-op -Wduplicated-cond -Wduplicated-branches>)
