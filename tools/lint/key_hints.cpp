// SPDX-License-Identifier: Apache-2.0
#include "tools/lint/key_hints.h"

#include <android-base/stringprintf.h>

#include <algorithm>
#include <cctype>

#include "loader/calib_path.h"
#include "tools/text/text.h"

namespace {

using android::base::StringPrintf;

constexpr size_t kFar = 1000;

std::string lettersIn(std::string text) {
  text.erase(std::remove_if(text.begin(), text.end(), [](uint8_t c) { return std::isdigit(c); }),
             text.end());
  return text;
}

}  // namespace

KeyHints::Key::Key(const std::string& key)
    : parts(Split(CalibPath::lowercase(key), ".")),
      words(Split(CalibPath::lowercase(key), "._ \t")) {
  std::sort(words.begin(), words.end());
}

KeyHints::KeyHints(const LoadTrace& trace) : selection_(trace.selection) {
  for (const TracedParameter& parameter : trace.parameters) {
    // An antenna that no line selects has no name.
    if (StartsWith(parameter.key, "?.")) continue;
    keys_.emplace(parameter.key, parameter.key);
  }
}

// How far a part of a key is from one that exists. Another antenna's number is no misspelling.
size_t KeyHints::partDistance(const std::string& part, const std::string& existing) const {
  if (part == existing) return 0;
  const bool is_name = existing == CalibPath::lowercase(selection_.ch5) ||
                       existing == CalibPath::lowercase(selection_.ch9);
  if (lettersIn(part) == lettersIn(existing)) return is_name ? kFar : 1;
  const size_t limit = std::max<size_t>(1, existing.size() / 3);
  const size_t distance = editDistance(part, existing, limit);
  return distance > limit ? kFar : distance;
}

// The key may lack some of the words, or have more, in any order; or some parts are misspelt. A
// word too many counts with its characters, as it may be one of another key, misspelt.
size_t KeyHints::distanceOf(const Key& key, const Key& existing) const {
  const auto has_all = [](const Parts& some, const Parts& words) {
    return std::includes(some.begin(), some.end(), words.begin(), words.end());
  };
  if (has_all(existing.words, key.words)) return existing.words.size() - key.words.size();
  if (has_all(key.words, existing.words))
    return Join(key.words, ".").size() - Join(existing.words, ".").size();
  if (key.parts.size() != existing.parts.size()) return kFar;
  size_t sum = 0;
  for (size_t i = 0; i < key.parts.size(); ++i) {
    sum += partDistance(key.parts[i], existing.parts[i]);
  }
  return sum;
}

KeyHint KeyHints::hintFor(const std::string& key) const {
  if (KeyHint channel = otherChannel(key); !channel.keys.empty()) return channel;
  const std::vector<std::string> meant = nearestTo(key);
  if (!meant.empty() && meant.size() <= 2)
    return {meant, "; did you mean '" + Join(meant, "' or '") + "'?"};
  const std::string rest = key.substr(std::min(key.find('.'), key.size()));
  const bool is_antennas =
      keys_.count(selection_.ch5 + rest) + keys_.count(selection_.ch9 + rest) > 0;
  return {{},
          is_antennas ? ": select this antenna, or remove the line if no country has it"
                      : ": correct it, or remove the line"};
}

// The key names an antenna, but the channel that the other one serves.
KeyHint KeyHints::otherChannel(const std::string& key) const {
  for (const bool ch5 : {true, false}) {
    const std::string& named = ch5 ? selection_.ch5 : selection_.ch9;
    const std::string& other = ch5 ? selection_.ch9 : selection_.ch5;
    if (!StartsWith(key, named)) continue;
    const std::string meant = other + key.substr(named.size());
    if (keys_.count(meant) == 0) continue;
    return {{meant},
            StringPrintf(": '%s' serves channel %d; channel %d is served by '%s'", named.c_str(),
                         ch5 ? 5 : 9, ch5 ? 9 : 5, other.c_str()),
            true};
  }
  return {};
}

std::vector<std::string> KeyHints::nearestTo(const std::string& key) const {
  const Key wanted(key);
  std::vector<std::string> nearest;
  size_t best = std::min(key.size(), kFar - 1);
  for (const auto& [existing, parts] : keys_) {
    const size_t distance = distanceOf(wanted, parts);
    if (distance > best) continue;
    if (distance < best) nearest.clear();
    best = distance;
    nearest.push_back(existing);
  }
  return nearest;
}
