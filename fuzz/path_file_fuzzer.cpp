// SPDX-License-Identifier: Apache-2.0
// The lines of a path file: which files are read for each, and what the log says. The input is the
// country code, a line feed, and the path file.
#include <android/log.h>

#include <numeric>

#include "fuzz/literal_load.h"
#include "fuzz/support.h"
#include "loader/calib_parser.h"

namespace {

// Half of all paths name a file, whose text is the path itself.
std::optional<std::string> textOf(const std::string& path) {
  if (std::accumulate(path.begin(), path.end(), 0) % 2 != 0) return std::nullopt;
  return "text of " + path;
}

class MemoryReader : public ICalibReader {
 public:
  std::optional<std::string> read(const std::string& path) override {
    const std::optional<std::string> text = textOf(path);
    if (!text.has_value())
      __android_log_print(ANDROID_LOG_ERROR, nullptr, "Unable to open file %s", path.c_str());
    return text;
  }
};

void checkEntry(const std::string& entry, const std::string& country) {
  MemoryReader reader;
  LiteralLoad literal(textOf, country);
  takeLog();
  const std::optional<calibration> found = CalibParser(reader, country).parsePathFileEntry(entry);
  const std::optional<LiteralFile> expected = literal.readEntry(entry);
  requireSameLog(literal.log);
  require(found.has_value() == expected.has_value(), "a file that exists is found");
  if (!found.has_value()) return;
  require(found->path == expected->first, "a calibration names its file");
  require(found->content == expected->second, "a calibration holds its file's text");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string input(data, data + size);
  const std::vector<std::string> lines = split(input, '\n');
  for (size_t i = 1; i < lines.size(); ++i) checkEntry(lines[i], lines[0]);
  return 0;
}
