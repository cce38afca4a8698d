// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "tools/lint/checks.h"
#include "tools/lint/key_hints.h"
#include "tools/text/text.h"

namespace {

using Kind = LineEffect::Kind;

constexpr char kBlanks[] = " \t\v\f\r";

// A comment silences a rule for the next line: "# lint-ignore RULE".
constexpr char kSilencer[] = "lint-ignore ";

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
  static std::map<std::string, bool> known;
  const auto [at, is_new] = known.try_emplace(text);
  if (is_new) at->second = probe.feed(text + "=1").kind == Kind::Comment;
  return at->second;
}

// An assignment that sets nothing.
class DroppedLine {
 public:
  DroppedLine(const CheckedFile& file, const KeyHints& hints, const TracedLine& line,
              Findings& findings)
      : file_(file),
        hints_(hints),
        line_(line),
        text_(line.text),
        equal_(text_.find('=')),
        key_(withoutBlanks(text_.substr(0, equal_))),
        findings_(findings) {}

  void check() const {
    if (key_ == text_.substr(0, equal_) || !file_.takes(key_ + text_.substr(equal_))) {
      checkKey();
      return;
    }
    checkLeadingBlank();
    checkBlankBeforeEqual();
    checkInnerBlank();
  }

 private:
  void add(Rule rule, size_t column, const std::string& message, const std::string& meant) const {
    findings_.blame(meant, findings_.add(rule, file_.place(line_, column), message));
  }

  void checkKey() const {
    const size_t column = blanksAt(text_, 0) + 1;
    const size_t dot = key_.find('.');
    if (file_.taken.count({file_.file.path, line_.number}) > 0) {
      findings_.add(Rule::OtherAntenna, file_.place(line_, column),
                    "antenna '" + shortened(key_.substr(0, dot)) +
                        "' serves no channel here: the line sets nothing");
      return;
    }
    const KeyHint hint = hints_.hintFor(key_);
    // Without the antennas' names, a key that begins with one cannot be judged.
    if (hint.text.empty() && !file_.trace.selected && dot != key_.npos) return;
    const Findings::Id finding =
        findings_.add(Rule::UnknownKey, file_.place(line_, column),
                      "no parameter has the key '" + shortened(key_) + "'" + hint.text);
    if (!hint.key.empty()) findings_.blame(hint.key, finding);
  }

  void checkLeadingBlank() const {
    if (blanksAt(text_, 0) == 0) return;
    add(Rule::LeadingBlank, 1, "a blank before the key: the line sets nothing; remove the blank",
        key_);
  }

  void checkBlankBeforeEqual() const {
    const size_t end = text_.find_last_not_of(kBlanks, equal_ - 1) + 1;
    if (end == equal_) return;
    add(Rule::BlankBeforeEqual, end + 1,
        "a blank before '=': the line sets nothing; remove the blank", key_);
  }

  // If what follows the blank is a key, the blank comes after a mark; otherwise it splits the key.
  void checkInnerBlank() const {
    const size_t begin = blanksAt(text_, 0);
    const size_t blank = text_.find_first_of(kBlanks, begin);
    if (blank >= equal_ || blank + blanksAt(text_, blank) == equal_) return;
    const std::string rest = withoutBlanks(text_.substr(blank, equal_ - blank));
    if (file_.takes(rest + text_.substr(equal_))) {
      add(Rule::BlankAfterCcc, blank + 1,
          "a blank after " + shortened(text_.substr(begin, blank - begin)) +
              ": the line sets nothing; remove the blank",
          rest);
    } else {
      add(Rule::UnknownKey, blank + 1,
          "a blank inside the key '" + shortened(key_) +
              "': the line sets nothing; remove the blank",
          key_);
    }
  }

  const CheckedFile& file_;
  const KeyHints& hints_;
  const TracedLine& line_;
  const std::string& text_;
  const size_t equal_;
  const std::string key_;
  Findings& findings_;
};

void checkTextWithoutEqual(const CheckedFile& file, const TracedLine& line, Findings& findings) {
  const std::string& text = line.text;
  const size_t begin = blanksAt(text, 0);
  if (begin == text.size()) return;
  if (beginsComment(text)) {
    const size_t silencer = text.find(kSilencer);
    if (silencer == text.npos) return;
    const std::string rule = text.substr(silencer + sizeof(kSilencer) - 1);
    findings.silence(rule.substr(0, rule.find_first_of(kBlanks)), file.file.path, line.number + 1);
    return;
  }
  const Findings::Id finding =
      findings.add(Rule::NoEqual, file.place(line, begin + 1),
                   "neither an assignment nor a comment: the line sets nothing; write KEY=VALUE");
  const std::string word = text.substr(begin, text.find_first_of(kBlanks, begin) - begin);
  if (file.takes(word + "=1")) findings.blame(word, finding);
}

}  // namespace

bool CheckedFile::takes(const std::string& line) const {
  for (const SchemaProbe* probe : {&selection, &calibration}) {
    const Kind kind = probe->feed(line).kind;
    if (kind == Kind::Sets || kind == Kind::Fails) return true;
  }
  return false;
}

bool beginsComment(const std::string& text) {
  const std::string compact = withoutBlanks(text.substr(0, text.find('=')));
  if (compact.empty()) return false;
  if (isIgnored(compact.substr(0, 1))) return true;
  return compact.size() > 1 && isIgnored(compact.substr(0, 2)) && !isIgnored(compact.substr(1, 1));
}

std::string shortened(const std::string& word) {
  constexpr size_t kMost = 60;
  return word.size() <= kMost ? word : word.substr(0, kMost) + "...";
}

size_t blanksAt(const std::string& text, size_t at) {
  return std::min(text.find_first_not_of(kBlanks, at), text.size()) - std::min(at, text.size());
}

void checkLines(const CheckedFile& file, Findings& findings) {
  const KeyHints hints(file.trace);
  for (const TracedLine& line : file.file.lines) {
    if (line.parameter.has_value() || (line.number == 1 && hasByteOrderMark(line.text))) continue;
    const bool assignment = line.text.find('=') != line.text.npos;
    if (assignment && line.effect.kind == Kind::Dropped) {
      DroppedLine(file, hints, line, findings).check();
    } else {
      checkTextWithoutEqual(file, line, findings);
    }
  }
}
