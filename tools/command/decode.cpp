// SPDX-License-Identifier: Apache-2.0
#include "tools/block/crc_check.h"
#include "tools/block/reader.h"
#include "tools/block/view.h"
#include "tools/command/command.h"
#include "tools/probe/calibration_text.h"
#include "tools/text/input_output.h"

namespace {

// A field of the block, and whether it is wrong.
struct Row {
  const BlockField* field;
  std::string meaning;
  bool bad;
};

std::string crcText(const CrcCheck& crc) {
  if (crc.good()) return "good";
  const std::string cause =
      crc.likely_cause.empty() ? "more than one bit differs" : crc.likely_cause;
  return "computed " + hex(crc.computed, 4) + ": " + cause;
}

// `crc` is that of a whole block.
std::vector<Row> rowsOf(const Bytes& block, const std::optional<CrcCheck>& crc) {
  std::vector<Row> rows;
  for (const BlockField& field : kBlockFields) {
    if (field.offset >= block.size()) break;
    rows.push_back({&field, meaningOf(block, field), isSuspect(block, field)});
  }
  if (crc.has_value()) rows.front() = {kBlockFields, crcText(*crc), !crc->good()};
  return rows;
}

std::vector<std::string> problemsOf(const Bytes& block, const std::vector<Row>& rows) {
  std::vector<std::string> problems;
  if (block.size() < kBlockSize) {
    problems.push_back(StringPrintf("truncated: %zu of %zu bytes", block.size(), kBlockSize));
  }
  for (const Row& row : rows) {
    const std::string name = row.field->kind == FieldKind::Crc ? "bad CRC" : row.field->name;
    if (row.bad) problems.push_back(name + ": " + row.meaning);
  }
  return problems;
}

std::string fieldBytes(const Bytes& block, const BlockField& field) {
  constexpr size_t kMostShown = 4;
  if (field.size <= kMostShown) return bytesOf(block, field);
  return bytesOf(block, {field.name, field.offset, 3, field.kind}) + " ...";
}

std::string rowText(const Bytes& block, const Row& row, const Paint& paint) {
  const BlockField& field = *row.field;
  std::string text = StringPrintf("%6zu  %-22s  %-12s  %10s", field.offset, field.name,
                                  fieldBytes(block, field).c_str(), valueOf(block, field).c_str());
  if (!row.meaning.empty()) text += "  " + (row.bad ? paint.red(row.meaning) : row.meaning);
  return text + "\n";
}

std::string view(const Bytes& block, const std::vector<Row>& rows,
                 const std::vector<std::string>& problems, const Paint& paint) {
  std::string out = paint.inColour() ? mapOf(block, paint) + "\n  " : "";
  out += paint.bold("offset  field                   bytes              value  meaning") + "\n";
  for (const Row& row : rows) {
    if (paint.inColour()) out += letterOf(*row.field, paint) + " ";
    out += rowText(block, row, paint);
  }
  for (const std::string& problem : problems) out += paint.red("! " + problem) + "\n";
  return out;
}

Json::Value crcJson(const CrcCheck& crc) {
  Json::Value json;
  json["stored"] = crc.stored;
  json["computed"] = crc.computed;
  json["good"] = crc.good();
  if (!crc.good()) json["cause"] = crc.likely_cause;
  return json;
}

}  // namespace

Outcome decode(const Options& options, const Paint& paint) {
  const Bytes block = readBlock(readInput(options.operands.at(0)));
  std::optional<CrcCheck> crc;
  if (block.size() == kBlockSize) crc = checkCrc(block);
  const std::vector<Row> rows = rowsOf(block, crc);
  const std::vector<std::string> problems = problemsOf(block, rows);
  const int status = problems.empty() ? kGood : kFindings;
  if (options.format == "json") {
    Json::Value json = jsonOf(block);
    if (crc.has_value()) json["crc"] = crcJson(*crc);
    json["problems"] = arrayOf(problems);
    return {status, documentOf(json), {}};
  }
  if (options.format != "text") return {status, view(block, rows, problems, paint), {}};
  if (status == kGood) return {status, calibrationTextOf(block), {}};
  return {status, std::nullopt, "no text makes this block: " + Join(problems, "; ")};
}
