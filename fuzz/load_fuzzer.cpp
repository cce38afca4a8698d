// SPDX-License-Identifier: Apache-2.0
// A whole load. The input is the capacity, then texts with 0xFF between them: the country code, the
// path property, and for each file of the device its path, a line feed and its text.
//
// The device is one folder: in every path, '_' stands for '/', so that no input leaves it.
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "fuzz/literal_load.h"
#include "fuzz/support.h"
#include "tests/kit/guarded_load.h"

namespace {

constexpr size_t kLargestCapacity = 200;

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

std::optional<std::string> textOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file.is_open()) return std::nullopt;
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

void checkLoad(unsigned int capacity, const Bytes& block, const Log& log) {
  const Bytes written(block.data(), block.data() + std::min<size_t>(block.size(), capacity));
  takeLog();
  const Load load(capacity);
  requireSameLog(log);
  require(!load.threw && load.result == written.size(), "the result is the number of bytes");
  require(load.memory == guarded(capacity, written), "the block is written and nothing else");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const bool entered = enterFolder();
  require(entered, "the folder is entered once");
  InputBytes input(data, size);
  const auto capacity = static_cast<unsigned int>(input.byte() % (kLargestCapacity + 1));
  const std::vector<std::string> texts = split(input.rest(), '\xFF');
  setUp(texts);
  LiteralLoad literal(textOf, texts.empty() ? "" : flat(texts[0]));
  const Bytes block = literal.run(texts.size() < 2 ? "" : nameOf(texts[1]));
  checkLoad(TARNIX_UWB_PARAMS_SIZE, block, literal.log);
  checkLoad(capacity, block, literal.log);
  removeFiles();
  return 0;
}
