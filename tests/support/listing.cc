// SPDX-License-Identifier: BSD-3-Clause
#include "tests/support/listing.h"

#include <dirent.h>
#include <dlfcn.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <map>
#include <mutex>
#include <random>

namespace {

struct Listing {
  std::vector<dirent> entries;
  size_t next = 0;
};

// Only directories that are open have one.
using Listings = std::map<DIR*, Listing>;

std::atomic<uint32_t> g_seed{0};
std::mutex g_mutex;

Listings& Open() {
  static Listings listings;
  return listings;
}

// The C library's function of that name.
template <typename Func>
Func* Real(const char* name) {
  void* symbol = dlsym(RTLD_NEXT, name);
  Func* func = nullptr;
  static_assert(sizeof func == sizeof symbol);
  std::memcpy(&func, &symbol, sizeof func);
  return func;
}

std::vector<dirent> ReadWhole(DIR* dir) {
  static dirent* (*const realReadDir)(DIR*) = Real<dirent*(DIR*)>("readdir");
  std::vector<dirent> entries;
  while (const dirent* entry = realReadDir(dir)) {
    dirent copy{};
    // A record ends behind its name.
    std::memcpy(&copy, entry, std::min<size_t>(entry->d_reclen, sizeof copy));
    entries.push_back(copy);
  }
  return entries;
}

// The same names in the same order, whatever the file system did; then shuffled.
// Not with std::shuffle(), which each standard library does in its own way.
void Order(std::vector<dirent>* entries) {
  std::sort(entries->begin(), entries->end(),
            [](const dirent& a, const dirent& b) { return std::strcmp(a.d_name, b.d_name) < 0; });
  std::mt19937 random(g_seed.load());
  for (size_t i = entries->size(); i > 1; --i)
    std::swap((*entries)[i - 1], (*entries)[static_cast<size_t>(random()) % i]);
}

}  // namespace

namespace listing {

void Draw(uint32_t seed) {
  g_seed = seed;
}

std::vector<std::string> Of(const std::string& dir) {
  std::vector<std::string> files;
  DIR* open = opendir(dir.c_str());
  while (const dirent* entry = open == nullptr ? nullptr : readdir(open))
    if (entry->d_name[0] != '.') files.push_back(entry->d_name);
  if (open != nullptr) closedir(open);
  return files;
}

void DrawWithFirst(const std::string& dir, const std::string& file) {
  constexpr uint32_t kManyOrders = 1000;
  for (uint32_t i = 0; i < kManyOrders; ++i) {
    const std::vector<std::string> files = Of(dir);
    if (!files.empty() && files.front() == file) return;
    Draw(g_seed + 1);
  }
}

}  // namespace listing

extern "C" {

dirent* readdir(DIR* dir) {
  const std::lock_guard<std::mutex> guard(g_mutex);
  const auto [place, isNew] = Open().try_emplace(dir);
  Listing& listing = place->second;
  if (isNew) {
    listing.entries = ReadWhole(dir);
    Order(&listing.entries);
  }
  return listing.next < listing.entries.size() ? &listing.entries[listing.next++] : nullptr;
}

int closedir(DIR* dir) {
  static int (*const realCloseDir)(DIR*) = Real<int(DIR*)>("closedir");
  const std::lock_guard<std::mutex> guard(g_mutex);
  Open().erase(dir);
  return realCloseDir(dir);
}

}  // extern "C"
