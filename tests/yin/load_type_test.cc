// SPDX-License-Identifier: BSD-3-Clause
#include "yin/load_type.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <qmodel/error.h>

#include <string>
#include <vector>

#include "tests/support/counting_memory.h"
#include "tests/support/type_fixture.h"
#include "types/type.h"
#include "yin/load_number.h"
#include "yin/load_restriction.h"

using type_fixture::Module;
using type_fixture::ParseAndDump;
using type_fixture::Type;

namespace {

struct Row {
  const char* xml;
  const char* dump;
};

template <size_t N>
void ExpectTypes(const Row (&rows)[N], uint32_t loadFlags = 0) {
  for (const Row& row : rows) {
    SCOPED_TRACE(row.xml);
    EXPECT_EQ(row.dump, ParseAndDump(row.xml, loadFlags));
  }
}

TEST(GetBaseTypeFromTypeName, KnowsTheBuiltInNames) {
  constexpr const char* kNames[] = {"binary",  "bits",        "boolean",     "decimal64",
                                    "empty",   "enumeration", "identityref", "instance-identifier",
                                    "int8",    "int16",       "int32",       "int64",
                                    "leafref", "string",      "uint8",       "uint16",
                                    "uint32",  "uint64",      "union"};
  for (uint32_t i = 0; i < 19; ++i) {
    SCOPED_TRACE(kNames[i]);
    EXPECT_EQ(i + 1, QMT_LOADER_GetBaseTypeFromTypeName(kNames[i]));
  }
  for (const char* name : {"", "Int8", "int", "int88", "p:int8", "b", "xint8", "unio"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(0u, QMT_LOADER_GetBaseTypeFromTypeName(name));
  }
  EXPECT_EQ(0u, QMT_LOADER_GetBaseTypeFromTypeName(nullptr));
}

TEST(ParseTypeStmt, ABuiltInTypeWithoutRestrictionsHasNoEntries) {
  EXPECT_EQ("string", ParseAndDump("<type name='string'/>"));
  EXPECT_EQ("int8", ParseAndDump("<type name='int8'><description/><x/><!-- c -->text</type>"));
}

TEST(ParseTypeStmt, ATypedefNameIsKeptWithItsModule) {
  constexpr Row kRows[] = {
      {"<type name='t'/>", "typedef derived{m:t}"},
      {"<type name='p:t'/>", "typedef derived{m:t}"},
      {"<type name='o:t'/>", "typedef derived{other:t}"},
      {"<type name='p:int8'/>", "typedef derived{m:int8}"},
      {"<type name='x:t'/>", "QM_INVALID"},
      {"<type name=''/>", "QM_INVALID"},
      {"<type name='a b'/>", "QM_INVALID"},
  };
  ExpectTypes(kRows);
}

TEST(ParseTypeStmt, ANamePartHasAtMost64Characters) {
  const std::string name(64, 'n');
  EXPECT_EQ("typedef derived{other:" + name + "}", ParseAndDump("<type name='o:" + name + "'/>"));
  EXPECT_EQ("QM_INVALID", ParseAndDump("<type name='o:" + name + "n'/>"));
}

TEST(ParseTypeStmt, EntriesStandInKindOrder) {
  EXPECT_EQ("typedef derived{m:t} length{1..2} pattern{a} flags=3",
            ParseAndDump("<type name='t'><pattern value='a'/><length value='1..2'/></type>"));
}

TEST(ParseTypeStmt, RestrictionsAreNotMatchedWithTheType) {
  constexpr Row kRows[] = {
      {"<type name='string'><enum name='a'/></type>", "string enum{a=0}"},
      {"<type name='string'><type name='int8'/></type>", "string union{int8}"},
      {"<type name='int32'><length value='1..5'/></type>", "int32 length{1..5} flags=3"},
      {"<type name='string'><range value='1..5'/></type>", "QM_INVALID"},
      {"<type name='boolean'><range value='1..5'/></type>", "QM_INVALID"},
      {"<type name='union'><range value='1'/></type>", "QM_INVALID"},
  };
  ExpectTypes(kRows);
}

TEST(ParseTypeStmt, ChildrenAreRecognisedByTheirExactNameInAnyNamespace) {
  constexpr Row kRows[] = {
      {"<type name='string'><Pattern value='a'/><patterns value='b'/></type>", "string"},
      {"<type name='string' xmlns:x='u'><x:pattern value='a'/></type>", "string pattern{a}"},
  };
  ExpectTypes(kRows);
}

TEST(ParseTypeStmt, OnlyTheFirstOfASingleRestrictionIsRead) {
  constexpr Row kRows[] = {
      {"<type name='int8'><range value='1..2'/><range value='junk'/></type>",
       "int8 range{1..2} flags=3"},
      {"<type name='string'><length value='1'/><length value='junk'/></type>",
       "string length{1..1} flags=3"},
      {"<type name='decimal64'><fraction-digits value='2'/><fraction-digits value='99'/></type>",
       "decimal64 fraction{2}"},
      {"<type name='leafref'><path value='/a'/><path value='junk'/></type>",
       "leafref path{/m:a 1}"},
  };
  ExpectTypes(kRows);
}

TEST(ParseTypeStmt, MissingArgumentsAreRefused) {
  for (const char* child : {"<base/>", "<bit/>", "<enum/>", "<fraction-digits/>", "<length/>",
                            "<path/>", "<pattern/>", "<range/>", "<type/>",
                            "<bit name='a'><position/></bit>", "<enum name='a'><value/></enum>"}) {
    SCOPED_TRACE(child);
    EXPECT_EQ("QM_INVALID", ParseAndDump("<type name='int8'>" + std::string(child) + "</type>"));
  }
}

TEST(ParseTypeStmt, AnEmptyArgumentIsNotMissing) {
  EXPECT_EQ("string enum{=0} pattern{}",
            ParseAndDump("<type name='string'><enum name=''/><pattern value=''/></type>"));
}

TEST(ParseTypeStmt, ANullRecordIsRefused) {
  Module module;
  xmlDoc* doc = xmlParseMemory("<type name='int8'/>", 19);
  EXPECT_EQ(QM_INVALID,
            QMT_LOADER_ParseTypeStmt(module.Get(), xmlDocGetRootElement(doc), 31, nullptr));
  EXPECT_TRUE(module.Messages().empty());
  xmlFreeDoc(doc);
}

TEST(ParseTypeStmt, AMissingNameIsRecorded) {
  Module module;
  Type type(&module);
  EXPECT_EQ(QM_INVALID, type.Parse("<type/>"));
  EXPECT_EQ(std::vector<std::string>{"Failed to get value of statement \"typeName\"."},
            module.Messages());
}

TEST(ParseTypeStmt, AFailedRestrictionIsRecordedWithTheTypesName) {
  Module module;
  Type type(&module);
  EXPECT_EQ(QM_INVALID, type.Parse("<type name='x:t'/>"));
  EXPECT_EQ(std::vector<std::string>{"Failed to parse value \"x:t\" of statement \"type\"."},
            module.Messages());
}

TEST(ParseTypeStmt, AFailedMemberIsRecordedBeforeItsUnion) {
  Module module;
  Type type(&module);
  EXPECT_EQ(QM_INVALID,
            type.Parse("<type name='union'><type name='int8'><range value='z'/></type></type>"));
  const std::vector<std::string> expected = {
      "Failed to parse value \"int8\" of statement \"type\".",
      "Failed to parse value \"union\" of statement \"type\"."};
  EXPECT_EQ(expected, module.Messages());
}

TEST(ParseTypeStmt, ASecondTypeReplacesOneWithoutRestrictions) {
  Module module;
  Type type(&module);
  EXPECT_EQ(QM_OK, type.Parse("<type name='int8'/>"));
  EXPECT_EQ(QM_OK, type.Parse("<type name='string'><pattern value='a'/></type>"));
  EXPECT_EQ("string pattern{a}", type.Dump());
}

TEST(ParseTypeStmt, ASecondTypeWithoutRestrictionsDropsThoseOfTheFirst) {
  Module module;
  Type type(&module);
  EXPECT_EQ(QM_OK, type.Parse("<type name='int8'><range value='1..2'/></type>"));
  EXPECT_EQ(QM_OK, type.Parse("<type name='string'/>"));
  EXPECT_EQ("string", type.Dump());
}

TEST(ParseTypeStmt, ASecondTypeWithRestrictionsIsRefusedWithoutAMessage) {
  Module module;
  Type type(&module);
  EXPECT_EQ(QM_OK, type.Parse("<type name='int8'><range value='1..2'/></type>"));
  EXPECT_EQ(QM_INVALID, type.Parse("<type name='string'><pattern value='a'/></type>"));
  EXPECT_TRUE(module.Messages().empty());
}

TEST(ParseTypeStmt, TheCounterOfAKindDoesNotWrap) {
  std::string xml = "<type name='bits'>";
  for (int i = 0; i < 65535; ++i) xml += "<bit name='b'/>";
  {
    Module module;
    Type type(&module);
    EXPECT_EQ(QM_OK, type.Parse(xml + "</type>"));
    const auto* body = static_cast<QmtConsBit*>(QMT_TYPE_GetTypeConsDataByConsType(type.Get(), 2));
    ASSERT_NE(nullptr, body);
    EXPECT_EQ(65535u, body->count);
    EXPECT_EQ(65534u, body->items[65534].position);
  }
  EXPECT_EQ("QM_INVALID", ParseAndDump(xml + "<bit name='b'/></type>"));
}

TEST(CountAndMark, MarksEachRecognisedChildWithTheBitOfItsKind) {
  const std::string xml =
      "<type><base/><bit/><enum/><fraction-digits/><length/><path/><pattern/><range/><type/>"
      "<bit/><units/><require-instance/></type>";
  xmlDoc* doc = xmlParseMemory(xml.c_str(), static_cast<int>(xml.size()));
  QmtTypeCounters counters = {};
  EXPECT_EQ(QM_OK, QMT_LOADER_CountAndMarkTypeSubElem(xmlDocGetRootElement(doc), &counters));
  constexpr uintptr_t kMarks[] = {0x1, 0x2, 0x4, 0x8, 0x10, 0x20, 0x40, 0x80, 0x200, 0x2, 0, 0};
  const xmlNode* child = xmlDocGetRootElement(doc)->children;
  for (uintptr_t mark : kMarks) {
    ASSERT_NE(nullptr, child);
    EXPECT_EQ(mark, reinterpret_cast<uintptr_t>(child->_private)) << child->name;
    child = child->next;
  }
  EXPECT_EQ(9u, counters.distinct);
  EXPECT_EQ(2u, counters.perKind[QMT_CONS_BIT]);
  EXPECT_EQ(0u, counters.perKind[QMT_CONS_DERIVED]);
  EXPECT_EQ(1u, counters.perKind[QMT_CONS_UNION]);
  xmlFreeDoc(doc);
}

TEST(GetConsDataFillAllSegFunc, EveryKindHasOne) {
  for (uint32_t kind = 0; kind < 10; ++kind) {
    EXPECT_NE(nullptr, QMT_LOADER_GetConsDataFillAllSegFunc(kind)) << kind;
  }
  EXPECT_EQ(nullptr, QMT_LOADER_GetConsDataFillAllSegFunc(10));
}

TEST(CreateConsData, ASlotWithABodyIsRefused) {
  Module module;
  Type type(&module);
  ASSERT_EQ(QM_OK, QMT_TYPE_ExpandConstraintArray(type.Get(), 1));
  EXPECT_EQ(QM_OK, QMT_LOADER_CreateConsDataInLastConstraint(module.Get(), type.Get(), 4, 1));
  EXPECT_EQ(1u, type.Get()->consCount);
  type.Get()->consCount = 0;
  EXPECT_EQ(QM_INVALID, QMT_LOADER_CreateConsDataInLastConstraint(module.Get(), type.Get(), 4, 1));
  type.Get()->consCount = 1;
}

TEST(FillAllTypeConstraint, MoreKindsThanSlotsAreRefused) {
  Module module;
  Type type(&module);
  ASSERT_EQ(QM_OK, QMT_TYPE_ExpandConstraintArray(type.Get(), 1));
  const std::string xml = "<type name='t'><pattern value='a'/></type>";
  xmlDoc* doc = xmlParseMemory(xml.c_str(), static_cast<int>(xml.size()));
  QmtTypeCounters counters = {};
  EXPECT_EQ(QM_OK, QMT_LOADER_CountAndMarkTypeSubElem(xmlDocGetRootElement(doc), &counters));
  counters.perKind[QMT_CONS_DERIVED] = 1;  // counted, but not as a distinct kind
  EXPECT_EQ(QM_INVALID, QMT_LOADER_FillAllTypeConstraint(module.Get(), xmlDocGetRootElement(doc),
                                                         type.Get(), &counters));
  EXPECT_EQ("typedef derived{m:t}", type.Dump());
  xmlFreeDoc(doc);
}

TEST(FillBases, ResolvesPrefixes) {
  constexpr Row kRows[] = {
      {"<type name='identityref'><base name='o:i'/><base name='j'/></type>",
       "identityref base{other:i,m:j}"},
      {"<type name='identityref'><base name='x:i'/></type>", "QM_INVALID"},
  };
  ExpectTypes(kRows);
}

TEST(FillBases, AMissingNameIsRecorded) {
  Module module;
  Type type(&module);
  EXPECT_EQ(QM_INVALID, type.Parse("<type name='identityref'><base/></type>"));
  const std::vector<std::string> expected = {
      "Failed to get value of statement \"base\".",
      "Failed to parse value \"identityref\" of statement \"type\"."};
  EXPECT_EQ(expected, module.Messages());
}

TEST(FillBits, PositionsAreGivenInDocumentOrder) {
  constexpr Row kRows[] = {
      {"<type name='bits'><bit name='a'/><bit name='b'/></type>", "bits bit{a=0,b=1}"},
      {"<type name='bits'><bit name='a'/><bit name='b'><position value='5'/></bit><bit name='c'/>"
       "</type>",
       "bits bit{a=0,b=5,c=6}"},
      {"<type name='bits'><bit name='a'><position value='5'/></bit><bit name='b'><position "
       "value='2'/></bit><bit name='c'/></type>",
       "bits bit{a=5,b=2,c=6}"},
      {"<type name='bits'><bit name='a'><position value='1'/></bit><bit name='b'><position "
       "value='1'/></bit><bit name='c'/></type>",
       "bits bit{a=1,b=1,c=2}"},
      {"<type name='bits'><bit name='a'><position value=' 7x'/></bit></type>", "bits bit{a=7}"},
      {"<type name='bits'><bit name='a'><position value='1'/><position value='9'/></bit></type>",
       "bits bit{a=1}"},
      {"<type name='bits'><bit name='a'><position value='4294967294'/></bit><bit name='b'/></type>",
       "bits bit{a=4294967294,b=4294967295}"},
      {"<type name='bits'><bit name='a'><position value='4294967294'/></bit><bit name='b'/><bit "
       "name='c'/></type>",
       "QM_INVALID"},
      {"<type name='bits'><bit name='a'><position value='4294967295'/></bit></type>", "QM_INVALID"},
      {"<type name='bits'><bit name='a'><position value='-1'/></bit></type>", "QM_INVALID"},
      {"<type name='bits'><bit name='a'><position value='x'/></bit></type>", "QM_INVALID"},
      {"<type name='bits'><bit name='a'><position value='99999999999999999999'/></bit></type>",
       "QM_INVALID"},
  };
  ExpectTypes(kRows);
}

TEST(FillEnums, ValuesAreGivenInDocumentOrder) {
  constexpr Row kRows[] = {
      {"<type name='enumeration'><enum name='a'/><enum name='b'/></type>",
       "enumeration enum{a=0,b=1}"},
      {"<type name='enumeration'><enum name='a'><value value='0x10'/></enum><enum name='b'><value "
       "value='010'/></enum><enum name='c'/></type>",
       "enumeration enum{a=0,b=10,c=11}"},
      {"<type name='enumeration'><enum name='a'><value value='-5'/></enum><enum name='b'/></type>",
       "enumeration enum{a=-5,b=0}"},
      {"<type name='enumeration'><enum name='a'><value value='-2147483648'/></enum><enum "
       "name='b'><value value='2147483647'/></enum></type>",
       "enumeration enum{a=-2147483648,b=2147483647}"},
      {"<type name='enumeration'><enum name='a'><value value='2147483647'/></enum><enum name='b'/>"
       "</type>",
       "QM_INVALID"},
      {"<type name='enumeration'><enum name='a'><value value='2147483648'/></enum></type>",
       "QM_INVALID"},
      {"<type name='enumeration'><enum name='a'><value value='-2147483649'/></enum></type>",
       "QM_INVALID"},
      {"<type name='enumeration'><enum name='a'><value value=''/></enum></type>", "QM_INVALID"},
  };
  ExpectTypes(kRows);
}

TEST(FillEnums, DescriptionsAreNotKeptWithoutTheirLoadFlag) {
  constexpr Row kRows[] = {
      {"<type name='enumeration'><enum name='a'><description><text>A.</text></description></enum>"
       "</type>",
       "enumeration enum{a=0}"},
      {"<type name='enumeration'><enum name='a'><description/></enum></type>",
       "enumeration enum{a=0}"},
  };
  ExpectTypes(kRows);
}

TEST(FillEnums, TheFirstSentenceOfADescriptionIsKept) {
  constexpr Row kRows[] = {
      {"<type name='enumeration'>"
       "<enum name='a'><description><text>First one. Second.</text></description></enum>"
       "<enum name='b'/>"
       "<enum name='c'><description><text>.hidden</text></description></enum>"
       "<enum name='d'><description><!-- c --><text>No stop</text></description></enum>"
       "</type>",
       "enumeration enum{a=0(First one),b=1(NULL),c=2(NULL),d=3(No stop)}"},
      {"<type name='enumeration'><enum name='a'><description/></enum></type>", "QM_NO_MEMORY"},
      {"<type name='enumeration'><enum name='a'><description><text/></description></enum></type>",
       "QM_NO_MEMORY"},
  };
  ExpectTypes(kRows, QM_LOAD_DESCRIPTIONS);
}

TEST(FillEnums, AFailedDescriptionReleasesTheOthers) {
  Module module(QM_LOAD_DESCRIPTIONS);
  Type type(&module);
  EXPECT_EQ(QM_NO_MEMORY,
            type.Parse("<type name='enumeration'><enum name='a'><description><text>Kept."
                       "</text></description></enum><enum name='b'><description/></enum>"
                       "</type>"));
  EXPECT_EQ("enumeration enum{a=0(NULL),b=0(NULL)}", type.Dump());
}

TEST(FillDescWithOneEnum, ADescriptionWithoutTextIs22) {
  Module module(QM_LOAD_DESCRIPTIONS);
  const char* text = nullptr;
  const std::string xml = "<enum name='a'><description/></enum>";
  xmlDoc* doc = xmlParseMemory(xml.c_str(), static_cast<int>(xml.size()));
  EXPECT_EQ(QM_INVALID,
            QM_LOADER_FillDescWithOneEnum(module.Get(), xmlDocGetRootElement(doc), &text));
  EXPECT_EQ(nullptr, text);
  xmlFreeDoc(doc);
}

TEST(FillFraction, DigitsAre1To18) {
  constexpr Row kRows[] = {
      {"<type name='decimal64'><fraction-digits value='0'/></type>", "QM_INVALID"},
      {"<type name='decimal64'><fraction-digits value='1'/></type>", "decimal64 fraction{1}"},
      {"<type name='decimal64'><fraction-digits value='18'/></type>", "decimal64 fraction{18}"},
      {"<type name='decimal64'><fraction-digits value='19'/></type>", "QM_INVALID"},
      {"<type name='decimal64'><fraction-digits value=' 5x'/></type>", "decimal64 fraction{5}"},
      {"<type name='decimal64'><fraction-digits value='x'/></type>", "QM_INVALID"},
      {"<type name='decimal64'><fraction-digits value='-1'/></type>", "QM_INVALID"},
  };
  ExpectTypes(kRows);
}

TEST(FillPath, PrefixesBecomeModuleNames) {
  constexpr Row kRows[] = {
      {"<type name='leafref'><path value='/p:a/o:b/c'/></type>", "leafref path{/m:a/other:b/c 1}"},
      {"<type name='leafref'><path value='../x'/></type>", "leafref path{../m:x 1}"},
      {"<type name='leafref'><path value='../o:x/y'/></type>", "leafref path{../other:x/y 1}"},
      {"<type name='leafref'><path value=\"/a[k='1']/b\"/></type>", "leafref path{/m:a/b 1}"},
      {"<type name='leafref'><path value='/a[k=current()/../o:k]/b'/></type>",
       "leafref path{/m:a/b 1}"},
      {"<type name='leafref'><path value='a/b'/></type>", "QM_INVALID"},
      {"<type name='leafref'><path value=' /a'/></type>", "QM_INVALID"},
      {"<type name='leafref'><path value='/a /b'/></type>", "QM_INVALID"},
      {"<type name='leafref'><path value='/x:a'/></type>", "QM_INVALID"},
      {"<type name='leafref'><path value='current()/../a'/></type>", "QM_INVALID"},
      {"<type name='leafref'><path value='/a/current()'/></type>", "QM_INVALID"},
  };
  ExpectTypes(kRows);
}

TEST(FillPath, RequireInstanceIsTrueUnlessItBeginsWithF) {
  constexpr Row kRows[] = {
      {"<type name='leafref'><require-instance value='false'/><path value='/a'/></type>",
       "leafref path{/m:a 0}"},
      {"<type name='leafref'><path value='/a'/><require-instance value='fx'/></type>",
       "leafref path{/m:a 0}"},
      {"<type name='leafref'><path value='/a'/><require-instance value='true'/></type>",
       "leafref path{/m:a 1}"},
      {"<type name='leafref'><path value='/a'/><require-instance value='no'/></type>",
       "leafref path{/m:a 1}"},
      {"<type name='leafref'><path value='/a'/><require-instance/></type>", "leafref path{/m:a 1}"},
      {"<type name='leafref'><path value='/a'/><!--r--><units/><require-instance value='false'/>"
       "</type>",
       "leafref path{/m:a 0}"},
      {"<type name='leafref'><path value='/a'/><require-instance value='true'/><require-instance "
       "value='false'/></type>",
       "leafref path{/m:a 1}"},
  };
  ExpectTypes(kRows);
}

TEST(FillPatterns, AnchorsAroundAPatternAreDropped) {
  constexpr Row kRows[] = {
      {"<type name='string'><pattern value='^abc$'/></type>", "string pattern{abc}"},
      {"<type name='string'><pattern value='^'/></type>", "string pattern{^}"},
      {"<type name='string'><pattern value='$'/></type>", "string pattern{$}"},
      {"<type name='string'><pattern value='^$'/></type>", "string pattern{}"},
      {"<type name='string'><pattern value='^a'/></type>", "string pattern{^a}"},
      {"<type name='string'><pattern value='a$'/></type>", "string pattern{a$}"},
  };
  ExpectTypes(kRows);
}

TEST(FillPatterns, AnyModifierInverts) {
  EXPECT_EQ("string pattern{a,!b,!c}",
            ParseAndDump("<type name='string'><pattern value='a'><error-message/></pattern>"
                         "<pattern value='b'><modifier value='invert-match'/></pattern>"
                         "<pattern value='c'><modifier value='whatever'/></pattern></type>"));
}

TEST(FillUnion, MembersStandInDocumentOrder) {
  constexpr Row kRows[] = {
      {"<type name='union'><type name='int8'><range value='1..2'/></type><type name='o:t'/></type>",
       "union union{int8 range{1..2} flags=3, typedef derived{other:t}}"},
      {"<type name='union'><type name='union'><type name='empty'/></type><type name='string'/>"
       "</type>",
       "union union{union union{empty}, string}"},
      {"<type name='union'/>", "union"},
  };
  ExpectTypes(kRows);
}

TEST(FillTypeConstraintSeg, MoreMarkedChildrenThanItemsAreRefused) {
  Module module;
  const std::string xml = "<type><pattern value='a'/><pattern value='b'/></type>";
  xmlDoc* doc = xmlParseMemory(xml.c_str(), static_cast<int>(xml.size()));
  QmtTypeCounters counters = {};
  EXPECT_EQ(QM_OK, QMT_LOADER_CountAndMarkTypeSubElem(xmlDocGetRootElement(doc), &counters));
  uint32_t items[2] = {0, 0};
  QmtSegFiller filler = {1, sizeof(uint32_t), 0x40,
                         [](QmsModule*, xmlNode*, void* item, uint8_t*) {
                           *static_cast<uint32_t*>(item) = 1;
                           return uint32_t{0};
                         },
                         nullptr};
  EXPECT_EQ(QM_INVALID, QMT_LOADER_FillTypeConstraintSeg(module.Get(), xmlDocGetRootElement(doc),
                                                         &filler, items));
  EXPECT_EQ(1u, items[0]);
  EXPECT_EQ(0u, items[1]);
  xmlFreeDoc(doc);
}

constexpr const char* kEverything =
    "<type name='t'><base name='i'/><bit name='b'/><enum name='e'><description><text>D. E</text>"
    "</description></enum><fraction-digits value='2'/><length value='min..2'/><path value='/a'/>"
    "<pattern value='^x$'/><range value='1|2'/><type name='string'><pattern value='y'/></type>"
    "</type>";
constexpr const char* kEverythingDump =
    "typedef derived{m:t} base{m:i} bit{b=0} enum{e=0(D)} fraction{2} length{min..2u} "
    "path{/m:a 1} pattern{x} range{1..1u|2..2u} union{string pattern{y}} flags=7";

TEST(ParseTypeStmt, KeepsEveryKindAtOnce) {
  EXPECT_EQ(kEverythingDump, ParseAndDump(kEverything, QM_LOAD_DESCRIPTIONS));
}

Module* g_module = nullptr;

TEST(ParseTypeStmt, LeavesADestroyableRecordForEachRefusedAllocation) {
  Module module(QM_LOAD_DESCRIPTIONS);
  g_module = &module;
  // Two messages are kept for a module; made here, they are no blocks of the sweep.
  for (int i = 0; i < 2; ++i) {
    Type failing(&module);
    EXPECT_EQ(QM_INVALID, failing.Parse("<type name='x:t'/>"));
  }
  const uint64_t injected = counting_memory::FailEachAllocation([](bool refusing) {
    Type type(g_module);
    const uint32_t ret = type.Parse(kEverything);
    if (ret == QM_OK) {
      EXPECT_EQ(kEverythingDump, type.Dump());
    } else {
      EXPECT_TRUE(refusing);
      EXPECT_TRUE(ret == QM_NO_MEMORY || ret == QM_INVALID)
          << ret;  // 22: the path could not be converted
    }
  });
  EXPECT_GT(injected, 50u);
}

}  // namespace
