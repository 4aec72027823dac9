// SPDX-License-Identifier: BSD-3-Clause
#include "tests/real/printed_tree.h"

#include <algorithm>
#include <map>
#include <sstream>

namespace {

std::string WithoutPrefixes(const std::string& path) {
  std::string out;
  for (size_t i = 0; i < path.size();) {
    const size_t end = std::min(path.find('/', i), path.size());
    const size_t colon = path.find(':', i);
    const size_t from = colon < end ? colon + 1 : i;
    out += path.substr(from, end - from);
    if (end < path.size()) out += '/';
    i = end + 1;
  }
  return out;
}

std::string Squeeze(const std::string& text) {
  std::istringstream words(text);
  std::string out;
  for (std::string word; words >> word;) out += (out.empty() ? "" : " ") + word;
  return out;
}

bool IsStatusMark(char c) {
  return c == '+' || c == 'x' || c == 'o';
}

// Where the node's mark stands; npos: the line is no node.
size_t MarkAt(const std::string& line) {
  const size_t at = line.find_first_not_of(" |");
  if (at == std::string::npos || !IsStatusMark(line[at])) return std::string::npos;
  return line.compare(at + 1, 2, "--") == 0 ? at : std::string::npos;
}

std::string WithoutPrefix(const std::string& name) {
  const size_t colon = name.find(':');
  return colon == std::string::npos ? name : name.substr(colon + 1);
}

struct Parsed {
  std::string name;
  std::string rest;
};

Parsed ParseNode(const std::string& text) {
  if (text.compare(3, 2, ":(") == 0) {
    const size_t end = text.find(')');
    return {":(" + WithoutPrefix(text.substr(5, end - 5)) + ")",
            text.substr(0, 3) + " " + Squeeze(text.substr(end + 1))};
  }
  size_t at = text.find(' ');
  const std::string flags = text.substr(0, at);
  at = text.find_first_not_of(' ', at);
  if (at == std::string::npos) return {text, ""};
  size_t end = std::min(text.find(' ', at), text.size());
  if (text[at] == '(') {
    end = text.find(')', at) + 1;
    return {"(" + WithoutPrefix(text.substr(at + 1, end - at - 2)) + ")",
            flags + " " + Squeeze(text.substr(end))};
  }
  std::string name = text.substr(at, end - at);
  std::string marks;
  while (!name.empty() && std::string("?!*@/").find(name.back()) != std::string::npos) {
    marks += name.back();
    name.pop_back();
  }
  return {WithoutPrefix(name), flags + " " + Squeeze(marks + " " + text.substr(end))};
}

}  // namespace

std::vector<TreeNode> ReadTree(const std::string& text) {
  std::vector<TreeNode> nodes;
  std::vector<std::pair<size_t, std::string>> above;  // column, path
  std::istringstream lines(text);
  std::string head;
  for (std::string line; std::getline(lines, line);) {
    const size_t mark = MarkAt(line);
    if (mark == std::string::npos) {
      const size_t augment = line.find("augment /");
      above.clear();
      if (augment == std::string::npos) {
        if (line.find(':') != std::string::npos) head.clear();
        continue;
      }
      const size_t from = augment + 8;
      head = "augment " + WithoutPrefixes(line.substr(from, line.rfind(':') - from));
      continue;
    }
    while (!above.empty() && above.back().first >= mark) above.pop_back();
    const Parsed node = ParseNode(line.substr(mark));
    const std::string path = (above.empty() ? head : above.back().second) + "/" + node.name;
    above.emplace_back(mark, path);
    nodes.push_back({path, node.rest});
  }
  return nodes;
}

std::vector<TreeNode> WithoutShorthandCases(const std::vector<TreeNode>& nodes) {
  std::map<std::string, std::set<std::string>> children;
  for (const TreeNode& node : nodes) {
    const size_t slash = node.path.rfind('/');
    children[node.path.substr(0, slash)].insert(node.path.substr(slash + 1));
  }
  std::set<std::string> dropped;
  std::vector<TreeNode> kept;
  for (const TreeNode& node : nodes) {
    const std::string last = node.path.substr(node.path.rfind('/') + 1);
    const std::set<std::string>& below = children[node.path];
    const bool isCase = last.compare(0, 2, ":(") == 0;
    const std::string name = isCase ? last.substr(2, last.size() - 3) : "";
    if (isCase && below.size() == 1 &&
        (*below.begin() == name || *below.begin() == "(" + name + ")"))
      dropped.insert(node.path);
    else
      kept.push_back(node);
  }
  for (TreeNode& node : kept) {
    std::string path;
    for (size_t at = 0; at < node.path.size();) {
      const size_t end = std::min(node.path.find('/', at + 1), node.path.size());
      if (dropped.count(node.path.substr(0, end)) == 0) path += node.path.substr(at, end - at);
      at = end;
    }
    node.path = path;
  }
  return kept;
}

std::set<std::string> Paths(const std::vector<TreeNode>& nodes) {
  std::set<std::string> paths;
  for (const TreeNode& node : nodes) paths.insert(node.path);
  return paths;
}
