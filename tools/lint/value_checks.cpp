// SPDX-License-Identifier: Apache-2.0
#include "tools/lint/checks.h"
#include "tools/probe/number_spelling.h"
#include "tools/text/text.h"

namespace {

using Kind = LineEffect::Kind;

// The keys in the lines after `ref` that the device no longer reads.
std::vector<std::string> keysLostAfter(const LoadTrace& trace, const LineRef& ref) {
  std::vector<std::string> keys;
  const std::vector<TracedLine>& lines = trace.files[ref.file].lines;
  for (size_t i = ref.line + 1; i < lines.size(); ++i) {
    if (lines[i].lost && lines[i].pass == trace.at(ref).pass) {
      keys.push_back("'" + trace.parameterOf(lines[i]).key + "'");
    }
  }
  return keys;
}

std::string lossText(const LoadTrace& trace, const LineRef& ref) {
  const std::vector<std::string> keys = keysLostAfter(trace, ref);
  return keys.empty() ? "no later line of the file sets anything"
                      : "the rest of the file is not read: " + joined(keys, ", ");
}

// The value of one line that names a parameter.
class LineValue {
 public:
  LineValue(const LoadTrace& trace, const LineRef& ref)
      : trace_(trace),
        ref_(ref),
        line_(trace.at(ref)),
        parameter_(trace.parameterOf(line_)),
        at_(valueStart(line_.text)),
        text_(line_.text.substr(at_)),
        spelling_(spellingOf(text_)) {}

  void check(Findings& findings) const {
    if (parameter_.facts == nullptr) {
      checkWord(findings);
    } else if (spelling_.number.empty()) {
      // An antenna's name may contain '=', so only the tree knows whether there is a value.
      if (line_.effect.kind == Kind::Fails) addUnreadable("a number", findings);
    } else {
      checkNumber(findings);
    }
  }

 private:
  static size_t valueStart(const std::string& line) {
    const size_t after = line.find('=') + 1;
    return after + blanksAt(line, after);
  }

  Place place(size_t offset = 0) const { return placeIn(trace_, ref_, at_ + offset + 1); }

  void addUnreadable(const std::string& what, Findings& findings) const {
    findings.add(Rule::UnreadableValue, place(),
                 "'" + parameter_.key + "' takes " + what + "; " + lossText(trace_, ref_));
  }

  void checkWord(Findings& findings) const {
    if (line_.effect.kind == Kind::Fails) {
      addUnreadable("a word", findings);
    } else {
      checkTextAfter(line_.effect.value.size(), findings);
    }
  }

  void checkNumber(Findings& findings) const {
    if (!fits()) {
      findings.add(Rule::OutOfRange, place(),
                   "'" + parameter_.key + "' takes 0 to " +
                       std::to_string(parameter_.facts->largest()) + "; " + lossText(trace_, ref_));
      return;
    }
    if (!spelling_.readAlike()) {
      findings.add(Rule::NumberSpelling, place(),
                   "the device refuses '" + spelling_.gathered +
                       "' and does not read the rest of the file; "
                       "libstdc++ reads " +
                       spelling_.number);
    } else {
      checkTextAfter(spelling_.number.size(), findings);
    }
    checkSign(findings);
    checkBase(findings);
  }

  // Whether the parameter accepts the number alone.
  bool fits() const {
    const SchemaProbe probe =
        parameter_.pass == Pass::Selection ? selectionProbe() : calibrationProbe(trace_.selection);
    const std::string alone = line_.text.substr(0, at_) + spelling_.number;
    return probe.feed(alone).kind == Kind::Sets;
  }

  void checkSign(Findings& findings) const {
    if (spelling_.number[0] != '-') return;
    findings.add(Rule::NegativeNumber, place(),
                 "'" + spelling_.number + "' wraps around to " + printedNumber());
  }

  void checkBase(Findings& findings) const {
    const size_t digits = spelling_.number.find_first_of("0123456789");
    const bool octal = spelling_.number[digits] == '0' && spelling_.number.size() > digits + 1 &&
                       (spelling_.number[digits + 1] | 0x20) != 'x';
    if (!octal) return;
    findings.add(Rule::OctalNumber, place(),
                 "'" + spelling_.number + "' is octal: it is read as " + printedNumber());
  }

  // As the tree prints it, without the hexadecimal form.
  std::string printedNumber() const {
    return line_.effect.value.substr(0, line_.effect.value.find(' '));
  }

  void checkTextAfter(size_t value_size, Findings& findings) const {
    if (value_size > text_.size()) return;
    const std::string after = text_.substr(value_size);
    const size_t blanks = blanksAt(after, 0);
    if (blanks == after.size() || beginsComment(after)) return;
    findings.add(Rule::TextAfterValue, place(value_size + blanks),
                 "'" + parameter_.key + "' is " + printedNumber() + "; what follows is not read");
  }

  const LoadTrace& trace_;
  const LineRef ref_;
  const TracedLine& line_;
  const TracedParameter& parameter_;
  const size_t at_;
  const std::string text_;
  const NumberSpelling spelling_;
};

}  // namespace

void checkValues(const LoadTrace& trace, Findings& findings) {
  forEachLine(trace, [&](const LineRef& ref, const TracedLine& line) {
    if (line.parameter.has_value()) LineValue(trace, ref).check(findings);
  });
}
