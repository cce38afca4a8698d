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

TracedEntry entryOf(size_t number, const std::string& text, const std::string& country) {
  TracedEntry entry;
  entry.number = number;
  entry.text = text;
  const std::string::size_type position = CalibPath::findCountryCodeComponent(text);
  entry.has_placeholder = position != std::string::npos;
  entry.path =
      entry.has_placeholder ? CalibPath::setCountryCodeComponent(text, position, country) : text;
  entry.last_path = entry.path;
  return entry;
}

void noteFallback(TracedEntry& entry, const std::optional<calibration>& read) {
  if (!entry.has_placeholder || (read.has_value() && read->path == entry.path)) return;
  const std::string::size_type position = CalibPath::findCountryCodeComponent(entry.text);
  entry.last_path =
      CalibPath::setCountryCodeComponent(entry.text, position, CalibPath::kDefaultCountry);
  entry.fell_back = read.has_value();
}

// Reads the file that the entry names as the loader does, and notes what came of it.
void traceEntry(TracedEntry& entry, CalibParser& parser, std::vector<calibration>& calibrations) {
  const std::optional<calibration> read = parser.parsePathFileEntry(entry.text);
  noteFallback(entry, read);
  entry.status = fileStatus(entry.last_path);
  if (!read.has_value()) return;
  entry.file = calibrations.size();
  calibrations.push_back(*read);
}

TracedPathFile tracePathFile(const std::string& path, const std::string& country,
                             std::vector<calibration>& calibrations) {
  TracedPathFile traced{path, fileStatus(path), {}};
  const std::string content = readTextFile(path).value_or("");
  CalibReader reader;
  CalibParser parser(reader, country);
  std::string_view rest = content;
  for (std::string text; next_entry(rest, text);) {
    TracedEntry entry = entryOf(traced.entries.size() + 1, text, country);
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

// The tree of the antennas' names with a record of its own: that of AntennaSelectionPattern keeps
// the names of the load before. A name that no text gives is "?", so that the rest can be followed.
void select(LoadTrace& trace, const std::vector<calibration>& calibrations) {
  const LogCapture log;
  antenna_selection& names = trace.selection;
  names = {"?", "?"};
  AstRoot tree("", std::nullopt, 0,
               {AntennaSelectionPattern::buildAntSelectionParams("ch5", &names.ch5),
                AntennaSelectionPattern::buildAntSelectionParams("ch9", &names.ch9)},
               0);
  const bool parsed = parse_pattern(tree, calibrations);
  trace.selected = tree.validate(trace.missing, {}) && parsed;
  tree.toBuffer(kMostSignificantByteFirst);
}

// Follows lines through one of the two passes.
class PassTracer {
 public:
  // Appends the pass's parameters to the trace. `facts` has one for each, or none.
  PassTracer(LoadTrace& trace, Pass pass, SchemaProbe probe,
             const std::vector<const Parameter*>& facts)
      : trace_(trace), pass_(pass), probe_(std::move(probe)), first_(trace.parameters.size()) {
    for (size_t i = 0; i < probe_.keys().size(); ++i) {
      trace.parameters.push_back({probe_.keys()[i], pass, {}, facts.empty() ? nullptr : facts[i]});
    }
  }

  void beginFile() { failed_ = false; }

  // Whether the line names a parameter of this pass.
  bool follow(TracedLine& line, const LineRef& ref) {
    line.effect = probe_.feed(line.text);
    if (!line.effect.namesParameter()) return false;
    line.pass = pass_;
    line.parameter = first_ + line.effect.parameter;
    line.lost = failed_;
    const bool fails = line.effect.kind == LineEffect::Kind::Fails;
    if (!failed_ && !fails) trace_.parameters[*line.parameter].settings.push_back(ref);
    failed_ = failed_ || fails;
    return true;
  }

 private:
  LoadTrace& trace_;
  const Pass pass_;
  const SchemaProbe probe_;
  const size_t first_;
  bool failed_ = false;
};

void followFiles(LoadTrace& trace, const std::vector<calibration>& calibrations) {
  PassTracer selection(trace, Pass::Selection, selectionProbe(), {});
  PassTracer calibration(trace, Pass::Calibration, calibrationProbe(trace.selection),
                         parametersFor(trace.selection));
  for (const ::calibration& file : calibrations) {
    selection.beginFile();
    calibration.beginFile();
    TracedFile traced{file.path, file.content, {}};
    for (const std::string& text : linesOf(file.content)) {
      TracedLine line;
      line.number = traced.lines.size() + 1;
      line.text = text;
      const LineRef ref{trace.files.size(), traced.lines.size()};
      if (!selection.follow(line, ref)) calibration.follow(line, ref);
      traced.lines.push_back(std::move(line));
    }
    trace.files.push_back(std::move(traced));
  }
}

void noteMissing(LoadTrace& trace, const std::vector<calibration>& calibrations) {
  if (!trace.selected) return;
  const LogCapture log;
  Pattern pattern(trace.selection);
  parse_pattern(pattern, calibrations);
  pattern.validate(trace.missing, {});
}

Bytes blockOf(const ccc_params& params) {
  Bytes block(sizeof(params));
  std::memcpy(block.data(), &params, sizeof(params));
  return block;
}

// The result comes from the library, not from the lines that were followed.
void finish(LoadTrace& trace, const std::vector<calibration>& calibrations) {
  ccc_calib calib{};
  const ParseResult result = parse_calibrations(calibrations, trace.deciding().path, calib);
  if (result != ParseResult::ValidCalibration) {
    trace.problem =
        trace.missing.empty() ? "every calibration file has an error" : "parameters are missing";
    return;
  }
  try {
    trace.block = blockOf(CalibConverter::convert(calib));
  } catch (const std::exception& e) {
    trace.problem = e.what();
  }
}

}  // namespace

const TracedParameter& LoadTrace::parameterOf(const TracedLine& line) const {
  return parameters.at(line.parameter.value());
}

std::string LoadTrace::placeText(const LineRef& ref) const {
  return files[ref.file].path + ":" + std::to_string(at(ref).number);
}

LoadTrace traceLoad(const std::string& country) {
  LoadTrace trace;
  trace.country = CalibPath::lowercase(country);
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

FileStatus fileStatus(const std::string& path) {
  const std::optional<struct stat> status = statusOf(path);
  if (status.has_value() && S_ISDIR(status->st_mode)) return {FileKind::Directory, {}};
  if (status.has_value() && canBeOpened(path)) {
    const bool empty = S_ISREG(status->st_mode) && status->st_size == 0;
    return {empty ? FileKind::Empty : FileKind::Text, {}};
  }
  if (errno == ENOENT || errno == ENOTDIR) return {FileKind::Missing, {}};
  return {FileKind::Unreadable, std::strerror(errno)};
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream input(text);
  for (std::string line; std::getline(input, line);) lines.push_back(line);
  return lines;
}
