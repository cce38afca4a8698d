// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <stdexcept>

#include "tools/block/view.h"
#include "tools/command/tree.h"
#include "tools/lint/key_hints.h"
#include "tools/trace/countries.h"

namespace {

bool contains(const std::vector<std::string>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

void checkNames(const LoadTrace& trace, const std::vector<std::string>& names) {
  std::vector<std::string> fields;
  for (const BlockField& field : kBlockFields) fields.emplace_back(field.name);
  for (const std::string& name : names) {
    const bool is_key =
        std::any_of(trace.parameters.begin(), trace.parameters.end(),
                    [&](const TracedParameter& parameter) { return parameter.key == name; });
    if (is_key || contains(fields, name)) continue;
    const KeyHint hint = KeyHints(trace).hintFor(name);
    throw std::runtime_error("no parameter and no field has the name '" + name + "'" +
                             (hint.keys.empty() ? suggestion(name, fields) : hint.text));
  }
}

Json::Value entryJson(const TracedEntry& entry) {
  Json::Value json;
  json["line"] = entry.number;
  json["text"] = entry.text;
  if (entry.file.has_value()) json["read"] = entry.last().path;
  if (!entry.file.has_value()) json["problem"] = whyNotRead(entry);
  if (entry.fellBack()) json["problem"] = entry.own.problem;
  return json;
}

Json::Value pathFileJson(const TracedPathFile& file) {
  Json::Value json;
  json["path"] = file.path;
  json["exists"] = file.kind != FileKind::Missing;
  json["entries"] = arrayOf(file.entries, entryJson);
  return json;
}

Json::Value filesJson(const LoadTrace& trace) {
  Json::Value files(Json::arrayValue);
  for (const TracedEntry& entry : trace.deciding().entries) {
    if (!entry.file.has_value()) continue;
    Json::Value& file = files.append({});
    file["path"] = entry.last().path;
    file["fallback"] = entry.fellBack();
  }
  return files;
}

// The line that won, and the lines that it overrode, the latest first.
Json::Value parameterJson(const LoadTrace& trace, const TracedParameter& parameter) {
  Json::Value json;
  json["key"] = parameter.key;
  if (parameter.settings.empty()) return json;
  const std::vector<LineRef> latest(parameter.settings.rbegin(), parameter.settings.rend());
  json["value"] = trace.valueOf(parameter);
  json["set_by"] = lineJson(trace, latest[0]);
  json["overridden"] = Json::arrayValue;
  for (size_t i = 1; i < latest.size(); ++i) json["overridden"].append(lineJson(trace, latest[i]));
  return json;
}

// The parameters and fields that are shown: those with these names, all when there are none.
struct Names {
  const std::vector<std::string>& names;

  bool have(const std::string& name) const { return names.empty() || contains(names, name); }
  bool have(const TracedParameter& parameter) const {
    const Parameter* const facts = parameter.facts;
    return have(parameter.key) || (facts != nullptr && have(facts->field().name));
  }
};

// The parameters that fill the field; without one, those that name the antennas.
Json::Value parametersJson(const LoadTrace& trace, const Names& names, const BlockField* field) {
  Json::Value json(Json::arrayValue);
  for (const TracedParameter& parameter : trace.parameters) {
    const Parameter* const facts = parameter.facts;
    const bool belongs = facts == nullptr ? field == nullptr : &facts->field() == field;
    if (belongs && names.have(parameter)) json.append(parameterJson(trace, parameter));
  }
  return json;
}

Json::Value fieldsJson(const LoadTrace& trace, const Names& names) {
  Json::Value json(Json::arrayValue);
  for (const BlockField& field : kBlockFields) {
    const Json::Value parameters = parametersJson(trace, names, &field);
    const bool is_wanted = names.have(field.name) || !parameters.empty();
    if (!is_wanted || field.kind == FieldKind::Reserved) continue;
    Json::Value& one = json.append(fieldJson(trace.block.value_or(Bytes()), field));
    one["parameters"] = parameters;
    if (!parameters.empty()) continue;
    one["source"] = field.kind == FieldKind::Crc
                        ? "computed over all the other bytes"
                        : "copied from channel 5: both channels share the antenna";
  }
  return json;
}

// Where the reading of a file ends; of the lines with these names, those that name a parameter
// after that, and the assignments whose key no parameter has.
void addLines(const LoadTrace& trace, const Names& names, Json::Value& json) {
  const auto line_of = [&](const LineRef& ref) { return lineJson(trace, ref); };
  json["failing"] = arrayOf(trace.failing(), line_of);
  json["refused_by_device"] = arrayOf(trace.refusedByDevice(), line_of);
  json["lost"] = json["dropped"] = Json::arrayValue;
  trace.forEachLine([&](const LineRef& ref, const TracedLine& line) {
    if (line.lost && names.have(trace.parameterOf(line))) json["lost"].append(line_of(ref));
    const bool is_dropped =
        line.effect.kind == LineEffect::Kind::Dropped && line.text.find('=') != line.text.npos;
    if (is_dropped && names.names.empty()) json["dropped"].append(line_of(ref));
  });
}

Json::Value explanationOf(const LoadTrace& trace, const Names& names) {
  Json::Value json;
  json["country"] = countryWord(trace.country);
  json["valid"] = trace.block.has_value();
  if (!trace.block.has_value()) json["problem"] = trace.problem;
  json["tried"] = arrayOf(trace.path_files, pathFileJson);
  if (!trace.decided) return json;
  json["path_file"] = trace.deciding().path;
  json["files"] = filesJson(trace);
  json["selection"] = parametersJson(trace, names, nullptr);
  json["fields"] = fieldsJson(trace, names);
  json["missing"] = Json::arrayValue;
  for (const TracedParameter& parameter : trace.parameters) {
    const bool is_missing = contains(trace.missing, parameter.key);
    if (is_missing && names.have(parameter)) json["missing"].append(parameter.key);
  }
  addLines(trace, names, json);
  return json;
}

std::string pathFileText(const Json::Value& file) {
  std::string out = file["exists"].asBool() ? "path file " : "there is no path file ";
  out += shown(file["path"]) + "\n";
  for (const Json::Value& entry : file["entries"]) {
    const std::string problem = shown(entry["problem"]);
    const bool is_fallback = entry.isMember("read") && !problem.empty();
    out += "  line " + shown(entry["line"]) + ": " + shown(entry["read"]) +
           (is_fallback ? "  (" + problem + ")" : problem) + "\n";
  }
  return out;
}

std::string parameterText(const Json::Value& parameter, const Paint& paint) {
  if (!parameter.isMember("set_by")) {
    return "    " + paint.red("no line sets " + shown(parameter["key"])) + "\n";
  }
  std::string out = "    " + lineText(parameter["set_by"]) + "\n";
  for (const Json::Value& line : parameter["overridden"]) {
    out += paint.dim("    overrides " + lineText(line)) + "\n";
  }
  return out;
}

std::string listText(const std::string& title, const Json::Value& lines) {
  std::string out = lines.empty() ? "" : "\n" + title + "\n";
  for (const Json::Value& line : lines) out += "    " + lineText(line) + "\n";
  return out;
}

std::string asText(const Json::Value& json, const LoadTrace& trace, const Paint& paint) {
  std::string out = countryTitle(trace.country) + ", ";
  if (!trace.decided) {
    out += shown(json["problem"]) + "\n";
    for (const Json::Value& file : json["tried"]) out += pathFileText(file);
    return out;
  }
  out += pathFileText(json["tried"][json["tried"].size() - 1]) + "\n";
  for (const Json::Value& parameter : json["selection"]) {
    out += paint.bold(shown(parameter["key"]));
    if (parameter.isMember("value")) out += " = " + shown(parameter["value"]);
    out += "\n" + parameterText(parameter, paint);
  }
  for (const Json::Value& field : json["fields"]) {
    out += paint.bold(shown(field["name"])) + ", offset " + shown(field["offset"]);
    if (trace.block.has_value()) {
      out += ": " + describe(*trace.block, fieldAt(field["offset"].asUInt()));
    }
    out += "\n";
    if (field.isMember("source")) out += "    " + shown(field["source"]) + "\n";
    for (const Json::Value& parameter : field["parameters"]) out += parameterText(parameter, paint);
  }
  out +=
      listText(paint.bold("The device stops reading a file at:"), json["failing"]) +
      listText(paint.bold("Not read after it:"), json["lost"]) +
      listText(paint.bold("The device cannot read the number, and not what follows in the file:"),
               json["refused_by_device"]) +
      listText(paint.bold("No parameter has the key of:"), json["dropped"]);
  if (!trace.block.has_value()) {
    out += "\n" + paint.red("no block: " + shown(json["problem"])) + "\n";
  }
  for (const Json::Value& key : json["missing"]) out += "    " + shown(key) + "\n";
  return out;
}

}  // namespace

Outcome explain(const Options& options, const Paint& paint) {
  if (!options.device_log.empty()) return explainDeviceLog(options, paint);
  const Tree tree(options.root, options, OpenRedirect::Opens::NoSpecialFiles);
  const LoadTrace trace = LoadTracer().trace(options.country.value_or(""));
  if (trace.decided) checkNames(trace, options.operands);
  const Json::Value json = explanationOf(trace, Names{options.operands});
  return {trace.block.has_value() ? kGood : kFindings,
          options.format == "json" ? documentOf(json) : asText(json, trace, paint),
          {}};
}
