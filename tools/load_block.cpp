// SPDX-License-Identifier: Apache-2.0
// Loads the shared library as the device's service does, calls it once and shows what came of it.
#include <android-base/properties.h>
#include <dlfcn.h>

#include <cstdint>
#include <exception>
#include <iomanip>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "include/tarnix_uwb_params_nfcc.h"
#include "tools/target_root.h"

namespace {

constexpr char kUsage[] =
    "usage: load_block --library FILE [--root DIR] [--country CC] [--path-file FILE]\n"
    "                  [--capacity N]\n"
    "Calls the library once and prints the log (standard error), the result and the block.\n"
    "  --library FILE    the shared library to load\n"
    "  --root DIR        makes DIR the root of the file tree for the call\n"
    "  --country CC      sets the country code property\n"
    "  --path-file FILE  sets the property that names one more path file\n"
    "  --capacity N      the size of the buffer, 82 by default\n"
    "Exit status: 0 for a block, 1 for none, 2 for wrong usage.\n";

struct Options {
  std::string library;
  std::string root;
  std::string country;
  std::string path_file;
  unsigned int capacity = TARNIX_UWB_PARAMS_SIZE;
};

struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

unsigned int parseCapacity(const std::string& text) {
  constexpr size_t kMostDigits = 7;  // A larger buffer has no use.
  if (text.empty() || text.size() > kMostDigits ||
      text.find_first_not_of("0123456789") != text.npos) {
    throw UsageError("--capacity takes a number of bytes, not '" + text + "'");
  }
  return static_cast<unsigned int>(std::stoul(text));
}

Options parseOptions(const std::vector<std::string>& arguments) {
  Options options;
  for (size_t i = 0; i < arguments.size(); i += 2) {
    const std::string& name = arguments[i];
    if (i + 1 == arguments.size()) throw UsageError(name + " takes a value");
    const std::string& value = arguments[i + 1];
    if (name == "--library") {
      options.library = value;
    } else if (name == "--root") {
      options.root = value;
    } else if (name == "--country") {
      options.country = value;
    } else if (name == "--path-file") {
      options.path_file = value;
    } else if (name == "--capacity") {
      options.capacity = parseCapacity(value);
    } else {
      throw UsageError("unknown option " + name);
    }
  }
  if (options.library.empty()) throw UsageError("--library is missing");
  return options;
}

decltype(&load_uwb_params_from_files) openLibrary(const std::string& file) {
  void* const library = dlopen(file.c_str(), RTLD_NOW);
  void* const symbol = library == nullptr ? nullptr : dlsym(library, "load_uwb_params_from_files");
  if (symbol == nullptr) throw std::runtime_error(dlerror());
  return reinterpret_cast<decltype(&load_uwb_params_from_files)>(symbol);
}

// One row of the block: from `offset` on, `size` bytes, and what they hold.
struct Field {
  size_t offset;
  size_t size;
  const char* name;
};

constexpr Field kFields[] = {
    {0, 2, "crc"},
    {2, 2, "version"},
    {4, 2, "ch9_ant_delay"},
    {6, 2, "ch5_ant_delay"},
    {8, 4, "ch9_tx_power"},
    {12, 2, "ch9_pg_count"},
    {14, 1, "ch9_pg_delay"},
    {15, 4, "ch5_tx_power"},
    {19, 2, "ch5_pg_count"},
    {21, 1, "ch5_pg_delay"},
    {22, 4, "reserved"},
    {26, 1, "temperature_reference"},
    {27, 1, "xtal_trim"},
    {28, 3, "reserved"},
    {31, 1, "wifi_coex_time_gap"},
    {32, 1, "ap_coop_mode"},
    {33, 1, "ch5_antenna_selection"},
    {34, 1, "alternate_pulse_shape"},
    {35, 1, "wifi_coex_min_spacing"},
    {36, 1, "ch9_antenna_selection"},
    {37, 1, "ch5_port"},
    {38, 1, "ch9_port"},
    {39, 11, "reserved"},
    {50, 16, "reserved"},
    {66, 16, "reserved"},
};

void printBlock(const std::vector<uint8_t>& block) {
  std::cout << "offset  bytes\n";
  for (const Field& field : kFields) {
    if (field.offset >= block.size()) return;
    std::cout << std::dec << std::setfill(' ') << std::setw(6) << field.offset << "  " << std::hex
              << std::setfill('0');
    for (size_t i = 0; i < 16; ++i) {
      const size_t at = field.offset + i;
      if (i < field.size && at < block.size()) {
        std::cout << std::setw(2) << unsigned{block[at]} << ' ';
      } else {
        std::cout << "   ";
      }
    }
    std::cout << ' ' << field.name << '\n';
  }
}

int run(const Options& options) {
  const auto load = openLibrary(options.library);
  android::base::SetProperty("vendor.uwb.calibration.country_code", options.country);
  android::base::SetProperty("ro.vendor.uwb.calibration.calibrationpaths", options.path_file);
  if (!options.root.empty()) enterTargetRoot(options.root);
  std::vector<uint8_t> block(options.capacity);
  // A vector without elements may have no address, and the library takes null for a missing buffer.
  uint8_t no_bytes = 0;
  const uint32_t count = load(block.empty() ? &no_bytes : block.data(), options.capacity);
  block.resize(count);
  std::cout << "load_uwb_params_from_files returned " << count << '\n';
  printBlock(block);
  return count == 0 ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  try {
    if (!arguments.empty() && arguments[0] == "--help") {
      std::cout << kUsage;
      return 0;
    }
    return run(parseOptions(arguments));
  } catch (const UsageError& e) {
    std::cerr << "load_block: " << e.what() << '\n' << kUsage;
    return 2;
  } catch (const std::exception& e) {
    std::cerr << "load_block: " << e.what() << '\n';
    return 2;
  }
}
