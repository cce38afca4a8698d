// SPDX-License-Identifier: Apache-2.0
// Hands the named files, and those of the named folders, to a target, each once: a fuzz target as a
// test, for every compiler and machine. Says before each how to run it alone.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

std::string textOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

int main(int argc, char** argv) {
  // Read before any target changes the working directory.
  std::map<std::string, std::string> inputs;
  for (int i = 1; i < argc; ++i) {
    if (!std::filesystem::is_directory(argv[i])) {
      inputs[argv[i]] = textOf(argv[i]);
      continue;
    }
    for (const auto& file : std::filesystem::directory_iterator(argv[i])) {
      inputs[file.path()] = textOf(file);
    }
  }
  for (const auto& [path, input] : inputs) {
    std::fprintf(stderr, "%s %s\n", argv[0], path.c_str());
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(input.data()), input.size());
  }
  std::printf("%zu inputs\n", inputs.size());
  return inputs.empty() ? 1 : 0;
}
