// SPDX-License-Identifier: Apache-2.0
#include <functional>
#include <nlohmann/json.hpp>

#include "tools/block/view.h"
#include "tools/command/command.h"
#include "tools/device/device_library.h"
#include "tools/device/target_root.h"
#include "tools/trace/load_trace.h"

namespace {

using Json = nlohmann::ordered_json;

std::string countryName(const std::string& country) {
  return country.empty() ? "no country code" : "country " + printable(country);
}

std::string lineText(const LoadTrace& trace, const LineRef& ref) {
  return printable(trace.placeOf(ref)) + ": " + printable(trace.at(ref).text);
}

std::string filesText(const LoadTrace& trace) {
  std::string out = countryName(trace.country) + ", ";
  if (!trace.decided) return out + trace.problem + "\n";
  out += "path file " + printable(trace.deciding().path) + "\n";
  for (const TracedEntry& entry : trace.deciding().entries) {
    out += "  line " + std::to_string(entry.number) + ": ";
    if (!entry.file.has_value()) {
      out += "no file can be read: " + printable(entry.text) + "\n";
      continue;
    }
    out += printable(trace.files[*entry.file].path);
    if (entry.fell_back) out += "  (there is no " + printable(entry.path) + ")";
    out += "\n";
  }
  return out;
}

// The line that won, and the lines that it overrode, the latest first.
std::string settingsText(const LoadTrace& trace, const TracedParameter& parameter,
                         const Paint& paint) {
  if (parameter.settings.empty()) {
    return "    " + paint.red("no line sets " + printable(parameter.key)) + "\n";
  }
  std::string out;
  for (auto ref = parameter.settings.rbegin(); ref != parameter.settings.rend(); ++ref) {
    const bool won = ref == parameter.settings.rbegin();
    const std::string text = (won ? "    " : "    overrides ") + lineText(trace, *ref);
    out += (won ? text : paint.dim(text)) + "\n";
  }
  return out;
}

std::string selectionText(const LoadTrace& trace, const Paint& paint) {
  std::string out;
  for (const TracedParameter& parameter : trace.parameters) {
    if (parameter.pass != Pass::Selection) continue;
    out += paint.bold(parameter.key);
    if (!parameter.settings.empty()) {
      out += " = " + printable(trace.at(parameter.settings.back()).effect.value);
    }
    out += "\n" + settingsText(trace, parameter, paint);
  }
  return out;
}

std::vector<const TracedParameter*> parametersOf(const LoadTrace& trace, const BlockField& field) {
  std::vector<const TracedParameter*> parameters;
  for (const TracedParameter& parameter : trace.parameters) {
    if (parameter.place.has_value() && parameter.place->field == &field) {
      parameters.push_back(&parameter);
    }
  }
  return parameters;
}

// Where a field's value comes from when no line of its own sets it.
std::string sourceWithoutLine(const BlockField& field) {
  return field.kind == FieldKind::Crc ? "computed over all the other bytes"
                                      : "copied from channel 5: both channels share the antenna";
}

std::string fieldHead(const LoadTrace& trace, const BlockField& field, const Paint& paint) {
  std::string head = paint.bold(field.name) + ", offset " + std::to_string(field.offset);
  if (!trace.block.has_value()) return head + "\n";
  head += ": " + bytesOf(*trace.block, field) + " = " + valueOf(*trace.block, field);
  const std::string meaning = meaningOf(*trace.block, field);
  return head + (meaning.empty() ? "" : ", " + meaning) + "\n";
}

std::string fieldText(const LoadTrace& trace, const BlockField& field, const Paint& paint) {
  std::string out = fieldHead(trace, field, paint);
  const std::vector<const TracedParameter*> parameters = parametersOf(trace, field);
  if (parameters.empty()) return out + "    " + sourceWithoutLine(field) + "\n";
  for (const TracedParameter* parameter : parameters) {
    out += settingsText(trace, *parameter, paint);
  }
  return out;
}

std::vector<LineRef> linesWhere(const LoadTrace& trace,
                                const std::function<bool(const TracedLine&)>& chosen) {
  std::vector<LineRef> lines;
  for (size_t file = 0; file < trace.files.size(); ++file) {
    for (size_t line = 0; line < trace.files[file].lines.size(); ++line) {
      if (chosen(trace.files[file].lines[line])) lines.push_back({file, line});
    }
  }
  return lines;
}

// Lines that name a parameter, and whose file had an error before them.
std::vector<LineRef> lostLines(const LoadTrace& trace) {
  return linesWhere(trace, [](const TracedLine& line) { return line.lost; });
}

std::vector<LineRef> failingLines(const LoadTrace& trace) {
  return linesWhere(trace, [](const TracedLine& line) {
    return line.effect.kind == LineEffect::Kind::Fails && !line.lost;
  });
}

// Assignments that no tree takes.
std::vector<LineRef> droppedLines(const LoadTrace& trace) {
  return linesWhere(trace, [](const TracedLine& line) {
    return line.effect.kind == LineEffect::Kind::Dropped &&
           line.text.find('=') != std::string::npos;
  });
}

std::string listText(const LoadTrace& trace, const std::string& title,
                     const std::vector<LineRef>& lines, const Paint& paint) {
  if (lines.empty()) return {};
  std::string out = "\n" + paint.bold(title) + "\n";
  for (const LineRef& ref : lines) out += "    " + lineText(trace, ref) + "\n";
  return out;
}

std::string asText(const LoadTrace& trace, const Paint& paint) {
  std::string out = filesText(trace);
  if (!trace.decided) return out;
  out += "\n" + selectionText(trace, paint);
  for (const BlockField& field : blockFields()) {
    if (field.kind != FieldKind::Reserved) out += fieldText(trace, field, paint);
  }
  out += listText(trace, "A value that cannot be read ends its file:", failingLines(trace), paint);
  out += listText(trace, "Lost behind it:", lostLines(trace), paint);
  out += listText(trace, "No parameter takes:", droppedLines(trace), paint);
  if (!trace.block.has_value()) out += "\n" + paint.red("no block: " + trace.problem) + "\n";
  for (const std::string& key : trace.missing) out += "    " + printable(key) + "\n";
  return out;
}

Json lineJson(const LoadTrace& trace, const LineRef& ref) {
  return {{"path", trace.files[ref.file].path},
          {"line", trace.at(ref).number},
          {"text", trace.at(ref).text}};
}

Json linesJson(const LoadTrace& trace, const std::vector<LineRef>& lines) {
  Json json = Json::array();
  for (const LineRef& ref : lines) json.push_back(lineJson(trace, ref));
  return json;
}

Json parameterJson(const LoadTrace& trace, const TracedParameter& parameter) {
  Json json = {{"key", parameter.key}};
  if (parameter.settings.empty()) return json;
  json["value"] = trace.at(parameter.settings.back()).effect.value;
  json["set_by"] = lineJson(trace, parameter.settings.back());
  std::vector<LineRef> overridden(parameter.settings.rbegin() + 1, parameter.settings.rend());
  json["overridden"] = linesJson(trace, overridden);
  return json;
}

Json fieldJson(const LoadTrace& trace, const BlockField& field) {
  Json json = {{"name", field.name}, {"offset", field.offset}, {"size", field.size}};
  if (trace.block.has_value()) {
    json["bytes"] = bytesOf(*trace.block, field);
    json["value"] = numberIn(*trace.block, field);
  }
  json["parameters"] = Json::array();
  for (const TracedParameter* parameter : parametersOf(trace, field)) {
    json["parameters"].push_back(parameterJson(trace, *parameter));
  }
  if (json["parameters"].empty()) json["source"] = sourceWithoutLine(field);
  return json;
}

Json filesJson(const LoadTrace& trace) {
  Json files = Json::array();
  for (const TracedEntry& entry : trace.deciding().entries) {
    if (!entry.file.has_value()) continue;
    files.push_back({{"path", trace.files[*entry.file].path}, {"fallback", entry.fell_back}});
  }
  return files;
}

Json fieldsJson(const LoadTrace& trace) {
  Json fields = Json::array();
  for (const BlockField& field : blockFields()) {
    if (field.kind != FieldKind::Reserved) fields.push_back(fieldJson(trace, field));
  }
  return fields;
}

Json asJson(const LoadTrace& trace) {
  Json json = {{"country", trace.country}, {"valid", trace.block.has_value()}};
  if (!trace.block.has_value()) json["problem"] = trace.problem;
  if (!trace.decided) return json;
  json["path_file"] = trace.deciding().path;
  json["files"] = filesJson(trace);
  json["selection"] = Json::array();
  for (const TracedParameter& parameter : trace.parameters) {
    if (parameter.pass == Pass::Selection) {
      json["selection"].push_back(parameterJson(trace, parameter));
    }
  }
  json["fields"] = fieldsJson(trace);
  json["failing"] = linesJson(trace, failingLines(trace));
  json["lost"] = linesJson(trace, lostLines(trace));
  json["dropped"] = linesJson(trace, droppedLines(trace));
  json["missing"] = trace.missing;
  return json;
}

}  // namespace

Outcome explain(const Options& options, const Paint& paint) {
  setDeviceProperties(options.country.value_or(""), options.path_file);
  const TargetRoot root(options.root);
  const LoadTrace trace = traceLoad(options.country.value_or(""));
  const int status = trace.block.has_value() ? kGood : kFindings;
  if (options.format != "json") return {status, asText(trace, paint), {}};
  // File contents may be any bytes; JSON is UTF-8.
  return {status, asJson(trace).dump(2, ' ', false, Json::error_handler_t::replace) + "\n", {}};
}
