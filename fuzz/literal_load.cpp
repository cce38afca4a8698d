// SPDX-License-Identifier: Apache-2.0
#include "fuzz/literal_load.h"

#include <sstream>
#include <stdexcept>

#include "fuzz/literal_reader.h"
#include "tests/kit/checksums.h"

namespace {

using Kind = LiteralNode::Kind;

constexpr const char* kPlaceholder = "<country>";

LiteralNode node(Kind kind, const std::string& name, std::vector<LiteralNode> children = {}) {
  LiteralNode node;
  node.kind = kind;
  node.name = name;
  node.children = std::move(children);
  return node;
}

LiteralNode selectionTree() {
  const LiteralNode selection = node(Kind::Word, "antenna_selection");
  return node(Kind::Group, "",
              {node(Kind::Group, "ch5", {selection}), node(Kind::Group, "ch9", {selection})});
}

LiteralNode antennaTree(const std::string& antenna, const char* channel, bool has_wiring) {
  const LiteralNode prf64 =
      node(Kind::Group, "prf64",
           {node(Kind::Number16, "ant_delay"), node(Kind::Number32, "tx_power"),
            node(Kind::Number16, "pg_count"), node(Kind::Number8, "pg_delay")});
  LiteralNode tree = node(Kind::Group, antenna, {node(Kind::Group, channel, {prf64})});
  if (!has_wiring) return tree;
  for (const char* key : {"selector_gpio_value", "selector_gpio", "port"})
    tree.children.push_back(node(Kind::Number8, key));
  return tree;
}

// An antenna has its wiring unless it is named like the one before it. Before channel 5 stands the
// empty name.
LiteralNode fullTree(const std::string& ch5, const std::string& ch9) {
  LiteralNode tree = node(Kind::Group, "",
                          {node(Kind::Number16, "version"), antennaTree(ch5, "ch5", !ch5.empty()),
                           antennaTree(ch9, "ch9", ch9 != ch5)});
  for (const char* key : {"temperature_reference", "xtal_trim", "wifi_coex_time_gap",
                          "ap_coop_mode", "alternate_pulse_shape", "wifi_coex_min_spacing"})
    tree.children.push_back(node(Kind::Number8, key));
  return tree;
}

// Reads all files; true when one at least was read to its end.
bool readAll(LiteralNode& tree, const std::vector<LiteralFile>& files, Log& log) {
  bool any = false;
  for (const auto& [path, text] : files) {
    log.push_back(info(std::string("Parsing ") + path.c_str()));
    try {
      literalRead(tree, text, log);
      any = true;
    } catch (const std::exception& e) {
      log.push_back(
          error(std::string("Failed to parse calb file ") + path.c_str() + ", reason " + e.what()));
    }
  }
  return any;
}

bool isComplete(const LiteralNode& tree, Log& log) {
  const std::vector<std::string> missing = literalMissing(tree);
  if (missing.empty()) return true;
  log.push_back(error("Calibration is invalid, missing params: "));
  for (const std::string& name : missing) log.push_back(error(std::string("- ") + name.c_str()));
  return false;
}

uint8_t selectorCode(uint32_t gpio, uint32_t level) {
  if (gpio != 6 && gpio != 7) throw std::invalid_argument("GPIO must be 6 or 7");
  if (level > 1) throw std::invalid_argument("GPIO value must be 0 or 1");
  if (gpio == 6) return level == 0 ? 0x01 : 0x03;
  return level == 0 ? 0x04 : 0x0C;
}

// The block of a complete tree.
Bytes encoded(const LiteralNode& tree) {
  const LiteralNode& antenna5 = tree.children[1];
  const LiteralNode& antenna9 = tree.children[2];
  // A shared antenna has its wiring in the first of its two groups.
  const LiteralNode& wiring9 = antenna5.name == antenna9.name ? antenna5 : antenna9;
  const std::vector<LiteralNode>& ch5 = antenna5.children[0].children[0].children;
  const std::vector<LiteralNode>& ch9 = antenna9.children[0].children[0].children;
  const auto code = [](const LiteralNode& antenna) {
    return selectorCode(antenna.children[2].number, antenna.children[1].number);
  };
  Bytes block(82);
  const auto put = [&block](size_t offset, size_t size, uint32_t number) {
    for (; size > 0; number >>= 8) block[offset + --size] = static_cast<uint8_t>(number);
  };
  put(36, 1, code(wiring9));
  put(33, 1, code(antenna5));
  put(2, 2, tree.children[0].number);
  put(4, 2, ch9[0].number);
  put(6, 2, ch5[0].number);
  put(8, 4, ch9[1].number);
  put(12, 2, ch9[2].number);
  put(14, 1, ch9[3].number);
  put(15, 4, ch5[1].number);
  put(19, 2, ch5[2].number);
  put(21, 1, ch5[3].number);
  put(26, 1, tree.children[3].number);
  put(27, 1, tree.children[4].number);
  put(31, 1, tree.children[5].number);
  put(32, 1, tree.children[6].number);
  put(34, 1, tree.children[7].number);
  put(35, 1, tree.children[8].number);
  put(37, 1, antenna5.children[3].number + 1);
  put(38, 1, wiring9.children[3].number + 1);
  put(0, 2, blockCrc16(block));
  return block;
}

std::string lowered(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

}  // namespace

LiteralLoad::LiteralLoad(ReadFile read, std::string country)
    : read(std::move(read)), country(std::move(country)) {}

std::optional<LiteralFile> LiteralLoad::readCalibration(const std::string& path) {
  const std::optional<std::string> text = read(path);
  if (text.has_value()) return LiteralFile(path, *text);
  log.push_back(error(std::string("Unable to open file ") + path.c_str()));
  return std::nullopt;
}

std::optional<LiteralFile> LiteralLoad::readEntry(const std::string& entry) {
  const size_t at = entry.find(kPlaceholder);
  if (at == entry.npos) {
    log.push_back(info("No country placeholder, opening as-is"));
    return readCalibration(entry);
  }
  log.push_back(info("Calib path contains a country code placeholder, replacing it"));
  const auto with = [&](const std::string& word) {
    return std::string(entry).replace(at, 9, word);
  };
  const std::string path = with(country.empty() ? "unknown" : lowered(country));
  log.push_back(info(std::string("Parsing calib file: ") + path.c_str()));
  if (const auto file = readCalibration(path)) return file;
  log.push_back(error(std::string("Failed to reader calib file: ") + path.c_str() +
                      ", falling back to default"));
  return readCalibration(with("default"));
}

std::vector<LiteralFile> LiteralLoad::readPathFile(const std::string& path_file) {
  std::vector<LiteralFile> files;
  const std::optional<std::string> text = read(path_file);
  if (!text.has_value())
    log.push_back(error(std::string("Failed to open path file: ") + path_file.c_str()));
  std::istringstream lines(text.value_or(""));
  for (std::string entry; std::getline(lines, entry);) {
    log.push_back(info(std::string("Reading entry: ") + entry.c_str()));
    if (const auto file = readEntry(entry)) files.push_back(*file);
  }
  return files;
}

Bytes LiteralLoad::blockOf(const std::vector<LiteralFile>& files, const std::string& path_file) {
  const std::string name = path_file.c_str();
  LiteralNode selection = selectionTree();
  log.push_back(info("Parsing antenna selection"));
  if (!readAll(selection, files, log)) {
    log.push_back(error("Failed to parse antenna selection"));
    return {};
  }
  if (!isComplete(selection, log)) return {};
  LiteralNode full =
      fullTree(selection.children[0].children[0].word, selection.children[1].children[0].word);
  log.push_back(info("Parsing full calibration"));
  if (!readAll(full, files, log)) {
    log.push_back(error("Failed to parse calibration from " + name));
    return {};
  }
  return isComplete(full, log) ? encoded(full) : Bytes();
}

Bytes LiteralLoad::run(const std::string& path_property) {
  log.push_back(info("load_uwb_params_from_files entry, version v1.2-RC1"));
  log.push_back(country.empty() ? warning("No country code set")
                                : info(std::string("Using country code: ") + country.c_str()));
  std::vector<std::string> path_files = {"/vendor/etc/uwb_calib_paths.conf",
                                         "/vendor/etc/calib_paths", "./uwb_calib_paths.conf",
                                         "./calib_paths"};
  if (!path_property.empty()) path_files.insert(path_files.begin(), path_property);
  for (const std::string& path_file : path_files) {
    const std::string name = path_file.c_str();
    log.push_back(info("Reading path file " + name));
    const std::vector<LiteralFile> files = readPathFile(path_file);
    if (!files.empty()) {
      log.push_back(
          info("Found " + std::to_string(files.size()) + " calibration files in " + name));
      return blockOrError(files, name);
    }
    log.push_back(error("Unable to read any calibration file from: " + name));
    log.push_back(
        error("Failed to read calibration files from " + name + ", trying next path file"));
  }
  log.push_back(error("Did not find valid calibration values in any of the files"));
  return {};
}

// The end of a load that has found files.
Bytes LiteralLoad::blockOrError(const std::vector<LiteralFile>& files, const std::string& name) {
  try {
    const Bytes block = blockOf(files, name);
    log.push_back(block.empty() ? error("Calibration is invalid, aborting")
                                : info("Valid calibration was parsed from entries in " + name));
    return block;
  } catch (const std::exception& e) {
    log.push_back(error(std::string("Unable to convert calib to params: ") + e.what()));
    return {};
  }
}
