// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <functional>
#include <stdexcept>

#include "tools/block/view.h"
#include "tools/command/tree.h"
#include "tools/text/nearest.h"
#include "tools/trace/countries.h"

namespace {

// Where the value of a field comes from that no parameter fills.
std::string sourceWithoutLine(const BlockField& field) {
  return field.kind == FieldKind::Crc ? "computed over all the other bytes"
                                      : "copied from channel 5: both channels share the antenna";
}

// Assignments whose key no parameter has.
bool isDropped(const TracedLine& line) {
  return line.effect.kind == LineEffect::Kind::Dropped && line.text.find('=') != std::string::npos;
}

// Where the device stops reading a file.
bool isFailing(const TracedLine& line) {
  return line.effect.kind == LineEffect::Kind::Fails && !line.lost;
}

// Lines that name a parameter, after an error in their file.
bool isLost(const TracedLine& line) {
  return line.lost;
}

class Explanation {
 public:
  // Shows only the parameters and fields with these names; all when there are none.
  Explanation(const LoadTrace& trace, const std::vector<std::string>& names, const Paint& paint)
      : trace_(trace), names_(names), paint_(paint) {
    if (trace.decided) checkNames();
  }

  std::string asText() const {
    std::string out = filesText();
    if (!trace_.decided) return out;
    out += "\n" + selectionText();
    for (const BlockField* field : fields()) out += fieldText(*field);
    out += listText("The device stops reading a file at:", isFailing);
    out += listText("Not read after it:", isLost);
    out += listText("No parameter has the key of:", isDropped);
    if (!trace_.block.has_value())
      out += "\n" + paint_.red("no block: " + printable(trace_.problem)) + "\n";
    for (const std::string& key : trace_.missing) {
      if (isWanted(key)) out += "    " + printable(key) + "\n";
    }
    return out;
  }

  JsonMembers asJson() const {
    JsonMembers json = {{"country", trace_.country}, {"valid", trace_.block.has_value()}};
    if (!trace_.block.has_value()) json.emplace_back("problem", trace_.problem);
    if (!trace_.decided) {
      json.emplace_back("tried", triedJson());
      return json;
    }
    json.emplace_back("path_file", trace_.deciding().path);
    json.emplace_back("files", filesJson());
    json.emplace_back("selection", parametersJson(selection()));
    json.emplace_back("fields", fieldsJson());
    json.emplace_back("failing", linesJson(linesWhere(isFailing)));
    json.emplace_back("lost", linesJson(linesWhere(isLost)));
    json.emplace_back("dropped", linesJson(linesWhere(isDropped)));
    json.emplace_back("missing", trace_.missing);
    return json;
  }

 private:
  void checkNames() const {
    std::vector<std::string> known;
    for (const TracedParameter& parameter : trace_.parameters) known.push_back(parameter.key);
    for (const BlockField& field : kBlockFields) known.emplace_back(field.name);
    for (const std::string& name : names_) {
      if (std::find(known.begin(), known.end(), name) != known.end()) continue;
      const std::string nearest = nearestOf(name, known);
      throw std::runtime_error("no parameter and no field has the name '" + name + "'" +
                               (nearest.empty() ? "" : "; did you mean '" + nearest + "'?"));
    }
  }

  bool isWanted(const std::string& name) const {
    return names_.empty() || std::find(names_.begin(), names_.end(), name) != names_.end();
  }

  bool isWanted(const TracedParameter& parameter) const {
    return isWanted(parameter.key) ||
           (parameter.facts != nullptr && isWanted(parameter.facts->field().name));
  }

  std::vector<const TracedParameter*> wanted(
      const std::function<bool(const TracedParameter&)>& chosen) const {
    std::vector<const TracedParameter*> parameters;
    for (const TracedParameter& parameter : trace_.parameters) {
      if (chosen(parameter) && isWanted(parameter)) parameters.push_back(&parameter);
    }
    return parameters;
  }

  std::vector<const TracedParameter*> selection() const {
    return wanted(
        [](const TracedParameter& parameter) { return parameter.pass == Pass::Selection; });
  }

  std::vector<const TracedParameter*> parametersOf(const BlockField& field) const {
    return wanted([&](const TracedParameter& parameter) {
      return parameter.facts != nullptr && &parameter.facts->field() == &field;
    });
  }

  std::vector<const BlockField*> fields() const {
    std::vector<const BlockField*> fields;
    for (const BlockField& field : kBlockFields) {
      const bool is_wanted = isWanted(field.name) || !parametersOf(field).empty();
      if (field.kind != FieldKind::Reserved && is_wanted) fields.push_back(&field);
    }
    return fields;
  }

  std::vector<LineRef> linesWhere(bool (*chosen)(const TracedLine&)) const {
    std::vector<LineRef> lines;
    trace_.forEachLine([&](const LineRef& ref, const TracedLine& line) {
      const bool is_wanted =
          names_.empty() || (line.parameter.has_value() && isWanted(trace_.parameterOf(line)));
      if (is_wanted && chosen(line)) lines.push_back(ref);
    });
    return lines;
  }

  std::string entryText(const TracedEntry& entry) const {
    std::string out = "  line " + std::to_string(entry.number) + ": ";
    if (!entry.file.has_value()) return out + printable(whyNotRead(entry)) + "\n";
    out += printable(trace_.files[*entry.file]->path);
    return out + (entry.fellBack() ? "  (" + printable(problemOf(entry.own)) + ")\n" : "\n");
  }

  std::string filesText() const {
    std::string out = countryTitle(trace_.country) + ", ";
    if (!trace_.decided) out += printable(trace_.problem) + "\n";
    for (const TracedPathFile& file : trace_.path_files) {
      if (trace_.decided && &file != &trace_.deciding()) continue;
      const bool missing = file.kind == FileKind::Missing;
      out += (missing ? "there is no path file " : "path file ") + printable(file.path) + "\n";
      for (const TracedEntry& entry : file.entries) out += entryText(entry);
    }
    return out;
  }

  std::string lineText(const LineRef& ref) const {
    return printable(trace_.placeText(ref)) + ": " + printable(trace_.at(ref).text);
  }

  // The line that won, and the lines that it overrode, the latest first.
  std::string settingsText(const TracedParameter& parameter) const {
    if (parameter.settings.empty()) {
      return "    " + paint_.red("no line sets " + printable(parameter.key)) + "\n";
    }
    std::string out;
    for (auto ref = parameter.settings.rbegin(); ref != parameter.settings.rend(); ++ref) {
      const bool won = ref == parameter.settings.rbegin();
      const std::string text = (won ? "    " : "    overrides ") + lineText(*ref);
      out += (won ? text : paint_.dim(text)) + "\n";
    }
    return out;
  }

  std::string selectionText() const {
    std::string out;
    for (const TracedParameter* parameter : selection()) {
      out += paint_.bold(parameter->key);
      if (!parameter->settings.empty()) {
        out += " = " + printable(trace_.at(parameter->settings.back()).effect.value);
      }
      out += "\n" + settingsText(*parameter);
    }
    return out;
  }

  std::string fieldText(const BlockField& field) const {
    std::string out = paint_.bold(field.name) + ", offset " + std::to_string(field.offset);
    if (trace_.block.has_value()) {
      out += ": " + bytesOf(*trace_.block, field) + " = " + valueOf(*trace_.block, field);
      const std::string meaning = meaningOf(*trace_.block, field);
      if (!meaning.empty()) out += ", " + meaning;
    }
    out += "\n";
    const std::vector<const TracedParameter*> parameters = parametersOf(field);
    if (parameters.empty()) out += "    " + sourceWithoutLine(field) + "\n";
    for (const TracedParameter* parameter : parameters) out += settingsText(*parameter);
    return out;
  }

  std::string listText(const std::string& title, bool (*chosen)(const TracedLine&)) const {
    const std::vector<LineRef> lines = linesWhere(chosen);
    if (lines.empty()) return {};
    std::string out = "\n" + paint_.bold(title) + "\n";
    for (const LineRef& ref : lines) out += "    " + lineText(ref) + "\n";
    return out;
  }

  JsonValue linesJson(const std::vector<LineRef>& lines) const {
    std::vector<JsonValue> json;
    json.reserve(lines.size());
    for (const LineRef& ref : lines) json.push_back(lineJson(trace_, ref));
    return json;
  }

  JsonValue parametersJson(const std::vector<const TracedParameter*>& parameters) const {
    std::vector<JsonValue> list;
    for (const TracedParameter* parameter : parameters) {
      JsonMembers json = {{"key", parameter->key}};
      if (!parameter->settings.empty()) {
        const LineRef& winner = parameter->settings.back();
        json.emplace_back("value", trace_.at(winner).effect.value);
        json.emplace_back("set_by", lineJson(trace_, winner));
        json.emplace_back("overridden", linesJson({parameter->settings.rbegin() + 1,
                                                   parameter->settings.rend()}));
      }
      list.emplace_back(json);
    }
    return list;
  }

  JsonValue fieldsJson() const {
    std::vector<JsonValue> list;
    for (const BlockField* field : fields()) {
      JsonMembers json = {{"name", field->name}, {"offset", field->offset}, {"size", field->size}};
      if (trace_.block.has_value()) {
        json.emplace_back("bytes", bytesOf(*trace_.block, *field));
        json.emplace_back("value", numberIn(*trace_.block, *field));
      }
      const std::vector<const TracedParameter*> parameters = parametersOf(*field);
      json.emplace_back("parameters", parametersJson(parameters));
      if (parameters.empty()) json.emplace_back("source", sourceWithoutLine(*field));
      list.emplace_back(json);
    }
    return list;
  }

  JsonValue filesJson() const {
    std::vector<JsonValue> files;
    for (const TracedEntry& entry : trace_.deciding().entries) {
      if (!entry.file.has_value()) continue;
      files.emplace_back(
          JsonMembers{{"path", trace_.files[*entry.file]->path}, {"fallback", entry.fellBack()}});
    }
    return files;
  }

  // The path files of a load that none of them decided.
  JsonValue triedJson() const {
    std::vector<JsonValue> path_files;
    for (const TracedPathFile& file : trace_.path_files) {
      std::vector<JsonValue> entries;
      for (const TracedEntry& entry : file.entries) {
        entries.emplace_back(JsonMembers{
            {"line", entry.number}, {"text", entry.text}, {"problem", whyNotRead(entry)}});
      }
      path_files.emplace_back(JsonMembers{
          {"path", file.path}, {"exists", file.kind != FileKind::Missing}, {"entries", entries}});
    }
    return path_files;
  }

  const LoadTrace& trace_;
  const std::vector<std::string>& names_;
  const Paint& paint_;
};

LoadTrace traceOf(const Options& options) {
  const Tree tree(options.root, options, OpenRedirect::Opens::NoSpecialFiles);
  return traceLoad(options.country.value_or(""));
}

}  // namespace

Outcome explain(const Options& options, const Paint& paint) {
  if (!options.device_log.empty()) return explainDeviceLog(options, paint);
  const LoadTrace trace = traceOf(options);
  const Explanation explanation(trace, options.operands, paint);
  const int status = trace.block.has_value() ? kGood : kFindings;
  if (options.format == "json") return {status, documentOf(explanation.asJson()), {}};
  return {status, explanation.asText(), {}};
}
