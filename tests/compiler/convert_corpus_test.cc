// SPDX-License-Identifier: BSD-3-Clause
// Real models in YANG text, turned into YIN, held against the YIN that another tool made
// of them.
#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "compiler/convert.h"
#include "compiler/reading/records.h"
#include "tests/support/real_models.h"

namespace compiler {
namespace {

namespace fs = std::filesystem;

// The folders that a folder of originals is closed with.
std::vector<std::string> FoldersBelow(const std::string& folder) {
  if (folder == "ietf") return {};
  if (folder == "openconfig" || folder == "ieee") return {"ietf"};
  if (folder == "bbf" || folder == "oran") return {"ieee", "ietf"};
  return {"openconfig", "ietf"};
}

std::string ReadAll(const fs::path& path) {
  std::stringstream content;
  content << std::ifstream(path).rdbuf();
  return content.str();
}

Document Parse(const std::string& text) {
  return Document(xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                                XML_PARSE_NOENT | XML_PARSE_NOCDATA));
}

std::string_view View(const xmlChar* text) {
  return text == nullptr ? std::string_view() : reinterpret_cast<const char*>(text);
}

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(" \t\n") == std::string_view::npos;
}

std::string WithoutBlanks(std::string_view text) {
  std::string kept;
  for (const char c : text)
    if (c != ' ' && c != '\t') kept += c;
  return kept;
}

const xmlNode* NextNode(const xmlNode* node) {
  while (node != nullptr && node->type != XML_ELEMENT_NODE &&
         (node->type != XML_TEXT_NODE ||
          (IsBlank(View(node->content)) && (node->next != nullptr || node->prev != nullptr))))
    node = node->next;
  return node;
}

// How far two trees are the same.
struct Comparison {
  bool exactly = true;
  std::string difference;  // beyond the blanks in texts; empty: none
};

void CompareHeads(const xmlNode* a, const xmlNode* b, Comparison* result) {
  const auto differ = [&](const char* what) {
    result->difference = std::string(what) + " at line " + std::to_string(xmlGetLineNo(a));
  };
  if (a->type != b->type) return differ("kind");
  if (a->type == XML_TEXT_NODE) {
    if (View(a->content) == View(b->content)) return;
    result->exactly = false;
    if (WithoutBlanks(View(a->content)) != WithoutBlanks(View(b->content))) differ("text");
    return;
  }
  if (View(a->name) != View(b->name) || View(a->ns->href) != View(b->ns->href))
    return differ("name");
  const xmlAttr* left = a->properties;
  const xmlAttr* right = b->properties;
  if ((left == nullptr) != (right == nullptr)) return differ("attribute");
  if (left == nullptr) return;
  if (left->next != nullptr || right->next != nullptr || View(left->name) != View(right->name) ||
      View(left->children == nullptr ? nullptr : left->children->content) !=
          View(right->children == nullptr ? nullptr : right->children->content))
    differ("attribute");
}

void Compare(const xmlNode* a, const xmlNode* b, Comparison* result) {
  CompareHeads(a, b, result);
  if (!result->difference.empty() || a->type == XML_TEXT_NODE) return;
  const xmlNode* left = NextNode(a->children);
  const xmlNode* right = NextNode(b->children);
  for (; left != nullptr && right != nullptr && result->difference.empty();
       left = NextNode(left->next), right = NextNode(right->next))
    Compare(left, right, result);
  if (result->difference.empty() && left != right)
    result->difference = "number of elements at line " + std::to_string(xmlGetLineNo(a));
}

TEST(ConvertCorpus, EqualsTheYinOfAnotherTool) {
  if (RealModelsFolder().empty()) GTEST_SKIP() << kNoRealModels;
  const fs::path originals = fs::path(RealModelsFolder()) / "yang-originals";
  std::set<std::string> compared;
  std::set<std::string> exceptBlanks;
  for (const auto& entry : fs::recursive_directory_iterator(originals)) {
    const fs::path& path = entry.path();
    if (path.extension() != ".yang") continue;
    const std::string folder = path.parent_path().filename();
    std::string name = path.stem();
    fs::path yin = originals / "yin" / folder / (name + ".yin");
    if (!fs::exists(yin))
      yin = fs::path(RealModelsFolder()) / "standard-models" /
            (name.substr(0, name.find('@')) + ".yin");
    SCOPED_TRACE(path.string());
    ConvertRequest request;
    request.file = path;
    for (const std::string& below : FoldersBelow(folder))
      request.folders.push_back(originals / below);
    const JobResult result = ConvertFile(request);
    EXPECT_EQ(result.state, JobState::kDone);
    EXPECT_EQ(result.findings, std::vector<std::string>());
    ASSERT_EQ(result.modules.size(), 1u);
    const Document ours = Parse(result.modules[0].yin);
    const Document theirs = Parse(ReadAll(yin));
    ASSERT_NE(ours, nullptr);
    ASSERT_NE(theirs, nullptr);
    Comparison comparison;
    Compare(xmlDocGetRootElement(ours.get()), xmlDocGetRootElement(theirs.get()), &comparison);
    EXPECT_EQ(comparison.difference, "");
    compared.insert(folder + "/" + name);
    if (!comparison.exactly) exceptBlanks.insert(folder + "/" + name);
  }
  EXPECT_EQ(compared.size(), 141u);
  // Tabs stand before quotes there, and the other tool counts them as one column.
  EXPECT_EQ(exceptBlanks, (std::set<std::string>{"ieee/ieee802-dot1ae-pry", "sonic/sonic-common"}));
}

}  // namespace
}  // namespace compiler
