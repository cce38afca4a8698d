// SPDX-License-Identifier: Apache-2.0
// A whole load. The input is the capacity, then texts with 0xFF between them: the country code, the
// path property, and for each file of the device its path, a line feed and its text.
//
// The device is one folder: in every path, '_' stands for '/', so that no input leaves it.
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>

#include "fuzz/support.h"
#include "include/tarnix_uwb_params_nfcc.h"
#include "output/crc16.h"
#include "tests/kit/doubles.h"

namespace {

constexpr uint8_t kUntouched = 0xA5;
constexpr size_t kGuard = 32;
constexpr size_t kLargestCapacity = 200;

using Memory = std::vector<uint8_t>;

// Enters a folder of its own, in TMPDIR; it is left empty at the end of each input.
bool enterFolder() {
  std::string folder = std::filesystem::temp_directory_path() / "load_fuzzer.XXXXXX";
  require(mkdtemp(folder.data()) != nullptr && chdir(folder.c_str()) == 0, "TMPDIR can be used");
  return true;
}

std::string flat(std::string path) {
  std::replace(path.begin(), path.end(), '/', '_');
  return path;
}

// The defaults that lie in the working directory stand for those of /vendor/etc as well.
std::string nameOf(const std::string& path) {
  if (path == "/vendor/etc/uwb_calib_paths.conf") return "uwb_calib_paths.conf";
  if (path == "/vendor/etc/calib_paths") return "calib_paths";
  return flat(path);
}

bool isPathFile(const std::string& name, const std::string& property) {
  return name == "uwb_calib_paths.conf" || name == "calib_paths" ||
         std::string(name.c_str()) == property.c_str();
}

void writeFile(const std::string& file, const std::string& property) {
  const size_t end = std::min(file.find('\n'), file.size());
  const std::string name = nameOf(file.substr(0, end));
  const std::string text = file.substr(std::min(end + 1, file.size()));
  std::ofstream(name) << (isPathFile(name, property) ? flat(text) : text);
}

void setUp(const std::vector<std::string>& texts) {
  const auto text = [&](size_t i) { return i < texts.size() ? texts[i] : ""; };
  const std::string property = nameOf(text(1));
  setProperty("vendor.uwb.calibration.country_code", flat(text(0)));
  setProperty("ro.vendor.uwb.calibration.calibrationpaths", property);
  for (size_t i = 2; i < texts.size(); ++i) writeFile(texts[i], property);
}

void removeFiles() {
  for (const auto& file : std::filesystem::directory_iterator(".")) remove(file.path());
}

bool isUntouched(Memory::const_iterator first, Memory::const_iterator last) {
  return std::all_of(first, last, [](uint8_t byte) { return byte == kUntouched; });
}

// What a load writes, after checking that it writes nothing else.
Memory load(unsigned int capacity) {
  Memory memory(kGuard + capacity + kGuard, kUntouched);
  takeLog();
  const uint32_t count = load_uwb_params_from_files(memory.data() + kGuard, capacity);
  require(count == 0 || count == std::min(82U, capacity), "nothing or all that fits is written");
  const auto first = memory.cbegin() + kGuard;
  require(isUntouched(memory.cbegin(), first), "nothing is written before the buffer");
  const auto end = first + static_cast<ptrdiff_t>(count);
  require(isUntouched(end, memory.cend()), "nothing is written behind the block");
  return Memory(first, end);
}

bool isZero(const Memory& block, size_t first, size_t last) {
  return std::all_of(block.begin() + static_cast<ptrdiff_t>(first),
                     block.begin() + static_cast<ptrdiff_t>(last) + 1,
                     [](uint8_t byte) { return byte == 0; });
}

bool isSelectorCode(uint8_t code) {
  return code == 0x01 || code == 0x03 || code == 0x04 || code == 0x0C;
}

void checkBlock(const Memory& block) {
  const uint16_t crc = Crc16().crc(block.data() + 2, 80, 0x0001);
  require(block[0] == crc >> 8 && block[1] == (crc & 0xFF), "the seal is right");
  require(isZero(block, 22, 25) && isZero(block, 28, 30) && isZero(block, 39, 81),
          "reserved bytes are zero");
  require(isSelectorCode(block[33]) && isSelectorCode(block[36]), "selector codes are known");
}

void checkLog(const std::vector<LogLine>& log, bool valid) {
  for (const LogLine& line : log) {
    require(!line.has_tag && line.priority >= 3 && line.priority <= 6, "the log is well-formed");
  }
  const bool success =
      log.back().text.rfind("Valid calibration was parsed from entries in ", 0) == 0;
  require(success == valid, "the log's last line tells how a load ended");
  require(valid || log.back().priority == 6, "a load without a block ends with an error");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const bool entered = enterFolder();
  require(entered, "the folder is entered once");
  InputBytes input(data, size);
  const auto capacity = static_cast<unsigned int>(input.byte() % (kLargestCapacity + 1));
  setUp(split(input.rest(), '\xFF'));
  Memory whole = load(82);
  const std::vector<LogLine> log = takeLog();
  checkLog(log, !whole.empty());
  if (!whole.empty()) checkBlock(whole);
  const Memory cut = load(capacity);
  whole.resize(std::min(whole.size(), size_t{capacity}));
  require(cut == whole, "the capacity only cuts the block");
  require(takeLog() == log, "the next load goes like the one before");
  removeFiles();
  return 0;
}
