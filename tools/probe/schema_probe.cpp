// SPDX-License-Identifier: Apache-2.0
#include "tools/probe/schema_probe.h"

#include <algorithm>
#include <exception>
#include <sstream>

#include "schema/antenna_selection_pattern.h"
#include "schema/pattern.h"
#include "tools/device/library_log.h"

namespace {

std::vector<std::string> missingIn(AstRoot& tree) {
  std::vector<std::string> missing;
  tree.validate(missing, {});
  return missing;
}

std::string printOf(const AstRoot& tree) {
  std::ostringstream out;
  tree.print(out);
  return out.str();
}

}  // namespace

SchemaProbe::SchemaProbe(MakeTree make_tree)
    : make_tree_(std::move(make_tree)), fresh_(make_tree_()) {
  keys_ = missingIn(*fresh_);
  print_ = printOf(*fresh_);
}

LineEffect SchemaProbe::feed(const std::string& line) const {
  const LogCapture log;
  LineEffect effect;
  try {
    std::istringstream text(line);
    fresh_->parse(text);
  } catch (const std::exception& e) {
    effect.kind = LineEffect::Kind::Fails;
    effect.error = e.what();
    effect.parameter = parameterNamedIn(line).value_or(0);
    return effect;
  }
  // The tree logs each comment that it ignores, and nothing else that throws no exception.
  if (!log.lines().empty()) effect.kind = LineEffect::Kind::Comment;
  const std::optional<size_t> parameter = parameterSetIn(*fresh_);
  if (!parameter.has_value()) return effect;
  effect = {LineEffect::Kind::Sets, *parameter, valueIn(*fresh_), {}};
  fresh_ = make_tree_();
  return effect;
}

std::optional<size_t> SchemaProbe::parameterNamedIn(const std::string& line) const {
  // An antenna's name may contain '=', so each one is tried. Every parameter accepts 1.
  for (size_t equal = line.find('='); equal != line.npos; equal = line.find('=', equal + 1)) {
    const std::unique_ptr<AstRoot> tree = make_tree_();
    const LogCapture log;
    try {
      std::istringstream text(line.substr(0, equal + 1) + "1");
      tree->parse(text);
    } catch (const std::exception&) {
      continue;
    }
    const std::optional<size_t> parameter = parameterSetIn(*tree);
    if (parameter.has_value()) return parameter;
  }
  return std::nullopt;
}

std::optional<size_t> SchemaProbe::parameterSetIn(AstRoot& tree) const {
  const std::vector<std::string> missing = missingIn(tree);
  if (missing.size() == keys_.size()) return std::nullopt;
  const auto gone = std::mismatch(missing.begin(), missing.end(), keys_.begin());
  return static_cast<size_t>(gone.second - keys_.begin());
}

std::string SchemaProbe::valueIn(const AstRoot& tree) const {
  std::istringstream before(print_);
  std::istringstream after(printOf(tree));
  std::string line_before;
  std::string line_after;
  while (std::getline(before, line_before) && std::getline(after, line_after)) {
    constexpr char kSign[] = " = ";
    if (line_before != line_after) return line_after.substr(line_before.rfind(kSign) + 3);
  }
  return {};
}

SchemaProbe selectionProbe() {
  return SchemaProbe([] { return std::make_unique<AntennaSelectionPattern>(); });
}

SchemaProbe calibrationProbe(const antenna_selection& selection) {
  return SchemaProbe([selection] { return std::make_unique<Pattern>(selection); });
}
