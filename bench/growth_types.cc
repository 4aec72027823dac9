// SPDX-License-Identifier: BSD-3-Clause
// How types grow: their load, and the check of a value that needs all of what grows.
#include "bench/shared_parts.h"
#include "bench/yin_parts.h"

using Make = std::function<Work(int64_t)>;
using TypeOf = std::function<std::string(int64_t)>;

static std::string ModuleWithLeaf(const std::string& before, const std::string& type) {
  return Module("m", "m", before + Leaf("x", type));
}

static Make LoadOf(const TypeOf& type) {
  return [=](int64_t size) { return LoadWork({ModuleWithLeaf("", type(size))}, size); };
}

// One check, of the value that is `value` and the number of the last part.
static Make CheckOf(const TypeOf& type, const TypeOf& value) {
  return [=](int64_t size) {
    return ValueWork(LoadedContext({ModuleWithLeaf("", type(size))}), "/m:x", value(size), 1);
  };
}

static std::string TypedefChain(int64_t length) {
  std::string text = "<typedef name='t0'>" + Type("int32") + "</typedef>";
  for (int64_t i = 1; i < length; ++i) {
    text += "<typedef name='" + Numbered("t", i) + "'>" + Type("m:" + Numbered("t", i - 1)) +
            "</typedef>";
  }
  return text;
}

static std::string ChainModule(int64_t length) {
  return ModuleWithLeaf(TypedefChain(length), Type("m:" + Numbered("t", length - 1)));
}

static Work LoadChain(int64_t length) {
  return LoadWork({ChainModule(length)}, length);
}

static Work CheckChain(int64_t length) {
  return ValueWork(LoadedContext({ChainModule(length)}), "/m:x", "7", 1);
}

static std::string Union(int64_t members) {
  std::string text;
  for (int64_t i = 0; i < members; ++i)
    text += Type("enumeration", "<enum name='" + Numbered("e", i) + "'/>");
  return Type("union", text);
}

static std::string Enums(int64_t enums) {
  return Enumeration(static_cast<int>(enums));
}

static std::string Bits(int64_t bits) {
  std::string text;
  for (int64_t i = 0; i < bits; ++i) text += "<bit name='" + Numbered("e", i) + "'/>";
  return Type("bits", text);
}

static std::string LastEnum(int64_t size) {
  return Numbered("e", size - 1);
}

static std::string Range(int64_t segments) {
  std::string text;
  for (int64_t i = 0; i < segments; ++i) {
    const std::string start = std::to_string(10 * i);
    text += (i == 0 ? "" : " | ") + start + ".." + std::to_string(10 * i + 5);
  }
  return Type("int32", "<range value='" + text + "'/>");
}

static std::string LastOfRange(int64_t segments) {
  return std::to_string(10 * (segments - 1) + 3);
}

static std::string Patterns(int64_t patterns) {
  std::string text;
  for (int64_t i = 0; i < patterns; ++i)
    text += "<pattern value='[a-z]{1," + std::to_string(i + 1) + "}'/>";
  return Type("string", text);
}

static std::string OneLetter(int64_t /*size*/) {
  return "a";
}

static std::string TextType(int64_t /*size*/) {
  return Type("string", "<length value='1..max'/>");
}

static std::string LongText(int64_t length) {
  return std::string(static_cast<size_t>(length), 'a');
}

// The value's identity is `length` steps away from the base.
static Work CheckIdentityChain(int64_t length) {
  std::string before = "<identity name='i0'/>";
  for (int64_t i = 1; i <= length; ++i) {
    before += "<identity name='" + Numbered("i", i) + "'><base name='m:" + Numbered("i", i - 1) +
              "'/></identity>";
  }
  const std::string type = Type("identityref", "<base name='m:i0'/>");
  return ValueWork(LoadedContext({ModuleWithLeaf(before, type)}), "/m:x",
                   "m:" + Numbered("i", length), 1);
}

// The value's identity is the last of many in its module.
static Work CheckIdentityAmong(int64_t identities) {
  std::string before = "<identity name='base'/>";
  for (int64_t i = 0; i < identities; ++i)
    before += "<identity name='" + Numbered("i", i) + "'><base name='m:base'/></identity>";
  const std::string type = Type("identityref", "<base name='m:base'/>");
  return ValueWork(LoadedContext({ModuleWithLeaf(before, type)}), "/m:x",
                   "m:" + Numbered("i", identities - 1), 1);
}

// A leafref to a leafref, and so on.
static Work CheckLeafrefChain(int64_t length) {
  std::string before = Leaf("r0", Type("string"));
  for (int64_t i = 1; i < length; ++i)
    before +=
        Leaf(Numbered("r", i), Type("leafref", "<path value='/m:" + Numbered("r", i - 1) + "'/>"));
  const std::string type = Type("leafref", "<path value='/m:" + Numbered("r", length - 1) + "'/>");
  return ValueWork(LoadedContext({ModuleWithLeaf(before, type)}), "/m:x", "v", 1);
}

std::vector<Growth> TypeGrowth() {
  return {
      {"typedef chain", "load", 15, LoadChain},
      {"typedef chain", "one value", 15, CheckChain},
      {"union members", "load", 100, LoadOf(Union)},
      {"union members", "one value, of the last", 100, CheckOf(Union, LastEnum)},
      {"enumerations", "load", 250, LoadOf(Enums)},
      {"enumerations", "one value, the last", 250, CheckOf(Enums, LastEnum)},
      {"bits", "load", 250, LoadOf(Bits)},
      {"bits", "one value, the last", 250, CheckOf(Bits, LastEnum)},
      {"segments of a range", "load", 7, LoadOf(Range)},
      {"segments of a range", "one value, in the last", 7, CheckOf(Range, LastOfRange)},
      {"patterns of one type", "load", 50, LoadOf(Patterns)},
      {"patterns of one type", "one value", 10, CheckOf(Patterns, OneLetter)},
      {"value's length", "one value of a string", 5000, CheckOf(TextType, LongText)},
      {"identities", "one value, a chain of bases away", 15, CheckIdentityChain},
      {"identities", "one value, the last of its module", 250, CheckIdentityAmong},
      {"leafref chain", "one value", 15, CheckLeafrefChain},
  };
}
