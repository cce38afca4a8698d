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

// Reads the file that the entry names as the loader does, and notes what came of it.
TracedEntry traceEntry(size_t number, const std::string& text, const std::string& country,
                       std::vector<calibration>& calibrations) {
  CalibReader reader;
  const std::optional<calibration> read = CalibParser(reader, country).parsePathFileEntry(text);
  const std::string::size_type position = CalibPath::findCountryCodeComponent(text);
  const auto pathOf = [&](const std::string& code) {
    return tracePath(CalibPath::setCountryCodeComponent(text, position, code));
  };
  TracedEntry entry;
  entry.number = number;
  entry.text = text;
  entry.has_placeholder = position != text.npos;
  entry.own = entry.has_placeholder ? pathOf(country) : tracePath(text);
  const bool tried_all = !read.has_value() || read->path != entry.own.path;
  if (entry.has_placeholder && tried_all) entry.fallback = pathOf(CalibPath::kDefaultCountry);
  if (!read.has_value()) return entry;
  entry.file = calibrations.size();
  calibrations.push_back(*read);
  return entry;
}

TracedPathFile tracePathFile(const std::string& path, const std::string& country,
                             std::vector<calibration>& calibrations) {
  TracedPathFile traced{tracePath(path), {}};
  const std::string content = read_text_file(path).value_or("");
  std::string_view rest = content;
  for (std::string text; next_entry(rest, text);) {
    traced.entries.push_back(traceEntry(traced.entries.size() + 1, text, country, calibrations));
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
  FileTracer(const SchemaProbe& selection, const SchemaProbe& calibration)
      : selection_(selection), calibration_(calibration) {}

  TracedFile follow(const calibration& file) const {
    TracedFile traced{file.path, file.content, {}};
    bool failed[2] = {};
    for (const std::string& text : linesOf(file.content)) {
      TracedLine line;
      line.number = traced.lines.size() + 1;
      line.text = text;
      if (!names(line, selection_, Pass::Selection, 0)) {
        // The parameters of the second tree come after those of the first.
        names(line, calibration_, Pass::Calibration, selection_.keys().size());
      }
      bool& pass_failed = failed[static_cast<size_t>(line.pass)];
      line.lost = line.parameter.has_value() && pass_failed;
      if (line.effect.kind == LineEffect::Kind::Fails) pass_failed = true;
      traced.lines.push_back(std::move(line));
    }
    return traced;
  }

 private:
  static bool names(TracedLine& line, const SchemaProbe& probe, Pass pass, size_t first) {
    line.effect = probe.feed(line.text);
    if (!line.effect.namesParameter()) return false;
    line.pass = pass;
    line.parameter = first + line.effect.parameter;
    return true;
  }

  const SchemaProbe& selection_;
  const SchemaProbe& calibration_;
};

void addSettings(LoadTrace& trace, size_t file) {
  const std::vector<TracedLine>& lines = trace.files[file]->lines;
  for (size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].lost || lines[i].effect.kind != LineEffect::Kind::Sets) continue;
    trace.parameters[*lines[i].parameter].settings.push_back({file, i});
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

// What was not opened may hold anything.
void noteUnopened(LoadTrace& trace, const TracedPath& path) {
  if (path.kind != FileKind::Special) return;
  trace.unknown = true;
  trace.block.reset();
  trace.problem = "what the device does is unknown: " + problemOf(path);
}

void noteUnopened(LoadTrace& trace) {
  for (const TracedPathFile& file : trace.path_files) {
    noteUnopened(trace, file);
    for (const TracedEntry& entry : file.entries) {
      noteUnopened(trace, entry.own);
      noteUnopened(trace, entry.last());
    }
  }
}

std::string kindOf(mode_t mode) {
  return S_ISFIFO(mode) ? "a pipe" : S_ISSOCK(mode) ? "a socket" : "a device";
}

}  // namespace

const TracedParameter& LoadTrace::parameterOf(const TracedLine& line) const {
  return parameters.at(line.parameter.value());
}

std::string LoadTrace::placeText(const LineRef& ref) const {
  return files[ref.file]->path + ":" + std::to_string(at(ref).number);
}

LoadTrace LoadTracer::trace(const std::string& country) {
  LoadTrace trace;
  trace.country = CalibPath::lowercase(country);
  const std::vector<calibration> calibrations = tracePathFiles(trace);
  if (trace.decided) {
    select(trace, calibrations);
    followFiles(trace, calibrations);
    noteMissing(trace, calibrations);
    finish(trace, calibrations);
  } else {
    trace.problem = "no path file names a calibration file that can be read";
  }
  noteUnopened(trace);
  return trace;
}

void LoadTracer::followFiles(LoadTrace& trace, const std::vector<calibration>& calibrations) {
  const SchemaProbe selection = selectionProbe();
  const SchemaProbe calibration = calibrationProbe(trace.selection);
  addParameters(trace, selection, Pass::Selection);
  addParameters(trace, calibration, Pass::Calibration);
  const FileTracer tracer(selection, calibration);
  for (const ::calibration& file : calibrations) {
    std::shared_ptr<const TracedFile>& traced =
        files_[{file.path, trace.selection.ch5, trace.selection.ch9}];
    if (traced == nullptr) traced = std::make_shared<TracedFile>(tracer.follow(file));
    trace.files.push_back(traced);
    addSettings(trace, trace.files.size() - 1);
  }
}

LoadTrace traceLoad(const std::string& country) {
  return LoadTracer().trace(country);
}

TracedPath tracePath(const std::string& path) {
  const std::optional<struct stat> status = statusOf(path);
  if (status.has_value() && isSpecial(*status)) {
    return {path, FileKind::Special, kindOf(status->st_mode)};
  }
  if (status.has_value() && S_ISDIR(status->st_mode)) return {path, FileKind::Directory, {}};
  if (status.has_value() && canBeOpened(path)) {
    return {path, status->st_size == 0 ? FileKind::Empty : FileKind::Text, {}};
  }
  const int reason = errno;
  if (reason != ENOENT && reason != ENOTDIR) {
    return {
        path, FileKind::Unreadable,
        reason == EXDEV ? "a link leads out of the folder of its --map" : std::strerror(reason)};
  }
  const std::string target = linkAt(path);
  if (target.empty()) return {path, FileKind::Missing, {}};
  return {path, FileKind::Unreadable, "it is a link to " + target + ", which does not exist"};
}

std::string problemOf(const TracedPath& path) {
  switch (path.kind) {
    case FileKind::Text:
      return {};
    case FileKind::Empty:
      return path.path + " is empty";
    case FileKind::Directory:
      return path.path + " is a directory";
    case FileKind::Missing:
      return "there is no " + path.path;
    case FileKind::Special:
      return path.path + " is " + path.reason;
    case FileKind::Unreadable:
      return "cannot read " + path.path + ": " + path.reason;
  }
  return {};
}

std::string whyNotRead(const TracedEntry& entry) {
  const std::string own = problemOf(entry.own);
  return entry.fallback.has_value() ? own + ", and " + problemOf(*entry.fallback) : own;
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream input(text);
  for (std::string line; std::getline(input, line);) lines.push_back(line);
  return lines;
}
