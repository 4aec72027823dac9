// SPDX-License-Identifier: BSD-3-Clause
// Contexts are independent of each other: threads that each load, couple, use and
// unload modules in a context of their own see exactly what one thread alone sees.
// The thread sanitizer finds state that they share behind their backs.
#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include <qmodel/qmodel.h>

namespace {

constexpr int kThreads = 8;
constexpr int kRounds = 20;

// An augmenting and a deviating module, what they change, and a split module.
const char* const kModules[] = {"router-vlans",  "router-lite",       "router-qos",
                                "router-system", "router-interfaces", "router-alarms"};
constexpr size_t kModuleCount = std::size(kModules);

uint32_t AddText(const char* text, uint32_t length, void* arg) {
  static_cast<std::string*>(arg)->append(text, length);
  return 0;
}

uint32_t AddFailure(const char* module, const char* /*file*/, const char* message, void* arg) {
  *static_cast<std::string*>(arg) += std::string(module) + ": " + message + "\n";
  return 0;
}

void AddNode(xmlNode* node, void* arg) {
  xmlBuffer* buffer = xmlBufferCreate();
  xmlNodeDump(buffer, node->doc, node, 0, 0);
  *static_cast<std::string*>(arg) += reinterpret_cast<const char*>(xmlBufferContent(buffer));
  xmlBufferFree(buffer);
}

uint32_t AddMessage(const char* text, void* arg) {
  *static_cast<std::string*>(arg) += text;
  return 0;
}

// One life of a context, as a text of everything that was seen in it.
class Life {
 public:
  explicit Life(size_t first) : first_(first) {
    EXPECT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx_, QMODEL_EXAMPLES "/models"));
  }
  ~Life() { QM_CTX_Delete(ctx_); }
  Life(const Life&) = delete;
  Life& operator=(const Life&) = delete;

  std::string Run() {
    EachModule(QM_CTX_LoadModule);
    Look();
    EachModule(QM_CTX_UnloadModule);
    Look();
    EachModule(QM_CTX_LoadModule);
    Look();
    return seen_;
  }

 private:
  // In an order that depends on where this life begins.
  void EachModule(uint32_t (*step)(QmCtx*, const char*)) {
    for (size_t i = 0; i < kModuleCount; ++i) {
      const uint32_t status = step(ctx_, kModules[(first_ + i) % kModuleCount]);
      seen_ += std::to_string(status) + " ";
    }
  }

  void Look() {
    for (const char* name : kModules) {
      QmsModule* module = QM_CTX_GetModuleByModName(ctx_, name);
      if (module == nullptr) continue;
      EXPECT_EQ(QM_OK, QM_MOD_PrintModelTree(module, AddText, &seen_));
    }
    seen_ += std::to_string(QM_CTX_LoadMemory(ctx_, "<module name='bad'/>")) + "\n";
    EXPECT_EQ(QM_OK, QM_CTX_ScanAllSchemaLoadFail(ctx_, AddFailure, &seen_));
    for (const char* name : {"ping.xml", "restart-bad-delay.xml", "reset-counters.xml"}) {
      Request(name);
    }
    Notify("alarm-link-down.xml");
    Notify("alarm-no-severity.xml");
  }

  static std::string ReadMessage(const std::string& name) {
    std::ifstream file(QMODEL_EXAMPLES "/messages/" + name);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }

  void Request(const char* name) {
    std::string text = ReadMessage(name);
    QmErrNode* err = QM_CTX_ValidateRpcDataTree(ctx_, QM_INPUT_TEXT, text.data(), AddNode, &seen_);
    const char* message = err == nullptr ? "valid" : QM_GetErrorMessage(err);
    seen_ += std::string(message == nullptr ? "-" : message) + "\n";
    QM_FreeErrNode(err);
  }

  void Notify(const char* name) {
    const uint32_t status =
        QM_CTX_ValidateNotifDataTree(ctx_, ReadMessage(name).c_str(), AddMessage, &seen_);
    seen_ += std::to_string(status) + "\n";
  }

  QmCtx* ctx_ = QM_CTX_Create(QM_LOAD_IMPORTS);
  size_t first_;
  std::string seen_;
};

void LiveAgain(size_t first, const std::string& expected, int* differing) {
  for (int round = 0; round < kRounds; ++round) {
    if (Life(first).Run() != expected) ++*differing;
  }
}

TEST(ThreadsWithContexts, LoadUseAndUnloadSideBySide) {
  std::vector<std::string> expected;
  for (size_t first = 0; first < kModuleCount; ++first) expected.push_back(Life(first).Run());
  ASSERT_NE(std::string::npos, expected[0].find("+--rw interfaces")) << expected[0];
  ASSERT_NE(std::string::npos, expected[0].find("valid")) << expected[0];
  std::vector<int> differing(kThreads, 0);
  std::vector<std::thread> threads;
  for (size_t i = 0; i < kThreads; ++i) {
    const size_t first = i % kModuleCount;
    threads.emplace_back(LiveAgain, first, std::cref(expected[first]), &differing[i]);
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(std::vector<int>(kThreads, 0), differing);
}

// The first context of a process may be made in any thread, or in all at once.
TEST(ThreadsWithContexts, FirstContextsAreMadeAtOnce) {
  std::vector<std::string> seen(kThreads);
  std::vector<std::thread> threads;
  for (std::string& text : seen) {
    threads.emplace_back([&text] { text = Life(0).Run(); });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(std::vector<std::string>(kThreads, seen[0]), seen);
  EXPECT_NE(std::string::npos, seen[0].find("valid")) << seen[0];
}

}  // namespace
