// SPDX-License-Identifier: Apache-2.0
#include "tools/lint/checks.h"

#include <algorithm>
#include <numeric>

namespace {

// A file and the loads that read it with the same antennas.
struct SharedFile {
  const TracedFile* file;
  std::vector<size_t> loads;
};

std::vector<SharedFile> filesOf(const std::vector<LoadTrace>& traces) {
  std::vector<SharedFile> files;
  std::map<const TracedFile*, size_t> indices;
  for (size_t load = 0; load < traces.size(); ++load) {
    for (const auto& file : traces[load].files) {
      const auto [index, is_new] = indices.try_emplace(file.get(), files.size());
      if (is_new) files.push_back({file.get(), {}});
      files[index->second].loads.push_back(load);
    }
  }
  return files;
}

void checkFile(const LoadTrace& trace, const TracedFile& traced, const Probes& probes,
               Findings& findings) {
  const CheckedFile file{trace, traced, probes, findings};
  // A byte order mark makes the first key another one.
  const std::string& text = traced.content;
  const std::string first_key = hasByteOrderMark(text) ? text.substr(3, text.find('=') - 3) : "";
  if (!checkText(traced.path, text, first_key, findings)) return;
  checkLines(file);
  checkValues(file);
}

}  // namespace

Findings findingsOf(const std::vector<LoadTrace>& traces) {
  Findings findings;
  std::vector<size_t> all(traces.size());
  std::iota(all.begin(), all.end(), 0);
  Probes probes;
  for (const size_t load : all) {
    findings.setLoads({load});
    checkPathFiles(traces[load], findings);
    for (const antenna_selection& names :
         {traces[load].selection, checkSelection(traces[load], findings)}) {
      probes.try_emplace({names.ch5, names.ch9}, calibrationProbe(names));
    }
  }
  for (const SharedFile& shared : filesOf(traces)) {
    findings.setLoads(shared.loads);
    checkFile(traces[shared.loads.front()], *shared.file, probes, findings);
  }
  for (const size_t load : all) {
    findings.setLoads({load});
    checkParameters(traces[load], findings);
    checkOutcome(traces[load], load, findings);
  }
  findings.setLoads(all);
  checkUnreadFiles(traces, findings);
  return findings;
}

std::string CheckedFile::keyIn(const std::string& line) const {
  for (const SchemaProbe* probe : {&selection, &calibration}) {
    const LineEffect effect = probe->feed(line);
    if (effect.namesParameter()) return probe->keys()[effect.parameter];
  }
  return {};
}

void CheckedFile::add(Rule rule, const TracedLine& line, size_t at, const std::string& message,
                      const std::vector<std::string>& explains, bool once) const {
  findings.add({rule, placeIn(file.path, line, at), message, explains, {}, {}, once});
}

size_t afterBlanks(const std::string& text, size_t at) {
  return std::min(text.find_first_not_of(kBlanks, at), text.size());
}

std::string shortened(const std::string& word) {
  constexpr size_t kMost = 60;
  return word.size() <= kMost ? word : word.substr(0, kMost) + "...";
}
