// SPDX-License-Identifier: BSD-3-Clause
// Models as an enemy would write them, through the public interface.
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <functional>

#include "tests/hostile/hostile_text.h"

namespace {

TEST(HostileModel, ListTakes255KeysAndNoMore) {
  const auto list = [](size_t keys) {
    std::string names;
    for (size_t i = 0; i < keys; ++i) names += "k" + std::to_string(i) + " ";
    return ModuleText("<list name='l'><key value='" + names + "'/>" +
                      Numbered("<leaf name='k", "'><type name='int8'/></leaf>", keys) + "</list>");
  };
  EXPECT_EQ(QM_OK, LoadBesideOther(list(255)));
  EXPECT_NE(QM_OK, LoadBesideOther(list(256)));
}

// Names in every place that copies them into a buffer of 64 characters and a NUL.
TEST(HostileModel, NamesOf64CharactersFitAndOf65DoNot) {
  const std::function<std::string(const std::string&)> places[] = {
      [](const std::string& n) {
        return "<typedef name='" + n +
               "'><type name='int8'/></typedef><leaf name='l'><type name='" + n + "'/></leaf>";
      },
      [](const std::string& n) {
        return "<feature name='" + n + "'/><leaf name='l'><if-feature name='" + n +
               "'/><type name='int8'/></leaf>";
      },
      [](const std::string& n) {
        return "<identity name='" + n + "'/><identity name='i'><base name='" + n + "'/></identity>";
      },
      [](const std::string& n) {
        return "<list name='l'><key value='" + n + "'/><leaf name='" + n +
               "'><type name='int8'/></leaf></list>";
      },
      [](const std::string& n) {
        return "<container name='" + n + "'/><augment target-node='/m:" + n +
               "'><leaf name='l'><type name='int8'/></leaf></augment>";
      },
      [](const std::string& n) {
        return "<leaf name='" + n +
               "'><type name='int8'/></leaf><leaf name='r'><type name='leafref'>"
               "<path value='/m:" +
               n + "'/></type></leaf>";
      },
  };
  for (const auto& place : places) {
    const std::string fits = ModuleText(place(std::string(64, 'n')));
    SCOPED_TRACE(fits.substr(fits.find("value='m'/>") + 11, 40));
    std::string errors;
    EXPECT_EQ(QM_OK, LoadBesideOther(fits, &errors));
    EXPECT_EQ("", errors);
    EXPECT_NE(QM_OK, LoadBesideOther(ModuleText(place(std::string(65, 'n')))));
    EXPECT_NE(QM_OK, LoadBesideOther(ModuleText(place(std::string(100000, 'n')))));
  }
}

// A module `name` that is imported with the prefix `prefix`, and what others say of it.
std::string NamedModule(const std::string& name, const std::string& body) {
  return "<module name='" + name + "'" + yin_text::kNamespace +
         "><namespace uri='urn:n'/><prefix value='n'/><extension name='" + name +
         "'/><typedef name='t'><type name='int8'/></typedef><identity name='i'/>" +
         "<feature name='f'/><container name='" + name + "'/><rpc name='" + name + "'/>" + body +
         "</module>";
}

std::string UserOf(const std::string& name, const std::string& prefix) {
  return ModuleText("<import module='" + name + "'><prefix value='" + prefix +
                    "'/></import><identity name='j'><base name='" + prefix +
                    ":i'/></identity><leaf name='l'><if-feature name='" + prefix +
                    ":f'/><when condition='" + prefix + ":x'/><type name='" + prefix +
                    ":t'/></leaf><augment target-node='/" + prefix + ":" + name +
                    "'><leaf name='a'><type name='int8'/></leaf></augment>"
                    "<deviation target-node='/" +
                    prefix + ":" + name +
                    "'><deviate value='add'><must condition='1'/></deviate></deviation>");
}

std::string ErrorsOfUsing(size_t nameLength, size_t prefixLength) {
  const std::string name(nameLength, 'n');
  QmCtx* ctx = QM_CTX_Create(0);
  static_cast<void>(QM_CTX_LoadMemory(ctx, NamedModule(name, "").c_str()));
  const uint32_t status =
      QM_CTX_LoadMemory(ctx, UserOf(name, std::string(prefixLength, 'p')).c_str());
  std::string errors = LoadErrorLines(ctx);
  EXPECT_EQ(status == QM_OK, errors.empty()) << errors;
  const bool augmented =
      QM_CTX_GetTargetNode(ctx, ("/" + name + ":" + name + "/m:a").c_str(), nullptr) != nullptr;
  EXPECT_EQ(errors.empty(), augmented);
  // A module with a longer name loads, but stays until its context goes.
  EXPECT_EQ(nameLength <= 64 ? QM_OK : QM_NO_MEMORY, QM_CTX_UnloadModule(ctx, name.c_str()));
  EXPECT_EQ(QM_OK, QM_CTX_UnloadModule(ctx, "m"));
  QM_CTX_Delete(ctx);
  return errors;
}

TEST(HostileModel, ModuleNamesAndPrefixesOf64CharactersFitAndOf65DoNot) {
  EXPECT_EQ("", ErrorsOfUsing(64, 64));
  EXPECT_NE("", ErrorsOfUsing(65, 1));
  EXPECT_NE("", ErrorsOfUsing(1, 65));
  EXPECT_NE("", ErrorsOfUsing(65, 65));
  EXPECT_NE("", ErrorsOfUsing(100000, 100000));
}

TEST(HostileModel, CyclesOfTypedefsEnd) {
  QmCtx* ctx = QM_CTX_Create(0);
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(
                       ctx, ModuleText("<typedef name='a'><type name='b'/></typedef>"
                                       "<typedef name='b'><type name='a'/></typedef>"
                                       "<typedef name='u'><type name='union'><type name='u'/>"
                                       "<type name='u'/></type></typedef>"
                                       "<leaf name='x'><type name='a'/></leaf>"
                                       "<leaf name='y'><type name='u'/></leaf>")
                                .c_str()));
  QmsNode* x = QM_CTX_GetTargetNode(ctx, "/m:x", nullptr);
  QmsNode* y = QM_CTX_GetTargetNode(ctx, "/m:y", nullptr);
  EXPECT_EQ(QM_VALUE_BAD_DERIVED, QM_NODE_ValidateValue(x, QM_INPUT_TEXT, "1"));
  EXPECT_EQ(QM_VALUE_BAD_UNION, QM_NODE_ValidateValue(y, QM_INPUT_TEXT, "1"));
  EXPECT_EQ(nullptr, QM_NODE_GetDefaultValueStr(x));
  QM_CTX_Delete(ctx);
}

TEST(HostileModel, CyclesOfIdentitiesAndLeafrefsEnd) {
  QmCtx* ctx = QM_CTX_Create(0);
  ASSERT_EQ(
      QM_OK,
      QM_CTX_LoadMemory(
          ctx, ModuleText("<identity name='a'><base name='b'/><base name='b'/></identity>"
                          "<identity name='b'><base name='a'/><base name='a'/></identity>"
                          "<identity name='c'/>"
                          "<leaf name='x'><type name='identityref'><base name='c'/></type></leaf>"
                          "<leaf name='y'><type name='leafref'><path value='../z'/></type></leaf>"
                          "<leaf name='z'><type name='leafref'><path value='../y'/></type></leaf>")
                   .c_str()));
  QmsNode* x = QM_CTX_GetTargetNode(ctx, "/m:x", nullptr);
  QmsNode* y = QM_CTX_GetTargetNode(ctx, "/m:y", nullptr);
  EXPECT_EQ(QM_VALUE_BAD_IDENTITY, QM_NODE_ValidateValue(x, QM_INPUT_TEXT, "m:a"));
  EXPECT_EQ(QM_VALUE_BAD_LEAFREF, QM_NODE_ValidateValue(y, QM_INPUT_TEXT, "1"));
  EXPECT_EQ(nullptr, QM_NODE_GetLeafrefTargetNode(y, 1));
  QM_CTX_Delete(ctx);
}

TEST(HostileModel, AugmentsThatFormARingStayApart) {
  std::string errors;
  EXPECT_EQ(QM_OK,
            LoadBesideOther(ModuleText("<import module='m2'><prefix value='n'/></import>"
                                       "<augment target-node='/n:a/m:b'><container name='c'/>"
                                       "</augment><augment target-node='/n:a/m:b/m:c'>"
                                       "<container name='b'/></augment>"),
                            &errors));
  EXPECT_EQ("", errors);
}

TEST(HostileModel, NumbersAtAndOverTheirLimits) {
  const auto enums = [](const std::string& value) {
    return ModuleText("<leaf name='l'><type name='enumeration'><enum name='a'><value value='" +
                      value + "'/></enum><enum name='b'/></type></leaf>");
  };
  EXPECT_EQ(QM_OK, LoadBesideOther(enums("2147483646")));
  EXPECT_NE(QM_OK, LoadBesideOther(enums("2147483647"))) << "b would be 2147483648";
  EXPECT_EQ(QM_OK, LoadBesideOther(enums("-2147483648")));
  EXPECT_NE(QM_OK, LoadBesideOther(enums("-2147483649")));
  EXPECT_NE(QM_OK, LoadBesideOther(enums("99999999999999999999999")));
  const auto bits = [](const std::string& position) {
    return ModuleText("<leaf name='l'><type name='bits'><bit name='a'><position value='" +
                      position + "'/></bit><bit name='b'/></type></leaf>");
  };
  EXPECT_EQ(QM_OK, LoadBesideOther(bits("4294967294")));
  EXPECT_NE(QM_OK, LoadBesideOther(bits("4294967295")));
  EXPECT_NE(QM_OK, LoadBesideOther(bits("-1")));
  const auto range = [](const std::string& text) {
    return ModuleText("<leaf name='l'><type name='uint64'><range value='" + text +
                      "'/></type></leaf>");
  };
  EXPECT_EQ(QM_OK, LoadBesideOther(range("0..18446744073709551615")));
  EXPECT_NE(QM_OK, LoadBesideOther(range("0..18446744073709551616")));
  EXPECT_EQ(QM_OK, LoadBesideOther(range(Repeat("1|", 127) + "1")));
  EXPECT_NE(QM_OK, LoadBesideOther(range(Repeat("1|", 1000) + "1")));
}

TEST(HostileModel, WhatIsNoModuleIsRefused) {
  const std::string texts[] = {
      "",
      " ",
      "no xml",
      "<module",
      "<submodule name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1'/>",
      "<module xmlns='urn:ietf:params:xml:ns:yang:yin:1'/>",
      "<html/>",
      ModuleText("") + "x",
      ModuleText("<leaf name='l'/>"),
      ModuleText("<leaf/>"),
      ModuleText("<leaf name='l'><type/></leaf>"),
      ModuleText("<yang-version value='2'/>"),
      ModuleText("<rpc name='a'><input><leaf name='x'><type name='p:t'/></leaf></input></rpc>"),
      ModuleText("<container name='c'><config value='maybe'/></container>"),
      ModuleText("<list name='l'><key value='k'/></list>"),
      ModuleText("<augment target-node='relative'/>"),
      ModuleText("<augment target-node='/p:x'/>"),
      ModuleText("<deviation target-node='/m:x'><deviate value='Add'/></deviation>"),
      ModuleText("<include module='../../etc/passwd'/>"),
      ModuleText("<container name='c'>" + Repeat("<container name='c'>", 300) +
                 Repeat("</container>", 300) + "</container>"),
  };
  for (const std::string& text : texts) {
    SCOPED_TRACE(text.substr(0, 200));
    EXPECT_NE(QM_OK, LoadBesideOther(text));
  }
}

TEST(HostileModel, NestingUpToTheParsersLimitLoads) {
  // The module is one level, so 256 containers reach the limit of 257 open elements.
  const auto nested = [](size_t levels) {
    return ModuleText(Repeat("<container name='c'>", levels) + Repeat("</container>", levels));
  };
  EXPECT_EQ(QM_OK, LoadBesideOther(nested(256)));
  EXPECT_NE(QM_OK, LoadBesideOther(nested(257)));
}

TEST(HostileModel, CommentsInstructionsAndCdataEverywhereAreHarmless) {
  const std::string noise = "<!-- c --><?pi x?>";
  std::string errors;
  EXPECT_EQ(QM_OK,
            LoadBesideOther(noise + "<module name='m' xmlns='urn:ietf:params:xml:ns:yang:yin:1'>" +
                                noise + "<namespace uri='urn:m'/>" + noise + "<prefix value='m'>" +
                                noise + "</prefix><container name='c'>" + noise +
                                "<![CDATA[ x ]]><leaf name='l'>" + noise + "<type name='string'>" +
                                noise + "<length value='1'/>" + noise +
                                "</type></leaf></container></module>" + noise,
                            &errors));
  EXPECT_EQ("", errors);
}

TEST(HostileModel, EntitiesReadNothing) {
  const std::string dtd =
      "<!DOCTYPE module [<!ENTITY e SYSTEM 'file:///etc/passwd'><!ENTITY t 'string'>]>";
  EXPECT_EQ(QM_OK,
            LoadBesideOther(dtd + ModuleText("&e;<leaf name='l'><type name='string'/></leaf>")));
  EXPECT_NE(QM_OK, LoadBesideOther(dtd + ModuleText("<leaf name='l'><type name='x&e;'/></leaf>")));
}

TEST(HostileModel, TextsWithoutEndAreCutOrRefused) {
  const std::string longText(5 * 1024 * 1024, 'x');
  EXPECT_EQ(QM_OK, LoadBesideOther(
                       ModuleText("<description><text>" + longText + "</text></description>")));
  EXPECT_EQ(QM_OK,
            LoadBesideOther(ModuleText("<leaf name='l'><type name='string'/><default value='" +
                                       longText + "'/></leaf>")));
  std::string errors;
  EXPECT_NE(QM_OK, LoadBesideOther(ModuleText("<container name='c'><config value='" + longText +
                                              "'/></container>"),
                                   &errors));
  EXPECT_NE(std::string::npos, errors.find("Failed to parse value \"xxx"));
  EXPECT_LT(errors.size(), 2000u) << "messages are cut at 511 characters";
}

TEST(HostileModel, PatternsThatDoNotCompileRejectEveryValue) {
  QmCtx* ctx = QM_CTX_Create(0);
  ASSERT_EQ(QM_OK, QM_CTX_LoadMemory(
                       ctx, ModuleText("<leaf name='l'><type name='string'><pattern value='" +
                                       Repeat("(", 1000) + Repeat(")", 1000) + "'/></type></leaf>")
                                .c_str()));
  EXPECT_EQ(QM_VALUE_BAD_PATTERN,
            QM_NODE_ValidateValue(QM_CTX_GetTargetNode(ctx, "/m:l", nullptr), QM_INPUT_TEXT, "x"));
  QM_CTX_Delete(ctx);
}

}  // namespace
