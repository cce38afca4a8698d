// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "tools/block/view.h"
#include "tools/command/tree.h"
#include "tools/trace/countries.h"

namespace {

struct Row : TreeLoad {
  std::string title;
};

std::vector<Row> rowsOf(const Options& options) {
  const DeviceLibrary library(options.library);
  const Tree tree(options.root, options, OpenRedirect::Opens::NoSpecialFiles);
  LoadTracer tracer;
  std::vector<Row> rows;
  for (const std::string& country : countriesToLoad(options.countries)) {
    rows.push_back({loadTree(country, options, library, tracer), countryName(country)});
  }
  return rows;
}

// The block of any other country; empty where it is not loaded, or gives none.
Bytes usualBlock(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    if (row.trace.country == kOtherCountry) return row.block;
  }
  return {};
}

std::vector<std::string> differencesFromDefault(const Row& row, const std::vector<Row>& rows) {
  std::vector<std::string> names;
  const Bytes usual = usualBlock(rows);
  if (row.block.empty() || usual.empty()) return names;
  for (const BlockField* field : differingFields(row.block, usual)) {
    if (field->kind != FieldKind::Crc) names.emplace_back(field->name);
  }
  return names;
}

std::vector<std::string> fallbacksOf(const Row& row) {
  std::vector<std::string> fallbacks;
  if (!row.trace.decided) return fallbacks;
  for (const TracedEntry& entry : row.trace.deciding().entries) {
    if (entry.fellBack()) fallbacks.push_back(entry.fallback->path);
  }
  return fallbacks;
}

std::string crcText(const Row& row) {
  return row.block.empty() ? "-" : valueOf(row.block, fieldAt(0));
}

std::string resultText(const Row& row) {
  return row.block.empty() ? "none" : "block";
}

std::string differenceText(const Row& row, const std::vector<Row>& rows) {
  if (row.block.empty()) return printable(problemOf(row.trace));
  if (usualBlock(rows).empty()) return "the default has no block";
  const std::vector<std::string> names = differencesFromDefault(row, rows);
  return names.empty() ? "as the default" : joined(names, ", ");
}

std::string filesText(const Row& row, const Paint& paint) {
  std::string out;
  if (!row.trace.decided) return out;
  for (const TracedEntry& entry : row.trace.deciding().entries) {
    if (!entry.file.has_value()) continue;
    // A country's file that exists and was not read is more than a missing one.
    const bool unusable = entry.fellBack() && entry.own.kind != FileKind::Missing;
    const std::string why = unusable ? ": " + printable(problemOf(entry.own)) : "";
    out += "    " + printable(entry.last().path) +
           (entry.fellBack() ? paint.cyan("  (fallback" + why + ")") : "") + "\n";
  }
  return out;
}

std::string asText(const std::vector<Row>& rows, const Paint& paint) {
  size_t width = widthOf("country");
  for (const Row& row : rows) width = std::max(width, widthOf(row.title));
  std::string out =
      paint.bold(padded("country", width) + "  result  CRC     differs from default in") + "\n";
  for (const Row& row : rows) {
    const std::string result = padded(resultText(row), 6);
    out += padded(row.title, width) + "  " + (row.block.empty() ? paint.red(result) : result) +
           "  " + padded(crcText(row), 6) + "  " + differenceText(row, rows) + "\n" +
           filesText(row, paint);
  }
  return out;
}

std::vector<std::string> pathsOf(const Row& row) {
  std::vector<std::string> paths;
  for (const auto& file : row.trace.files) paths.push_back(file->path);
  return paths;
}

JsonValue rowJson(const Row& row, const std::vector<Row>& rows) {
  JsonMembers json = {{"country", countryWord(row.trace.country)},
                      {"valid", !row.block.empty()},
                      {"files", pathsOf(row)},
                      {"fallbacks", fallbacksOf(row)}};
  if (row.block.empty()) {
    json.emplace_back("problem", row.trace.problem);
  } else {
    json.emplace_back("crc", numberIn(row.block, fieldAt(0)));
    json.emplace_back("differs_from_default", differencesFromDefault(row, rows));
  }
  return json;
}

std::string asJson(const std::vector<Row>& rows) {
  std::vector<JsonValue> countries;
  countries.reserve(rows.size());
  for (const Row& row : rows) countries.push_back(rowJson(row, rows));
  return documentOf({{"countries", countries}});
}

}  // namespace

Outcome matrix(const Options& options, const Paint& paint) {
  const std::vector<Row> rows = rowsOf(options);
  const bool all_valid =
      std::none_of(rows.begin(), rows.end(), [](const Row& row) { return row.block.empty(); });
  const int status = all_valid ? kGood : kFindings;
  return {status, options.format == "json" ? asJson(rows) : asText(rows, paint), {}};
}
