// SPDX-License-Identifier: Apache-2.0
#include "tools/command/tree_state.h"

#include <algorithm>
#include <list>
#include <map>
#include <set>
#include <stdexcept>
#include <utility>

#include "tools/block/reader.h"
#include "tools/block/view.h"
#include "tools/device/device_library.h"
#include "tools/probe/number_spelling.h"

namespace {

struct Load {
  LoadTrace trace;
  Bytes block;  // As the shared library writes it; empty without a valid calibration.
};

// What blocks are sorted by. The CRC is left out: blocks with like values have unlike CRCs.
Bytes valuesOf(const Load& load) {
  if (load.block.empty()) return {};
  return {load.block.begin() + static_cast<ptrdiff_t>(fieldAt(0).end()), load.block.end()};
}

// As the text has it.
std::string valueOf(const LoadTrace& trace, const TracedLine& line) {
  if (trace.parameterOf(line).facts == nullptr) return line.effect.value;
  return spellingOf(line.text.substr(trace.valueIn(line))).number;
}

class StateMaker {
 public:
  explicit StateMaker(const std::list<Load>& loads) {
    for (const Load& load : loads) {
      if (load.trace.country == kOtherCountry) usual_ = load.block;
    }
    for (const char* name : {"blocks", "countries", "lines"}) state_[name] = Json::arrayValue;
    for (const Load& load : loads) add(load);
  }

  Json::Value take() { return std::move(state_); }

 private:
  void add(const Load& load) {
    const LoadTrace& trace = load.trace;
    Json::Value& json = state_["countries"].append({});
    json["country"] = countryWord(trace.country);
    json["valid"] = !load.block.empty();
    json["files"] = arrayOf(trace.files, [](const auto& file) { return file->path; });
    json["fallbacks"] = Json::arrayValue;
    json["settings"] = Json::objectValue;
    for (const TracedPathFile& file : trace.path_files) {
      for (const TracedEntry& entry : file.entries) {
        if (entry.fellBack()) json["fallbacks"].append(entry.fallback->path);
      }
    }
    for (const TracedParameter& parameter : trace.parameters) {
      const bool is_name = parameter.facts == nullptr;
      json["settings"][is_name ? parameter.key : parameter.facts->field().name].append(
          indexesOf(parameter.settings, trace));
    }
    json["failing"] = indexesOf(trace.failing(), trace);
    json["refused_by_device"] = indexesOf(trace.refusedByDevice(), trace);
    if (load.block.empty()) {
      // A library other than the command's own may refuse what the trace accepts.
      json["problem"] = trace.problem.empty() ? "the library gives no block" : trace.problem;
      json["missing"] = arrayOf(trace.missing);
    } else {
      addBlock(load.block, json);
    }
  }

  void addBlock(const Bytes& block, Json::Value& load) {
    const auto [known, is_new] = blocks_.try_emplace(block, state_["blocks"].size());
    load["crc"] = numberIn(block, fieldAt(0));
    load["block"] = known->second;
    if (!usual_.empty()) load["differs_from_default"] = differencesOf(block);
    Json::Value& json =
        is_new ? state_["blocks"].append(jsonOf(block)) : state_["blocks"][known->second];
    json["is_default"] = block == usual_;
    json["countries"].append(load["country"]);
  }

  Json::Value differencesOf(const Bytes& block) const {
    Json::Value names(Json::arrayValue);
    for (const BlockField* field : differingFields(block, usual_)) {
      if (field->kind != FieldKind::Crc) names.append(field->name);
    }
    return names;
  }

  // Most lines are shared: a load has their indexes.
  Json::Value indexesOf(const std::vector<LineRef>& refs, const LoadTrace& trace) {
    Json::Value indexes(Json::arrayValue);
    for (const LineRef& ref : refs) {
      Json::Value line = lineJson(trace, ref);
      line["value"] = valueOf(trace, trace.at(ref));
      const auto place = std::make_pair(line["path"].asString(), line["line"].asUInt());
      const auto [known, is_new] = lines_.try_emplace(place, state_["lines"].size());
      if (is_new) state_["lines"].append(std::move(line));
      indexes.append(known->second);
    }
    return indexes;
  }

  Bytes usual_;  // Of a country without files of its own; empty where it is not loaded or has none.
  Json::Value state_;
  std::map<Bytes, Json::ArrayIndex> blocks_;
  std::map<std::pair<std::string, unsigned>, Json::ArrayIndex> lines_;
};

std::vector<std::string> textsIn(const Json::Value& array) {
  std::vector<std::string> texts;
  for (const Json::Value& text : array) texts.push_back(text.asString());
  return texts;
}

void require(bool condition) {
  if (!condition) throw std::invalid_argument("no state");
}

const Json::Value& array(const Json::Value& value) {
  require(value.isArray());
  return value;
}

void checkTexts(const Json::Value& texts) {
  for (const Json::Value& text : array(texts)) require(text.isString());
}

void checkLine(const Json::Value& line) {
  require(line["path"].isString());
  require(line["line"].isUInt());
  require(line["text"].isString());
}

void checkIndexes(const Json::Value& indexes, const Json::Value& lines) {
  for (const Json::Value& index : array(indexes)) checkLine(lines[index.asUInt()]);
}

void checkSettings(const Json::Value& settings, const Json::Value& lines) {
  require(settings.isObject());
  for (const Json::Value& parameters : settings) {
    for (const Json::Value& indexes : array(parameters)) checkIndexes(indexes, lines);
  }
}

void checkOutcome(const Json::Value& load, const Json::Value& blocks) {
  require(load["valid"].isBool());
  if (load["valid"].asBool()) {
    require(blocks.isValidIndex(load["block"].asUInt()));
  } else {
    require(load["problem"].isString());
    checkTexts(load["missing"]);
  }
}

}  // namespace

Json::Value stateOf(const Countries& countries, const Options& options,
                    const DeviceLibrary& library) {
  if (!countries.unlisted.empty()) throw std::runtime_error(countries.unlisted[0].problem);
  LoadTracer tracer;
  std::list<Load> loads;
  for (const std::string& country : countries.loads) {
    setDeviceProperties(country, options.path_file);
    const Bytes block = library.load(kBlockSize);
    const LogCapture log;  // The load above has logged everything already.
    LoadTrace trace = tracer.trace(country);
    loads.push_back({trace, trace.unknown ? Bytes() : block});
  }
  if (options.sort == "block") {
    loads.sort([](const Load& a, const Load& b) { return valuesOf(a) < valuesOf(b); });
  }
  Json::Value state = StateMaker(loads).take();
  state["not_taken_for_countries"] = arrayOf(countries.not_taken);
  return state;
}

void checkState(const Json::Value& state) {
  for (const Json::Value& block : array(state["blocks"])) {
    require(block["bytes"].isString());
    readBlock(block["bytes"].asString());
  }
  checkTexts(state["not_taken_for_countries"]);
  const Json::Value& lines = array(state["lines"]);
  for (const Json::Value& load : array(state["countries"])) {
    require(load["country"].isString());
    checkOutcome(load, state["blocks"]);
    checkSettings(load["settings"], lines);
    checkIndexes(load["failing"], lines);
    checkIndexes(load["refused_by_device"], lines);
  }
}

Bytes blockOf(const Json::Value& state, const Json::Value& load) {
  if (!load["valid"].asBool()) return {};
  return readBlock(state["blocks"][load["block"].asUInt()]["bytes"].asString());
}

std::string reasonOf(const Json::Value& load) {
  const std::string missing = Join(textsIn(load["missing"]), ", ");
  return load["problem"].asString() + (missing.empty() ? "" : ": " + missing);
}

std::string remarkOn(const Json::Value& state) {
  std::set<std::string> places;
  for (const Json::Value& load : state["countries"]) {
    for (const Json::Value& index : load["refused_by_device"]) {
      const Json::Value& line = state["lines"][index.asUInt()];
      places.insert(line["path"].asString() + ":" + line["line"].asString());
    }
  }
  std::vector<std::string> remarks;
  if (!places.empty()) {
    remarks.push_back("the device does otherwise: it cannot read the numbers at " +
                      Join(places, ", "));
  }
  const std::string not_taken = notTakenText(textsIn(state["not_taken_for_countries"]));
  if (!not_taken.empty()) remarks.push_back(not_taken);
  return Join(remarks, "; ");
}

std::vector<std::string> namesOf(const Json::Value& words) {
  std::vector<std::string> names = textsIn(words);
  for (std::string& name : names) name = countryName(countryCalled(name));
  return names;
}
