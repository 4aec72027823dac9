// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <string>
#include <vector>

#include "schema/records.h"
#include "tests/support/yin.h"

// One deviation of one node, from YIN text to the text of what became of it.
namespace deviation_case {

// Module t with the statements `target`, whose first node is deviated by module
// d with `deviates`. Both may use the extensions e1 and e2 of module ext and
// those of ietf-netconf-acm, with the prefixes ext and nacm.
class Case {
 public:
  Case(const std::string& target, const std::string& deviates);

  // Describe() of the deviated node.
  std::string Node() const;
  QmsNode* Target() const { return target_; }
  QmsModule* Deviating() const;
  QmsDeviation* Deviation() const { return &Deviating()->deviations[0]; }
  bool IsApplied() const { return (Deviation()->flags & QMS_DEVIATION_APPLIED) != 0; }
  // The messages recorded against d.
  std::vector<std::string> Messages() const;
  QmCtx* ctx() const { return ctx_.Get(); }

 private:
  yin::Context ctx_;
  QmsNode* target_;
};

// Describe() of the node after `deviates` were applied, which must succeed without a
// message.
std::string Applied(const std::string& target, const std::string& deviates);

// The messages of `deviates` that must be refused and change nothing.
std::vector<std::string> Refused(const std::string& target, const std::string& deviates);

// "leaf n config:false! mandatory:true default:a,b units:u musts:c1,c2 ext:ext:e1(arg)
// nacm:all", without the parts that the node does not have. "!" marks a config
// statement of its own.
std::string Describe(const QmsNode* node);

// Statements.
std::string Leaf(const std::string& body = "");
std::string LeafList(const std::string& body = "");
std::string Choice(const std::string& body = "");
std::string Container(const std::string& body = "");
std::string Default(const std::string& value);
std::string Must(const std::string& condition);
std::string Units(const std::string& name);
std::string Config(bool value);
std::string Mandatory(bool value);
std::string Add(const std::string& body);
std::string Delete(const std::string& body);
std::string Replace(const std::string& body);

}  // namespace deviation_case
