// SPDX-License-Identifier: BSD-3-Clause
#include "client/shown_text.h"

#include <cstdio>

std::string ShowControls(std::string_view text) {
  std::string shown;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte != 0x7f) {
      shown += c;
      continue;
    }
    char escape[5];
    static_cast<void>(std::snprintf(escape, sizeof(escape), "\\x%02x", byte));
    shown += escape;
  }
  return shown;
}
