// SPDX-License-Identifier: Apache-2.0
#include "tools/trace/load_trace.h"

#include <cerrno>
#include <cstring>
#include <exception>
#include <sstream>

#include "loader/calib_loading.h"
#include "loader/calib_parser.h"
#include "loader/calib_path.h"
#include "loader/lib.h"
#include "loader/path_file.h"
#include "loader/pattern_run.h"
#include "loader/text_file.h"
#include "output/calib_converter.h"
#include "schema/antenna_selection_pattern.h"
#include "schema/pattern.h"
#include "tools/device/files.h"
#include "tools/device/library_log.h"

namespace {

using Kind = LineEffect::Kind;

TracedEntry tracedEntry(size_t number, const std::string& text, const std::string& country) {
  TracedEntry entry{number, text, text, false, false, text, Readability::Text, {}, {}};
  const std::string::size_type position = CalibPath::findCountryCodeComponent(text);
  if (position == std::string::npos) return entry;
  entry.has_placeholder = true;
  entry.path = CalibPath::setCountryCodeComponent(text, position, country);
  entry.last_path = entry.path;
  return entry;
}

void noteFallback(TracedEntry& entry, const std::optional<calibration>& read) {
  if (!entry.has_placeholder || (read.has_value() && read->path == entry.path)) return;
  const std::string::size_type position = CalibPath::findCountryCodeComponent(entry.text);
  entry.last_path = CalibPath::setCountryCodeComponent(entry.text, position, "default");
  entry.fell_back = read.has_value();
}

// Reads the file that the entry names as the loader does, and notes what came of it.
void traceEntry(TracedEntry& entry, CalibParser& parser, std::vector<calibration>& calibrations) {
  const std::optional<calibration> read = parser.parsePathFileEntry(entry.text);
  noteFallback(entry, read);
  entry.readability = readabilityOf(entry.last_path, entry.reason);
  if (!read.has_value()) return;
  entry.file = calibrations.size();
  calibrations.push_back(*read);
}

TracedPathFile tracePathFile(const std::string& path, const std::string& country,
                             std::vector<calibration>& calibrations) {
  TracedPathFile traced{path, Readability::Text, {}};
  std::string reason;
  traced.readability = readabilityOf(path, reason);
  const std::string content = readTextFile(path).value_or("");
  CalibReader reader;
  CalibParser parser(reader, country);
  std::string_view rest = content;
  for (std::string text; next_entry(rest, text);) {
    TracedEntry entry = tracedEntry(traced.entries.size() + 1, text, country);
    traceEntry(entry, parser, calibrations);
    traced.entries.push_back(std::move(entry));
  }
  return traced;
}

// The first path file that names a readable calibration file decides.
std::vector<calibration> tracePathFiles(LoadTrace& trace) {
  std::vector<calibration> calibrations;
  for (const std::string& path : build_paths()) {
    trace.path_files.push_back(tracePathFile(path, trace.country, calibrations));
    trace.decided = !calibrations.empty();
    if (trace.decided) break;
  }
  return calibrations;
}

// Gives both antennas a name, so that the rest can be followed where the texts name none.
void selectUnnamed() {
  AntennaSelectionPattern pattern;
  const SchemaProbe probe = selectionProbe();
  std::string text;
  for (const std::string& key : probe.keys()) text += key + "=?\n";
  std::istringstream input(text);
  pattern.parse(input);
  pattern.toAntennaSelection(kMostSignificantByteFirst);
}

void select(LoadTrace& trace, const std::vector<calibration>& calibrations) {
  const LogCapture log;
  AntennaSelectionPattern pattern;
  const bool parsed = parse_pattern(pattern, calibrations);
  trace.selected = pattern.validate(trace.missing, {}) && parsed;
  selectUnnamed();
  // A name that no text gives stays the one from above.
  trace.selection = pattern.toAntennaSelection(kMostSignificantByteFirst);
}

void addParameters(LoadTrace& trace, const SchemaProbe& probe, Pass pass) {
  std::vector<const Parameter*> facts(probe.keys().size());
  if (pass == Pass::Calibration) facts = parametersFor(trace.selection);
  for (size_t i = 0; i < probe.keys().size(); ++i) {
    trace.parameters.push_back({probe.keys()[i], pass, {}, facts.at(i)});
  }
}

// Follows the lines of one file through both passes.
class FileTracer {
 public:
  FileTracer(LoadTrace& trace, const SchemaProbe& selection, const SchemaProbe& calibration)
      : trace_(trace), selection_(selection), calibration_(calibration) {}

  void follow(size_t file) {
    failed_[0] = failed_[1] = false;
    TracedFile& traced = trace_.files[file];
    for (const std::string& text : linesOf(traced.content)) {
      TracedLine line = traceLine(traced.lines.size() + 1, text);
      if (line.names()) note(line, {file, traced.lines.size()});
      traced.lines.push_back(std::move(line));
    }
  }

 private:
  TracedLine traceLine(size_t number, const std::string& text) const {
    TracedLine line{number, text, Pass::Selection, selection_.feed(text), false};
    if (line.names()) return line;
    line.pass = Pass::Calibration;
    line.effect = calibration_.feed(text);
    // The parameters of the second tree stand behind those of the first.
    line.effect.parameter += selection_.keys().size();
    return line;
  }

  void note(TracedLine& line, const LineRef& ref) {
    bool& failed = failed_[static_cast<size_t>(line.pass)];
    line.lost = failed;
    if (failed) return;
    if (line.effect.kind == Kind::Fails) {
      failed = true;
    } else {
      trace_.parameters[line.effect.parameter].settings.push_back(ref);
    }
  }

  LoadTrace& trace_;
  const SchemaProbe& selection_;
  const SchemaProbe& calibration_;
  bool failed_[2] = {};
};

void followFiles(LoadTrace& trace, const std::vector<calibration>& calibrations) {
  const SchemaProbe selection = selectionProbe();
  const SchemaProbe calibration = calibrationProbe(trace.selection);
  addParameters(trace, selection, Pass::Selection);
  addParameters(trace, calibration, Pass::Calibration);
  FileTracer tracer(trace, selection, calibration);
  for (const ::calibration& file : calibrations) {
    trace.files.push_back({file.path, file.content, {}});
    tracer.follow(trace.files.size() - 1);
  }
}

void noteMissing(LoadTrace& trace, const std::vector<calibration>& calibrations) {
  if (!trace.selected) return;
  const LogCapture log;
  Pattern pattern(trace.selection);
  parse_pattern(pattern, calibrations);
  pattern.validate(trace.missing, {});
}

Bytes bytesOf(const ccc_params& params) {
  Bytes block(sizeof(params));
  std::memcpy(block.data(), &params, sizeof(params));
  return block;
}

// The outcome is the library's own, not a conclusion from the lines.
void finish(LoadTrace& trace, const std::vector<calibration>& calibrations) {
  ccc_calib calib{};
  const ParseResult result = parse_calibrations(calibrations, trace.deciding().path, calib);
  if (result != ParseResult::ValidCalibration) {
    trace.problem =
        trace.missing.empty() ? "every calibration file has an error" : "parameters are missing";
    return;
  }
  try {
    trace.block = bytesOf(CalibConverter::convert(calib));
  } catch (const std::exception& e) {
    trace.problem = e.what();
  }
}

}  // namespace

const TracedParameter& LoadTrace::parameterOf(const TracedLine& line) const {
  return parameters.at(line.effect.parameter);
}

std::string LoadTrace::placeOf(const LineRef& ref) const {
  return files[ref.file].path + ":" + std::to_string(at(ref).number);
}

LoadTrace traceLoad(const std::string& country) {
  LoadTrace trace;
  trace.country = country;
  const std::vector<calibration> calibrations = tracePathFiles(trace);
  if (!trace.decided) {
    trace.problem = "no path file names a calibration file that can be read";
    return trace;
  }
  select(trace, calibrations);
  followFiles(trace, calibrations);
  noteMissing(trace, calibrations);
  finish(trace, calibrations);
  return trace;
}

Readability readabilityOf(const std::string& path, std::string& reason) {
  const std::optional<struct stat> status = statusOf(path);
  if (status.has_value() && S_ISDIR(status->st_mode)) return Readability::Directory;
  if (status.has_value() && canBeOpened(path)) {
    return S_ISREG(status->st_mode) && status->st_size == 0 ? Readability::Empty
                                                            : Readability::Text;
  }
  if (errno == ENOENT || errno == ENOTDIR) return Readability::Missing;
  reason = std::strerror(errno);
  return Readability::Unreadable;
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream input(text);
  for (std::string line; std::getline(input, line);) lines.push_back(line);
  return lines;
}
