// SPDX-License-Identifier: Apache-2.0
// Replays loads against the shared library and prints all that can be seen of them: every log line,
// the result, the bytes. Commands come from the standard input, one per line, fields separated by a
// tab; in fields and answers every byte outside 0x20 to 0x7e and the backslash is written \xNN.
//
//   root  DIR [CWD]     DIR becomes '/', CWD inside it the working directory ('/' by default)
//   set   KEY VALUE     sets a property; an empty value unsets it
//   load  CAPACITY      calls the library: answers with log, result or exception, overrun
//
// The log and the properties that the library sees are this program's own.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <iostream>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/kit/doubles.h"
#include "tests/kit/guards.h"
#include "tests/kit/opened_library.h"
#include "tools/device/open_redirect.h"
#include "tools/device/target_root.h"

namespace {

std::string escaped(const std::string& text) {
  std::string out;
  for (const char c : text) {
    if (c >= 0x20 && c <= 0x7e && c != '\\') {
      out += c;
    } else {
      char code[5];
      std::snprintf(code, sizeof(code), "\\x%02x", static_cast<uint8_t>(c));
      out += code;
    }
  }
  return out;
}

std::string unescaped(const std::string& text) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\') {
      out += static_cast<char>(std::stoi(text.substr(i + 2, 2), nullptr, 16));
      i += 3;
    } else {
      out += text[i];
    }
  }
  return out;
}

std::vector<std::string> fieldsOf(const std::string& line) {
  std::vector<std::string> fields;
  std::istringstream input(line);
  for (std::string field; std::getline(input, field, '\t');) fields.push_back(unescaped(field));
  return fields;
}

void printLog() {
  for (const LogLine& line : takeLog()) {
    std::cout << "log\t" << line.priority << '\t' << escaped(line.text)
              << (line.has_tag ? "\ttagged" : "") << '\n';
  }
}

void printResult(uint32_t result, const Bytes& memory) {
  std::cout << "result\t" << result << '\t';
  for (size_t i = kGuard; i < std::min<size_t>(kGuard + result, memory.size()); ++i) {
    char code[3];
    std::snprintf(code, sizeof(code), "%02x", memory[i]);
    std::cout << code;
  }
  std::cout << '\n';
}

// Everything but the first `count` bytes of the buffer must be as it was.
void printOverrun(size_t count, const Bytes& memory) {
  for (size_t i = 0; i < memory.size(); ++i) {
    const bool in_block = i >= kGuard && i < kGuard + count;
    if (in_block || memory[i] == kUntouched) continue;
    std::cout << "overrun\t" << static_cast<ptrdiff_t>(i) - static_cast<ptrdiff_t>(kGuard) << '\n';
    return;
  }
}

void replayLoad(const OpenedLibrary& library, const TargetRoot& root, unsigned int capacity) {
  Bytes memory = guarded(capacity);
  uint32_t result = 0;
  std::string thrown;
  try {
    const OpenRedirect redirect(root);
    result = library.load(memory.data() + kGuard, capacity);
  } catch (const std::exception& e) {
    thrown = e.what();
  }
  printLog();
  if (thrown.empty()) {
    printResult(result, memory);
  } else {
    std::cout << "exception\t" << escaped(thrown) << '\n';
  }
  printOverrun(result, memory);
  std::cout.flush();
}

void replay(const OpenedLibrary& library, std::optional<TargetRoot>& root,
            const std::vector<std::string>& fields) {
  if (fields.at(0) == "root") {
    root.emplace(fields.at(1), fields.size() > 2 ? fields[2] : "/");
  } else if (fields[0] == "set") {
    setProperty(fields.at(1), fields.size() > 2 ? fields[2] : "");
  } else if (fields[0] == "load") {
    replayLoad(library, root.value(), static_cast<unsigned int>(std::stoul(fields.at(1))));
  } else {
    throw std::runtime_error("unknown command: " + fields[0]);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: load_replay LIBRARY < COMMANDS\n";
    return 2;
  }
  try {
    // Stays open: libbase never frees what it has built when it is unloaded.
    static const OpenedLibrary& library = *new OpenedLibrary(argv[1]);
    std::optional<TargetRoot> root;
    for (std::string line; std::getline(std::cin, line);) replay(library, root, fieldsOf(line));
  } catch (const std::exception& e) {
    std::cerr << "load_replay: " << e.what() << '\n';
    return 1;
  }
  return 0;
}
