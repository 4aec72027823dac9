// SPDX-License-Identifier: BSD-3-Clause
// Files and standard input, read whole: a message is validated as one text. What a
// person names may be a pipe; what is found in a search directory may not.
#include "client/file_input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "client/options.h"

namespace {

// Standard input is left as it is.
struct CloseFile {
  void operator()(FILE* file) const noexcept {
    if (file != stdin) static_cast<void>(std::fclose(file));
  }
};
using File = std::unique_ptr<FILE, CloseFile>;

bool ReadAll(FILE* file, std::string* content) {
  char chunk[65536];
  size_t length = 0;
  while ((length = std::fread(chunk, 1, sizeof(chunk), file)) > 0) content->append(chunk, length);
  return std::ferror(file) == 0;
}

}  // namespace

bool ReadInput(const std::string& file, std::string* content) {
  content->clear();
  const File stream(file == "-" ? stdin : std::fopen(file.c_str(), "rb"));
  const bool done = stream != nullptr && ReadAll(stream.get(), content);
  if (!done) PrintError("%s: %s", file.c_str(), std::strerror(errno));
  return done;
}

bool ReadRegularFile(const std::string& file, std::string* content) {
  content->clear();
  const int fd = open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
  if (fd < 0) return false;
  struct stat info;
  const bool regular = fstat(fd, &info) == 0 && S_ISREG(info.st_mode);
  const File stream(regular ? fdopen(fd, "rb") : nullptr);
  if (stream == nullptr) static_cast<void>(close(fd));
  return stream != nullptr && ReadAll(stream.get(), content);
}
