// SPDX-License-Identifier: BSD-3-Clause
// Colours and progress. A file or a pipe never gets any of it.
#include "client/terminal.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <system_error>

namespace {

constexpr char kFaint[] = "\x1b[2m";
constexpr char kBold[] = "\x1b[1m";
constexpr char kTypeColour[] = "\x1b[36m";
constexpr char kFeatureColour[] = "\x1b[33m";
constexpr char kPlain[] = "\x1b[0m";

std::string Painted(const char* colour, std::string_view text) {
  if (text.empty()) return {};
  return colour + std::string(text) + kPlain;
}

// "+--rw name?   type {feature}?" behind its bars; other lines are heads.
std::string PaintLine(std::string_view line) {
  const size_t mark = line.find_first_not_of(" |");
  if (mark == line.npos || !line.substr(mark + 1).starts_with("--")) return Painted(kBold, line);
  const size_t name = std::min(line.find_first_of(" :", mark), line.size());
  const size_t type = std::min(line.find("   ", name), line.size());
  const size_t tail =
      std::min(line.find_first_of("{<", std::min(type + 4, line.size())), line.size());
  const size_t features = type < line.size() ? tail : std::min(line.find(" {", name), line.size());
  return Painted(kFaint, line.substr(0, name)) +
         std::string(line.substr(name, std::min(type, features) - name)) +
         (type < line.size() ? Painted(kTypeColour, line.substr(type, features - type)) : "") +
         Painted(kFeatureColour, line.substr(features));
}

}  // namespace

bool UseColours() {
  const char* off = std::getenv("NO_COLOR");
  const char* term = std::getenv("TERM");
  if (off != nullptr && *off != '\0') return false;
  return term != nullptr && std::string_view(term) != "dumb" && isatty(STDOUT_FILENO) != 0;
}

std::string PaintTree(std::string_view tree) {
  std::string painted;
  while (!tree.empty()) {
    const size_t end = std::min(tree.find('\n'), tree.size());
    painted += PaintLine(tree.substr(0, end)) + "\n";
    tree.remove_prefix(std::min(end + 1, tree.size()));
  }
  return painted;
}

Progress::Progress(const char* what) : what_(what) {
  if (isatty(STDERR_FILENO) == 0) return;
  try {
    thread_ = std::thread(&Progress::Run, this);
  } catch (const std::system_error&) {
    done_ = true;  // no thread, no progress
  }
}

Progress::~Progress() {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    done_ = true;
  }
  ended_.notify_all();
  if (thread_.joinable()) thread_.join();
}

void Progress::Run() {
  std::unique_lock<std::mutex> lock(mutex_);
  unsigned seconds = 0;
  while (!ended_.wait_for(lock, std::chrono::seconds(1), [this] { return done_; })) {
    ++seconds;
    static_cast<void>(std::fprintf(stderr, "\rqmodel: %s, %u s", what_, seconds));
    static_cast<void>(std::fflush(stderr));
  }
  if (seconds > 0) static_cast<void>(std::fputs("\r\x1b[K", stderr));
}
