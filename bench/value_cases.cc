// SPDX-License-Identifier: BSD-3-Clause
// Checks of single values against one leaf each.
#include "bench/shared_parts.h"
#include "bench/yin_parts.h"

static std::function<Work(int64_t)> Check(const std::string& type, const std::string& value,
                                          bool keepsPatterns = false) {
  return [=](int64_t checks) {
    const std::string body =
        "<identity name='base'/><identity name='middle'><base name='m:base'/></identity>"
        "<identity name='leaf'><base name='m:middle'/></identity><container name='c'>" +
        Leaf("name", Type("string", "<length value='1..64'/>")) + Leaf("x", type) +
        "</container><container name='far'>" + StringLeaf("other") +
        "<list name='list'><key value='id'/>" + StringLeaf("id") +
        "<container name='inner'><container name='most'>" + StringLeaf("other") +
        StringLeaf("name") + "</container></container></list></container>";
    const Context ctx = LoadedContext({Module("m", "m", body)});
    if (keepsPatterns) KeepPatterns(ctx.get());
    Work work = ValueWork(ctx, "/m:c/x", value, checks);
    if (keepsPatterns) work.run();
    return work;
  };
}

std::vector<Case> ValueCases() {
  constexpr int64_t kChecks = 1000;
  const std::string pattern = Type("string", "<pattern value='[a-z0-9]{1,20}'/>");
  const auto value = [](const char* name, const std::function<Work(int64_t)>& make) {
    return Case{name, "value", kChecks, kChecks, 100, make};
  };
  return {
      value("value of an integer with a range",
            Check(Type("int32", "<range value='1..10 | 100..max'/>"), "500")),
      value("value of a boolean", Check(Type("boolean"), "true")),
      value("value of an enumeration", Check(Enumeration(8), "e5")),
      value("value of an identityref",
            Check(Type("identityref", "<base name='m:base'/>"), "m:leaf")),
      value("value of a leafref", Check(Type("leafref", "<path value='../name'/>"), "eth0")),
      value("value of a leafref with a long path",
            Check(Type("leafref", "<path value='/m:far/m:list/m:inner/m:most/m:name'/>"), "eth0")),
      value("value of a decimal64",
            Check(Type("decimal64", "<fraction-digits value='2'/>"), "2.75")),
      value("value of bits",
            Check(Type("bits", "<bit name='a'/><bit name='b'/><bit name='c'/>"), "a c")),
      value("value of a union", Check(Type("union", Type("int8") + Type("boolean")), "true")),
      Case{"value of a pattern", "value", kChecks, kChecks, 20, Check(pattern, "ge0")},
      value("value of a pattern, kept", Check(pattern, "ge0", true)),
  };
}
