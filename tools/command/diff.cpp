// SPDX-License-Identifier: Apache-2.0
#include <sys/stat.h>

#include <algorithm>
#include <set>
#include <stdexcept>

#include "tools/block/reader.h"
#include "tools/block/view.h"
#include "tools/command/tree.h"
#include "tools/device/device_library.h"
#include "tools/trace/countries.h"

namespace {

bool isDirectory(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// The countries of both trees, any other and none; or as the options say.
std::vector<std::string> countriesToCompare(const Options& options) {
  const bool are_trees = isDirectory(options.operands[0]) && isDirectory(options.operands[1]);
  if (options.country.has_value() || !are_trees) return {options.country.value_or("")};
  if (!options.countries.empty()) return countriesToLoad(options.countries);
  std::set<std::string> codes;
  for (const std::string& operand : options.operands) {
    const Tree tree(operand, options, OpenRedirect::Opens::NoSpecialFiles);
    for (const std::string& code : countriesOfTree().codes) codes.insert(code);
  }
  std::vector<std::string> countries(codes.begin(), codes.end());
  countries.insert(countries.end(), {kOtherCountry, ""});
  return countries;
}

// The loads of a tree, or the block in a file, of which nothing else is known.
std::vector<TreeLoad> loadsOf(const std::string& operand, const std::vector<std::string>& countries,
                              const Options& options, const DeviceLibrary& library) {
  if (!isDirectory(operand)) return {{readBlock(readInput(operand)), {}}};
  const Tree tree(operand, options, OpenRedirect::Opens::NoSpecialFiles);
  LoadTracer tracer;
  std::vector<TreeLoad> loads;
  loads.reserve(countries.size());
  for (const std::string& country : countries) {
    loads.push_back(loadTree(country, options, library, tracer));
  }
  return loads;
}

// The lines that give the field its value.
std::vector<LineRef> linesBehind(const LoadTrace& trace, const BlockField& field) {
  std::vector<LineRef> lines;
  for (const TracedParameter& parameter : trace.parameters) {
    const bool fills = parameter.facts != nullptr && &parameter.facts->field() == &field;
    if (fills && !parameter.settings.empty()) lines.push_back(parameter.settings.back());
  }
  return lines;
}

std::string sideText(const TreeLoad& load, const BlockField& field) {
  std::string text = bytesOf(load.block, field);
  const std::string value = valueOf(load.block, field);
  if (!value.empty()) text += " = " + value;
  const std::string meaning = meaningOf(load.block, field);
  return text + (meaning.empty() ? "" : (text.empty() ? "" : ", ") + meaning);
}

std::string linesText(const TreeLoad& load, const BlockField& field) {
  std::string out;
  for (const LineRef& ref : linesBehind(load.trace, field)) {
    out += "    " + printable(load.trace.placeText(ref) + ": " + load.trace.at(ref).text) + "\n";
  }
  return out;
}

JsonValue sideJson(const TreeLoad& load, const BlockField& field) {
  JsonMembers json = {{"bytes", bytesOf(load.block, field)}};
  if (field.end() <= load.block.size() && field.kind != FieldKind::Reserved) {
    json.emplace_back("value", numberIn(load.block, field));
  }
  std::vector<JsonValue> lines;
  for (const LineRef& ref : linesBehind(load.trace, field)) {
    lines.push_back(lineJson(load.trace, ref));
  }
  if (!lines.empty()) json.emplace_back("lines", lines);
  return json;
}

// A change that the loads of these countries have in common.
struct Change {
  size_t offset;
  std::string title;
  std::string text;
  JsonMembers json;
  std::vector<std::string> countries;
};

class Changes {
 public:
  // `with_countries` says whether there are several loads to name.
  Changes(const Paint& paint, bool with_countries)
      : paint_(paint), with_countries_(with_countries) {}

  void compare(const std::string& country, const TreeLoad& a, const TreeLoad& b) {
    if (a.block.empty() && b.block.empty()) {
      without_block_.push_back(countryName(country));
    } else if (a.block.empty() || b.block.empty()) {
      add(country, outcomeChange(a, b));
    } else {
      for (const BlockField* field : differingFields(a.block, b.block)) {
        // The CRC covers the other fields, whose changes say more where several loads are compared.
        const bool is_noise = with_countries_ && field->kind == FieldKind::Crc;
        if (!is_noise) add(country, fieldChange(*field, a, b));
      }
    }
    ++loads_;
  }

  bool empty() const { return changes_.empty(); }
  bool nothingCompared() const { return without_block_.size() == loads_; }

  // Names the loads that neither side gives a block for; empty when there are none.
  std::string remark() const {
    return without_block_.empty() ? "" : "no block on either side: " + joined(without_block_, ", ");
  }

  std::string asText() const {
    std::string out;
    for (const Change& change : changes_) {
      out += paint_.bold(change.title) + countriesText(change) + "\n" + change.text;
    }
    return out;
  }

  std::string asJson() const {
    std::vector<JsonValue> differences;
    for (const Change& change : changes_) {
      JsonMembers json = change.json;
      std::vector<std::string> words;
      for (const std::string& country : change.countries) words.push_back(countryWord(country));
      if (with_countries_) json.emplace_back("countries", words);
      differences.emplace_back(json);
    }
    return documentOf({{"differences", differences}, {"without_block", without_block_}});
  }

 private:
  Change fieldChange(const BlockField& field, const TreeLoad& a, const TreeLoad& b) const {
    return {field.offset,
            std::string(field.name) + ", offset " + std::to_string(field.offset),
            paint_.red("- " + sideText(a, field)) + "\n" + linesText(a, field) +
                paint_.green("+ " + sideText(b, field)) + "\n" + linesText(b, field),
            {{"name", field.name},
             {"offset", field.offset},
             {"a", sideJson(a, field)},
             {"b", sideJson(b, field)}},
            {}};
  }

  // Only one of the two has a block.
  Change outcomeChange(const TreeLoad& a, const TreeLoad& b) const {
    const auto side = [](const TreeLoad& load) {
      return load.block.empty() ? "none: " + problemOf(load.trace) : "block";
    };
    return {0,
            "block",
            paint_.red("- " + printable(side(a))) + "\n" + paint_.green("+ " + printable(side(b))) +
                "\n",
            {{"name", "block"}, {"a", side(a)}, {"b", side(b)}},
            {}};
  }

  void add(const std::string& country, Change change) {
    const auto same = std::find_if(changes_.begin(), changes_.end(), [&](const Change& other) {
      return other.title == change.title && other.text == change.text;
    });
    if (same != changes_.end()) {
      same->countries.push_back(country);
      return;
    }
    change.countries = {country};
    const auto after = std::upper_bound(
        changes_.begin(), changes_.end(), change,
        [](const Change& one, const Change& other) { return one.offset < other.offset; });
    changes_.insert(after, std::move(change));
  }

  std::string countriesText(const Change& change) const {
    if (!with_countries_) return {};
    if (change.countries.size() == loads_) return " (all loads)";
    std::vector<std::string> names;
    for (const std::string& country : change.countries) names.push_back(countryName(country));
    return " (" + joined(names, ", ") + ")";
  }

  const Paint& paint_;
  const bool with_countries_;
  std::vector<Change> changes_;
  std::vector<std::string> without_block_;
  size_t loads_ = 0;
};

}  // namespace

Outcome diff(const Options& options, const Paint& paint) {
  const std::string& first = options.operands.at(0);
  const std::string& second = options.operands.at(1);
  if (first == "-" && second == "-") {
    throw std::runtime_error("only one of the two can be the standard input");
  }
  const DeviceLibrary library(options.library);
  const std::vector<std::string> countries = countriesToCompare(options);
  const std::vector<TreeLoad> a = loadsOf(first, countries, options, library);
  const std::vector<TreeLoad> b = loadsOf(second, countries, options, library);
  Changes changes(paint, countries.size() > 1);
  for (size_t i = 0; i < countries.size(); ++i) changes.compare(countries[i], a.at(i), b.at(i));
  if (changes.nothingCompared()) {
    return {kFindings, std::nullopt, "no valid calibration in " + first + " and " + second};
  }
  return {changes.empty() ? kGood : kFindings,
          options.format == "json" ? changes.asJson() : changes.asText(),
          {},
          changes.remark()};
}
