// SPDX-License-Identifier: BSD-3-Clause
#include "client/json.h"

#include <libxml/xmlstring.h>

#include <algorithm>
#include <cstdio>

namespace {

constexpr char kReplacement[] = "\xEF\xBF\xBD";

bool IsControl(unsigned char byte) {
  return byte < 0x20 || byte == 0x7f;
}

// The bytes of the character at the start; 0: there is none.
size_t CharacterLength(std::string_view text) {
  unsigned char bytes[5] = {};
  std::copy_n(text.begin(), std::min<size_t>(text.size(), 4), bytes);
  int length = static_cast<int>(std::min<size_t>(text.size(), 4));
  return xmlGetUTF8Char(bytes, &length) < 0 ? 0 : static_cast<size_t>(length);
}

}  // namespace

std::string JsonText(std::string_view text) {
  std::string json = "\"";
  while (!text.empty()) {
    const auto byte = static_cast<unsigned char>(text[0]);
    size_t length = 1;
    if (IsControl(byte)) {
      char escape[8];
      static_cast<void>(std::snprintf(escape, sizeof(escape), "\\u%04x", byte));
      json += escape;
    } else if (byte == '"' || byte == '\\') {
      json += '\\';
      json += text[0];
    } else {
      length = CharacterLength(text);
      if (length == 0) json += kReplacement;
      json += text.substr(0, length);
    }
    text.remove_prefix(std::max<size_t>(length, 1));
  }
  return json + "\"";
}

std::string JsonOrNull(const char* text) {
  return text == nullptr ? "null" : JsonText(text);
}

void JsonArray::Add(const std::string& item) {
  text_ += text_.empty() ? "[\n  " : ",\n  ";
  text_ += item;
}

void JsonArray::Print() const {
  std::printf("%s\n", text_.empty() ? "[]" : (text_ + "\n]").c_str());
}
