// SPDX-License-Identifier: Apache-2.0
#include "tools/trace/load_trace.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>

#include "grammar/white_space.h"
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
#include "tools/device/device_library.h"
#include "tools/device/files.h"
#include "tools/probe/number_spelling.h"
#include "tools/text/text.h"
#include "tools/trace/countries.h"

namespace {

constexpr char kMissing[] = "parameters are missing";

// Reads the file that the entry names as the loader does, and notes what came of it.
TracedEntry traceEntry(size_t number, const std::string& text, const std::string& country,
                       std::vector<calibration>& calibrations) {
  CalibReader reader;
  const std::optional<calibration> read = CalibParser(reader, country).parsePathFileEntry(text);
  TracedEntry entry;
  entry.number = number;
  entry.text = text;
  entry.has_placeholder = CalibPath::findCountryCodeComponent(text) != text.npos;
  entry.own = tracePath(entry.has_placeholder ? pathOf(text, country) : text);
  const bool tried_all = !read.has_value() || read->path != entry.own.path;
  if (entry.has_placeholder && tried_all)
    entry.fallback = tracePath(pathOf(text, CalibPath::kDefaultCountry));
  if (!read.has_value()) return entry;
  entry.file = calibrations.size();
  calibrations.push_back(*read);
  return entry;
}

TracedPathFile tracePathFile(const std::string& path, const std::string& country,
                             std::vector<calibration>& calibrations) {
  TracedPathFile traced{tracePath(path), read_text_file(path).value_or(""), {}};
  std::string_view rest = traced.content;
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
void selectAntennas(LoadTrace& trace, const std::vector<calibration>& calibrations) {
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

void addParameters(LoadTrace& trace, const SchemaProbe& selection, const SchemaProbe& calibration) {
  for (const std::string& key : selection.keys()) {
    trace.parameters.push_back({key, {}, nullptr});
  }
  const std::vector<const Parameter*> facts = parametersFor(trace.selection);
  for (size_t i = 0; i < facts.size(); ++i) {
    trace.parameters.push_back({calibration.keys().at(i), {}, facts[i]});
  }
}

// Follows the lines of one file through both passes.
TracedFile follow(const calibration& file, const SchemaProbe& selection,
                  const SchemaProbe& calibration) {
  TracedFile traced{file.path, file.content, {}};
  bool failed[2] = {};
  for (const std::string& text : linesOf(file.content)) {
    TracedLine line{traced.lines.size() + 1, text, {}, selection.feed(text)};
    const bool is_name = line.effect.namesParameter();
    if (!is_name) line.effect = calibration.feed(text);
    if (line.effect.namesParameter()) {
      // The parameters of the second tree come after those of the first.
      line.parameter = (is_name ? 0 : selection.keys().size()) + line.effect.parameter;
      line.lost = failed[is_name];
      failed[is_name] = line.lost || line.effect.kind == LineEffect::Kind::Fails;
    }
    traced.lines.push_back(std::move(line));
  }
  return traced;
}

void noteMissing(LoadTrace& trace, const std::vector<calibration>& calibrations) {
  if (!trace.selected) return;
  const LogCapture log;
  Pattern pattern(trace.selection);
  parse_pattern(pattern, calibrations);
  pattern.validate(trace.missing, {});
}

// The result comes from the library, not from the lines that were followed.
void makeBlock(LoadTrace& trace, const std::vector<calibration>& calibrations) {
  ccc_calib calib{};
  const ParseResult result = parse_calibrations(calibrations, trace.deciding().path, calib);
  if (result != ParseResult::ValidCalibration) {
    trace.problem = trace.missing.empty() ? "every calibration file has an error" : kMissing;
    return;
  }
  try {
    const ccc_params params = CalibConverter::convert(calib);
    const auto* const bytes = reinterpret_cast<const uint8_t*>(&params);
    trace.block.emplace(bytes, bytes + sizeof(params));
  } catch (const std::exception& e) {
    trace.refused = true;
    trace.problem = e.what();
  }
}

// What was not opened may hold anything: what is missing or refused is unknown, too.
void noteUnopened(LoadTrace& trace) {
  const auto note = [&](const TracedPath& path) {
    if (path.kind != FileKind::Special) return;
    trace.unknown = true;
    trace.refused = false;
    trace.missing.clear();
    trace.block.reset();
    trace.problem = "what the device does is unknown: " + path.problem;
  };
  for (const TracedPathFile& file : trace.path_files) {
    note(file);
    for (const TracedEntry& entry : file.entries) {
      note(entry.own);
      note(entry.last());
    }
  }
}

// What a path that leads to nothing meets on its way: a link to nowhere, or a file in a folder's
// place. Empty when a name in it does not exist.
std::string obstacleOn(const std::string& path) {
  for (size_t end = path.size(); end > 0 && end != path.npos; end = path.rfind('/', end - 1)) {
    const std::string part = path.substr(0, end);
    if (const std::optional<struct stat> status = statusOf(part)) {
      return S_ISDIR(status->st_mode) ? "" : part + " is no directory";
    }
    const std::string target = linkAt(part);
    if (target.empty()) continue;
    return (part == path ? "it" : part) + " is a link to " + target + ", which does not exist";
  }
  return {};
}

}  // namespace

size_t LoadTrace::valueIn(const TracedLine& line) const {
  const std::string& key = parameterOf(line).key;
  size_t after = line.text.find('=') + 1;
  // An antenna's name may contain '='.
  for (auto more = std::count(key.begin(), key.end(), '='); more > 0; --more) {
    after = line.text.find('=', after) + 1;
  }
  const auto begin = line.text.begin();
  return static_cast<size_t>(
      std::find_if_not(begin + static_cast<ptrdiff_t>(after), line.text.end(), isWhiteSpace) -
      begin);
}

std::vector<LineRef> LoadTrace::failing() const {
  std::vector<LineRef> refs;
  forEachLine([&](const LineRef& ref, const TracedLine& line) {
    if (!line.lost && line.effect.kind == LineEffect::Kind::Fails) refs.push_back(ref);
  });
  return refs;
}

std::vector<LineRef> LoadTrace::refusedByDevice() const {
  std::vector<LineRef> refs;
  forEachLine([&](const LineRef& ref, const TracedLine& line) {
    const bool sets = !line.lost && line.effect.kind == LineEffect::Kind::Sets;
    const bool is_read = refs.empty() || refs.back().file != ref.file;
    const bool is_number = is_read && sets && parameterOf(line).facts != nullptr;
    const bool refuses = is_number && !spellingOf(line.text.substr(valueIn(line))).readAlike();
    if (refuses) refs.push_back(ref);
  });
  return refs;
}

void LoadTrace::readAsDevice() {
  if (!selected || unknown) return;
  for (const LineRef& refusal : refusedByDevice()) {
    for (TracedParameter& parameter : parameters) {
      std::vector<LineRef>& lines = parameter.settings;
      if (parameter.facts == nullptr || lines.empty()) continue;
      const auto is_lost = [&](const LineRef& ref) {
        return ref.file == refusal.file && ref.line >= refusal.line;
      };
      lines.erase(std::remove_if(lines.begin(), lines.end(), is_lost), lines.end());
      if (lines.empty()) missing.push_back(parameter.key);
    }
  }
  if (missing.empty()) return;
  refused = false;
  block.reset();
  problem = kMissing;
}

LoadTrace LoadTracer::trace(const std::string& country) {
  LoadTrace trace;
  trace.country = CalibPath::lowercase(country);
  const std::vector<calibration> calibrations = tracePathFiles(trace);
  if (trace.decided) {
    selectAntennas(trace, calibrations);
    followFiles(trace, calibrations);
    noteMissing(trace, calibrations);
    makeBlock(trace, calibrations);
  } else {
    trace.problem = "no path file names a calibration file that can be read";
  }
  noteUnopened(trace);
  return trace;
}

void LoadTracer::followFiles(LoadTrace& trace, const std::vector<calibration>& calibrations) {
  const SchemaProbe selection = selectionProbe();
  const SchemaProbe calibration = calibrationProbe(trace.selection);
  addParameters(trace, selection, calibration);
  for (const ::calibration& file : calibrations) {
    std::shared_ptr<const TracedFile>& traced =
        files_[{file.path, trace.selection.ch5, trace.selection.ch9}];
    if (traced == nullptr) {
      traced = std::make_shared<TracedFile>(follow(file, selection, calibration));
    }
    trace.files.push_back(traced);
  }
  trace.forEachLine([&](const LineRef& ref, const TracedLine& line) {
    if (line.lost || line.effect.kind != LineEffect::Kind::Sets) return;
    trace.parameters[*line.parameter].settings.push_back(ref);
  });
}

TracedPath tracePath(const std::string& path) {
  const std::optional<struct stat> status = statusOf(path);
  if (status.has_value() && isSpecial(*status)) {
    const mode_t mode = status->st_mode;
    const std::string kind = S_ISFIFO(mode) ? "a pipe" : S_ISSOCK(mode) ? "a socket" : "a device";
    return {path, FileKind::Special, path + " is " + kind};
  }
  if (status.has_value() && S_ISDIR(status->st_mode)) {
    return {path, FileKind::Directory, path + " is a directory"};
  }
  if (status.has_value() && canBeOpened(path)) {
    if (status->st_size == 0) return {path, FileKind::Empty, path + " is empty"};
    return {path, FileKind::Text, {}};
  }
  const int error = errno;
  std::string reason = std::strerror(error);
  if (error == EXDEV) reason = "a link leads out of the folder of its --map";
  if (error == ENOENT || error == ENOTDIR) {
    reason = obstacleOn(path);
    if (reason.empty()) return {path, FileKind::Missing, "there is no " + path};
  }
  return {path, FileKind::Unreadable, "cannot read " + path + ": " + reason};
}

std::string whyNotRead(const TracedEntry& entry) {
  return entry.own.problem + (entry.fallback.has_value() ? ", and " + entry.fallback->problem : "");
}
