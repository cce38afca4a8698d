// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Json {
class Value;
}

class JsonValue;

// The members of an object, to be filled one by one.
using JsonMembers = std::vector<std::pair<const char*, JsonValue>>;

// A value of a JSON document. Only json.cpp includes the library that writes it.
class JsonValue {
 public:
  // NOLINTBEGIN(google-explicit-constructor): members are written as {"name", value}.
  JsonValue(bool value);
  JsonValue(uint32_t value);
  JsonValue(uint64_t value);
  JsonValue(const char* text);
  // A byte that is no UTF-8 becomes U+FFFD: files may hold any bytes, JSON is UTF-8.
  JsonValue(const std::string& text);
  JsonValue(const std::vector<std::string>& texts);
  JsonValue(std::vector<JsonValue> elements);
  JsonValue(JsonMembers members);
  // NOLINTEND(google-explicit-constructor)

 private:
  friend std::string foreignDocumentOf(JsonMembers members);

  Json::Value take();

  std::shared_ptr<Json::Value> value_;
};

// A whole document with these members and the version of the command's formats, which changes when
// a member is renamed, removed or gets another meaning.
std::string documentOf(JsonMembers members);

// A whole document of a format that others define.
std::string foreignDocumentOf(JsonMembers members);

// The text of a document's member; nothing when there is no such text.
std::optional<std::string> textMemberOf(const std::string& document, const char* name);
