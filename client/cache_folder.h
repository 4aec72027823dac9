// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// The folder of the user in which what was compiled is kept: $XDG_CACHE_HOME/qmodel, or
// ~/.cache/qmodel. Nothing here is an error: what fails is as if it were not there.
#include <cstdint>
#include <string>
#include <string_view>

class CacheFolder {
 public:
  CacheFolder() = default;
  ~CacheFolder();
  CacheFolder(const CacheFolder&) = delete;
  CacheFolder& operator=(const CacheFolder&) = delete;

  // Opens the folder, makes it when it is missing. False: there is none that is the
  // caller's own and closed to all others.
  bool Open();
  // The content of an entry, which counts as used now. False: there is none.
  bool Read(uint64_t id, std::string* content) const;
  // Makes or replaces an entry, and removes the entries least recently used until all
  // are within the bound.
  void Write(uint64_t id, std::string_view content) const;

 private:
  int fd_ = -1;
};
