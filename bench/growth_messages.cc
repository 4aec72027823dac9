// SPDX-License-Identifier: BSD-3-Clause
// How the validation of one message grows with what the message, or the schema below its
// operation, has more and more of.
#include "bench/generate_messages.h"
#include "bench/shared_parts.h"
#include "bench/yin_parts.h"

using Make = std::function<Work(int64_t)>;
using Part = std::function<std::string(int64_t)>;

static std::string Many(int64_t count, const Part& part) {
  std::string text;
  for (int64_t i = 0; i < count; ++i) text += part(i);
  return text;
}

static Work RequestOf(const std::string& model, const std::string& content, int64_t units) {
  return RequestWork(LoadedContext({model}), Request(content), units);
}

// A request with one element for each of `size` nodes.
static Make OneOfEach(const Part& node, const Part& element, const std::string& before = "") {
  return [=](int64_t size) {
    return RequestOf(RpcModule(before, Many(size, node)), Many(size, element), size);
  };
}

// The same elements, `size` nodes that have none, and no more than that.
static Make NoneOfEach(const Part& node, const std::string& before = "") {
  return [=](int64_t size) {
    return RequestOf(RpcModule(before, StringLeaf("only") + Many(size, node)), Element("only", "v"),
                     size);
  };
}

static Make Entries(Exchange (*generate)(uint64_t, int64_t)) {
  return [generate](int64_t entries) {
    const Exchange exchange = generate(3, entries);
    return RequestWork(LoadedContext({exchange.model}), exchange.message, entries);
  };
}

static std::string NumberedLeaf(int64_t number) {
  return StringLeaf(Numbered("l", number));
}

static std::string NumberedElement(int64_t number) {
  return Element(Numbered("l", number), "v");
}

static std::string ChoiceOfLeaf(int64_t number) {
  return "<choice name='" + Numbered("h", number) + "'>" + NumberedLeaf(number) + "</choice>";
}

static std::string ListOfLeaf(int64_t number) {
  return "<list name='" + Numbered("l", number) + "'><key value='id'/>" + StringLeaf("id") +
         "</list>";
}

static std::string EntryOfList(int64_t number) {
  return Element(Numbered("l", number), Element("id", "v"));
}

static std::string ContainerOfLeaf(int64_t number) {
  return "<container name='" + Numbered("l", number) + "'>" + StringLeaf("id") + "</container>";
}

static std::string LeafWithDefault(int64_t number) {
  return Leaf(Numbered("l", number), Type("string") + "<default value='v'/>");
}

static std::string ContainerWithDefault(int64_t number) {
  return "<container name='" + Numbered("l", number) + "'>" + LeafWithDefault(0) + "</container>";
}

static std::string MandatoryLeaf(int64_t number) {
  return Leaf(Numbered("l", number), Type("string") + "<mandatory value='true'/>");
}

static std::string ConditionalLeaf(int64_t number) {
  return Leaf(Numbered("l", number), "<when condition=\"../l0\"/>" + Type("string") +
                                         "<must condition=\". = 'v' and ../l1 = 'v'\"/>");
}

static std::string DefaultIfCondition(int64_t number) {
  return Leaf(Numbered("l", number),
              "<when condition=\"../only = 'v'\"/>" + Type("string") + "<default value='v'/>");
}

static std::string DefaultIfFeature(int64_t number) {
  return Leaf(Numbered("l", number),
              "<if-feature name='m:f'/>" + Type("string") + "<default value='v'/>");
}

static std::string LeafIfFeature(int64_t number) {
  return Leaf(Numbered("l", number), "<if-feature name='m:f'/>" + Type("string"));
}

static std::string LeafrefToFirst(int64_t number) {
  if (number == 0) return NumberedLeaf(number);
  return Leaf(Numbered("l", number), Type("leafref", "<path value='../l0'/>"));
}

static std::string LeafrefToBefore(int64_t number) {
  if (number == 0) return NumberedLeaf(number);
  // Two in a row refer to the same one, so that no chain is followed.
  return number % 2 == 0
             ? NumberedLeaf(number)
             : Leaf(Numbered("l", number),
                    Type("leafref", "<path value='../" + Numbered("l", number - 1) + "'/>"));
}

static std::string OneCase(int64_t number) {
  return "<case name='" + Numbered("k", number) + "'>" + NumberedLeaf(number) + "</case>";
}

static std::string CaseOfTwo(int64_t number) {
  return "<case name='" + Numbered("k", number) + "'>" + NumberedLeaf(number) +
         Leaf(Numbered("d", number), Type("string") + "<default value='v'/>") + "</case>";
}

// The last of many cases has the data.
static Make LastCase(const Part& oneCase) {
  return [=](int64_t cases) {
    return RequestOf(RpcModule("", "<choice name='h'>" + Many(cases, oneCase) + "</choice>"),
                     NumberedElement(cases - 1), cases);
  };
}

static std::string NestedContainers(int64_t depth, const std::string& inner) {
  std::string text = inner;
  for (int64_t i = 0; i < depth; ++i) text = "<container name='c'>" + text + "</container>";
  return text;
}

static Work Depth(int64_t depth) {
  std::string content = Element("l", "v");
  for (int64_t i = 0; i < depth; ++i) content = Element("c", content);
  return RequestOf(RpcModule("", NestedContainers(depth, StringLeaf("l"))), content, depth);
}

// The containers are not in the request; the default at the bottom is.
static Work DepthOfDefault(int64_t depth) {
  const std::string input = NestedContainers(depth, LeafWithDefault(0)) + StringLeaf("only");
  return RequestOf(RpcModule("", input), "", depth);
}

static Work Attributes(int64_t attributes) {
  std::string text = "<l";
  for (int64_t i = 0; i < attributes; ++i) text += " " + Numbered("a", i) + "='v'";
  return RequestOf(RpcModule("", StringLeaf("l")), text + ">v</l>", attributes);
}

static Work NamesLength(int64_t length) {
  const std::string name(static_cast<size_t>(length), 'n');
  return RequestOf(RpcModule("", StringLeaf(name)), Element(name, "v"), length);
}

static Work TextLength(int64_t length) {
  return RequestOf(RpcModule("", StringLeaf("l")),
                   Element("l", std::string(static_cast<size_t>(length), 'v')), length);
}

// One condition that names each of many siblings.
static Work ConditionLength(int64_t names) {
  std::string condition = "../l0 = 'v'";
  for (int64_t i = 1; i < names; ++i) condition += " and ../" + Numbered("l", i) + " = 'v'";
  const std::string input =
      Many(names, NumberedLeaf) +
      Leaf("last", Type("string") + "<must condition=\"" + condition + "\"/>");
  return RequestOf(RpcModule("", input), Many(names, NumberedElement) + Element("last", "v"),
                   names);
}

static Work MustsOfOneLeaf(int64_t musts) {
  const std::string input =
      StringLeaf("only") + Leaf("l", Type("string") + Many(musts, [](int64_t i) {
                                       return "<must condition=\"../only != '" + std::to_string(i) +
                                              "'\"/>";
                                     }));
  return RequestOf(RpcModule("", input), Element("only", "v") + Element("l", "v"), musts);
}

// Values of a leaf-list, each with an identity of its own.
static Work IdentityOfEach(int64_t identities) {
  const std::string before =
      "<identity name='base'/>" + Many(identities, [](int64_t i) {
        return "<identity name='" + Numbered("i", i) + "'><base name='m:base'/></identity>";
      });
  const std::string input =
      "<leaf-list name='l'>" + Type("identityref", "<base name='m:base'/>") + "</leaf-list>";
  return RequestOf(RpcModule(before, input),
                   Many(identities, [](int64_t i) { return Element("l", Numbered("i", i)); }),
                   identities);
}

// One request after many modules were loaded.
static Work ModulesBeside(int64_t modules) {
  std::vector<std::string> texts{RpcModule("", StringLeaf("l"))};
  for (int64_t i = 0; i < modules; ++i)
    texts.push_back(Module(Numbered("other", i), "o", StringLeaf("l")));
  return RequestWork(LoadedContext(texts), Request(Element("l", "v")), modules);
}

// One request for the last of many operations.
static Work Operations(int64_t operations) {
  const std::string rpcs =
      Many(operations, [](int64_t i) { return "<rpc name='" + Numbered("other", i) + "'/>"; });
  return RequestOf(RpcModule(rpcs, StringLeaf("l")), Element("l", "v"), operations);
}

// Leaves of many modules below one list, one element of each.
static Work AugmentedLeaves(int64_t modules) {
  std::vector<std::string> texts{
      RpcModule("", "<list name='e'><key value='id'/>" + StringLeaf("id") + "</list>")};
  std::string content = Element("id", "v");
  for (int64_t i = 0; i < modules; ++i) {
    const std::string name = Numbered("a", i);
    std::string text = Module(name, "a",
                              "<import module='m'><prefix value='t'/></import>"
                              "<augment target-node='/t:op/t:input/t:e'>" +
                                  NumberedLeaf(i) + "</augment>");
    texts.push_back(text.insert(text.find('>'), " xmlns:t='urn:m'"));
    content += "<" + Numbered("l", i) + " xmlns='urn:" + name + "'>v</" + Numbered("l", i) + ">";
  }
  return RequestWork(LoadedContext(texts), Request(Element("e", content)), modules);
}

// An error in the last of many entries: its path is told.
static Work ErrorInLastEntry(int64_t entries) {
  const std::string model = RpcModule("", "<list name='e'><key value='id'/>" + StringLeaf("id") +
                                              Leaf("n", Type("uint8")) + "</list>");
  const std::string entry = "<e><id>v</id><n>1</n></e>";
  std::string request =
      Request(Many(entries - 1, [&](int64_t) { return entry; }) + "<e><id>v</id><n>x</n></e>");
  const Context ctx = LoadedContext({model});
  Work work;
  work.units = entries;
  work.parse = ParseOf({request});
  work.run = [ctx, request]() mutable {
    QmErrNode* err =
        QM_CTX_ValidateRpcDataTree(ctx.get(), QM_INPUT_TEXT, request.data(), nullptr, nullptr);
    Require(err != nullptr, "a bad request is valid");
    QM_FreeErrNode(err);
  };
  return work;
}

std::vector<Growth> MessageGrowth() {
  const std::string feature = "<feature name='f'/>";
  return {
      {"entries", "plain request", 100, Entries(GeneratePlain)},
      {"entries", "mixed request", 25, Entries(GenerateMixed)},
      {"entries", "request with an error in the last", 250, ErrorInLastEntry},
      {"depth", "request", 25, Depth},
      {"depth", "a default below absent containers", 25, DepthOfDefault},
      {"siblings", "one element of each leaf", 250, OneOfEach(NumberedLeaf, NumberedElement)},
      {"siblings", "one element of each choice", 250, OneOfEach(ChoiceOfLeaf, NumberedElement)},
      {"siblings", "one entry of each list", 250, OneOfEach(ListOfLeaf, EntryOfList)},
      {"siblings", "one of each container", 250, OneOfEach(ContainerOfLeaf, EntryOfList)},
      {"siblings", "one element among many leaves", 250, NoneOfEach(NumberedLeaf)},
      {"siblings", "one element of each mandatory leaf", 250,
       OneOfEach(MandatoryLeaf, NumberedElement)},
      {"siblings", "one element of each module below one list", 50, AugmentedLeaves},
      {"defaults", "all added", 250, NoneOfEach(LeafWithDefault)},
      {"defaults", "all added, each with its container", 250, NoneOfEach(ContainerWithDefault)},
      {"defaults", "all added, each with a when", 100, NoneOfEach(DefaultIfCondition)},
      {"defaults", "none added, a feature is off", 250, NoneOfEach(DefaultIfFeature, feature)},
      {"features", "one element of each leaf with an if-feature", 250,
       OneOfEach(LeafIfFeature, NumberedElement, feature)},
      {"cases", "the last has data", 250, LastCase(OneCase)},
      {"cases", "the last has data, each has a default", 250, LastCase(CaseOfTwo)},
      {"conditions", "each leaf has a when and a must", 100,
       OneOfEach(ConditionalLeaf, NumberedElement)},
      {"conditions", "one that names all siblings", 18, ConditionLength},
      {"conditions", "many musts of one leaf", 100, MustsOfOneLeaf},
      {"leafrefs", "each to the first sibling", 100, OneOfEach(LeafrefToFirst, NumberedElement)},
      {"leafrefs", "each to the sibling before", 100, OneOfEach(LeafrefToBefore, NumberedElement)},
      {"identities", "a value of each", 100, IdentityOfEach},
      {"attributes", "of one element", 250, Attributes},
      {"names' length", "one element", 1000, NamesLength},
      {"value's length", "one element", 1000, TextLength},
      {"modules", "one request beside them", 100, ModulesBeside},
      {"operations", "a request for the last", 250, Operations},
  };
}

std::vector<Growth> AllGrowth() {
  std::vector<Growth> all = SchemaGrowth();
  for (const std::vector<Growth>& some : {TypeGrowth(), MessageGrowth()})
    all.insert(all.end(), some.begin(), some.end());
  return all;
}
