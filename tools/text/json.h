// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <json/value.h>

#include <optional>
#include <string>
#include <vector>

// JSON documents, made of jsoncpp's values. Their texts may hold any bytes.

// The array of what `make` returns for each element.
template <typename Elements, typename Make>
Json::Value arrayOf(const Elements& elements, const Make& make) {
  Json::Value array(Json::arrayValue);
  for (const auto& element : elements) array.append(make(element));
  return array;
}

Json::Value arrayOf(const std::vector<std::string>& texts);

// The version of the command's formats, which changes when a member is renamed, removed or gets
// another meaning.
constexpr unsigned kFormatVersion = 1;

// The document with this version.
std::string documentOf(Json::Value members);

// A document without a version of ours, in one line if `indentation` is empty. A byte that is no
// UTF-8 becomes U+FFFD.
std::string foreignDocumentOf(const Json::Value& members, const std::string& indentation = "  ");

// The object that is the whole of a document; nothing when there is none.
std::optional<Json::Value> documentIn(const std::string& text);
