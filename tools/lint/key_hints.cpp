// SPDX-License-Identifier: Apache-2.0
#include "tools/lint/key_hints.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "loader/calib_path.h"
#include "tools/text/nearest.h"
#include "tools/text/text.h"

namespace {

using Parts = std::vector<std::string>;

std::string digitsIn(const std::string& text) {
  std::string digits;
  std::copy_if(text.begin(), text.end(), std::back_inserter(digits),
               [](char c) { return c >= '0' && c <= '9'; });
  return digits;
}

// How far a part of a key is from one that exists; nothing when too far. Another number is another
// channel, not a misspelling.
std::optional<size_t> partDistance(const std::string& part, const std::string& existing) {
  const size_t limit = std::max<size_t>(1, existing.size() / 3);
  const size_t distance = editDistance(part, existing, limit);
  if (distance > limit || digitsIn(part) != digitsIn(existing)) return std::nullopt;
  return distance;
}

std::optional<size_t> distanceOf(const Parts& key, const Parts& existing) {
  if (key.size() != existing.size()) return std::nullopt;
  size_t sum = 0;
  for (size_t i = 0; i < key.size(); ++i) {
    const std::optional<size_t> distance = partDistance(key[i], existing[i]);
    if (!distance.has_value()) return std::nullopt;
    sum += *distance;
  }
  return sum;
}

// Whether the key is the existing one without some of its parts.
bool lacksParts(const Parts& key, const Parts& existing) {
  size_t at = 0;
  for (const std::string& part : existing) {
    if (at < key.size() && key[at] == part) ++at;
  }
  return at == key.size() && key.size() < existing.size();
}

}  // namespace

KeyHints::KeyHints(const LoadTrace& trace) : selection_(trace.selection) {
  for (const TracedParameter& parameter : trace.parameters) {
    const bool has_prefix =
        parameter.pass == Pass::Calibration && parameter.key.find('.') != parameter.key.npos;
    // Without a selection the antennas' names are unknown.
    if (has_prefix && !trace.selected) continue;
    keys_.push_back({parameter.key, split(CalibPath::lowercase(parameter.key), '.')});
  }
}

KeyHint KeyHints::hintFor(const std::string& key) const {
  if (KeyHint channel = otherChannel(key); !channel.key.empty()) return channel;
  const std::vector<std::string> meant = nearestTo(key);
  if (meant.empty() || meant.size() > 2) return {};
  return {meant.size() == 1 ? meant[0] : "", "; did you mean '" + joined(meant, "' or '") + "'?"};
}

bool KeyHints::has(const std::string& key) const {
  return std::any_of(keys_.begin(), keys_.end(), [&](const Key& k) { return k.text == key; });
}

// The key names an antenna, but the channel that the other one serves.
KeyHint KeyHints::otherChannel(const std::string& key) const {
  for (const bool ch5 : {true, false}) {
    const std::string& named = ch5 ? selection_.ch5 : selection_.ch9;
    const std::string& other = ch5 ? selection_.ch9 : selection_.ch5;
    if (key.compare(0, named.size(), named) != 0 || has(key)) continue;
    const std::string meant = other + key.substr(named.size());
    if (!has(meant)) continue;
    const std::string channels[] = {ch5 ? "5" : "9", ch5 ? "9" : "5"};
    return {meant, joined({": '", named, "' serves channel ", channels[0], "; channel ",
                           channels[1], " is served by '", other, "'"},
                          "")};
  }
  return {};
}

std::vector<std::string> KeyHints::nearestTo(const std::string& key) const {
  const Parts parts = split(CalibPath::lowercase(key), '.');
  std::vector<std::string> nearest;
  size_t best = key.size();
  for (const Key& existing : keys_) {
    const std::optional<size_t> distance =
        lacksParts(parts, existing.parts) ? 0 : distanceOf(parts, existing.parts);
    if (!distance.has_value() || *distance > best) continue;
    if (*distance < best) nearest.clear();
    best = *distance;
    nearest.push_back(existing.text);
  }
  return nearest;
}
