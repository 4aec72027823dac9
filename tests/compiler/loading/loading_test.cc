// SPDX-License-Identifier: BSD-3-Clause
// What is written for models of a few lines, loaded by the library.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/compiler/loading/loading_helper.h"

namespace compiler {
namespace {

TEST_F(Loading, AugmentsOfAnInputThatIsNotWrittenAreCoupledInAnyOrder) {
  Module11("n", "rpc r; container c { action act; }");
  Module11("m",
           "import n { prefix n; }\n"
           "augment /n:c/n:act/n:input/m:b { leaf z { type string; } }\n"
           "augment /n:c/n:act/n:input { container b; }\n"
           "augment /n:r/n:output { leaf a { type string; } }");
  Module("k",
         "import n { prefix n; } import m { prefix m; }\n"
         "augment /n:r/n:output { leaf a2 { type string; } }\n"
         "augment /n:c/n:act/n:input/m:b { leaf y { type string; } }");
  Load({"k", "m", "n"});
  EXPECT_EQ("", Errors());
  for (const char* path :
       {"/n:r/output/m:a", "/n:r/output/k:a2", "/n:c/act/input/m:b/z", "/n:c/act/input/m:b/k:y"})
    EXPECT_TRUE(Has(path)) << path;
}

TEST_F(Loading, DeletionsFindWhatTheyDelete) {
  Module11(
      "g",
      "identity base; identity sub { base base; }\n"
      "typedef t { type identityref { base base; } }\n"
      "grouping g { leaf id { type identityref { base base; } default sub; }\n"
      "  leaf a { type string; must \"../id = 'sub'\"; must \"derived-from(../id, 'base')\"; }\n"
      "  leaf b { type t; default sub; } }");
  Module11("q", "import g { prefix g; } container c { uses g:g; }");
  Module11("m",
           "import q { prefix q; } import g { prefix g; }\n"
           "deviation /q:c/q:a { deviate delete { must \"../id = 'sub'\";\n"
           "  must \"derived-from(../q:id, 'g:base')\"; must \"../q:none\"; } }\n"
           "deviation /q:c/q:id { deviate delete { default g:sub; } }\n"
           "deviation /q:c/q:b { deviate delete { default g:sub; units none; } }");
  Load({"m", "q"});
  EXPECT_EQ("", Errors());
  for (const char* path : {"/q:c/id", "/q:c/b"})
    EXPECT_EQ(nullptr, QM_NODE_GetDefaultValueStr(QM_CTX_GetTargetNode(ctx_, path, nullptr)));
}

// The default of a typedef stays with it, and goes where another type or `mandatory` comes.
TEST_F(Loading, DeviationsChangeADefaultThatATypedefBrought) {
  Module11("q",
           "identity base; identity sub { base base; } identity other { base base; }\n"
           "typedef t { type identityref { base base; } default sub; }\n"
           "typedef u { type t; default other; }\n"
           "container c { leaf a { type t; } leaf b { type t; } leaf d { type t; }\n"
           "  leaf e { type t; } leaf f { type string; } leaf g { type t; default sub; } }");
  Module11("m",
           "import q { prefix q; }\n"
           "deviation /q:c/q:a { deviate add { default q:other; must \"1 = 1\"; } }\n"
           "deviation /q:c/q:b { deviate add { mandatory true; } }\n"
           "deviation /q:c/q:d { deviate replace { type string; } }\n"
           "deviation /q:c/q:e { deviate replace { type q:u; } }\n"
           "deviation /q:c/q:f { deviate replace { type q:u; } }\n"
           "deviation /q:c/q:g { deviate replace { type q:u; } }");
  Load({"m", "q"});
  EXPECT_EQ("", Errors());
  EXPECT_EQ(
      "module: q\n"
      "+--rw c\n"
      "   +--rw a?   q:t <q:other>\n"
      "   +--rw b    q:t\n"
      "   +--rw d?   string\n"
      "   +--rw e?   q:u\n"
      "   +--rw f?   q:u\n"
      "   +--rw g?   q:u <sub>\n",
      Tree("q"));
  const auto byDefault = [&](const std::string& leaf) {
    return QM_NODE_GetDefaultValueStr(
        QM_CTX_GetTargetNode(ctx_, ("/q:c/" + leaf).c_str(), nullptr));
  };
  for (const char* leaf : {"b", "d"}) EXPECT_EQ(nullptr, byDefault(leaf)) << leaf;
  for (const char* leaf : {"e", "f"}) EXPECT_STREQ("q:other", byDefault(leaf)) << leaf;
}

// So do a default and units that stand on the leaf, since its path does.
TEST_F(Loading, DeviationsChangeWhatCameWithThePathOfATypedef) {
  Module11("t", "typedef p { type leafref { path ../x; } default 1; units s; }");
  Module11("q",
           "import t { prefix t; } grouping g { leaf a { type t:p; } leaf b { type t:p; }\n"
           "  leaf d { type t:p; } leaf-list e { type t:p; } }\n"
           "container c { leaf x { type int8; } uses g; }");
  Module11("m",
           "import q { prefix q; }\n"
           "deviation /q:c/q:a { deviate add { default 2; units m; } }\n"
           "deviation /q:c/q:b { deviate add { mandatory true; units m; } }\n"
           "deviation /q:c/q:d { deviate replace { type string; } deviate add { units m; } }\n"
           "deviation /q:c/q:e { deviate replace { type string; } }");
  Load({"m", "q"});
  EXPECT_EQ("", Errors());
  EXPECT_EQ(
      "module: q\n+--rw c\n   +--rw x?   int8\n   +--rw a?   -> ../q:x <2>\n"
      "   +--rw b    -> ../q:x\n   +--rw d?   string\n   +--rw e*   string\n",
      Tree("q"));
  const auto units = [&](const std::string& leaf) {
    return QM_NODE_GetUnitsValueStr(QM_CTX_GetTargetNode(ctx_, ("/q:c/" + leaf).c_str(), nullptr));
  };
  for (const char* leaf : {"a", "b", "d"}) EXPECT_STREQ("m", units(leaf)) << leaf;
  EXPECT_EQ(nullptr, units("e"));
}

// Each changes what the other leaves alone, or both the type.
class DeviatedByTwo : public Loading, public testing::WithParamInterface<const char*> {};

TEST_P(DeviatedByTwo, LeafsTakeDefaultTypeAndMandatoryInEachOrder) {
  Module("t",
         "typedef d { type int8; default 5; } typedef w { type int16; default 7; }\n"
         "container c { leaf a { type int8; } leaf b { type d; } leaf k { type d; }\n"
         "  leaf f { type string; mandatory true; } leaf h { type d; } }");
  Module("y",
         "import t { prefix t; } deviation /t:c/t:a { deviate add { default 3; } }\n"
         "deviation /t:c/t:b { deviate replace { type t:w; } }\n"
         "deviation /t:c/t:k { deviate add { mandatory true; } }\n"
         "deviation /t:c/t:f { deviate replace { mandatory false; } }\n"
         "deviation /t:c/t:h { deviate replace { type t:w; } }");
  Module("z",
         "import t { prefix t; } deviation /t:c/t:a { deviate replace { type int16; } }\n"
         "deviation /t:c/t:b { deviate add { default 100; } }\n"
         "deviation /t:c/t:k { deviate replace { type t:w; } }\n"
         "deviation /t:c/t:f { deviate add { default q; } }\n"
         "deviation /t:c/t:h { deviate replace { type t:w; } }");
  std::vector<std::string> order;
  for (const char* name = GetParam(); *name != '\0'; ++name) order.emplace_back(1, *name);
  Load(order);
  EXPECT_EQ("", Errors());
  EXPECT_EQ(
      "module: t\n+--rw c\n   +--rw a?   int16 <3>\n   +--rw b?   t:w <100>\n   +--rw k    t:w\n"
      "   +--rw f?   string <q>\n   +--rw h?   t:w\n",
      Tree("t"));
}

INSTANTIATE_TEST_SUITE_P(Orders, DeviatedByTwo, testing::Values("tyz", "tzy", "ytz", "zyt"));

// What features take away takes along what the library would refuse, or wait for.
TEST_F(Loading, ModelsWithEveryFeatureOffLoadWithoutErrors) {
  Module11(
      "n",
      "feature a; identity b; identity gone { base b; if-feature a; }\n"
      "container c { leaf target { if-feature a; type uint8; } leaf ref { type leafref {\n"
      "    path ../target; } }\n"
      "  list keyed { key k; leaf k { if-feature a; type string; } leaf v { type string; } }\n"
      "  list state { config false; leaf v { if-feature a; type string; } }\n"
      "  list l { key k; unique u; leaf k { type string; } leaf u { if-feature a; type int8; } }\n"
      "  leaf def { type identityref { base b; } default gone; }\n"
      "  leaf enum { type enumeration { enum x { if-feature a; } enum y; } default x; }\n"
      "  leaf cond { when \"../target\"; must \"not(../target) or ../def\"; type string; } }");
  Module11("m",
           "import n { prefix n; }\n"
           "augment /n:c/n:keyed { leaf w { type string; } }\n"
           "deviation /n:c/n:target { deviate add { default 3; } }\n"
           "deviation /n:c/n:l { deviate delete { unique u; } }\n"
           "deviation /n:c/n:def { deviate delete { default n:gone; } }\n"
           "deviation /n:c/n:enum { deviate replace { default y; } }\n"
           "deviation /n:c/n:cond { deviate delete { must \"not(../n:target) or ../n:def\"; } }");
  CompileOptions options;
  options.featuresComplete = true;
  Load({"m", "n"}, options);
  EXPECT_EQ("", Errors());
  for (const char* path : {"/n:c/target", "/n:c/keyed", "/n:c/state"}) EXPECT_FALSE(Has(path));
  EXPECT_EQ(QM_OK, QM_NODE_ValidateValue(QM_CTX_GetTargetNode(ctx_, "/n:c/ref", nullptr),
                                         QM_INPUT_TEXT, "200"));
  EXPECT_STREQ("y", QM_NODE_GetDefaultValueStr(QM_CTX_GetTargetNode(ctx_, "/n:c/enum", nullptr)));
  EXPECT_EQ(nullptr, QM_NODE_GetDefaultValueStr(QM_CTX_GetTargetNode(ctx_, "/n:c/def", nullptr)));
}

}  // namespace
}  // namespace compiler
