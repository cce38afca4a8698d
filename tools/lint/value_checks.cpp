// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "tools/lint/checks.h"
#include "tools/probe/number_spelling.h"
#include "tools/text/text.h"

namespace {

using Kind = LineEffect::Kind;

// The keys in the lines after this one that the device no longer reads.
std::vector<std::string> keysLostAfter(const CheckedFile& file, const TracedLine& line) {
  std::vector<std::string> keys;
  std::set<size_t> known;
  for (size_t i = line.number; i < file.file.lines.size(); ++i) {
    const TracedLine& later = file.file.lines[i];
    if (!later.lost || later.pass != line.pass) continue;
    if (known.insert(*later.parameter).second) {
      keys.push_back(file.trace.parameterOf(later).key);
    }
  }
  return keys;
}

// The sign and the decimal digits that `number` begins with, without leading zeros.
std::string decimalOf(const std::string& number) {
  const size_t sign = number.find_first_not_of("+-");
  const size_t end = std::min(number.find_first_not_of("0123456789", sign), number.size());
  const size_t begin = std::min(number.find_first_not_of('0', sign), end - 1);
  return (number[0] == '-' ? "-" : "") + number.substr(begin, end - begin);
}

// The value of one line that names a parameter.
class LineValue {
 public:
  LineValue(const CheckedFile& file, const TracedLine& line)
      : file_(file),
        line_(line),
        parameter_(file.trace.parameterOf(line_)),
        at_(valueStart(line_.text)),
        text_(line_.text.substr(at_)),
        spelling_(spellingOf(text_)) {}

  void check(Findings& findings) const {
    if (parameter_.facts == nullptr) {
      checkWord(findings);
    } else if (spelling_.number.empty()) {
      // An antenna's name may contain '=', so only the tree knows whether there is a value.
      if (line_.effect.kind == Kind::Fails) {
        addUnreadable("a whole number, " + range() + ", not '" + shortened(firstWord()) + "'",
                      findings);
      }
    } else {
      checkNumber(findings);
    }
  }

 private:
  static size_t valueStart(const std::string& line) {
    const size_t after = line.find('=') + 1;
    return after + blanksAt(line, after);
  }

  Place place(size_t offset = 0) const { return file_.place(line_, at_ + offset + 1); }

  // A value that ends the reading of its file: its key and the lost ones are not set here.
  void addFailure(Rule rule, const std::string& message, Findings& findings) const {
    if (line_.lost) {
      findings.add(rule, place(), message);
      return;
    }
    const std::vector<std::string> lost = keysLostAfter(file_, line_);
    const Findings::Id finding = findings.add(
        rule, place(),
        message +
            (lost.empty() ? "" : "; the rest of the file is not read: " + joined(lost, ", ")));
    findings.blame(kOutcome, finding);
    findings.blame(parameter_.key, finding);
    for (const std::string& key : lost) findings.blame(key, finding);
  }

  void addUnreadable(const std::string& what, Findings& findings) const {
    addFailure(Rule::UnreadableValue, "'" + parameter_.key + "' takes " + what, findings);
  }

  std::string range() const { return "0 to " + std::to_string(parameter_.facts->largest()); }

  std::string firstWord() const { return text_.substr(0, text_.find_first_of(" \t\v\f\r")); }

  void checkWord(Findings& findings) const {
    if (line_.effect.kind == Kind::Fails) {
      addUnreadable("a word", findings);
    } else {
      checkTextAfter(line_.effect.value.size(), findings);
    }
  }

  void checkNumber(Findings& findings) const {
    if (!fits()) {
      addFailure(Rule::OutOfRange,
                 "'" + parameter_.key + "' takes " + range() + ", not " + spelling_.number,
                 findings);
      return;
    }
    if (!spelling_.readAlike()) {
      addSpelling(findings);
    } else {
      checkTextAfter(spelling_.number.size(), findings);
      checkBase(findings);
    }
    checkSign(findings);
  }

  // Whether the parameter accepts the number alone.
  bool fits() const {
    const SchemaProbe& probe =
        parameter_.pass == Pass::Selection ? file_.selection : file_.calibration;
    return probe.feed(line_.text.substr(0, at_) + spelling_.number).kind == Kind::Sets;
  }

  // The device refuses what it has gathered: an octal number with an 8 or 9, or letters after one.
  void addSpelling(Findings& findings) const {
    const std::string decimal = decimalOf(spelling_.gathered);
    const bool octal = decimal != decimalOf(spelling_.number);
    findings.add(Rule::NumberSpelling, place(),
                 "the device cannot read '" + spelling_.gathered + "'" +
                     (octal ? " (a leading zero means octal)" : "") +
                     " and ignores the rest of the file: write " +
                     (octal ? decimal : spelling_.number));
  }

  void checkSign(Findings& findings) const {
    if (spelling_.number[0] != '-') return;
    findings.add(Rule::NegativeNumber, place(),
                 "'" + spelling_.number + "' wraps around to " + printedNumber() +
                     "; the C++ library of older platform releases refuses it and does not "
                     "read the rest of the file: write the number without a sign");
  }

  void checkBase(Findings& findings) const {
    const size_t digits = spelling_.number.find_first_of("0123456789");
    const bool octal = spelling_.number[digits] == '0' && spelling_.number.size() > digits + 1 &&
                       (spelling_.number[digits + 1] | 0x20) != 'x';
    if (!octal) return;
    const std::string read = printedNumber();
    const std::string decimal = decimalOf(spelling_.number);
    findings.add(Rule::OctalNumber, place(),
                 "'" + spelling_.number + "' is octal and is read as " + read + ": write " + read +
                     (decimal == read ? "" : ", or " + decimal + " if that is meant"));
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

  const CheckedFile& file_;
  const TracedLine& line_;
  const TracedParameter& parameter_;
  const size_t at_;
  const std::string text_;
  const NumberSpelling spelling_;
};

}  // namespace

void checkValues(const CheckedFile& file, Findings& findings) {
  for (const TracedLine& line : file.file.lines) {
    if (line.parameter.has_value()) LineValue(file, line).check(findings);
  }
}
