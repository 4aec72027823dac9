// SPDX-License-Identifier: BSD-3-Clause
// Files and standard input, read whole: a message is validated as one text.
#include "client/file_input.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "client/options.h"

static bool ReadAll(FILE* file, std::string* content) {
  char chunk[65536];
  size_t length = 0;
  while ((length = std::fread(chunk, 1, sizeof(chunk), file)) > 0) content->append(chunk, length);
  return std::ferror(file) == 0;
}

bool ReadInput(const std::string& file, std::string* content) {
  content->clear();
  const bool standardInput = file == "-";
  FILE* stream = standardInput ? stdin : std::fopen(file.c_str(), "rb");
  const bool done = stream != nullptr && ReadAll(stream, content);
  if (!done) PrintError("%s: %s", file.c_str(), std::strerror(errno));
  if (stream != nullptr && !standardInput) static_cast<void>(std::fclose(stream));
  return done;
}
