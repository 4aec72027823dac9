// SPDX-License-Identifier: BSD-3-Clause
// Values that refer to something: identityref and leafref.
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "tests/support/counting_memory.h"
#include "tests/support/leaf_module.h"
#include "tests/support/type_builder.h"
#include "types/type.h"
#include "values/type_check.h"

namespace {

std::string Identity(const std::string& name, std::initializer_list<std::string> bases) {
  std::string text = "<identity name='" + name + "'>";
  for (const std::string& base : bases) text += "<base name='" + base + "'/>";
  return text + "</identity>";
}

std::string IdentityLeaf(const std::string& leaf, std::initializer_list<std::string> bases) {
  std::string text = "<leaf name='" + leaf + "'><type name='identityref'>";
  for (const std::string& base : bases) text += "<base name='" + base + "'/>";
  return text + "</type></leaf>";
}

const std::string kTransport = Identity("transport", {}) + Identity("tcp", {"transport"}) +
                               Identity("tls", {"tcp"}) + Identity("other", {}) +
                               IdentityLeaf("x", {"transport"});

void AddMoreTransports(LeafModule* module) {
  module->Add("more", "<import module='m'><prefix value='mm'/></import>",
              "<identity name='quic'><base name='mm:transport'/></identity>"
              "<identity name='lost'><base name='mm:absent'/></identity>");
}

}  // namespace

TEST(IdentityrefText, NamesModuleAndIdentity) {
  LeafModule module(kTransport);
  AddMoreTransports(&module);
  struct Row {
    const char* value;
    uint32_t expected;
  };
  const Row rows[] = {
      {"m:tcp", QM_OK},
      {"m:tls", QM_OK},
      {"m:transport", QM_OK},  // the base itself
      {"more:quic", QM_OK},
      {"m:other", QM_VALUE_BAD_IDENTITY},
      {"more:lost", QM_VALUE_BAD_IDENTITY},
      {"m:absent", QM_VALUE_BAD_IDENTITY},
      {"absent:tcp", QM_VALUE_BAD_IDENTITY},
      {"tcp", QM_VALUE_BAD_IDENTITY},
      {"m:", QM_VALUE_BAD_IDENTITY},
      {":tcp", QM_VALUE_BAD_IDENTITY},
      {":", QM_VALUE_BAD_IDENTITY},
      {"", QM_VALUE_BAD_IDENTITY},
      {" m:tcp", QM_VALUE_BAD_IDENTITY},
      {"m:tcp ", QM_VALUE_BAD_IDENTITY},
      {"m:TCP", QM_VALUE_BAD_IDENTITY},
      {nullptr, QM_VALUE_BAD_IDENTITY},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.expected, module.CheckText("x", row.value))
        << (row.value == nullptr ? "NULL" : row.value);
  }
}

// Identities of one name are told apart by their modules.
TEST(IdentityrefText, NamesakeInAnotherModuleIsNotTheBase) {
  LeafModule module(kTransport);
  module.Add(
      "k", "",
      "<identity name='transport'/><identity name='tcp'><base name='transport'/></identity>");
  EXPECT_EQ(QM_OK, module.CheckText("x", "m:tcp"));
  EXPECT_EQ(QM_VALUE_BAD_IDENTITY, module.CheckText("x", "k:transport"));
  EXPECT_EQ(QM_VALUE_BAD_IDENTITY, module.CheckText("x", "k:tcp"));
}

TEST(IdentityrefText, SecondBaseIsFoundBesideAFirstOneThatLeadsNowhere) {
  LeafModule module(
      "<identity name='other'/><identity name='wanted'/><identity name='far'/>"
      "<identity name='both'><base name='other'/><base name='wanted'/></identity>"
      "<leaf name='x'><type name='identityref'><base name='wanted'/></type></leaf>");
  EXPECT_EQ(QM_OK, module.CheckText("x", "m:both"));
  EXPECT_EQ(QM_VALUE_BAD_IDENTITY, module.CheckText("x", "m:far"));
}

TEST(IdentityrefText, ModuleNameMayHave64Characters) {
  const std::string name(64, 'm');
  LeafModule module(kTransport);
  module.Add(name, "<import module='m'><prefix value='mm'/></import>",
             "<identity name='tcp'><base name='mm:transport'/></identity>");
  EXPECT_EQ(QM_OK, module.CheckText("x", (name + ":tcp").c_str()));
  EXPECT_EQ(QM_VALUE_BAD_IDENTITY, module.CheckText("x", (name + "m:tcp").c_str()));
}

TEST(IdentityrefElement, PrefixesAreNamespacesOfTheElement) {
  LeafModule module(kTransport);
  AddMoreTransports(&module);
  struct Row {
    const char* xml;
    uint32_t expected;
  };
  const Row rows[] = {
      {"<x xmlns='urn:m'>tcp</x>", QM_OK},
      {"<x xmlns='urn:m'>other</x>", QM_VALUE_BAD_IDENTITY},
      {"<x xmlns='urn:m' xmlns:p='urn:more'>p:quic</x>", QM_OK},
      {"<x xmlns='urn:m' xmlns:p='urn:more'>quic</x>", QM_VALUE_BAD_IDENTITY},
      {"<p:x xmlns:p='urn:m'>p:tcp</p:x>", QM_OK},
      {"<p:x xmlns:p='urn:m'>tcp</p:x>", QM_OK},
      {"<x xmlns='urn:m'>m:tcp</x>", QM_VALUE_BAD_IDENTITY},  // no such prefix
      {"<x xmlns='urn:m' xmlns:p='urn:absent'>p:tcp</x>",
       QM_VALUE_BAD_IDENTITY},  // namespace of no module
      {"<x xmlns='urn:absent'>tcp</x>", QM_VALUE_BAD_IDENTITY},
      {"<x>tcp</x>", QM_VALUE_BAD_IDENTITY},  // no namespace
      {"<x xmlns='urn:m' xmlns:p='urn:m'>p:</x>", QM_VALUE_BAD_IDENTITY},
      {"<x xmlns='urn:m'>:tcp</x>", QM_VALUE_BAD_IDENTITY},
      {"<x xmlns='urn:m'/>", QM_VALUE_BAD_IDENTITY},
  };
  for (const Row& row : rows) EXPECT_EQ(row.expected, module.CheckElement("x", row.xml)) << row.xml;
}

TEST(IdentityrefElement, PrefixMayHave1024Characters) {
  LeafModule module(kTransport);
  for (uint32_t length : {1024u, 1025u}) {
    const std::string prefix(length, 'p');
    const std::string xml = "<x xmlns='urn:m' xmlns:" + prefix + "='urn:m'>" + prefix + ":tcp</x>";
    EXPECT_EQ(length == 1024 ? QM_OK : QM_VALUE_BAD_IDENTITY, module.CheckElement("x", xml))
        << length;
  }
}

TEST(Identityref, AnyOfTheBasesAcceptsTheValue) {
  LeafModule module(kTransport + IdentityLeaf("y", {"other", "tcp"}));
  EXPECT_EQ(QM_OK, module.CheckText("y", "m:tls"));
  EXPECT_EQ(QM_OK, module.CheckText("y", "m:other"));
  EXPECT_EQ(QM_VALUE_BAD_IDENTITY, module.CheckText("y", "m:transport"));
}

TEST(Identityref, AnyOfTheBasesOfAnIdentityLeadsOn) {
  LeafModule module(kTransport + Identity("both", {"other", "tls"}));
  EXPECT_EQ(QM_OK, module.CheckText("x", "m:both"));
}

TEST(Identityref, TypeWithoutBasesIsNotChecked) {
  LeafModule module("<leaf name='x'><type name='identityref'/></leaf>");
  EXPECT_EQ(QM_OK, module.CheckText("x", "anything")) << "only base statements check";
}

TEST(Identityref, EmptyListOfBasesAcceptsNothing) {
  LeafModule module(kTransport);
  type_builder::Dict dict;
  type_builder::Type type(&dict, QMT_BASE_IDENTITYREF);
  type_builder::AddBases(dict.Get(), type.Get(), {});
  QmtCheckCtx checkCtx{};
  checkCtx.ctx = module.ctx();
  EXPECT_EQ(QM_VALUE_BAD_IDENTITY,
            QMT_TYPE_ValidateValueNodeAgainstRealType(type.Get(), 1, "m:tcp", &checkCtx));
}

TEST(Identityref, CircleOfIdentitiesEnds) {
  LeafModule module(Identity("root", {}) + Identity("a", {"b"}) + Identity("b", {"c"}) +
                    Identity("c", {"a"}) + IdentityLeaf("x", {"root"}));
  EXPECT_EQ(QM_VALUE_BAD_IDENTITY, module.CheckText("x", "m:a"));
  EXPECT_EQ(QM_OK, module.CheckText("x", "m:root"));
}

TEST(Identityref, ManyWaysToOneBaseAreWalkedOnce) {
  // Each level offers two ways to the next: 2^100 ways, were they all walked.
  std::string text = Identity("root", {}) + Identity("loose", {});
  std::string left = "loose";
  std::string right = "loose";
  for (int i = 0; i < 100; ++i) {
    const std::string level = std::to_string(i);
    text += Identity("l" + level, {left, right}) + Identity("r" + level, {left, right});
    left = "l" + level;
    right = "r" + level;
  }
  LeafModule module(text + IdentityLeaf("x", {"root"}) + IdentityLeaf("y", {"loose"}));
  EXPECT_EQ(QM_VALUE_BAD_IDENTITY, module.CheckText("x", "m:l99"));
  EXPECT_EQ(QM_OK, module.CheckText("y", "m:l99"));
}

TEST(Identityref, WayMayHave128BasesAndNoMore) {
  std::string text = Identity("i0", {});
  for (int i = 1; i <= 129; ++i) {
    text += Identity("i" + std::to_string(i), {"i" + std::to_string(i - 1)});
  }
  LeafModule module(text + IdentityLeaf("x", {"i0"}));
  EXPECT_EQ(QM_OK, module.CheckText("x", "m:i128"));
  EXPECT_EQ(QM_VALUE_BAD_IDENTITY, module.CheckText("x", "m:i129"));
}

TEST(Identityref, FailedAllocationGives12) {
  // More identities on the way than the check keeps without a block of its own.
  std::string text = Identity("root", {});
  for (int i = 0; i < 40; ++i) {
    text += Identity("i" + std::to_string(i), {i == 0 ? "root" : "i" + std::to_string(i - 1)});
  }
  LeafModule module(text + IdentityLeaf("x", {"root"}));
  const QmtType* type = module.TypeOf("x");
  ASSERT_NE(nullptr, type);
  static QmsNode* leaf = module.NodeOf("x");
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    const uint32_t ret = QM_NODE_ValidateValue(leaf, 1, "m:i39");
    if (refusing) {
      EXPECT_TRUE(ret == QM_OK || ret == QM_NO_MEMORY) << ret;
    } else {
      EXPECT_EQ(QM_OK, ret);
    }
  });
  EXPECT_EQ(4u, injected) << "the list grows twice; either growth is refused in both modes";
}

TEST(Leafref, ValueIsCheckedAgainstTheTargetsType) {
  LeafModule module(
      "<typedef name='ref'><type name='leafref'><path value='/m:target'/></type></typedef>"
      "<leaf name='target'><type name='int8'/></leaf>"
      "<leaf name='x'><type name='leafref'><path value='../target'/></type></leaf>"
      "<leaf name='y'><type name='leafref'><path value='../x'/></type></leaf>"
      "<leaf name='z'><type name='ref'/></leaf>");
  for (const char* leaf : {"x", "y", "z"}) {
    EXPECT_EQ(QM_OK, module.CheckText(leaf, "5")) << leaf;
    EXPECT_EQ(QM_VALUE_BAD_RANGE, module.CheckText(leaf, "500"))
        << leaf << ": the code of the target's type";
    EXPECT_EQ(QM_OK, module.CheckElement(leaf, "<x xmlns='urn:m'>5</x>")) << leaf;
  }
}

TEST(Leafref, MissingTargetGives28678) {
  LeafModule module(
      "<container name='c'/>"
      "<leaf name='x'><type name='leafref'><path value='../absent'/></type></leaf>"
      "<leaf name='y'><type name='leafref'><path value='../c'/></type></leaf>");
  EXPECT_EQ(QM_VALUE_BAD_LEAFREF, module.CheckText("x", "5"));
  EXPECT_EQ(QM_VALUE_BAD_LEAFREF, module.CheckText("y", "5")) << "a container has no type";
}

TEST(Leafref, CircleGives28678) {
  LeafModule module(
      "<leaf name='x'><type name='leafref'><path value='../y'/></type></leaf>"
      "<leaf name='y'><type name='leafref'><path value='../x'/></type></leaf>");
  EXPECT_EQ(QM_VALUE_BAD_LEAFREF, module.CheckText("x", "5"));
}

TEST(Leafref, WithoutASchemaNodeNoTargetIsFound) {
  LeafModule module(
      "<leaf name='target'><type name='int8'/></leaf>"
      "<leaf name='x'><type name='leafref'><path value='../target'/></type></leaf>");
  QmtCheckCtx checkCtx{};
  checkCtx.ctx = module.ctx();
  EXPECT_EQ(QM_VALUE_BAD_LEAFREF,
            QMT_TYPE_ValidateValueNodeAgainstRealType(module.TypeOf("x"), 1, "5", &checkCtx));
}

TEST(Leafref, MatchedTypeIsThatOfTheTarget) {
  LeafModule module(
      "<leaf name='target'><type name='union'><type name='int8'/><type name='string'/></type>"
      "</leaf><leaf name='plain'><type name='int8'/></leaf>"
      "<leaf name='x'><type name='leafref'><path value='../target'/></type></leaf>"
      "<leaf name='y'><type name='leafref'><path value='../plain'/></type></leaf>");
  const auto matched = [&](const char* leaf) {
    return QM_NODE_FindRealTypeMatchedValue(module.NodeOf(leaf), 1, "300");
  };
  const auto* members = static_cast<const QmtConsUnion*>(
      QMT_TYPE_GetTypeConsDataByConsType(module.TypeOf("target"), QMT_CONS_UNION));
  ASSERT_NE(nullptr, members);
  EXPECT_EQ(&members->members[1], matched("x"));
  EXPECT_EQ(nullptr, matched("y"));
  EXPECT_EQ(module.TypeOf("plain"), QM_NODE_FindRealTypeMatchedValue(module.NodeOf("y"), 1, "30"));
}

TEST(Leafref, InsideAUnionNeverAccepts) {
  // The target is looked up from the leaf, whose type is the union.
  LeafModule module(
      "<leaf name='target'><type name='int8'/></leaf>"
      "<leaf name='x'><type name='union'><type name='leafref'><path value='../target'/></type>"
      "</type></leaf>"
      "<leaf name='y'><type name='union'><type name='leafref'><path value='../target'/></type>"
      "<type name='string'/></type></leaf>");
  EXPECT_EQ(QM_VALUE_BAD_UNION, module.CheckText("x", "5"));
  EXPECT_EQ(QM_OK, module.CheckText("y", "5")) << "the next member is tried";
}

// The targets that a run keeps.

constexpr const char* kLeafrefs =
    "<leaf name='target'><type name='int8'/></leaf><container name='c'/>"
    "<leaf name='x'><type name='leafref'><path value='../target'/></type></leaf>"
    "<leaf name='y'><type name='leafref'><path value='../x'/></type></leaf>"
    "<leaf name='absent'><type name='leafref'><path value='../none'/></type></leaf>"
    "<leaf name='circle'><type name='leafref'><path value='../circle'/></type></leaf>"
    "<leaf name='u'><type name='union'><type name='leafref'><path value='../target'/></type>"
    "<type name='string'/></type></leaf>";

TEST(KeptTargets, ChangeNoResult) {
  LeafModule module(kLeafrefs);
  QmPointerMap targets = {};
  for (int again = 0; again < 2; ++again) {
    for (const char* leaf : {"target", "x", "y", "absent", "circle", "u"}) {
      for (const char* value : {"5", "500", "word"}) {
        EXPECT_EQ(module.CheckText(leaf, value),
                  ValidateValue(module.NodeOf(leaf), QMT_INPUT_STRING, value, &targets))
            << leaf << " " << value;
      }
    }
    EXPECT_EQ(5u, targets.count) << "one for each leaf with a leafref";
  }
  FreePointerMap(&targets);
}

TEST(KeptTargets, ThatThereIsNoMemoryForAreLookedUpAgain) {
  LeafModule module(kLeafrefs);
  QmsNode* x = module.NodeOf("x");
  QmPointerMap targets = {};
  counting_memory::RefuseNth(1, counting_memory::Refuse::kFromThenOn);
  EXPECT_EQ(QM_OK, ValidateValue(x, QMT_INPUT_STRING, "5", &targets));
  EXPECT_EQ(QM_VALUE_BAD_RANGE, ValidateValue(x, QMT_INPUT_STRING, "500", &targets));
  EXPECT_EQ(2u, counting_memory::StopRefusing());
  EXPECT_EQ(0u, targets.count);
}
