// SPDX-License-Identifier: Apache-2.0
#include "tools/block/crc_check.h"
#include "tools/block/reader.h"
#include "tools/block/view.h"
#include "tools/command/command.h"
#include "tools/probe/calibration_text.h"

namespace {

struct Verdict {
  bool whole = false;
  CrcCheck crc{};
  std::vector<std::string> problems;
};

std::string crcText(const CrcCheck& crc) {
  if (crc.good()) return "good";
  const std::string cause =
      crc.likely_cause.empty() ? "more than one bit differs" : crc.likely_cause;
  return "computed " + hex(crc.computed, 4) + ": " + cause;
}

Verdict judge(const Bytes& block) {
  Verdict verdict;
  verdict.whole = block.size() == kBlockSize;
  if (!verdict.whole) {
    verdict.problems.push_back("truncated: " + std::to_string(block.size()) + " of " +
                               std::to_string(kBlockSize) + " bytes");
  } else {
    verdict.crc = checkCrc(block);
    if (!verdict.crc.good()) verdict.problems.push_back("bad CRC: " + crcText(verdict.crc));
  }
  for (const BlockField& field : kBlockFields) {
    if (field.offset >= block.size() || !isSuspect(block, field)) continue;
    verdict.problems.push_back(std::string(field.name) + ": " + meaningOf(block, field));
  }
  return verdict;
}

std::string fieldMeaning(const Bytes& block, const BlockField& field, const Verdict& verdict) {
  if (field.kind == FieldKind::Crc && verdict.whole) return crcText(verdict.crc);
  return meaningOf(block, field);
}

std::string fieldBytes(const Bytes& block, const BlockField& field) {
  constexpr size_t kMostShown = 4;
  if (field.size <= kMostShown) return bytesOf(block, field);
  return bytesOf(block, {field.name, field.offset, 3, field.kind}) + " ...";
}

std::string row(const Bytes& block, const BlockField& field, const Verdict& verdict,
                const Paint& paint) {
  const bool bad = isSuspect(block, field) ||
                   (field.kind == FieldKind::Crc && verdict.whole && !verdict.crc.good());
  std::string text = paddedLeft(std::to_string(field.offset), 6) + "  " + padded(field.name, 22) +
                     "  " + padded(fieldBytes(block, field), 12) + "  " +
                     paddedLeft(valueOf(block, field), 10);
  const std::string meaning = fieldMeaning(block, field, verdict);
  if (!meaning.empty()) text += "  " + (bad ? paint.red(meaning) : meaning);
  text.erase(text.find_last_not_of(' ') + 1);
  return text + "\n";
}

std::string table(const Bytes& block, const Verdict& verdict, const Paint& paint) {
  std::string out =
      paint.bold("offset  field                   bytes              value  meaning") + "\n";
  for (const BlockField& field : kBlockFields) {
    if (field.offset >= block.size()) break;
    if (paint.inColour()) out += letterOf(field, paint) + " ";
    out += row(block, field, verdict, paint);
  }
  return out;
}

std::string view(const Bytes& block, const Verdict& verdict, const Paint& paint) {
  std::string out;
  if (paint.inColour()) out += mapOf(block, paint) + "\n  ";
  out += table(block, verdict, paint);
  for (const std::string& problem : verdict.problems) out += paint.red("! " + problem) + "\n";
  return out;
}

JsonValue crcJson(const CrcCheck& crc) {
  JsonMembers json = {
      {"stored", uint32_t{crc.stored}}, {"computed", uint32_t{crc.computed}}, {"good", crc.good()}};
  if (!crc.good()) json.emplace_back("cause", crc.likely_cause);
  return json;
}

std::string asJson(const Bytes& block, const Verdict& verdict) {
  JsonMembers json = jsonOf(block);
  if (verdict.whole) json.emplace_back("crc", crcJson(verdict.crc));
  json.emplace_back("problems", verdict.problems);
  return documentOf(json);
}

}  // namespace

Outcome decode(const Options& options, const Paint& paint) {
  const Bytes block = readBlock(readInput(options.operands.at(0)));
  const Verdict verdict = judge(block);
  const int status = verdict.problems.empty() ? kGood : kFindings;
  if (options.format == "json") return {status, asJson(block, verdict), {}};
  if (options.format != "text") return {status, view(block, verdict, paint), {}};
  if (status == kGood) return {status, calibrationTextOf(block), {}};
  return {status, std::nullopt, "no text makes this block: " + joined(verdict.problems, "; ")};
}
