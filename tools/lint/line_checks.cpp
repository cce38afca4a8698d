// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cctype>
#include <sstream>

#include "grammar/line_reader.h"
#include "tools/lint/checks.h"
#include "tools/lint/suppressions.h"
#include "tools/text/text.h"

namespace {

constexpr char kSilencer[] = "lint-ignore";

bool isCommentMark(const std::string& text) {
  std::istringstream input(text + "=");
  Line line;
  LineReader(input).next(line);
  return line.is_comment;
}

std::string wordAt(const std::string& text, size_t at, const std::string& ends = kBlanks) {
  return text.substr(at, text.find_first_of(ends, at) - at);
}

// "# lint-ignore RULE" silences a rule for the next line. Other comments may speak of lint-ignore.
void checkComment(const CheckedFile& file, const TracedLine& line) {
  const size_t begin = std::min(line.text.find_first_not_of("#;/ \t"), line.text.size());
  if (wordAt(line.text, begin) != kSilencer) return;
  const size_t at = afterBlanks(line.text, line.text.find_first_of(kBlanks, begin));
  const std::string name = wordAt(line.text, at);
  const std::optional<Rule> rule = ruleCalled(name);
  if (rule == Rule::NoBlock) return file.add(Rule::UnknownRule, line, at, kAlwaysTold);
  if (rule.has_value()) return file.findings.silence(*rule, file.file.path, line.number + 1);
  file.add(Rule::UnknownRule, line, at,
           "there is no rule '" + shortened(name) + "', so this comment silences nothing" +
               suggestion(name, ruleNames(), ": lint --help lists the rules"));
}

void checkUnassigned(const CheckedFile& file, const TracedLine& line) {
  const size_t at = afterBlanks(line.text, 0);
  if (at == line.text.size()) return;
  const std::string word = wordAt(line.text, at, std::string(kBlanks) + ":");
  file.add(
      Rule::NoEqual, line, at,
      "this is neither an assignment nor a comment, so the line sets nothing: write KEY=VALUE, "
      "or begin the line with '#'",
      {file.keyIn(word + "=1")});
}

// An assignment that a comment mark before its '=' makes a comment.
void checkMark(const CheckedFile& file, const TracedLine& line) {
  size_t at = 1;
  while (!beginsComment(line.text.substr(at))) ++at;
  at = afterBlanks(line.text, at);
  const std::string mark = line.text.substr(at, line.text[at] == '/' ? 2 : 1);
  file.add(Rule::NoEqual, line, at,
           "the mark '" + mark +
               "' before '=' makes this line a comment: remove the mark, or begin the line with it",
           {file.keyIn(withoutBlanks(line.text.substr(0, at)) + "=1")});
}

void checkKey(const CheckedFile& file, const TracedLine& line, const std::string& key) {
  const size_t at = afterBlanks(line.text, 0);
  const size_t dot = key.find('.');
  const bool is_others =
      std::any_of(file.probes.begin(), file.probes.end(),
                  [&](const auto& probe) { return probe.second.feed(line.text).namesParameter(); });
  if (is_others) {
    file.add(Rule::OtherAntenna, line, at,
             "this load selects another antenna in place of '" + shortened(key.substr(0, dot)) +
                 "', so the lines for that one set nothing",
             {}, true);
    return;
  }
  const KeyHint hint = file.hints.hintFor(key);
  // Without the antennas' names, a key that begins with one cannot be judged.
  if (hint.keys.empty() && !file.trace.selected && dot != key.npos) return;
  std::string none = key.empty() ? "there is no key before '='"
                                 : "no parameter has the key '" + shortened(key) + "'";
  none += ", so the line sets nothing";
  if (hint.of_channel) none = "an antenna's lines for the other one's channel set nothing";
  file.add(Rule::UnknownKey, line, at, none + hint.text, hint.keys, hint.of_channel);
}

// An assignment that sets nothing.
void checkAssignment(const CheckedFile& file, const TracedLine& line) {
  const size_t equal = line.text.find('=');
  const std::string text = line.text.substr(0, equal);
  const std::string key = withoutBlanks(text);
  const std::string meant = key == text ? "" : file.keyIn(key + line.text.substr(equal));
  if (meant.empty()) return checkKey(file, line, android::base::Trim(text));
  file.add(Rule::BlankInKey, line, line.text.find_first_of(kBlanks),
           "because of this blank the line does not set '" + meant +
               "': remove all blanks before the '='",
           {meant});
}

}  // namespace

void checkLines(const CheckedFile& file) {
  for (const TracedLine& line : file.file.lines) {
    if (line.parameter.has_value() || (line.number == 1 && hasByteOrderMark(line.text))) continue;
    const bool has_equal = line.text.find('=') != line.text.npos;
    if (beginsComment(line.text)) {
      checkComment(file, line);
    } else if (has_equal && line.effect.kind == LineEffect::Kind::Dropped) {
      checkAssignment(file, line);
    } else if (has_equal) {
      checkMark(file, line);
    } else {
      checkUnassigned(file, line);
    }
  }
}

std::string withoutBlanks(std::string text) {
  text.erase(std::remove_if(text.begin(), text.end(), [](uint8_t c) { return std::isspace(c); }),
             text.end());
  return text;
}

bool beginsComment(const std::string& text) {
  const std::string begin = withoutBlanks(text).substr(0, 2);
  return isCommentMark(begin.substr(0, 1)) ||
         (isCommentMark(begin) && !isCommentMark(begin.substr(1)));
}
