// SPDX-License-Identifier: Apache-2.0
#include <functional>

#include "tools/block/view.h"
#include "tools/command/tree.h"
#include "tools/trace/countries.h"
#include "tools/trace/load_trace.h"

namespace {

std::string lineText(const LoadTrace& trace, const LineRef& ref) {
  return printable(trace.placeText(ref)) + ": " + printable(trace.at(ref).text);
}

std::string filesText(const LoadTrace& trace) {
  std::string out = countryTitle(trace.country) + ", ";
  if (!trace.decided) return out + trace.problem + "\n";
  out += "path file " + printable(trace.deciding().path) + "\n";
  for (const TracedEntry& entry : trace.deciding().entries) {
    out += "  line " + std::to_string(entry.number) + ": ";
    if (!entry.file.has_value()) {
      out += "no file can be read: " + printable(entry.text) + "\n";
      continue;
    }
    out += printable(trace.files[*entry.file]->path);
    if (entry.fellBack()) out += "  (" + printable(problemOf(entry.own)) + ")";
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
    if (parameter.facts != nullptr && &parameter.facts->field() == &field) {
      parameters.push_back(&parameter);
    }
  }
  return parameters;
}

// Where the value of a field comes from that no parameter fills.
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
    for (size_t line = 0; line < trace.files[file]->lines.size(); ++line) {
      if (chosen(trace.files[file]->lines[line])) lines.push_back({file, line});
    }
  }
  return lines;
}

// Lines that name a parameter, after an error in their file.
std::vector<LineRef> lostLines(const LoadTrace& trace) {
  return linesWhere(trace, [](const TracedLine& line) { return line.lost; });
}

std::vector<LineRef> failingLines(const LoadTrace& trace) {
  return linesWhere(trace, [](const TracedLine& line) {
    return line.effect.kind == LineEffect::Kind::Fails && !line.lost;
  });
}

// Assignments whose key no parameter has.
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
  for (const BlockField& field : kBlockFields) {
    if (field.kind != FieldKind::Reserved) out += fieldText(trace, field, paint);
  }
  out += listText(trace, "The device stops reading a file at:", failingLines(trace), paint);
  out += listText(trace, "Not read after it:", lostLines(trace), paint);
  out += listText(trace, "No parameter has the key of:", droppedLines(trace), paint);
  if (!trace.block.has_value()) out += "\n" + paint.red("no block: " + trace.problem) + "\n";
  for (const std::string& key : trace.missing) out += "    " + printable(key) + "\n";
  return out;
}

JsonValue lineJson(const LoadTrace& trace, const LineRef& ref) {
  return JsonMembers{{"path", trace.files[ref.file]->path},
                     {"line", trace.at(ref).number},
                     {"text", trace.at(ref).text}};
}

JsonValue linesJson(const LoadTrace& trace, const std::vector<LineRef>& lines) {
  std::vector<JsonValue> json;
  for (const LineRef& ref : lines) json.push_back(lineJson(trace, ref));
  return json;
}

JsonValue parameterJson(const LoadTrace& trace, const TracedParameter& parameter) {
  JsonMembers json = {{"key", parameter.key}};
  if (parameter.settings.empty()) return json;
  const LineRef& winner = parameter.settings.back();
  json.emplace_back("value", trace.at(winner).effect.value);
  json.emplace_back("set_by", lineJson(trace, winner));
  const std::vector<LineRef> overridden(parameter.settings.rbegin() + 1, parameter.settings.rend());
  json.emplace_back("overridden", linesJson(trace, overridden));
  return json;
}

JsonValue fieldJson(const LoadTrace& trace, const BlockField& field) {
  JsonMembers json = {{"name", field.name}, {"offset", field.offset}, {"size", field.size}};
  if (trace.block.has_value()) {
    json.emplace_back("bytes", bytesOf(*trace.block, field));
    json.emplace_back("value", numberIn(*trace.block, field));
  }
  std::vector<JsonValue> parameters;
  for (const TracedParameter* parameter : parametersOf(trace, field)) {
    parameters.push_back(parameterJson(trace, *parameter));
  }
  json.emplace_back("parameters", parameters);
  if (parameters.empty()) json.emplace_back("source", sourceWithoutLine(field));
  return json;
}

JsonValue filesJson(const LoadTrace& trace) {
  std::vector<JsonValue> files;
  for (const TracedEntry& entry : trace.deciding().entries) {
    if (!entry.file.has_value()) continue;
    files.emplace_back(
        JsonMembers{{"path", trace.files[*entry.file]->path}, {"fallback", entry.fellBack()}});
  }
  return files;
}

JsonValue selectionJson(const LoadTrace& trace) {
  std::vector<JsonValue> selection;
  for (const TracedParameter& parameter : trace.parameters) {
    if (parameter.pass == Pass::Selection) selection.push_back(parameterJson(trace, parameter));
  }
  return selection;
}

JsonValue fieldsJson(const LoadTrace& trace) {
  std::vector<JsonValue> fields;
  for (const BlockField& field : kBlockFields) {
    if (field.kind != FieldKind::Reserved) fields.push_back(fieldJson(trace, field));
  }
  return fields;
}

JsonMembers jsonOf(const LoadTrace& trace) {
  JsonMembers json = {{"country", trace.country}, {"valid", trace.block.has_value()}};
  if (!trace.block.has_value()) json.emplace_back("problem", trace.problem);
  if (!trace.decided) return json;
  json.emplace_back("path_file", trace.deciding().path);
  json.emplace_back("files", filesJson(trace));
  json.emplace_back("selection", selectionJson(trace));
  json.emplace_back("fields", fieldsJson(trace));
  json.emplace_back("failing", linesJson(trace, failingLines(trace)));
  json.emplace_back("lost", linesJson(trace, lostLines(trace)));
  json.emplace_back("dropped", linesJson(trace, droppedLines(trace)));
  json.emplace_back("missing", trace.missing);
  return json;
}

LoadTrace traceOf(const Options& options) {
  const Tree tree(options.root, options, OpenRedirect::Opens::NoSpecialFiles);
  return traceLoad(options.country.value_or(""));
}

}  // namespace

Outcome explain(const Options& options, const Paint& paint) {
  const LoadTrace trace = traceOf(options);
  const int status = trace.block.has_value() ? kGood : kFindings;
  if (options.format != "json") return {status, asText(trace, paint), {}};
  return {status, documentOf(jsonOf(trace)), {}};
}
