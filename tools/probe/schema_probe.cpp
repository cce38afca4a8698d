// SPDX-License-Identifier: Apache-2.0
#include "tools/probe/schema_probe.h"

#include <algorithm>
#include <exception>
#include <sstream>

#include "schema/antenna_selection_pattern.h"
#include "schema/pattern.h"
#include "tools/device/device_library.h"
#include "tools/text/text.h"

namespace {

std::vector<std::string> missingIn(AstRoot& tree) {
  std::vector<std::string> missing;
  tree.validate(missing, {});
  return missing;
}

std::vector<std::string> printOf(const AstRoot& tree) {
  std::ostringstream out;
  tree.print(out);
  return linesOf(out.str());
}

// Whether the device goes on after the line.
bool parses(AstRoot& tree, const std::string& line) {
  std::istringstream text(line);
  try {
    tree.parse(text);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

}  // namespace

SchemaProbe::SchemaProbe(MakeTree make_tree)
    : make_tree_(std::move(make_tree)), fresh_(make_tree_()) {
  keys_ = missingIn(*fresh_);
  print_ = printOf(*fresh_);
}

LineEffect SchemaProbe::feed(const std::string& line) const {
  using Kind = LineEffect::Kind;
  const LogCapture log;
  if (!parses(*fresh_, line)) return {Kind::Fails, parameterNamedIn(line), {}};
  const std::optional<size_t> parameter = parameterSetIn(*fresh_);
  // The tree logs each comment that it ignores, and nothing else that throws no exception.
  if (!parameter.has_value()) return {log.lines().empty() ? Kind::Dropped : Kind::Comment, 0, {}};
  LineEffect effect{Kind::Sets, *parameter, valueIn(*fresh_)};
  fresh_ = make_tree_();
  return effect;
}

size_t SchemaProbe::parameterNamedIn(const std::string& line) const {
  // An antenna's name may contain '=', so each one is tried. Every parameter accepts 1. A line
  // fails only at the value of a parameter, so one is found; at() throws where no '=' is left.
  std::optional<size_t> parameter;
  for (size_t equal = 0; !parameter.has_value(); ++equal) {
    equal = line.find('=', equal);
    const std::unique_ptr<AstRoot> tree = make_tree_();
    parses(*tree, line.substr(0, equal) + line.at(equal) + "1");
    parameter = parameterSetIn(*tree);
  }
  return *parameter;
}

std::optional<size_t> SchemaProbe::parameterSetIn(AstRoot& tree) const {
  const std::vector<std::string> missing = missingIn(tree);
  if (missing.size() == keys_.size()) return std::nullopt;
  const auto gone = std::mismatch(missing.begin(), missing.end(), keys_.begin());
  return static_cast<size_t>(gone.second - keys_.begin());
}

std::string SchemaProbe::valueIn(const AstRoot& tree) const {
  const std::vector<std::string> print = printOf(tree);
  const auto line = std::mismatch(print.begin(), print.end(), print_.begin()).first;
  constexpr std::string_view kSign = " = ";
  return line->substr(line->find(kSign) + kSign.size());
}

SchemaProbe selectionProbe() {
  return SchemaProbe([] { return std::make_unique<AntennaSelectionPattern>(); });
}

SchemaProbe calibrationProbe(const antenna_selection& selection) {
  return SchemaProbe([selection] { return std::make_unique<Pattern>(selection); });
}
