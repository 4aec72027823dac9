// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>
#include <string>
#include <vector>

// Models and messages drawn from a seed: the same seed gives the same ones everywhere.
namespace random_message {

// Numbers of a seed, after "splitmix64".
class Source {
 public:
  explicit Source(uint64_t seed) : state_(seed) {}
  // 0 to `count` - 1.
  uint32_t Below(uint32_t count);
  bool OneIn(uint32_t count) { return Below(count) == 0; }

 private:
  uint64_t state_;
};

// A node of the schema of an operation or notification.
struct Node {
  std::string kind;  // as YIN names it
  std::string name;
  std::string module;  // "m", or "a" for what that augments
  std::vector<Node> children;
  uint32_t type = 0;  // of a leaf: a row of the types that are drawn from
};

// The module "m" with the rpc "op", the notification "event" and the action "act" in a
// list of "top"; "a" augments them; "d" deviates "m". Conditions, defaults, choices,
// leafrefs, identities and features are among what they hold, and namesakes between them.
struct Model {
  std::vector<std::string> modules;  // in the order of loading
  std::vector<Node> rpc;
  std::vector<Node> event;
  std::vector<Node> top;
  std::vector<Node> act;
};

Model DrawModel(Source* source);

// A message for it: a request, an action in a data tree, or a notification. Many are
// valid; others have an element too many, too few or at the wrong place, or a bad value.
struct Message {
  bool isNotification;
  std::string text;
};
Message DrawMessage(Source* source, const Model& model);

}  // namespace random_message
