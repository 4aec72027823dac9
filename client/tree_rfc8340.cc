// SPDX-License-Identifier: BSD-3-Clause
// Tree diagrams of RFC 8340, to be compared with those of documents and other tools. They
// differ from the library's own: nodes whose features are off stay in and name them, no
// default is shown, modules are named by their prefixes, and a node that stands in a choice
// without a case has the line of its case (RFC 7950 section 7.9.2). Types begin in one
// column for all children of a node, also for those in its choices. Each level of a model
// is a level of calls; the depth of models is bounded where they are read.
#include "client/tree_rfc8340.h"

#include <qmodel/agent.h>
#include <qmodel/inspect.h>

#include <algorithm>
#include <vector>

#include "client/memory_watch.h"
#include "client/shown_text.h"

namespace {

using Nodes = std::vector<QmsNode*>;

constexpr size_t kColumns = 3;  // of a level

enum class Place { kData, kInput, kOutput };

struct Drawing {
  QmCtx* ctx;
  QmsModule* module;  // whose names need no prefix
  unsigned depth;     // of the deepest nodes; 0: all
  std::string text;
};

// Where the lines of a list of siblings stand.
struct Level {
  std::string indent;
  size_t width;  // of the longest name
  Place place;
  unsigned depth = 1;
};

bool IsTransparent(const QmsNode* node) {
  const uint32_t kind = QM_NODE_GetNodeType(node);
  return kind == QMS_NODE_CHOICE || kind == QMS_NODE_CASE;
}

std::string Prefix(const Drawing& drawing, const QmsModule* module) {
  const char* prefix = module == nullptr ? nullptr : QM_MOD_GetModulePrefix(module);
  if (module == drawing.module || prefix == nullptr) return {};
  return std::string(prefix) + ":";
}

// A name with its module's prefix; that of a module which is not loaded is not known.
std::string Qualified(const Drawing& drawing, const char* module, const std::string& name) {
  const QmsModule* owner = QM_CTX_GetModuleByModName(drawing.ctx, module);
  if (owner == nullptr) return std::string(module) + ":" + name;
  return Prefix(drawing, owner) + name;
}

std::string NameOf(const Drawing& drawing, const QmsNode* node) {
  const uint32_t kind = QM_NODE_GetNodeType(node);
  if (kind == QMS_NODE_INPUT) return "input";
  if (kind == QMS_NODE_OUTPUT) return "output";
  const char* name = QM_NODE_GetNodeName(node);
  return Prefix(drawing, QM_NODE_GetModule(node)) + (name == nullptr ? "" : name);
}

Nodes ChildrenOf(const QmsNode* parent) {
  Nodes nodes;
  QmsNode* child = QM_NODE_GetNextChild(parent, nullptr);
  for (; child != nullptr; child = QM_NODE_GetNextChild(parent, child)) nodes.push_back(child);
  return nodes;
}

size_t WidthOf(const Drawing& drawing, const Nodes& nodes);

// In a choice stand cases, also where they are not written.
size_t WidthInside(const Drawing& drawing, const QmsNode* node) {
  const size_t inner = WidthOf(drawing, ChildrenOf(node));
  return inner + kColumns;
}

size_t WidthOf(const Drawing& drawing, const Nodes& nodes) {
  size_t width = 0;
  for (const QmsNode* node : nodes) {
    const QmsNode* parent = QM_NODE_GetParentNode(node);
    const bool bare = parent != nullptr && QM_NODE_GetNodeType(parent) == QMS_NODE_CHOICE &&
                      QM_NODE_GetNodeType(node) != QMS_NODE_CASE;
    const size_t own =
        IsTransparent(node) ? WidthInside(drawing, node) : NameOf(drawing, node).size();
    width = std::max(width, own + (bare ? kColumns : 0));
  }
  return width;
}

char StatusMark(const QmsNode* node) {
  const uint32_t status = QM_NODE_GetStatus(node);
  if (status == QM_STATUS_OBSOLETE) return 'o';
  return status == QM_STATUS_DEPRECATED ? 'x' : '+';
}

const char* Flags(const QmsNode* node, Place place) {
  switch (QM_NODE_GetNodeType(node)) {
    case QMS_NODE_RPC:
    case QMS_NODE_ACTION:
      return "-x";
    case QMS_NODE_NOTIFICATION:
      return "-n";
    case QMS_NODE_INPUT:
      return "-w";
    case QMS_NODE_OUTPUT:
      return "ro";
    default:
      break;
  }
  if (place == Place::kInput) return "-w";
  return place == Place::kData && QM_NODE_IsRwConfig(node) != 0 ? "rw" : "ro";
}

uint32_t AddKey(QmsNode* key, uint32_t /*travType*/, void* keys) {
  auto* text = static_cast<std::string*>(keys);
  if (!text->empty()) *text += " ";
  *text += QM_NODE_GetNodeName(key);
  return 0;
}

std::string Marks(const QmsNode* node) {
  const bool optional = QM_NODE_IsMandatory(node) == 0 && QM_NODE_IsKey(node) == 0;
  switch (QM_NODE_GetNodeType(node)) {
    case QMS_NODE_LEAF:
    case QMS_NODE_CHOICE:
    case QMS_NODE_ANYDATA:
    case QMS_NODE_ANYXML:
      return optional ? "?" : "";
    case QMS_NODE_LEAF_LIST:
      return "*";
    case QMS_NODE_CONTAINER:
      return QM_NODE_IsPresenceContainer(node) != 0 ? "!" : "";
    default:
      return "";
  }
}

std::string KeysOf(const QmsNode* node) {
  if (QM_NODE_GetNodeType(node) != QMS_NODE_LIST) return {};
  std::string keys;
  static_cast<void>(QM_NODE_ScanKey(node, kGuarded<AddKey>, &keys));
  return "* [" + keys + "]";
}

// The path of a leafref with prefixes in place of module names, and without this module's
// own as long as no other stands before it: there a step without prefix is this module's.
std::string LeafrefText(const Drawing& drawing, const std::string& path) {
  std::string text = "-> ";
  bool foreign = false;
  size_t start = 0;
  while (start <= path.size()) {
    const size_t end = std::min(path.find('/', start), path.size());
    const std::string step = path.substr(start, end - start);
    const size_t colon = step.find(':');
    const std::string name = step.substr(colon == std::string::npos ? 0 : colon + 1);
    if (colon != std::string::npos) {
      const std::string module = step.substr(0, colon);
      const bool own = module == QM_MOD_GetModuleName(drawing.module);
      foreign = foreign || !own;
      text += foreign ? Qualified({drawing.ctx, nullptr, 0, {}}, module.c_str(), name) : name;
    } else {
      text += name;
    }
    if (end < path.size()) text += "/";
    start = end + 1;
  }
  return text;
}

struct TypeName {
  const Drawing& drawing;
  std::string text;
};

// Called for each typedef; only the nearest one is shown.
uint32_t TakeTypedef(const char* module, const char* name, QmtType* /*type*/, void* arg) {
  auto* type = static_cast<TypeName*>(arg);
  if (name == nullptr || !type->text.empty()) return 0;
  type->text = Qualified(type->drawing, module, name);
  return 0;
}

std::string TypeText(const Drawing& drawing, QmsNode* node) {
  const uint32_t kind = QM_NODE_GetNodeType(node);
  if (kind == QMS_NODE_ANYDATA) return "<anydata>";
  if (kind == QMS_NODE_ANYXML) return "<anyxml>";
  QmtType* type = QM_NODE_GetRealType(node);
  if (type == nullptr) return {};
  const char* path = QM_TYPE_GetTypeConsDataLeafrefPath(type);
  if (path != nullptr) return LeafrefText(drawing, path);
  TypeName name{drawing, {}};
  static_cast<void>(
      QM_TYPE_IterRealTypeDerivedName(type, drawing.ctx, kGuarded<TakeTypedef>, &name));
  const char* base = QM_AGENT_GetBaseTypeName(QM_TYPE_GetBuiltInBaseType(type));
  return name.text.empty() && base != nullptr ? base : name.text;
}

uint32_t AddFeature(const char* module, const char* feature, uint32_t /*enabled*/, void* arg) {
  auto* features = static_cast<TypeName*>(arg);
  features->text += features->text.empty() ? " {" : ",";
  features->text += Qualified(features->drawing, module, feature);
  return 0;
}

std::string FeaturesOf(const Drawing& drawing, const QmsNode* node) {
  TypeName features{drawing, {}};
  static_cast<void>(QM_NODE_ScanIfFeature(node, kGuarded<AddFeature>, &features));
  return features.text.empty() ? features.text : features.text + "}?";
}

std::string Line(const Drawing& drawing, QmsNode* node, const Level& level) {
  const uint32_t kind = QM_NODE_GetNodeType(node);
  const std::string name = NameOf(drawing, node);
  std::string line = std::string(1, StatusMark(node)) + "--";
  if (kind == QMS_NODE_CASE) return line + ":(" + name + ")" + FeaturesOf(drawing, node);
  line += std::string(Flags(node, level.place)) + " ";
  if (kind == QMS_NODE_CHOICE) {
    return line + "(" + name + ")" + Marks(node) + FeaturesOf(drawing, node);
  }
  std::string shown = name + Marks(node) + KeysOf(node);
  const std::string type = TypeText(drawing, node);
  if (!type.empty()) {
    shown.resize(std::max(shown.size(), level.width + 1), ' ');
    shown += "   " + type;
  }
  return line + shown + FeaturesOf(drawing, node);
}

void Draw(Drawing* drawing, const Nodes& nodes, const Level& level);

Level Inside(const Drawing& drawing, const QmsNode* node, const Level& level, bool last) {
  Level inner = level;
  inner.indent += last ? "   " : "|  ";
  ++inner.depth;
  const uint32_t kind = QM_NODE_GetNodeType(node);
  if (kind == QMS_NODE_INPUT) inner.place = Place::kInput;
  if (kind == QMS_NODE_OUTPUT || kind == QMS_NODE_NOTIFICATION) inner.place = Place::kOutput;
  inner.width = IsTransparent(node) ? level.width - std::min(level.width, kColumns)
                                    : WidthOf(drawing, ChildrenOf(node));
  return inner;
}

void DrawNode(Drawing* drawing, QmsNode* node, const Level& level, bool last) {
  drawing->text += level.indent + ShowControls(Line(*drawing, node, level)) + "\n";
  Draw(drawing, ChildrenOf(node), Inside(*drawing, node, level, last));
}

// The case that is not written: it has the name and the status of its only node.
void DrawWithCase(Drawing* drawing, QmsNode* node, const Level& level, bool last) {
  drawing->text +=
      level.indent + StatusMark(node) + "--:(" + ShowControls(NameOf(*drawing, node)) + ")\n";
  Level inner = level;
  inner.indent += last ? "   " : "|  ";
  ++inner.depth;
  inner.width -= std::min(inner.width, kColumns);
  if (drawing->depth == 0 || inner.depth <= drawing->depth) DrawNode(drawing, node, inner, true);
}

void Draw(Drawing* drawing, const Nodes& nodes, const Level& level) {
  if (drawing->depth != 0 && level.depth > drawing->depth) return;
  for (QmsNode* node : nodes) {
    const bool last = node == nodes.back();
    const QmsNode* parent = QM_NODE_GetParentNode(node);
    const bool inChoice = parent != nullptr && QM_NODE_GetNodeType(parent) == QMS_NODE_CHOICE;
    if (inChoice && QM_NODE_GetNodeType(node) != QMS_NODE_CASE) {
      DrawWithCase(drawing, node, level, last);
    } else {
      DrawNode(drawing, node, level, last);
    }
  }
}

// The top-level nodes of one kind, or those of none of the other two.
Nodes TopNodes(const QmsModule* module, uint32_t wanted) {
  Nodes nodes;
  QmsNode* node = QM_MOD_GetNextTopNode(module, nullptr);
  for (; node != nullptr; node = QM_MOD_GetNextTopNode(module, node)) {
    const uint32_t kind = QM_NODE_GetNodeType(node);
    const bool data = kind != QMS_NODE_RPC && kind != QMS_NODE_NOTIFICATION;
    if (wanted == QMS_NODE_NONE ? data : kind == wanted) nodes.push_back(node);
  }
  return nodes;
}

uint32_t AddAugment(QmsNode* augment, uint32_t /*travType*/, void* nodes) {
  static_cast<Nodes*>(nodes)->push_back(augment);
  return 0;
}

// Each step with a prefix, this module's own, too: "/if:interfaces/if:interface".
std::string TargetText(const QmsNode* augment) {
  std::string path;
  const QmsNode* node = QM_NODE_GetAugmentTargetNode(augment);
  if (node == nullptr) {
    const char* name = QM_NODE_GetNodeName(augment);
    return name == nullptr ? "" : name;
  }
  const Drawing everywhere{nullptr, nullptr, 0, {}};
  for (; node != nullptr; node = QM_NODE_GetParentNode(node)) {
    const uint32_t kind = QM_NODE_GetNodeType(node);
    if (kind == QMS_NODE_AUGMENT) continue;
    const std::string prefix = Prefix(everywhere, QM_NODE_GetModule(node));
    const bool ownName = kind == QMS_NODE_INPUT || kind == QMS_NODE_OUTPUT;
    path.insert(0, "/" + (ownName ? prefix + NameOf(everywhere, node) : NameOf(everywhere, node)));
  }
  return path;
}

// Where the children of an augment stand is told by what its target stands in.
Place PlaceOf(const QmsNode* node) {
  for (; node != nullptr; node = QM_NODE_GetParentNode(node)) {
    const uint32_t kind = QM_NODE_GetNodeType(node);
    if (kind == QMS_NODE_INPUT) return Place::kInput;
    if (kind == QMS_NODE_OUTPUT || kind == QMS_NODE_NOTIFICATION) return Place::kOutput;
  }
  return Place::kData;
}

void DrawSection(Drawing* drawing, const char* head, const Nodes& nodes) {
  if (nodes.empty()) return;
  drawing->text += std::string("\n  ") + head + ":\n";
  Draw(drawing, nodes, {"    ", WidthOf(*drawing, nodes), Place::kData});
}

void DrawAugments(Drawing* drawing) {
  Nodes augments;
  static_cast<void>(QM_MOD_IterScanAugmentNode(drawing->module, kGuarded<AddAugment>, &augments));
  if (!augments.empty()) drawing->text += "\n";
  for (const QmsNode* augment : augments) {
    const Nodes nodes = ChildrenOf(augment);
    drawing->text += "  augment " + ShowControls(TargetText(augment)) + ":\n";
    Draw(drawing, nodes,
         {"    ", WidthOf(*drawing, nodes), PlaceOf(QM_NODE_GetAugmentTargetNode(augment))});
  }
}

}  // namespace

std::string TreeOfRfc8340(QmCtx* ctx, QmsModule* module, unsigned depth) {
  Drawing drawing{ctx, module, depth, {}};
  drawing.text = std::string("module: ") + QM_MOD_GetModuleName(module) + "\n";
  const Nodes data = TopNodes(module, QMS_NODE_NONE);
  Draw(&drawing, data, {"  ", WidthOf(drawing, data), Place::kData});
  DrawAugments(&drawing);
  DrawSection(&drawing, "rpcs", TopNodes(module, QMS_NODE_RPC));
  DrawSection(&drawing, "notifications", TopNodes(module, QMS_NODE_NOTIFICATION));
  return drawing.text;
}
