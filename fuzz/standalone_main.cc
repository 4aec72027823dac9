// SPDX-License-Identifier: BSD-3-Clause
// Replays the files of the named folders through a fuzz target, without a fuzzer.
#include <dirent.h>

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

int main(int argc, char** argv) {
  size_t count = 0;
  for (int i = 1; i < argc; ++i) {
    DIR* dir = opendir(argv[i]);
    if (dir == nullptr) continue;
    while (const dirent* entry = readdir(dir)) {
      if (entry->d_name[0] == '.') continue;
      Replay(std::string(argv[i]) + "/" + entry->d_name);
      ++count;
    }
    closedir(dir);
  }
  std::printf("%zu inputs replayed\n", count);
  return count == 0 ? 1 : 0;
}
