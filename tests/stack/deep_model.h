// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <functional>
#include <string>

#include <qmodel/qmodel.h>

#include "tests/support/yin_text.h"

// Models and messages that are as deep as the library lets them be, and the stack that
// a piece of work on them takes.
namespace deep_model {

// Runs `body` on a small stack, writes what it took of it beside the test's result, and
// gives it.
size_t OnSmallStack(const std::function<void()>& body);

std::string Repeat(const std::string& text, size_t times);
// `inner` in `depth` pairs of `open` and `close`.
std::string Nested(size_t depth, const std::string& open, const std::string& close,
                   const std::string& inner);
using yin_text::Module;
inline std::string Submodule(const std::string& name, const std::string& body) {
  return yin_text::Submodule(name, yin_text::BelongsTo("m") + body);
}

// Nested XML that the parser of libxml2 still takes, the root counted.
constexpr size_t kTextLevels = 257;

// A module "m" with an rpc "r" and a notification "n". The input and the notification
// nest `depth` containers "c" around `inner`, each of them by augments of the module
// onto itself.
std::string SelfAugmentedModule(size_t depth, const std::string& inner);
// A target path down to the container of that depth, in the input or the notification.
std::string PathInInput(size_t depth);
std::string PathInNotification(size_t depth);
// As deep as a target path of 3,095 characters reaches, and a text below it.
constexpr size_t kDeepest = 1700;

// A text of everything that was recorded about loads.
std::string LoadErrors(QmCtx* ctx);
// "valid", or the message of the record, which is freed.
std::string Verdict(QmErrNode* err);

// A directory that is removed with its files at the end.
class Folder {
 public:
  Folder();
  ~Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  void Write(const std::string& file, const std::string& text) const;
  const char* Dir() const { return dir_.c_str(); }

 private:
  std::string dir_;
};

}  // namespace deep_model
