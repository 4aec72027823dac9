// SPDX-License-Identifier: BSD-3-Clause
// Replays the files of the named folders through a fuzz target, without a fuzzer.
#include <dirent.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

static void Replay(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes((std::istreambuf_iterator<char>(file)),
                                std::istreambuf_iterator<char>());
  const std::vector<uint8_t> data(bytes.begin(), bytes.end());
  LLVMFuzzerTestOneInput(data.data(), data.size());
}

// Sorted, since a target may keep what an earlier input left: a replay is the same
// whatever the order in which the file system lists them.
static std::vector<std::string> FilesOf(const std::string& folder) {
  std::vector<std::string> files;
  DIR* dir = opendir(folder.c_str());
  if (dir == nullptr) return files;
  while (const dirent* entry = readdir(dir))
    if (entry->d_name[0] != '.') files.push_back(folder + "/" + entry->d_name);
  closedir(dir);
  std::sort(files.begin(), files.end());
  return files;
}

int main(int argc, char** argv) {
  size_t count = 0;
  for (int i = 1; i < argc; ++i) {
    for (const std::string& file : FilesOf(argv[i])) {
      Replay(file);
      ++count;
    }
  }
  std::printf("%zu inputs replayed\n", count);
  return count == 0 ? 1 : 0;
}
