// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include <qmodel/schema.h>

#include "platform/avl.h"
#include "types/records.h"

// All texts here are interned in the dictionary of the module's context, and
// compared by pointer. A zero-filled record or array element is valid
// everywhere: cleared, freed, searched and compared without special care.

struct QmsImport {
  const char* moduleName;
  const char* prefix;
};

struct QmsInclude {
  const char* submoduleName;
};

// A reference to a feature. `module` is the name of the module that defines it.
struct QmsIfFeature {
  const char* module;
  const char* feature;
};

struct QmsMust {
  const char* condition;     // prefixes in literals are module names
  const char* errorMessage;  // may be NULL
  const char* errorAppTag;   // may be NULL
};

// One use of an extension statement. `module` is the name of its module.
struct QmsExtInst {
  const char* module;
  const char* name;
  const char* argument;  // may be NULL
  uint16_t childCount;
  QmsExtInst* children;  // owned
};

enum QmsFeatureFlag : uint16_t { QMS_FEATURE_ENABLED = 0x40 };

struct QmsFeature {
  const char* name;
  QmsIfFeature* ifFeatures;  // owned
  uint16_t ifFeatureCount;
  uint16_t flags;  // QmsFeatureFlag
};

struct QmsIdentBase {
  const char* prefix;  // name of the module that defines the base
  const char* name;
};

struct QmsIdentity {
  const char* name;
  uint16_t ifFeatureCount;
  uint16_t baseCount;
  QmsIfFeature* ifFeatures;  // owned
  QmsIdentBase* bases;       // owned
  const char* description;
};

struct QmsExtension {
  const char* name;
  const char* argument;  // may be NULL
  uint32_t yinElement;
};

enum QmsDeviateKind : uint32_t {
  QMS_DEVIATE_NONE = 0,
  QMS_DEVIATE_ADD = 1,
  QMS_DEVIATE_DELETE = 2,
  QMS_DEVIATE_NOT_SUPPORTED = 3,
  QMS_DEVIATE_REPLACE = 4
};

struct QmsDeviate {
  uint32_t kind;   // QmsDeviateKind
  uint16_t flags;  // config and mandatory bits of QmsNodeFlag
  uint16_t mustCount;
  uint16_t defaultCount;
  uint16_t extInstCount;
  QmsMust* musts;             // owned
  const char** defaults;      // owned
  QmtType* type;              // owned; may be NULL
  const char* units;          // may be NULL
  QmsExtInst* extInsts;       // owned
  uint8_t defaultsRewritten;  // 1: prefixes in defaults are already module names
};

enum QmsDeviationFlag : uint16_t { QMS_DEVIATION_APPLIED = 0x1 };

struct QmsDeviation {
  const char* targetPath;
  QmsDeviate* deviates;  // owned
  uint16_t deviateCount;
  uint16_t flags;  // QmsDeviationFlag
};

enum QmsYangVersion : uint32_t { QMS_YANG_VERSION_1 = 0, QMS_YANG_VERSION_1_1 = 1 };

// One module. Owned by its context once registered, else by the loader.
struct QmsModule {
  QmCtx* ctx;
  const char* name;
  const char* ns;
  const char* prefix;
  const char* organization;
  uint32_t yangVersion;  // QmsYangVersion
  uint16_t importCount;
  uint16_t includeCount;
  QmsImport* imports;
  QmsInclude* includes;
  const char* description;
  const char* revision;
  uint16_t featureCount;
  uint16_t identityCount;
  uint16_t extensionCount;
  uint16_t typedefCount;
  uint16_t deviationCount;
  uint16_t extInstCount;
  QmsFeature* features;
  QmsIdentity* identities;
  QmsExtension* extensions;
  QmsTypedef* typedefs;
  QmsDeviation* deviations;
  QmsExtInst* extInsts;
  QmsNode* dataNodes;  // first of a sibling chain, as the three below
  QmsNode* rpcNodes;
  QmsNode* notifNodes;
  QmsNode* augmentNodes;
  QmsNode* dataTail;  // where appending starts: a node of the chain, or NULL for its head
  QmsNode* rpcTail;
  QmsNode* notifTail;
  QmsNode* augmentTail;
  uint32_t runCount;  // of the augments' runs that lie directly under nodes of the module
  uint32_t mergeSourceCount;
  const char** mergeSources;  // suffixes of the split files it came from
  void* privateData;          // the client's
  RtkAvl3Link nameLink;       // in QmCtx::modByName
  RtkAvl3Link nsLink;         // in QmCtx::modByNs
};

enum QmsNodeFlag : uint32_t {
  QMS_NODE_COUPLED = 1u << 0,  // augment: its children lie in the target
  QMS_NODE_CONFIG_TRUE = 1u << 1,
  QMS_NODE_CONFIG_FALSE = 1u << 2,
  QMS_NODE_CONFIG_OWN = 1u << 3,  // by the node's own config statement
  QMS_NODE_MANDATORY_TRUE = 1u << 4,
  QMS_NODE_MANDATORY_FALSE = 1u << 5,
  QMS_NODE_ORDERED_BY_USER = 1u << 7,
  QMS_NODE_KEY = 1u << 8,
  QMS_NODE_DEPRECATED = 1u << 9,
  QMS_NODE_OBSOLETE = 1u << 10,
  QMS_NODE_PRESENCE = 1u << 11,
  QMS_NODE_DENY_WRITE = 1u << 12,  // NACM default-deny-write
  QMS_NODE_DENY_ALL = 1u << 13     // NACM default-deny-all
};
constexpr uint32_t kQmsConfigMask = QMS_NODE_CONFIG_TRUE | QMS_NODE_CONFIG_FALSE;
constexpr uint32_t kQmsMandatoryMask = QMS_NODE_MANDATORY_TRUE | QMS_NODE_MANDATORY_FALSE;
constexpr uint32_t kQmsNacmMask = QMS_NODE_DENY_WRITE | QMS_NODE_DENY_ALL;

// One schema node. While an augment is coupled, its firstChild and lastChild
// mark a run inside the target's child list, whose nodes have the target as
// parent: every walk over the children of an augment stops at lastChild.
struct QmsNode {
  QmsNode* parent;  // NULL for a top-level node
  QmsNode* firstChild;
  QmsNode* lastChild;
  QmsNode* next;
  QmsNode* prev;
  QmsModule* module;  // that defines the node; not owned
  const char* name;   // an augment's is its target path
  const char* description;
  uint32_t kind;   // QmsNodeKind
  uint32_t flags;  // QmsNodeFlag bits
  const char* when;
  QmsIfFeature* ifFeatures;  // owned
  QmsMust* musts;            // owned
  uint16_t ifFeatureCount;
  uint16_t mustCount;
  uint16_t extInstCount;
  uint8_t keyCount;      // lists: number of key leaves
  uint8_t keyIndex;      // key leaves: place in the key statement
  QmsExtInst* extInsts;  // owned
  void* payload;         // owned; QmsLeaf, QmsLeafList, QmsChoice or NULL, by kind
  void* privateData;     // the client's
};

struct QmsLeaf {
  QmtType type;
  const char* defaultValue;  // may be NULL
  const char* units;         // may be NULL
};

struct QmsLeafList {
  QmtType type;
  const char** defaults;  // owned; may be NULL beside a count after a failed replace
  uint16_t defaultCount;
  const char* units;  // may be NULL
};

struct QmsChoice {
  const char* defaultCase;  // may be NULL
};

static_assert(std::is_standard_layout_v<QmsModule> && std::is_trivially_copyable_v<QmsModule>);
static_assert(std::is_standard_layout_v<QmsNode> && std::is_trivially_copyable_v<QmsNode>);
static_assert(offsetof(QmsModule, ctx) == 0, "parsers reach the context through the first field");
