// SPDX-License-Identifier: Apache-2.0
#include "tests/kit/doubles.h"

#include <android-base/properties.h>
#include <android/log.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <utility>

namespace {

// Takes memory past operator new.
template <typename T>
struct Malloc {
  using value_type = T;
  Malloc() = default;
  template <typename U>
  Malloc(const Malloc<U>& /*other*/) {}
  T* allocate(size_t count) { return static_cast<T*>(std::malloc(count * sizeof(T))); }
  void deallocate(T* memory, size_t /*count*/) { std::free(memory); }
  bool operator==(const Malloc& /*other*/) const { return true; }
  bool operator!=(const Malloc& /*other*/) const { return false; }
};

template <typename T>
using Kept = std::vector<T, Malloc<T>>;
using Text = std::basic_string<char, std::char_traits<char>, Malloc<char>>;

struct Line {
  int priority;
  Text text;
  bool has_tag;
};

Kept<Line> lines;
bool keeping = true;
std::map<std::string, std::string> properties;
Kept<Text> reads;

__attribute__((__format__(printf, 1, 0))) Text formatted(const char* format, va_list arguments) {
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  Text text(static_cast<size_t>(length), '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  return text;
}

}  // namespace

__attribute__((__format__(printf, 3, 4))) int __android_log_print(int prio, const char* tag,
                                                                  const char* fmt, ...) {
  if (!keeping) return 1;
  va_list arguments;
  va_start(arguments, fmt);
  lines.push_back({prio, formatted(fmt, arguments), tag != nullptr});
  va_end(arguments);
  if (on_log_line != nullptr) on_log_line({prio, lines.back().text.c_str(), tag != nullptr});
  return 1;
}

void (*on_log_line)(const LogLine& line) = nullptr;

Log takeLog() {
  Log log;
  for (const Line& line : lines)
    log.push_back({line.priority, {line.text.data(), line.text.size()}, line.has_tag});
  lines.clear();
  return log;
}

void keepLog(bool keep) {
  keeping = keep;
}

std::string android::base::GetProperty(const std::string& key, const std::string& default_value) {
  if (keeping) reads.emplace_back(key.data(), key.size());
  const auto found = properties.find(key);
  return found == properties.end() ? default_value : found->second;
}

void setProperty(const std::string& key, const std::string& value) {
  properties.erase(key);
  if (!value.empty()) properties.emplace(key, value);
}

void clearProperties() {
  properties.clear();
}

Names takePropertyReads() {
  Names keys;
  for (const Text& key : reads) keys.emplace_back(key.data(), key.size());
  reads.clear();
  return keys;
}
