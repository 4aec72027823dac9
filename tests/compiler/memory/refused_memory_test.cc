// SPDX-License-Identifier: BSD-3-Clause
// Each allocation of a call of the compiler refused in turn, those of the standard
// library and of libxml2 alike: the call says that memory is short, and nothing is left.
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xmlmemory.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <new>

#include "compiler/job.h"

namespace {

// What is counted and refused while a job runs.
struct Meter {
  bool on = false;
  bool fromThereOn = false;  // all after the refused one, too
  uint64_t refused = 0;      // the number of the allocation to refuse; 0: none
  uint64_t made = 0;
  int64_t live = 0;
};
Meter g_meter;

bool Refuses() {
  if (!g_meter.on) return false;
  ++g_meter.made;
  if (g_meter.refused == 0 || g_meter.made < g_meter.refused) return false;
  return g_meter.fromThereOn || g_meter.made == g_meter.refused;
}

void* Take(size_t size) {
  if (Refuses()) return nullptr;
  void* block = std::malloc(size == 0 ? 1 : size);
  if (g_meter.on && block != nullptr) ++g_meter.live;
  return block;
}

void Give(void* block) {
  if (g_meter.on && block != nullptr) --g_meter.live;
  std::free(block);
}

void* TakeAgain(void* block, size_t size) {
  if (block == nullptr) return Take(size);
  return Refuses() ? nullptr : std::realloc(block, size);
}

char* Duplicate(const char* text) {
  const size_t size = std::strlen(text) + 1;
  auto* copy = static_cast<char*>(Take(size));
  return copy == nullptr ? nullptr : static_cast<char*>(std::memcpy(copy, text, size));
}

}  // namespace

void* operator new(size_t size) {
  void* block = Take(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void* operator new[](size_t size) {
  return operator new(size);
}
// Who asks like this, std::stable_sort(), can do without; it is neither counted nor refused.
void* operator new(size_t size, const std::nothrow_t& /*tag*/) noexcept {
  void* block = std::malloc(size);
  if (g_meter.on && block != nullptr) ++g_meter.live;
  return block;
}
void* operator new[](size_t size, const std::nothrow_t& tag) noexcept {
  return operator new(size, tag);
}
void operator delete(void* block) noexcept {
  Give(block);
}
void operator delete[](void* block) noexcept {
  Give(block);
}
void operator delete(void* block, size_t /*size*/) noexcept {
  Give(block);
}
void operator delete[](void* block, size_t /*size*/) noexcept {
  Give(block);
}

namespace {

class RefusedMemory : public testing::Test {
 protected:
  RefusedMemory() {
    folder_ = testing::TempDir() + "qmodel-refused-XXXXXX";
    EXPECT_NE(nullptr, mkdtemp(folder_.data()));
    request_.folders = {folder_};
    request_.operands = {"m"};
    request_.withImports = true;
  }
  ~RefusedMemory() override { std::filesystem::remove_all(folder_); }

  void Write(const std::string& name, const std::string& text) const {
    std::ofstream(folder_ + "/" + name) << text;
  }

  // Runs the job with the n-th allocation refused. True: it was reached.
  bool RunRefused(uint64_t n, bool fromThereOn) {
    g_meter = Meter{true, fromThereOn, n, 0, 0};
    compiler::JobState state = compiler::JobState::kDone;
    {
      const compiler::JobResult result = compiler::RunJob(request_);
      state = result.state;
    }
    g_meter.on = false;
    const bool reached = n != 0 && g_meter.made >= n;
    EXPECT_EQ(0, g_meter.live) << "blocks are left";
    if (reached) {
      EXPECT_EQ(compiler::JobState::kNoMemory, state);
    } else {
      EXPECT_EQ(compiler::JobState::kLost, state);
    }
    return reached;
  }

  void Sweep() {
    RunRefused(0, false);  // what is made once for all, by libxml2, is made now
    RunRefused(0, false);
    for (const bool fromThereOn : {false, true}) {
      for (uint64_t n = 1; !HasFailure(); ++n) {
        SCOPED_TRACE(testing::Message() << "allocation " << n << " refused"
                                        << (fromThereOn ? " and all after it" : ""));
        if (!RunRefused(n, fromThereOn)) break;
      }
    }
  }

  std::string folder_;
  compiler::JobRequest request_;
};

TEST_F(RefusedMemory, IsSaidAndLeavesNothingBehind) {
  Write(
      "m.yang",
      "module m { yang-version 1.1; namespace urn:m; prefix m; import n { prefix n; } include s;\n"
      "feature f; feature g;\n"
      "container c { typedef t { type n:t; } leaf a { type t; must \"../b = 'x'\"; }\n"
      "  uses n:g { when \"a\"; if-feature \"f and g\"; refine x { default y; }\n"
      "    augment d { leaf e { if-feature \"f or g\"; type n:r; } } } }\n"
      "augment /m:c { choice ch { leaf b { type string; } } }\n"
      "augment /n:top { when \"n:x = 'y'\"; leaf m { type union { type int8; type leafref {\n"
      "  path /n:top; } } } }\n"
      "deviation /n:top { deviate delete { must \"1 = 1\"; } }\n"
      "leaf u { type union { type leafref { path /n:top/n:x; } } } }\n");
  Write("s.yang", "submodule s { belongs-to m { prefix m; } leaf s { type string; } }\n");
  Write("n.yang",
        "module n { namespace urn:n; prefix n; typedef t { type string; }\n"
        "typedef r { type leafref { path \"../x\"; } } extension e { argument a; }\n"
        "grouping g { leaf x { type t; n:e arg; } container d { typedef in { type int8; }\n"
        "  leaf y { type in; } } }\n"
        "container top { must \"1 = 1\"; leaf x { type t; } } }\n");
  Sweep();
}

}  // namespace

// libxml2 takes its allocator before anything else.
int main(int argc, char** argv) {
  if (xmlMemSetup(Give, Take, TakeAgain, Duplicate) != 0) return 1;
  xmlInitParser();
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
