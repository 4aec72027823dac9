// SPDX-License-Identifier: BSD-3-Clause
// Reading and writing with each allocation refused in turn.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "compiler/convert.h"
#include "tests/compiler/refusal/refused_memory.h"

namespace compiler {
namespace {

// Models that reach every step of the readers and the writer, with errors.
class ConvertRefusal : public testing::TestWithParam<bool> {
 protected:
  ConvertRefusal() {
    path_ = testing::TempDir() + "qmodel-test-XXXXXX";
    EXPECT_NE(nullptr, mkdtemp(path_.data()));
    Write("m.yang",
          "module m {\n"
          "  namespace urn:m; prefix m;\n"
          "  import e { prefix x; }\n"
          "  x:note 'of the\r\nmodule' { x:mark; }\n"
          "  container c {\n"
          "    description \"a text of two\n"
          "      lines, with \\t and \\d\" + 'in parts';\n"
          "    must 'a < \"b\"';\n"
          "    x:title \"a title of some length\"; x:gone; y:gone;\n"
          "  }\n"
          "}\n");
    Write("e.yin",
          "<module name='e' xmlns='urn:ietf:params:xml:ns:yang:yin:1'>\n"
          "<namespace uri='urn:e'/><prefix value='e'/><include module='es'/>\n"
          "<extension name='note'><argument name='text'><yin-element value='true'/></argument>\n"
          "<description><text>a text &lt; of some<!-- c --> length</text></description>\n"
          "</extension><extension name='mark'/></module>\n");
    Write("es.yang",
          "submodule es { belongs-to e { prefix e; } extension title { argument name; } }\n");
    Write("wrong.yang", "module wrong { leaf a leaf b; 12 { x:y 'z'; } ; leaff c; \x01\n");
    Write("wrong.yin", "<module name='e' xmlns='urn:ietf:params:xml:ns:yang:yin:1'><leaf/></x>");
    Write("own.yin",
          "<module name='own' xmlns='urn:ietf:params:xml:ns:yang:yin:1' xmlns:x='urn:e'>\n"
          "<namespace uri='urn:own'/><prefix value='o'/><import module='e'><prefix value='x'/>\n"
          "</import><x:note><x:text>some text of a note</x:text></x:note></module>\n");
  }
  ~ConvertRefusal() override { std::filesystem::remove_all(path_); }

  void Write(const std::string& file, const std::string& text) const {
    std::ofstream(path_ + "/" + file) << text;
  }

  // Runs that did not miss what was refused.
  uint64_t Refuse(const std::string& file) const {
    const std::string path = path_ + "/" + file;
    return RefuseEach(
        [&path] {
          ConvertRequest request;
          request.file = path;
          JobResult result;
          {
            const Watch watch;
            result = ConvertFile(request);
          }
          RunOutcome outcome;
          outcome.refused = result.state == JobState::kNoMemory;
          for (const JobModule& module : result.modules) outcome.result += module.yin;
          for (const std::string& line : result.findings) outcome.result += line + "\n";
          return outcome;
        },
        GetParam());
  }

 private:
  std::string path_;
};

// What libxml2 does without, each once: its look at the form of a namespace's name, and
// the first of the two readings of a file in which it finds errors.
constexpr uint64_t kUnnoticedOfText = 4;
constexpr uint64_t kUnnoticedOfYin = 12;
constexpr uint64_t kUnnoticedOfWrongYin = 20;

INSTANTIATE_TEST_SUITE_P(OnceAndForGood, ConvertRefusal, testing::Bool());

TEST_P(ConvertRefusal, OfTextIsSaid) {
  EXPECT_EQ(Refuse("m.yang"), GetParam() ? 0 : kUnnoticedOfText);
}

TEST_P(ConvertRefusal, OfYinIsSaid) {
  EXPECT_EQ(Refuse("own.yin"), GetParam() ? 0 : kUnnoticedOfYin);
}

TEST_P(ConvertRefusal, OfTextWithErrorsIsSaid) {
  EXPECT_EQ(Refuse("wrong.yang"), 0U);
}

TEST_P(ConvertRefusal, OfYinWithErrorsIsSaid) {
  EXPECT_EQ(Refuse("wrong.yin"), GetParam() ? 0 : kUnnoticedOfWrongYin);
}

}  // namespace
}  // namespace compiler
