# SPDX-License-Identifier: Apache-2.0
# Every warning is an error, in the library and in everything around it.
add_library(project_warnings INTERFACE)
target_compile_options(project_warnings INTERFACE
  -Wall -Wextra -Werror -Wconversion -Wsign-conversion -Wcast-qual -Wformat=2 -Wundef
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast>
  $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wlogical-op -Wduplicated-cond -Wduplicated-branches>)
