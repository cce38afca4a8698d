// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "tools/lint/checks.h"
#include "tools/text/nearest.h"
#include "tools/text/text.h"

namespace {

using Kind = LineEffect::Kind;

constexpr char kBlanks[] = " \t\v\f\r";

std::string withoutBlanks(std::string text) {
  text.erase(std::remove_if(text.begin(), text.end(),
                            [](char c) {
                              return c != '\0' && std::string(kBlanks).find(c) != std::string::npos;
                            }),
             text.end());
  return text;
}

bool isIgnored(const std::string& text) {
  static const SchemaProbe probe = selectionProbe();
  return probe.feed(text + "=1").kind == Kind::Comment;
}

// The key that was probably meant; empty when none is near.
std::string nearestKey(const LoadTrace& trace, const std::string& key) {
  std::vector<std::string> keys;
  for (const TracedParameter& parameter : trace.parameters) keys.push_back(parameter.key);
  return nearestOf(key, keys);
}

// A message stays short even if a key is very long.
std::string shortened(const std::string& key) {
  constexpr size_t kMost = 60;
  return key.size() <= kMost ? key : key.substr(0, kMost) + "...";
}

// The two trees of the load.
class Trees {
 public:
  explicit Trees(const LoadTrace& trace)
      : selection_(selectionProbe()), calibration_(calibrationProbe(trace.selection)) {}

  bool haveKeyOf(const std::string& line) const {
    return selection_.feed(line).namesParameter() || calibration_.feed(line).namesParameter();
  }

 private:
  const SchemaProbe selection_;
  const SchemaProbe calibration_;
};

// An assignment that sets nothing.
class DroppedLine {
 public:
  DroppedLine(const LoadTrace& trace, const Trees& trees, const LineRef& ref)
      : trace_(trace),
        trees_(trees),
        ref_(ref),
        text_(trace.at(ref).text),
        equal_(text_.find('=')) {}

  void check(Findings& findings) const {
    const std::string key = withoutBlanks(text_.substr(0, equal_));
    if (key == text_.substr(0, equal_) || !trees_.haveKeyOf(key + text_.substr(equal_))) {
      checkKey(key, findings);
      return;
    }
    checkLeadingBlank(findings);
    checkBlankBeforeEqual(findings);
    checkInnerBlank(key, findings);
  }

 private:
  void checkKey(const std::string& key, Findings& findings) const {
    const std::string nearest = nearestKey(trace_, key);
    // Without the antennas' names, a key that begins with one cannot be judged.
    if (nearest.empty() && !trace_.selected && key.find('.') != key.npos) return;
    std::string message = "no parameter has the key '" + shortened(key) + "'";
    if (!nearest.empty()) message += "; did you mean '" + nearest + "'?";
    findings.add(Rule::UnknownKey, placeIn(trace_, ref_, blanksAt(text_, 0) + 1), message);
  }

  void checkLeadingBlank(Findings& findings) const {
    if (blanksAt(text_, 0) == 0) return;
    findings.add(Rule::LeadingBlank, placeIn(trace_, ref_),
                 "a blank before the key: the line sets nothing");
  }

  void checkBlankBeforeEqual(Findings& findings) const {
    const size_t end = text_.find_last_not_of(kBlanks, equal_ - 1) + 1;
    if (end == equal_) return;
    findings.add(Rule::BlankBeforeEqual, placeIn(trace_, ref_, end + 1),
                 "a blank before '=': the line sets nothing");
  }

  // If what follows the blank is a key, the blank comes after a mark; otherwise it splits the key.
  void checkInnerBlank(const std::string& key, Findings& findings) const {
    const size_t begin = blanksAt(text_, 0);
    const size_t blank = text_.find_first_of(kBlanks, begin);
    if (blank >= equal_ || blank + blanksAt(text_, blank) == equal_) return;
    const std::string rest = withoutBlanks(text_.substr(blank, equal_ - blank));
    if (trees_.haveKeyOf(rest + text_.substr(equal_))) {
      findings.add(Rule::BlankAfterCcc, placeIn(trace_, ref_, blank + 1),
                   "a blank after " + shortened(text_.substr(begin, blank - begin)) +
                       ": the line sets nothing");
    } else {
      findings.add(Rule::UnknownKey, placeIn(trace_, ref_, blank + 1),
                   "a blank inside the key '" + shortened(key) + "': the line sets nothing");
    }
  }

  const LoadTrace& trace_;
  const Trees& trees_;
  const LineRef ref_;
  const std::string& text_;
  const size_t equal_;
};

void checkTextWithoutEqual(const LoadTrace& trace, const LineRef& ref, Findings& findings) {
  const std::string& text = trace.at(ref).text;
  if (withoutBlanks(text).empty() || beginsComment(text)) return;
  findings.add(Rule::NoEqual, placeIn(trace, ref, blanksAt(text, 0) + 1),
               "neither an assignment nor a comment: the line sets nothing");
}

}  // namespace

Place placeIn(const LoadTrace& trace, const LineRef& ref, size_t column) {
  return {trace.files[ref.file].path, trace.at(ref).number, column, trace.at(ref).text};
}

bool beginsComment(const std::string& text) {
  const std::string compact = withoutBlanks(text.substr(0, text.find('=')));
  if (compact.empty()) return false;
  if (isIgnored(compact.substr(0, 1))) return true;
  return compact.size() > 1 && isIgnored(compact.substr(0, 2)) && !isIgnored(compact.substr(1, 1));
}

size_t blanksAt(const std::string& text, size_t at) {
  return std::min(text.find_first_not_of(kBlanks, at), text.size()) - std::min(at, text.size());
}

void checkLines(const LoadTrace& trace, Findings& findings) {
  const Trees trees(trace);
  forEachLine(trace, [&](const LineRef& ref, const TracedLine& line) {
    if (line.parameter.has_value()) return;
    const bool assignment = line.text.find('=') != line.text.npos;
    if (assignment && line.effect.kind == Kind::Dropped) {
      DroppedLine(trace, trees, ref).check(findings);
    } else {
      checkTextWithoutEqual(trace, ref, findings);
    }
  });
}
