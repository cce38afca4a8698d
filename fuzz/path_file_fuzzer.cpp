// SPDX-License-Identifier: Apache-2.0
// The lines of a path file: which files are read for each, and what the log says. The input is the
// country code, a line feed, and the path file.
#include <numeric>

#include "fuzz/support.h"
#include "loader/calib_parser.h"
#include "tests/kit/doubles.h"

namespace {

constexpr const char* kPlaceholder = "<country>";

// Half of all paths name a file, whose text is the path itself.
bool exists(const std::string& path) {
  return std::accumulate(path.begin(), path.end(), 0) % 2 == 0;
}

class MemoryReader : public ICalibReader {
 public:
  std::optional<std::string> read(const std::string& path) override {
    paths.push_back(path);
    return exists(path) ? std::make_optional("text of " + path) : std::nullopt;
  }

  std::vector<std::string> paths;
};

std::string resolved(const std::string& entry, const std::string& directory) {
  const size_t at = entry.find(kPlaceholder);
  return entry.substr(0, at) + directory + entry.substr(at + 9);
}

std::string countryDirectory(std::string code) {
  for (char& c : code) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c | 0x20);
  }
  return code.empty() ? "unknown" : code;
}

// The paths that are read for an entry, in order, and the log lines.
struct Expected {
  Expected(const std::string& entry, const std::string& country) {
    if (entry.find(kPlaceholder) == entry.npos) {
      paths = {entry};
      log = {info("No country placeholder, opening as-is")};
      return;
    }
    paths = {resolved(entry, countryDirectory(country))};
    log = {info("Calib path contains a country code placeholder, replacing it"),
           info("Parsing calib file: " + std::string(paths[0].c_str()))};
    if (exists(paths[0])) return;
    log.push_back(error("Failed to reader calib file: " + std::string(paths[0].c_str()) +
                        ", falling back to default"));
    paths.push_back(resolved(entry, "default"));
  }

  std::vector<std::string> paths;
  std::vector<LogLine> log;
};

void checkEntry(const std::string& entry, const std::string& country) {
  takeLog();
  MemoryReader reader;
  const std::optional<calibration> read = CalibParser(reader, country).parsePathFileEntry(entry);
  const Expected expected(entry, country);
  require(reader.paths == expected.paths, "the country's file is read, then the default one");
  require(takeLog() == expected.log, "the log tells which files are tried");
  require(read.has_value() == exists(expected.paths.back()), "a file that exists is found");
  if (!read.has_value()) return;
  require(read->path == expected.paths.back(), "a calibration names its file");
  require(read->content == "text of " + read->path, "a calibration holds its file's text");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string input(data, data + size);
  const std::vector<std::string> lines = split(input, '\n');
  for (size_t i = 1; i < lines.size(); ++i) checkEntry(lines[i], lines[0]);
  return 0;
}
