// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <system_error>
#include <tuple>
#include <utility>

#include "tools/block/reader.h"
#include "tools/block/view.h"
#include "tools/command/tree_state.h"
#include "tools/text/input_output.h"
#include "tools/trace/countries.h"

namespace {

// Of those that make one change, a text shows this number.
constexpr size_t kMostLines = 4;

Json::Value recordIn(Json::Value document, const std::string& file) {
  const Json::Value& version = document["format_version"];
  const bool is_known = version.isUInt() && version.asUInt() == kFormatVersion;
  if (!is_known || !document.isMember("blocks")) {
    throw std::runtime_error(file + " is neither a block nor what 'matrix --format json' writes, " +
                             "with format_version " + std::to_string(kFormatVersion));
  }
  try {
    checkState(document);
  } catch (const std::exception&) {
    throw std::runtime_error(file + " is not as 'matrix --format json' writes it");
  }
  return document;
}

// One of the two that are compared.
struct Side {
  std::string name;
  Json::Value state;
  bool is_block;  // One load, of which only the block is known.

  // The load of the country with this word, which is that of any other country where it is not
  // listed; null when there is neither.
  const Json::Value& find(const std::string& word) const {
    const Json::Value* found = &Json::Value::nullSingleton();
    for (const Json::Value& load : state["countries"]) {
      if (is_block || load["country"] == word) return load;
      if (load["country"] == kOtherWord && word != kNoneWord) found = &load;
    }
    return *found;
  }

  const Json::Value& lineAt(const Json::Value& index) const {
    return state["lines"][index.asUInt()];
  }

  const Json::Value& at(const std::string& country) const {
    const Json::Value& load = find(countryWord(country));
    if (!load.isNull()) return load;
    throw std::runtime_error(name + " lacks a load: " + countryTitle(country));
  }
};

// Nothing for a folder.
std::optional<Side> sideInFile(const std::string& file) {
  std::error_code ignored;
  if (std::filesystem::is_directory(file, ignored)) return std::nullopt;
  const std::string input = readInput(file);
  const std::optional<Json::Value> document = documentIn(input);
  if (document.has_value() && !document->isMember("bytes")) {
    return Side{file, recordIn(*document, file), false};
  }
  Json::Value state;
  try {
    state["blocks"][0]["bytes"] = hexOf(readBlock(input));
  } catch (const std::runtime_error& e) {
    throw std::runtime_error(file + ": " + e.what());
  }
  Json::Value& load = state["countries"][0];
  load["valid"] = true;
  load["block"] = 0;
  return Side{file, state, true};
}

// All loads of the tree where no countries are named.
Side sideInTree(const std::string& root, const std::vector<std::string>& countries,
                const Options& options) {
  const DeviceLibrary library(options.library);
  const Tree tree(root, options, OpenRedirect::Opens::NoSpecialFiles);
  const Countries loads = countries.empty() ? countriesToLoad({}) : Countries{countries, {}};
  return {root, stateOf(loads, options, library), false};
}

std::string sideText(const Bytes& block, const BlockField& field) {
  const bool is_coded = field.kind == FieldKind::SelectorCode || field.kind == FieldKind::Port;
  std::string text = comparedValueOf(block, field);
  if (is_coded && field.end() <= block.size()) text += " (" + meaningOf(block, field) + ")";
  return text;
}

Json::Value sideJson(const Bytes& block, const BlockField& field) {
  Json::Value json;
  json["bytes"] = bytesOf(block, field);
  if (field.end() <= block.size() && field.kind != FieldKind::Reserved) {
    json["value"] = numberIn(block, field);
  }
  return json;
}

Json::Value sideJson(const Json::Value& load) {
  return load["valid"].asBool() ? "block" : "none: " + reasonOf(load);
}

// What the loads of some countries have in common.
struct Change {
  std::string text;
  Json::Value json;
  Json::Value countries;
  Json::Value lines;  // {"a": [...], "b": [...]}, without a side that has none.
};

// What changes from one side to the other.
class Plan {
 public:
  // `is_single` says that one load is compared, whose country need not be told.
  Plan(const Side& a, const Side& b, bool is_single) : a_(a), b_(b), is_single_(is_single) {}

  // The countries of both sides. One that only one side has gets any other country's block there.
  void compareAll() {
    // Codes in alphabetical order, then any other country and none.
    std::set<std::tuple<bool, bool, std::string>> words;
    for (const Side* side : {&a_, &b_}) {
      for (const Json::Value& load : side->state["countries"]) {
        const std::string word = load["country"].asString();
        words.emplace(word == kNoneWord, word == kOtherWord, word);
      }
    }
    for (const auto& [is_none, is_other, word] : words) {
      const Json::Value& a = a_.find(word);
      const Json::Value& b = b_.find(word);
      if (a["country"] != word) added_.append(word);
      if (b["country"] != word) removed_.append(word);
      if (!a.isNull() && !b.isNull()) compare(word, a, b);
    }
  }

  // Loads that both sides must have.
  void compare(const std::string& country_a, const std::string& country_b) {
    compare(countryWord(country_b), a_.at(country_a), b_.at(country_b));
  }

  bool isEmpty() const { return changes_.empty() && added_.empty() && removed_.empty(); }
  bool isWithoutBlocks() const {
    return !compared_.empty() && without_block_.size() == compared_.size();
  }

  // What the changes do not tell, in one line.
  std::string remark() const {
    std::vector<std::string> remarks;
    const std::string of_a = remarkOn(a_.state);
    const std::string of_b = remarkOn(b_.state);
    const bool alike = of_a == of_b;
    if (!of_a.empty()) remarks.push_back((alike ? "" : a_.name + ": ") + of_a);
    if (!of_b.empty() && !alike) remarks.push_back(b_.name + ": " + of_b);
    if (!without_block_.empty())
      remarks.push_back("no block on either side: " + listOf(without_block_));
    return Join(remarks, "; ");
  }

  std::string asText(const Paint& paint) const {
    std::string out;
    if (!added_.empty()) out += paint.green("added: ") + listOf(added_) + "\n";
    if (!removed_.empty()) out += paint.red("removed: ") + listOf(removed_) + "\n";
    for (const auto& entry : changes_) {
      const Change& change = entry.second;
      out += paint.bold(whereText(change.countries) + printable(change.text)) + "\n";
      for (const std::string& line : textsOf(change.lines["a"])) {
        out += paint.red("  - " + line) + "\n";
      }
      for (const std::string& line : textsOf(change.lines["b"])) {
        out += paint.green("  + " + line) + "\n";
      }
    }
    return out;
  }

  std::string asJson() const {
    Json::Value json;
    json["differences"] = arrayOf(changes_, [&](const auto& entry) {
      const Change& change = entry.second;
      Json::Value difference = change.json;
      if (!is_single_) difference["countries"] = change.countries;
      for (const std::string& side : change.lines.getMemberNames()) {
        // The sides of a lost or gained block are texts.
        const bool is_text = difference[side].isString();
        (is_text ? difference["lines_" + side] : difference[side]["lines"]) = change.lines[side];
      }
      return difference;
    });
    json["added"] = added_;
    json["removed"] = removed_;
    json["without_block"] = without_block_;
    return documentOf(std::move(json));
  }

 private:
  void compare(const std::string& word, const Json::Value& a, const Json::Value& b) {
    compared_.append(word);
    const Bytes block_a = blockOf(a_.state, a);
    const Bytes block_b = blockOf(b_.state, b);
    if (block_a.empty() && block_b.empty()) {
      without_block_.append(word);
    } else if (block_a.empty() || block_b.empty()) {
      addOutcome(word, a, b);
    } else {
      for (const BlockField* field : differingFields(block_a, block_b)) {
        // The CRC covers the other fields, whose changes say more where several loads are compared.
        if (!is_single_ && field->kind == FieldKind::Crc) continue;
        addLines(fieldChange(word, *field, block_a, block_b), a, b, field->name);
      }
    }
  }

  Change& fieldChange(const std::string& word, const BlockField& field, const Bytes& a,
                      const Bytes& b) {
    Json::Value json;
    json["name"] = field.name;
    json["offset"] = field.offset;
    json["a"] = sideJson(a, field);
    json["b"] = sideJson(b, field);
    return changeCalled(field.name + (" " + sideText(a, field)) + " -> " + sideText(b, field), json,
                        word);
  }

  // Only one of the two has a block.
  void addOutcome(const std::string& word, const Json::Value& a, const Json::Value& b) {
    Json::Value json;
    json["name"] = "block";
    json["a"] = sideJson(a);
    json["b"] = sideJson(b);
    const bool loses = a["valid"].asBool();
    Change& change = changeCalled(
        loses ? "no block any more: " + reasonOf(b) : "a block now; before: " + reasonOf(a), json,
        word);
    const bool told =
        loses ? addFailing(change, "b", b_, b, a_, a) : addFailing(change, "a", a_, a, b_, b);
    if (told) return;
    for (const std::string& name : a["settings"].getMemberNames()) addLines(change, a, b, name);
    for (const std::string& name : b["settings"].getMemberNames()) addLines(change, a, b, name);
  }

  // The lines that end the reading of a file only where there is no block. What else differs
  // follows from them.
  static bool addFailing(Change& change, const char* name, const Side& side,
                         const Json::Value& load, const Side& other_side,
                         const Json::Value& other) {
    bool found = false;
    for (const Json::Value& index : load["failing"]) {
      const Json::Value& line = side.lineAt(index);
      const bool in_both = std::any_of(
          other["failing"].begin(), other["failing"].end(),
          [&](const Json::Value& at) { return other_side.lineAt(at)["text"] == line["text"]; });
      if (in_both) continue;
      addOnce(line, name, change.lines);
      found = true;
    }
    return found;
  }

  // The change with this text, now also of this country.
  Change& changeCalled(const std::string& text, const Json::Value& json, const std::string& word) {
    auto change = std::find_if(changes_.begin(), changes_.end(),
                               [&](const auto& entry) { return entry.second.text == text; });
    if (change == changes_.end()) {
      change = changes_.insert({json["offset"].asUInt(), {text, json, {}, {}}});
    }
    change->second.countries.append(word);
    return change->second;
  }

  // The lines that win, where the two sides do not have the same.
  void addLines(Change& change, const Json::Value& a, const Json::Value& b,
                const std::string& name) const {
    const Json::Value& of_a = a["settings"][name];
    const Json::Value& of_b = b["settings"][name];
    for (Json::ArrayIndex i = 0; i < std::max(of_a.size(), of_b.size()); ++i) {
      const Json::Value& line_a = winnerOf(a_, of_a[i]);
      const Json::Value& line_b = winnerOf(b_, of_b[i]);
      if (line_a["text"] == line_b["text"]) continue;
      addOnce(line_a, "a", change.lines);
      addOnce(line_b, "b", change.lines);
    }
  }

  // The last of the lines; null where there is none.
  static const Json::Value& winnerOf(const Side& side, const Json::Value& indexes) {
    return indexes.empty() ? Json::Value::nullSingleton()
                           : side.lineAt(indexes[indexes.size() - 1]);
  }

  static void addOnce(const Json::Value& line, const char* side, Json::Value& lines) {
    const Json::Value& known = std::as_const(lines)[side];
    const bool is_new = std::find(known.begin(), known.end(), line) == known.end();
    if (!line.isNull() && is_new) lines[side].append(line);
  }

  // "in de, fr: " or, where that is shorter, "in 38 of 40 loads, not in de, fr: ".
  std::string whereText(const Json::Value& countries) const {
    if (compared_.size() == 1) return {};
    Json::Value others(Json::arrayValue);
    for (const Json::Value& word : compared_) {
      if (std::find(countries.begin(), countries.end(), word) == countries.end())
        others.append(word);
    }
    const std::string all = counted(compared_.size(), "load");
    if (others.empty()) return "in " + allLoads(compared_.size()) + ": ";
    if (others.size() >= countries.size()) return "in " + listOf(countries) + ": ";
    return "in " + std::to_string(countries.size()) + " of " + all + ", not in " + listOf(others) +
           ": ";
  }

  static std::vector<std::string> textsOf(const Json::Value& lines) {
    std::vector<std::string> texts;
    for (const Json::Value& line : lines) texts.push_back(lineText(line));
    if (texts.size() > kMostLines) {
      texts.resize(kMostLines);
      texts.push_back("and " + std::to_string(lines.size() - kMostLines) + " more");
    }
    return texts;
  }

  static std::string listOf(const Json::Value& words) { return Join(namesOf(words), ", "); }

  const Side& a_;
  const Side& b_;
  const bool is_single_;
  std::multimap<unsigned, Change> changes_;  // By the offset of the field; a block has 0.
  // Words for countries.
  Json::Value compared_ = Json::arrayValue;
  Json::Value added_ = Json::arrayValue;
  Json::Value removed_ = Json::arrayValue;
  Json::Value without_block_ = Json::arrayValue;
};

Outcome outcomeOf(const Plan& plan, const Options& options, const Paint& paint) {
  const std::string text = options.format == "json" ? plan.asJson() : plan.asText(paint);
  if (plan.isWithoutBlocks()) {
    return {kFindings, text,
            "no valid calibration in " + options.operands[0] + " and " + options.operands[1]};
  }
  return {plan.isEmpty() ? kGood : kFindings, text, {}, plan.remark()};
}

// Those that are named, by one of the options; none where all are compared. A block is of one load.
std::vector<std::string> countriesFor(const Options& options, bool with_block) {
  if (options.country.has_value()) return {countryCalled(*options.country)};
  if (options.countries.has_value()) {
    std::vector<std::string> countries = countriesToLoad(options.countries).loads;
    if (!with_block || countries.size() == 1) return countries;
    throw std::runtime_error("a block is of one country, --countries names " +
                             std::to_string(countries.size()));
  }
  return with_block ? std::vector<std::string>{""} : std::vector<std::string>();
}

// Two countries of one tree.
Outcome diffBetween(const Options& options, const Paint& paint) {
  if (options.country.has_value() || options.countries.has_value()) {
    throw std::runtime_error("--between takes its countries from A and B, not from an option");
  }
  const std::string a = countryCalled(options.operands[0]);
  const std::string b = countryCalled(options.operands[1]);
  const Side side = sideInTree(options.root, {a, b}, options);
  Plan plan(side, side, true);
  plan.compare(a, b);
  return outcomeOf(plan, options, paint);
}

}  // namespace

Outcome diff(const Options& options, const Paint& paint) {
  if (options.between) return diffBetween(options, paint);
  const std::vector<std::string>& names = options.operands;
  if (!options.root.empty() || !options.maps.empty()) {
    throw std::runtime_error("--root and --map are for --between; A and B are trees themselves");
  }
  if (names[0] == "-" && names[1] == "-") {
    throw std::runtime_error("only one of the two can be the standard input");
  }
  std::optional<Side> a = sideInFile(names[0]);
  std::optional<Side> b = sideInFile(names[1]);
  const bool with_block = (a && a->is_block) || (b && b->is_block);
  const std::vector<std::string> countries = countriesFor(options, with_block);
  if (!a) a = sideInTree(names[0], countries, options);
  if (!b) b = sideInTree(names[1], countries, options);
  Plan plan(*a, *b, countries.size() == 1);
  if (countries.empty()) plan.compareAll();
  for (const std::string& country : countries) plan.compare(country, country);
  return outcomeOf(plan, options, paint);
}
