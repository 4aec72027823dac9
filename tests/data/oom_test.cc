// SPDX-License-Identifier: BSD-3-Clause
// Every allocation of a validation is refused once, alone and with all later ones.
// A run that was refused a block must fail and leave the tree as it was given;
// only the record that says so may be missing, when there was no memory for it. The
// exceptions are counted: what a run keeps for its speed it does without, and then has
// the result of a run that nothing was refused to.
#include <gtest/gtest.h>

#include <string>

#include <qmodel/qmodel.h>

#include "tests/support/counting_memory.h"
#include "tests/support/message_fixture.h"

namespace {

using counting_memory::Refuse;
using message_fixture::Document;
using message_fixture::Schema;

constexpr char kModel[] = R"yin(
  <identity name="base"/><identity name="id1"><base name="base"/></identity>
  <typedef name="idref"><type name="identityref"><base name="base"/></type></typedef>
  <typedef name="word"><type name="string"><length value="1..8"/><pattern value="[a-z]*"/></type>
    <default value="abc"/></typedef>
  <rpc name="r"><input>
    <must condition="not(derived-from(idl, 'm:id1')) and 1 = 1.0"/>
    <leaf name="idl"><type name="idref"/></leaf>
    <leaf name="bits"><type name="bits"><bit name="b0"/><bit name="b1"/></type></leaf>
    <leaf name="un"><type name="union"><type name="int8"/><type name="word"/></type></leaf>
    <leaf name="bin"><type name="binary"/></leaf>
    <leaf name="dec"><type name="decimal64"><fraction-digits value="2"/></type></leaf>
    <leaf name="w"><type name="word"/></leaf>
    <leaf name="did"><type name="identityref"><base name="base"/></type><default value="id1"/>
      <must condition="derived-from-or-self(., 'm:id1')"/></leaf>
    <container name="c"><leaf name="x"><when condition="../../un = 'ab'"/><type name="int8"/>
      <default value="5"/></leaf>
      <leaf name="off"><when condition="../../nothing"/><type name="int8"/><default value="6"/></leaf>
    </container>
    <choice name="ch"><default value="d"/><case name="d"><leaf name="cd"><type name="string"/>
      <default value="q"/></leaf></case><leaf name="ce"><type name="string"/></leaf></choice>
    <list name="li"><key value="k"/><leaf name="k"><type name="string"/></leaf>
      <leaf name="v"><type name="string"/><default value="1"/></leaf>
      <leaf name="m"><when condition="../v = '2'"/><type name="string"/><mandatory value="true"/></leaf>
    </list>
    <leaf name="last"><must condition="(../bits = 'b0 b1') or ../dec &gt; 3 or . = ''">
      <error-message><value>wrong</value></error-message><error-app-tag value="tag"/></must>
      <type name="string"/></leaf>
  </input></rpc>
  <notification name="n"><leaf name="a"><when condition="../b = '1'"/><type name="string"/></leaf>
    <leaf name="b"><must condition="derived-from(../i, 'm:base')"/><type name="string"/></leaf>
    <leaf name="i"><type name="idref"/></leaf>
    <container name="c"><leaf name="m"><when condition="../../b = '1'"/><type name="string"/>
      <mandatory value="true"/></leaf></container></notification>)yin";

// Runs `once` with the n-th allocation refused, for each n, in both modes; it is
// told the mode and whether something was refused. Gives the number of refusals.
template <typename Run, typename Check>
uint64_t Sweep(const Run& run, const Check& check) {
  uint64_t total = 0;
  for (const Refuse mode : {Refuse::kOnce, Refuse::kFromThenOn}) {
    for (uint64_t n = 1;; ++n) {
      SCOPED_TRACE(testing::Message() << "allocation " << n << ", mode " << static_cast<int>(mode));
      const size_t before = counting_memory::LiveBlocks();
      counting_memory::RefuseNth(n, mode);
      const auto result = run();
      const uint64_t refused = counting_memory::StopRefusing();
      check(result, mode, refused);
      EXPECT_EQ(before, counting_memory::LiveBlocks());
      total += refused;
      if (refused == 0 || testing::Test::HasFailure()) break;
    }
  }
  return total;
}

class OutOfMemory : public testing::Test {
 protected:
  void SetUp() override { schema_.Load("m", kModel); }

  struct RpcResult {
    bool failed;
    std::string verdict;
    std::string tree;
  };

  RpcResult RunElement(const std::string& text) {
    const Document doc(text);
    QmErrNode* err =
        QM_CTX_ValidateRpcDataTree(schema_.ctx(), QM_INPUT_ELEMENT, doc.root(), nullptr, nullptr);
    EXPECT_EQ(0u, doc.BoundElements());
    const bool failed = err != nullptr;
    return {failed, message_fixture::Describe(err), doc.Dump()};
  }

  // `completed` is the tree after a run that nothing was refused to. Of the blocks that
  // are refused alone, as many as `benign` says make no difference to a valid request.
  void SweepElement(const std::string& text, const std::string& verdict,
                    const std::string& completed, uint64_t benign = 0) {
    const std::string given = Document(text).Dump();
    uint64_t passed = 0;
    const uint64_t refused = Sweep([&] { return RunElement(text); },
                                   [&](const RpcResult& result, Refuse mode, uint64_t wasRefused) {
                                     const bool done = !result.failed && mode == Refuse::kOnce;
                                     if (wasRefused != 0 && done) ++passed;
                                     if (wasRefused == 0 || done) {
                                       EXPECT_EQ(verdict, result.verdict);
                                       EXPECT_EQ(completed, result.tree);
                                     } else {
                                       EXPECT_EQ(given, result.tree);
                                     }
                                   });
    EXPECT_GT(refused, 0u);
    EXPECT_EQ(benign, passed);
  }

  Schema schema_;
};

// What a run keeps of the conditions that it meets, six in the request and three in the
// notification: for each a record of tokens, their array and a plan; the array of more than
// ten tokens is made larger, in the two musts of the request that have them; one table, and
// an array of operands for each condition that needs more of them than those before it.
constexpr uint64_t kBenignOfRequest = 6 * 3 + 2 + 1 + 2;
constexpr uint64_t kBenignOfNotification = 3 * 3 + 1 + 1;

constexpr char kRequest[] =
    "<r xmlns='urn:m' xmlns:p='urn:m'><idl>p:id1</idl><bits>b0 b1</bits><un>ab</un><bin>AAAA</bin>"
    "<dec>3.14</dec><li><k>1</k></li><li><k>2</k><v>2</v><m/></li><last>x</last></r>";

TEST_F(OutOfMemory, ValidRequestFailsOrIsWhole) {
  SweepElement(kRequest, "valid",
               "<r xmlns=\"urn:m\" xmlns:p=\"urn:m\"><idl>p:id1</idl><bits>b0 b1</bits><un>ab</un>"
               "<bin>AAAA</bin><dec>3.14</dec><w>abc</w><did xmlns:m=\"urn:m\">m:id1</did>"
               "<c><x>5</x></c><cd>q</cd><li><k>1</k><v>1</v></li><li><k>2</k><v>2</v><m/></li>"
               "<last>x</last></r>",
               kBenignOfRequest);
}

TEST_F(OutOfMemory, LeafrefsAreCheckedWhetherTheirTargetsAreKeptOrNot) {
  schema_.Load("l", R"yin(<rpc name="r"><input><leaf name="a"><type name="int8"/></leaf>
    <leaf name="b"><type name="leafref"><path value="../a"/></type></leaf>
    <leaf-list name="c"><type name="leafref"><path value="../b"/></type></leaf-list>
    </input></rpc>)yin");
  constexpr uint64_t kTargets = 1;
  const std::string valid = "<r xmlns=\"urn:l\"><a>1</a><b>2</b><c>3</c><c>4</c></r>";
  SweepElement(valid, "valid", valid, kTargets);
  const std::string text = "<r xmlns=\"urn:l\"><b>2</b><c>3</c><c>400</c></r>";
  SweepElement(text, "8|/l:r/c[.='400']|c has invalid value 400.|c|-", text);
}

TEST_F(OutOfMemory, RequestWithFalseMustNeverPasses) {
  const std::string text = "<r xmlns='urn:m'><dec>1</dec><last>x</last></r>";
  SweepElement(text, "18|/m:r|Failed to check must condition of r.|r|-", Document(text).Dump());
  const std::string other = "<r xmlns='urn:m'><idl>id1</idl><dec>1</dec><last>x</last></r>";
  SweepElement(other, "18|/m:r/last|wrong|last|tag", Document(other).Dump());
}

TEST_F(OutOfMemory, RequestWithAMissingLeafNeverPasses) {
  const std::string text = "<r xmlns='urn:m'><idl>id1</idl><li><k>it's</k><v>2</v></li></r>";
  SweepElement(text, "7|/m:r/li[k=\"it's\"]|Missing element: m.|m|-", Document(text).Dump());
}

TEST_F(OutOfMemory, RequestWithABadValueNeverPasses) {
  const std::string text = "<r xmlns='urn:m'><un>TOO LONG A WORD</un></r>";
  SweepElement(text, "8|/m:r/un|un has invalid value TOO LONG A WORD.|un|-", Document(text).Dump());
}

TEST_F(OutOfMemory, TextInputFailsOrPasses) {
  uint64_t passed = 0;
  const uint64_t refused = Sweep(
      [&] {
        std::string text = kRequest;
        return QM_CTX_ValidateRpcDataTree(schema_.ctx(), QM_INPUT_TEXT, text.data(), nullptr,
                                          nullptr);
      },
      [&passed](QmErrNode* err, Refuse mode, uint64_t wasRefused) {
        EXPECT_TRUE(err == nullptr || wasRefused != 0);
        if (err == nullptr && wasRefused != 0 && mode == Refuse::kOnce) ++passed;
        QM_FreeErrNode(err);
      });
  EXPECT_GT(refused, 0u);
  EXPECT_EQ(kBenignOfRequest, passed);
}

TEST_F(OutOfMemory, NotificationGives22OrItsText) {
  const std::string text = "<n xmlns='urn:m'><a>1</a><b>1</b><i>id1</i><c><m>1</m></c></n>";
  const std::string valid = "<n xmlns=\"urn:m\"><a>1</a><b>1</b><i>id1</i><c><m>1</m></c></n>";
  uint64_t passed = 0;
  const uint64_t refused =
      Sweep([&] { return message_fixture::ValidateNotif(schema_.ctx(), text); },
            [&](const std::string& result, Refuse mode, uint64_t wasRefused) {
              EXPECT_EQ(wasRefused == 0 || result != "22" ? valid : "22", result);
              if (wasRefused != 0 && result == valid && mode == Refuse::kOnce) ++passed;
            });
  EXPECT_GT(refused, 0u);
  EXPECT_EQ(kBenignOfNotification, passed);
}

}  // namespace
