// SPDX-License-Identifier: Apache-2.0
#include "tools/text/json.h"

#include <json/reader.h>
#include <json/writer.h>

#include <algorithm>

#include "tools/text/text.h"

namespace {

std::string validUtf8(const std::string& text) {
  std::string valid;
  for (size_t at = 0; at < text.size();) {
    const size_t length = characterLength(text, at);
    length == 0 ? valid += "\xEF\xBF\xBD" : valid.append(text, at, length);
    at += std::max<size_t>(length, 1);
  }
  return valid;
}

}  // namespace

Json::Value arrayOf(const std::vector<std::string>& texts) {
  return arrayOf(texts, [](const std::string& text) { return text; });
}

std::string documentOf(Json::Value members) {
  members["format_version"] = kFormatVersion;
  return foreignDocumentOf(members);
}

std::string foreignDocumentOf(const Json::Value& members, const std::string& indentation) {
  Json::StreamWriterBuilder style;
  style["indentation"] = indentation;
  style["emitUTF8"] = true;
  style["enableYAMLCompatibility"] = true;  // No blank before a colon.
  return validUtf8(Json::writeString(style, members)) + "\n";
}

std::optional<Json::Value> documentIn(const std::string& text) {
  Json::CharReaderBuilder style;
  style["failIfExtra"] = true;
  const std::unique_ptr<Json::CharReader> reader(style.newCharReader());
  Json::Value root;
  try {
    const char* const begin = text.data();
    if (!reader->parse(begin, begin + text.size(), &root, nullptr)) return std::nullopt;
  } catch (const Json::Exception&) {  // Nested too deeply.
    return std::nullopt;
  }
  if (!root.isObject()) return std::nullopt;
  return root;
}
