// SPDX-License-Identifier: Apache-2.0
#include "tools/lint/key_hints.h"

#include <android-base/stringprintf.h>

#include <algorithm>
#include <cctype>

#include "loader/calib_path.h"
#include "tools/text/text.h"

namespace {

using android::base::StringPrintf;

using Parts = std::vector<std::string>;

constexpr size_t kFar = SIZE_MAX;

Parts partsOf(const std::string& key) {
  return Split(CalibPath::lowercase(key), ".");
}

std::string digitsIn(std::string text) {
  text.erase(std::remove_if(text.begin(), text.end(), [](uint8_t c) { return !std::isdigit(c); }),
             text.end());
  return text;
}

// How far a part of a key is from one that exists. Another number is another channel, not a
// misspelling.
size_t partDistance(const std::string& part, const std::string& existing) {
  const size_t limit = std::max<size_t>(1, existing.size() / 3);
  const size_t distance = editDistance(part, existing, limit);
  return distance > limit || digitsIn(part) != digitsIn(existing) ? kFar : distance;
}

// The key may lack some of the parts.
size_t distanceOf(const Parts& key, const Parts& existing) {
  size_t at = 0;
  size_t sum = 0;
  for (const std::string& part : existing) {
    const size_t distance = at < key.size() ? partDistance(key[at], part) : kFar;
    if (distance == kFar) continue;
    sum += distance;
    ++at;
  }
  return at == key.size() ? sum : kFar;
}

}  // namespace

KeyHints::KeyHints(const LoadTrace& trace) : selection_(trace.selection) {
  for (const TracedParameter& parameter : trace.parameters) {
    const bool has_prefix =
        parameter.pass == Pass::Calibration && parameter.key.find('.') != parameter.key.npos;
    // Without a selection the antennas' names are unknown.
    if (trace.selected || !has_prefix) parts_.emplace(parameter.key, partsOf(parameter.key));
  }
}

KeyHint KeyHints::hintFor(const std::string& key) const {
  if (KeyHint channel = otherChannel(key); !channel.keys.empty()) return channel;
  const std::vector<std::string> meant = nearestTo(key);
  if (meant.empty() || meant.size() > 2) return {{}, ": correct it, or remove the line"};
  return {meant, "; did you mean '" + Join(meant, "' or '") + "'?"};
}

// The key names an antenna, but the channel that the other one serves.
KeyHint KeyHints::otherChannel(const std::string& key) const {
  for (const bool ch5 : {true, false}) {
    const std::string& named = ch5 ? selection_.ch5 : selection_.ch9;
    const std::string& other = ch5 ? selection_.ch9 : selection_.ch5;
    if (!StartsWith(key, named)) continue;
    const std::string meant = other + key.substr(named.size());
    if (parts_.count(meant) == 0) continue;
    return {{meant},
            StringPrintf("'%s' serves channel %d, so its lines for channel %d set nothing: channel "
                         "%d is served by '%s'",
                         named.c_str(), ch5 ? 5 : 9, ch5 ? 9 : 5, ch5 ? 9 : 5, other.c_str()),
            true};
  }
  return {};
}

std::vector<std::string> KeyHints::nearestTo(const std::string& key) const {
  const Parts key_parts = partsOf(key);
  std::vector<std::string> nearest;
  size_t best = key.size();
  for (const auto& [existing, parts] : parts_) {
    const size_t distance = distanceOf(key_parts, parts);
    if (distance > best) continue;
    if (distance < best) nearest.clear();
    best = distance;
    nearest.push_back(existing);
  }
  return nearest;
}
