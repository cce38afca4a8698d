// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <android-base/stringprintf.h>
#include <android-base/strings.h>

#include <cstdint>
#include <string>
#include <vector>

using android::base::EndsWith;
using android::base::Join;
using android::base::Split;
using android::base::StartsWith;
using android::base::StringPrintf;

// 0x and at least `digits` upper-case hexadecimal digits.
std::string hex(uint32_t number, int digits);

// Two lower-case digits, as in a dump.
std::string hexByte(uint8_t byte);

// The text with blanks after it until it is `width` characters wide.
std::string padded(const std::string& text, size_t width);

// The number of bytes of the UTF-8 character at `at`; 0 when there is none.
size_t characterLength(const std::string& text, size_t at);

// The text without anything that a terminal acts on: a tab becomes one blank, a control character
// or a byte that is no UTF-8 becomes \xNN.
std::string printable(const std::string& text);

// How many characters wide a printable text is.
size_t widthOf(const std::string& printable_text);

// The lines of a text as the library reads them.
std::vector<std::string> linesOf(const std::string& text);

// The parts with commas between them, in lines that end before `width` and all begin at `indent`,
// as the first does where it will stand.
std::string wrapped(const std::vector<std::string>& parts, size_t indent, size_t width);

// The words between the commas, without white space around them; none that is empty.
std::vector<std::string> wordsIn(const std::string& list);

// "1 file", "2 files".
std::string counted(size_t count, const std::string& thing);

// Levenshtein's distance; any more than `limit` when it is more.
size_t editDistance(const std::string& a, const std::string& b, size_t limit);

// The candidate that was probably meant by a misspelt `word`; empty when none is near.
std::string nearestOf(const std::string& word, const std::vector<std::string>& candidates);

// "; did you mean 'nearest'?"; `otherwise` when none is near.
std::string suggestion(const std::string& word, const std::vector<std::string>& candidates,
                       const std::string& otherwise = "");

// Writes text in colours, or plain.
class Paint {
 public:
  explicit Paint(bool in_colour) : in_colour_(in_colour) {}

  bool inColour() const { return in_colour_; }
  std::string bold(const std::string& text) const { return with("1", text); }
  std::string dim(const std::string& text) const { return with("2", text); }
  std::string red(const std::string& text) const { return with("1;31", text); }
  std::string green(const std::string& text) const { return with("1;32", text); }
  // `code` is a list of numbers of the terminal's "select graphic rendition".
  std::string with(const std::string& code, const std::string& text) const;

 private:
  const bool in_colour_;
};
