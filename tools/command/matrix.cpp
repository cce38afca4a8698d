// SPDX-License-Identifier: Apache-2.0
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <map>
#include <stdexcept>
#include <utility>

#include "tools/block/reader.h"
#include "tools/block/view.h"
#include "tools/command/tree_state.h"
#include "tools/page/page.h"
#include "tools/trace/countries.h"

namespace {

using Fields = std::vector<const BlockField*>;

struct Row {
  Bytes block;
  bool is_default;
  std::vector<std::string> countries;
};

std::vector<Row> rowsOf(const Json::Value& state) {
  std::vector<Row> rows;
  for (const Json::Value& block : state["blocks"]) {
    rows.push_back({readBlock(block["bytes"].asString()), block["is_default"].asBool(),
                    namesOf(block["countries"])});
  }
  return rows;
}

const BlockField* fieldCalled(const std::string& name) {
  std::vector<std::string> names;
  for (const BlockField& field : kBlockFields) {
    if (field.name == name) return &field;
    names.emplace_back(field.name);
  }
  throw std::runtime_error("no field has the name '" + name + "'" + suggestion(name, names));
}

// Those that are asked for; none without the option.
Fields chosenFields(const Options& options) {
  if (!options.fields.has_value()) return {};
  if (options.format == "json" || options.format == "html") {
    throw std::runtime_error("--fields is for text and csv; " + options.format + " has all fields");
  }
  Fields fields;
  for (const std::string& name : wordsIn(*options.fields)) fields.push_back(fieldCalled(name));
  if (fields.empty())
    throw std::runtime_error("--fields names no field: '" + *options.fields + "'");
  return fields;
}

// All that a text sets.
Fields allFields() {
  Fields fields;
  for (const BlockField& field : kBlockFields) {
    const bool is_set = field.kind != FieldKind::Crc && field.kind != FieldKind::Reserved;
    if (is_set) fields.push_back(&field);
  }
  return fields;
}

bool differs(const BlockField& field, const std::vector<Row>& rows) {
  return std::any_of(rows.begin(), rows.end(), [&](const Row& row) {
    return bytesOf(row.block, field) != bytesOf(rows.front().block, field);
  });
}

// The title, and a cell for each row.
using Column = std::vector<std::string>;

// A table in pieces that fit into the width. Each begins with the first column.
class Table {
 public:
  Table(Column first, size_t width, const Paint& paint)
      : first_(std::move(first)), width_(width), paint_(paint), rows_(first_) {}

  void add(const Column& column) {
    makeRoomFor(widthOf(column));
    append(column);
  }

  // The last column, of lists that may be broken.
  void addLists(const std::string& title, const std::vector<std::vector<std::string>>& lists) {
    constexpr size_t kLeast = 30;
    makeRoomFor(kLeast);
    Column column = {title};
    for (const auto& list : lists) column.push_back(wrapped(list, used(), width_));
    append(column);
  }

  std::string text() const {
    std::string out = done_ + paint_.bold(rows_[0]) + "\n";
    for (size_t i = 1; i < rows_.size(); ++i) out += rows_[i] + "\n";
    return out;
  }

 private:
  static size_t widthOf(const Column& column) {
    size_t width = 0;
    for (const std::string& cell : column) width = std::max(width, ::widthOf(cell));
    return width;
  }

  // Where the next column begins.
  size_t used() const { return widthOf(rows_) + 2; }

  void append(const Column& column) {
    const size_t begin = used();
    for (size_t i = 0; i < column.size(); ++i) rows_[i] = padded(rows_[i], begin) + column[i];
  }

  void makeRoomFor(size_t width) {
    if (used() + width <= width_ || rows_ == first_) return;
    done_ = text() + "\n";
    rows_ = first_;
  }

  const Column first_;
  const size_t width_;
  const Paint& paint_;
  std::vector<std::string> rows_;  // Of the piece that is being made.
  std::string done_;
};

std::string tableText(const std::vector<Row>& rows, const Fields& fields, size_t width,
                      const Paint& paint) {
  Column crc = {"CRC"};
  std::vector<std::vector<std::string>> countries;
  for (const Row& row : rows) {
    crc.push_back(valueOf(row.block, fieldAt(0)) + (row.is_default ? " default" : ""));
    countries.push_back(row.countries);
  }
  Table table(crc, width, paint);
  for (const BlockField* field : fields) {
    Column column = {field->name};
    for (const Row& row : rows) column.push_back(comparedValueOf(row.block, *field));
    table.add(column);
  }
  table.addLists("countries", countries);
  return table.text();
}

// The fields that are asked for; else those that differ, and after them what all blocks share.
std::string blocksText(const std::vector<Row>& rows, Fields shown, size_t width,
                       const Paint& paint) {
  std::vector<std::string> shared;
  for (const BlockField* field : shown.empty() ? allFields() : Fields()) {
    if (differs(*field, rows)) {
      shown.push_back(field);
    } else {
      shared.push_back(field->name + (" " + comparedValueOf(rows[0].block, *field)));
    }
  }
  std::string out = tableText(rows, shown, width, paint);
  if (!shared.empty()) {
    out += "\n" + paint.bold("the same in all:") + "\n    " + wrapped(shared, 4, width) + "\n";
  }
  return out;
}

// Each reason once, with its loads.
std::string withoutBlockText(const Json::Value& state, size_t width, const Paint& paint) {
  std::map<std::string, Json::Value> reasons;
  for (const Json::Value& load : state["countries"]) {
    if (!load["valid"].asBool()) reasons[printable(reasonOf(load))].append(load["country"]);
  }
  std::string out;
  for (const auto& [reason, countries] : reasons) {
    out +=
        paint.red("no block: ") + wrapped(namesOf(countries), 10, width) + "\n    " + reason + "\n";
  }
  return out;
}

// 80 columns where there is no terminal, or one that does not know its size.
size_t lineWidth(const Options& options) {
  struct winsize size {};
  if (options.to_terminal) ioctl(STDOUT_FILENO, TIOCGWINSZ, &size);
  return size.ws_col > 0 ? size.ws_col : 80;
}

std::string asText(const Json::Value& state, const Options& options, const Fields& fields,
                   const Paint& paint) {
  const std::vector<Row> rows = rowsOf(state);
  const size_t width = lineWidth(options);
  std::string out = rows.empty() ? "" : blocksText(rows, fields, width, paint);
  const std::string without = withoutBlockText(state, width, paint);
  if (!out.empty() && !without.empty()) out += "\n";
  return out + without;
}

std::string csvCell(const std::string& text) {
  if (text.find_first_of(",\"") == text.npos) return text;
  return "\"" + android::base::StringReplace(text, "\"", "\"\"", true) + "\"";
}

// A row for each load. A printable text has no line feed.
std::string asCsv(const Json::Value& state, Fields fields) {
  if (fields.empty()) fields = allFields();
  std::string out = "country,crc";
  for (const BlockField* field : fields) out += std::string(",") + field->name;
  out += ",problem\n";
  fields.insert(fields.begin(), &fieldAt(0));
  for (const Json::Value& load : state["countries"]) {
    const Bytes block = blockOf(state, load);
    out += csvCell(printable(load["country"].asString()));
    for (const BlockField* field : fields) {
      out += "," + (block.empty() ? "" : comparedValueOf(block, *field));
    }
    out += "," + csvCell(printable(reasonOf(load))) + "\n";
  }
  return out;
}

std::string formatted(const Json::Value& state, const Options& options, const Fields& fields,
                      const Tree& tree, const Paint& paint) {
  if (options.format == "json") return documentOf(state);
  if (options.format == "csv") return asCsv(state, fields);
  if (options.format == "html") {
    return pageOf(options.root, remarkOn(state), state, lintJson(options, tree.root()));
  }
  return asText(state, options, fields, paint);
}

}  // namespace

Outcome matrix(const Options& options, const Paint& paint) {
  const Fields fields = chosenFields(options);
  const DeviceLibrary library(options.library);
  const Tree tree(options.root, options, OpenRedirect::Opens::NoSpecialFiles);
  const Json::Value state = stateOf(countriesToLoad(options.countries), options, library);
  int status = kGood;
  for (const Json::Value& load : state["countries"]) {
    if (!load["valid"].asBool()) status = kFindings;
  }
  return {status, formatted(state, options, fields, tree, paint), {}, remarkOn(state)};
}
