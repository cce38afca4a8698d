// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cctype>

#include "tools/lint/checks.h"
#include "tools/probe/number_spelling.h"
#include "tools/text/text.h"

namespace {

constexpr char kDigits[] = "0123456789";

// The keys that are lost with this line if it ends the reading of the file. An earlier error has
// lost them already.
std::vector<std::string> keysLostAfter(const CheckedFile& file, const TracedLine& line) {
  std::vector<std::string> keys;
  const bool is_name = file.trace.parameterOf(line).facts == nullptr;
  for (size_t i = line.number; !line.lost && i < file.file.lines.size(); ++i) {
    const TracedLine& later = file.file.lines[i];
    if (!later.parameter.has_value()) continue;
    const auto& [key, settings, facts] = file.trace.parameterOf(later);
    const bool is_known = std::find(keys.begin(), keys.end(), key) != keys.end();
    if ((facts == nullptr) == is_name && !is_known) keys.push_back(key);
  }
  return keys;
}

std::string withoutSign(const std::string& number) {
  return number.substr(number.find_first_of(kDigits));
}

// The decimal digits that `number` begins with after its sign, without leading zeros.
std::string decimalOf(const std::string& number) {
  std::string digits = withoutSign(number);
  digits.resize(std::min(digits.find_first_not_of(kDigits), digits.size()));
  return digits.substr(std::min(digits.find_first_not_of('0'), digits.size() - 1));
}

bool isOctal(const std::string& number) {
  const std::string digits = withoutSign(number);
  return digits[0] == '0' && digits.size() > 1 && std::isdigit(digits[1]) != 0;
}

// The value of one line that names a parameter.
struct LineValue {
  const CheckedFile& file;
  const TracedLine& line;
  const TracedParameter& parameter = file.trace.parameterOf(line);
  const size_t at = file.trace.valueIn(line);
  const std::string text = line.text.substr(at);
  // As the tree prints it, without the hexadecimal form.
  const std::string read = line.effect.value.substr(0, line.effect.value.find(' '));

  void add(Rule rule, const std::string& message, size_t offset = 0,
           const std::vector<std::string>& explains = {}) const {
    const std::string unread = "; an earlier error ends the reading of the file before this line";
    file.add(rule, line, at + offset, message + (line.lost ? unread : ""), explains);
  }

  // A value that ends the reading of its file: its key and the lost ones are not set here.
  void addFailure(Rule rule, const std::string& accepted) const {
    std::vector<std::string> keys = keysLostAfter(file, line);
    const std::string lost =
        keys.empty() ? "" : "; the rest of the file is not read: " + Join(keys, ", ");
    if (!line.lost) keys.insert(keys.end(), {parameter.key, kOutcome});
    add(rule, "'" + parameter.key + "' takes " + accepted + lost, 0, keys);
  }

  void check() const {
    const bool fails = line.effect.kind == LineEffect::Kind::Fails;
    const bool is_number = parameter.facts != nullptr;
    const NumberSpelling spelling = spellingOf(text);
    if (is_number && !spelling.number.empty()) {
      checkNumber(spelling);
    } else if (fails) {
      const std::string word = shortened(text.substr(0, text.find_first_of(kBlanks)));
      const std::string given =
          word.empty() ? ", but there is no value after '='" : ", not '" + word + "'";
      addFailure(Rule::UnreadableValue,
                 (is_number ? "a whole number, " + range() : "a word") + given);
    } else if (!is_number) {
      checkTextAfter(read);
    }
  }

  std::string range() const { return "0 to " + std::to_string(parameter.facts->largest()); }

  // What the line would do with this value.
  LineEffect feed(const std::string& value) const {
    return file.calibration.feed(line.text.substr(0, at) + value);
  }

  void checkNumber(const NumberSpelling& spelling) const {
    const std::string& number = spelling.number;
    if (feed(number).kind != LineEffect::Kind::Sets) {
      addFailure(Rule::OutOfRange, range() + ", not " + shortened(number));
    } else if (!spelling.readAlike()) {
      addSpelling(spelling);
    } else {
      checkTextAfter(number);
      checkForm(number);
    }
  }

  // The device refuses what it has gathered: an octal number with an 8 or 9, or letters after one.
  void addSpelling(const NumberSpelling& spelling) const {
    const std::string decimal = decimalOf(spelling.gathered);
    const bool octal = decimal != decimalOf(spelling.number);
    const std::string hexadecimal = "0x" + withoutSign(spelling.gathered);
    // 1e2 and 0b1 are no number with its unit.
    const bool has_unit =
        spelling.gathered.find_first_of(kDigits, spelling.number.size()) == std::string::npos;
    const std::string plain =
        has_unit ? shortened(withoutSign(spelling.number)) : "a decimal number";
    const bool fits =
        spellingOf(hexadecimal).readAlike() && feed(hexadecimal).kind == LineEffect::Kind::Sets;
    std::vector<std::string> keys = keysLostAfter(file, line);
    const std::string lost =
        keys.empty() ? "" : " and the rest of the file (" + Join(keys, ", ") + ")";
    keys.push_back(parameter.key);
    add(Rule::NumberSpelling,
        "the device cannot read '" + shortened(spelling.gathered) + "'" +
            (octal ? " (a leading zero means octal)" : "") + " and ignores this line" + lost +
            ": write " + (octal || !fits ? "" : hexadecimal + " if hexadecimal is meant, or ") +
            (octal ? shortened(decimal) : plain),
        0, keys);
  }

  void checkForm(const std::string& number) const {
    const std::string decimal = decimalOf(number);
    if (number[0] == '-') {
      const bool wraps = decimal != read;
      add(Rule::NegativeNumber, "'" + shortened(number) + "' " +
                                    (wraps ? "wraps around to " + read : "has a sign") +
                                    ", and the C++ library of older platform releases ends the "
                                    "file here: write " +
                                    read + (wraps ? ", or what else is meant" : ""));
    } else if (isOctal(number)) {
      add(Rule::OctalNumber,
          "'" + shortened(number) + "' is octal and is read as " + read + ": write " + read +
              (decimal == read ? "" : ", or " + shortened(decimal) + " if that is meant"));
    }
  }

  void checkTextAfter(const std::string& value) const {
    const std::string after = text.substr(std::min(value.size(), text.size()));
    const size_t blanks = afterBlanks(after, 0);
    if (blanks == after.size() || beginsComment(after)) return;
    const size_t digits = std::min(after.find_first_not_of(kDigits, 1), after.size()) - 1;
    const bool in_groups = after.find_first_of(",_'") == 0 && digits == 3;
    add(Rule::TextAfterValue,
        "'" + parameter.key + "' is " + shortened(read) + "; what follows is not read: " +
            (in_groups ? std::string("write the number without '") + after[0] + "'"
                       : "remove it, or begin it with '#'"),
        value.size() + blanks);
  }
};

}  // namespace

void checkValues(const CheckedFile& file) {
  for (const TracedLine& line : file.file.lines) {
    if (line.parameter.has_value()) LineValue{file, line}.check();
  }
}
