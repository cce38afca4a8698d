// SPDX-License-Identifier: Apache-2.0
#include "tools/text/json.h"

#include <json/reader.h>
#include <json/value.h>
#include <json/writer.h>

#include "tools/text/text.h"

namespace {

std::string validUtf8(const std::string& text) {
  std::string valid;
  for (size_t at = 0; at < text.size();) {
    const size_t length = characterLength(text, at);
    valid += length == 0 ? "\xEF\xBF\xBD" : text.substr(at, length);
    at += length == 0 ? 1 : length;
  }
  return valid;
}

Json::Value arrayOf(const std::vector<std::string>& texts) {
  Json::Value array(Json::arrayValue);
  for (const std::string& text : texts) array.append(validUtf8(text));
  return array;
}

std::shared_ptr<Json::Value> shared(Json::Value value) {
  return std::make_shared<Json::Value>(std::move(value));
}

}  // namespace

JsonValue::JsonValue(bool value) : value_(shared(value)) {}

JsonValue::JsonValue(uint32_t value) : value_(shared(value)) {}

JsonValue::JsonValue(uint64_t value) : value_(shared(Json::UInt64{value})) {}

JsonValue::JsonValue(const char* text) : value_(shared(text)) {}

JsonValue::JsonValue(const std::string& text) : value_(shared(validUtf8(text))) {}

JsonValue::JsonValue(const std::vector<std::string>& texts) : value_(shared(arrayOf(texts))) {}

JsonValue::JsonValue(std::vector<JsonValue> elements) {
  Json::Value array(Json::arrayValue);
  for (JsonValue& element : elements) array.append(element.take());
  value_ = shared(std::move(array));
}

JsonValue::JsonValue(JsonMembers members) {
  Json::Value object(Json::objectValue);
  for (auto& member : members) object[member.first] = member.second.take();
  value_ = shared(std::move(object));
}

// Large documents are moved as they grow; a value that somebody else holds too is copied.
Json::Value JsonValue::take() {
  return value_.use_count() == 1 ? std::move(*value_) : *value_;
}

std::string documentOf(JsonMembers members) {
  members.emplace_back("format_version", 1U);
  return foreignDocumentOf(std::move(members));
}

std::string foreignDocumentOf(JsonMembers members) {
  Json::StreamWriterBuilder style;
  style["indentation"] = "  ";
  style["emitUTF8"] = true;
  style["enableYAMLCompatibility"] = true;  // No blank before a colon.
  return Json::writeString(style, *JsonValue(std::move(members)).value_) + "\n";
}

std::optional<std::string> textMemberOf(const std::string& document, const char* name) {
  const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
  Json::Value root;
  try {
    const char* const begin = document.data();
    if (!reader->parse(begin, begin + document.size(), &root, nullptr)) return std::nullopt;
  } catch (const Json::Exception&) {  // Nested too deeply.
    return std::nullopt;
  }
  if (!root.isObject() || !root[name].isString()) return std::nullopt;
  return root[name].asString();
}
