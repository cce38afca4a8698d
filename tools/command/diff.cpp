// SPDX-License-Identifier: Apache-2.0
#include <sys/stat.h>

#include <stdexcept>

#include "tools/block/difference.h"
#include "tools/block/reader.h"
#include "tools/block/view.h"
#include "tools/command/tree.h"
#include "tools/device/device_library.h"

namespace {

bool isDirectory(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// The block of a tree, empty without a valid calibration; or the block in a file.
Bytes blockFrom(const std::string& operand, const Options& options, const DeviceLibrary& library) {
  if (!isDirectory(operand)) return readBlock(readInput(operand));
  const Tree tree(operand, options);
  return library.load(kBlockSize);
}

std::string side(const Bytes& block, const BlockField& field) {
  std::string text = bytesOf(block, field);
  const std::string value = valueOf(block, field);
  if (!value.empty()) text += " = " + value;
  const std::string meaning = meaningOf(block, field);
  if (!meaning.empty()) text += (text.empty() ? "" : ", ") + meaning;
  return text;
}

std::string asText(const Bytes& a, const Bytes& b, const Paint& paint) {
  std::string out;
  for (const BlockField* field : differingFields(a, b)) {
    out += paint.bold(field->name) + ", offset " + std::to_string(field->offset) + "\n" +
           paint.red("- " + side(a, *field)) + "\n" + paint.green("+ " + side(b, *field)) + "\n";
  }
  return out;
}

JsonValue sideJson(const Bytes& block, const BlockField& field) {
  JsonMembers json = {{"bytes", bytesOf(block, field)}};
  if (field.end() <= block.size() && field.kind != FieldKind::Reserved) {
    json.emplace_back("value", numberIn(block, field));
  }
  return json;
}

std::string asJson(const Bytes& a, const Bytes& b) {
  std::vector<JsonValue> differences;
  for (const BlockField* field : differingFields(a, b)) {
    differences.emplace_back(JsonMembers{{"name", field->name},
                                         {"offset", field->offset},
                                         {"a", sideJson(a, *field)},
                                         {"b", sideJson(b, *field)}});
  }
  return documentOf({{"differences", differences}});
}

}  // namespace

Outcome diff(const Options& options, const Paint& paint) {
  const std::string& first = options.operands.at(0);
  const std::string& second = options.operands.at(1);
  if (first == "-" && second == "-") {
    throw std::runtime_error("only one of the two can be the standard input");
  }
  const DeviceLibrary library(options.library);
  const Bytes a = blockFrom(first, options, library);
  const Bytes b = blockFrom(second, options, library);
  for (const std::string* operand : {a.empty() ? &first : nullptr, b.empty() ? &second : nullptr}) {
    if (operand != nullptr) return {kFindings, std::nullopt, "no valid calibration in " + *operand};
  }
  const int status = a == b ? kGood : kFindings;
  return {status, options.format == "json" ? asJson(a, b) : asText(a, b, paint), {}};
}
