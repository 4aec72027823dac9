// SPDX-License-Identifier: BSD-3-Clause
// A new folder below the one for temporary files, readable by its owner alone. What was
// written is known by name, so that nothing else is ever removed. A signal that ends the
// program, as of a pipe whose reader has seen enough, takes the folder along.
#include "client/private_folder.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "client/interruption.h"
#include "client/options.h"

// The one that there is, for a signal that ends the program.
static const PrivateFolder* made = nullptr;

static void RemoveMade() {
  made->Remove();
}

PrivateFolder::~PrivateFolder() {
  if (path_.empty()) return;
  const HoldInterruption held;
  Remove();
  OnInterruption(nullptr);
}

void PrivateFolder::Remove() const noexcept {
  for (const std::string& file : files_) static_cast<void>(unlink(file.c_str()));
  static_cast<void>(rmdir(path_.c_str()));
}

bool PrivateFolder::Make() {
  const char* base = std::getenv("TMPDIR");
  std::string path = base == nullptr || base[0] != '/' ? "/tmp" : base;
  path += "/qmodel-XXXXXX";
  const HoldInterruption held;
  if (mkdtemp(path.data()) == nullptr) {
    PrintError("%s: %s", path.c_str(), std::strerror(errno));
    return false;
  }
  path_ = std::move(path);
  made = this;
  OnInterruption(RemoveMade);
  return true;
}

bool PrivateFolder::Write(const std::string& name, std::string_view content) {
  const std::string path = path_ + "/" + name;
  const HoldInterruption held;
  files_.push_back(path);  // before it is there, since memory may be refused
  std::FILE* file = std::fopen(path.c_str(), "wbx");
  if (file == nullptr) files_.pop_back();
  bool written =
      file != nullptr && std::fwrite(content.data(), 1, content.size(), file) == content.size();
  if (file != nullptr && std::fclose(file) != 0) written = false;
  if (!written) PrintError("%s: %s", path.c_str(), std::strerror(errno));
  return written;
}
