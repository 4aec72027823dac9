// SPDX-License-Identifier: BSD-3-Clause
#pragma once
// Calls of the client in this process, with each of its allocations refused in turn.
#include <filesystem>
#include <string>
#include <vector>

// What a call came to.
struct CallOutcome {
  int status = 0;
  std::string output;
  std::string errors;
};

// A folder with room for models, for what a call keeps, and for what it writes.
class ClientFolder {
 public:
  ClientFolder();
  ~ClientFolder();
  ClientFolder(const ClientFolder&) = delete;
  ClientFolder& operator=(const ClientFolder&) = delete;

  // A name in the folder of this name: "models", "output", "caches" or "temporary".
  std::string In(const std::string& folder, const std::string& name = "") const;
  void MakeFolder(const std::string& folder, const std::string& name) const;
  void Write(const std::string& folder, const std::string& name, const std::string& text) const;

 private:
  std::filesystem::path path_;
};

// Calls the client with these words.
CallOutcome Call(const std::vector<std::string>& words);

// What is between two calls.
enum class Between {
  kNothing,      // the calls write no file that stays
  kEmptyOutput,  // what they have written is removed
  kEmptyAll      // what they have kept, too
};

// Makes the call once for each of its allocations, which is refused; with `forGood` all after
// it too. A call that does not end as it would undisturbed says that there was no memory, has
// printed nothing that it would not print undisturbed, and leaves no block, no part of a
// file and no temporary one.
void RefuseCall(const ClientFolder& folder, const std::vector<std::string>& words, Between between,
                bool forGood);
