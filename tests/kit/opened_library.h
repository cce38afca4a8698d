// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <dlfcn.h>

#include <cstdint>
#include <stdexcept>
#include <string>

// The shared library as its caller has it: opened by a path or a name, and closed.
class OpenedLibrary {
 public:
  explicit OpenedLibrary(const std::string& path) : library_(dlopen(path.c_str(), RTLD_NOW)) {
    void* const symbol =
        library_ == nullptr ? nullptr : dlsym(library_, "load_uwb_params_from_files");
    if (symbol == nullptr) throw std::runtime_error(dlerror());
    load = reinterpret_cast<uint32_t (*)(void*, unsigned int)>(symbol);
  }
  ~OpenedLibrary() { dlclose(library_); }
  OpenedLibrary(const OpenedLibrary&) = delete;
  OpenedLibrary& operator=(const OpenedLibrary&) = delete;

  static bool isMapped(const std::string& path) {
    return dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD) != nullptr;
  }

  uint32_t (*load)(void* buffer, unsigned int capacity);

 private:
  void* const library_;
};
