/* SPDX-License-Identifier: BSD-3-Clause */
#ifndef QMODEL_SCHEMA_H
#define QMODEL_SCHEMA_H

#include <stdint.h>

#include <qmodel/context.h>
#include <qmodel/export.h>
#include <qmodel/types.h>

/**
 * @file
 * @brief Modules and schema nodes: accessors, scans, extension instances, the tree printer.
 */

QM_BEGIN_DECLS

/** An identity of a module. Opaque. */
typedef struct QmsIdentity QmsIdentity;
/** One use of an extension statement. Opaque. */
typedef struct QmsExtInst QmsExtInst;

/** Kinds of schema nodes. */
typedef enum QmsNodeKind {
  QMS_NODE_NONE = 0,
  QMS_NODE_CONTAINER = 1,
  QMS_NODE_LEAF = 2,
  QMS_NODE_LEAF_LIST = 3,
  QMS_NODE_LIST = 4,
  QMS_NODE_CHOICE = 5,
  QMS_NODE_CASE = 6,
  QMS_NODE_ANYDATA = 7,
  QMS_NODE_ANYXML = 8,
  QMS_NODE_ACTION = 9,
  QMS_NODE_RPC = 10,
  QMS_NODE_NOTIFICATION = 11,
  QMS_NODE_INPUT = 12,
  QMS_NODE_OUTPUT = 13,
  QMS_NODE_AUGMENT = 14,
  QMS_NODE_KIND_COUNT = 15
} QmsNodeKind;

/** How a walk came to a node. */
typedef enum QmsTravType {
  QMS_TRAV_CHILD = 0,   /**< Down to the first child. */
  QMS_TRAV_SIBLING = 1, /**< On to the next sibling. */
  QMS_TRAV_PARENT = 2,  /**< Back up to the parent. */
  QMS_TRAV_TOP = 3      /**< The start of the walk. */
} QmsTravType;

/** The result of a walk callback that skips the node's subtree. */
#define QMS_SCAN_SKIP_SUBTREE UINT32_C(0x5A6B7C8D)

/** Receives one node of a walk. @p travType is a #QmsTravType. */
typedef uint32_t (*QmNodeScanFunc)(QmsNode *node, uint32_t travType, void *arg);
/** Receives one identity. @p zero is always 0. */
typedef uint32_t (*QmIdentityScanFunc)(QmsIdentity *identity, void *arg, uint32_t zero);
/** Receives one extension instance: its module, name and argument (NULL when it has none). */
typedef uint32_t (*QmExtInstScanFunc)(QmsExtInst *inst, const char *module, const char *name,
                                      const char *argument, void *arg);
/** Receives a chunk of printed text of @p length bytes, NUL-terminated. Non-zero is a failure. */
typedef uint32_t (*QmPrintOutputFunc)(const char *text, uint32_t length, void *arg);

/**
 * @brief Gives the name of a module.
 *
 * The name is unique in its context.
 *
 * @param[in] mod  Module to read. NULL gives NULL.
 *
 * @return The text, which belongs to the module and stays as long as the module
 *         is loaded; NULL without a module.
 *
 * @par Thread safety
 * May run beside other reads of the context; the caller keeps loads and unloads
 * away meanwhile.
 *
 * @see QM_CTX_GetModuleByModName(); RFC 7950 section 7.1
 */
QM_API const char *QM_MOD_GetModuleName(const QmsModule *mod) QM_NOEXCEPT;

/**
 * @brief Gives the XML namespace of a module.
 *
 * The namespace is unique in its context.
 *
 * @param[in] mod  Module to read. NULL gives NULL.
 *
 * @return The text, which belongs to the module and stays as long as the module
 *         is loaded; NULL without a module or when the module states none.
 *
 * @par Thread safety
 * May run beside other reads of the context; the caller keeps loads and unloads
 * away meanwhile.
 *
 * @see QM_CTX_GetModuleByModNs(); RFC 7950 section 7.1.3
 */
QM_API const char *QM_MOD_GetModuleNs(const QmsModule *mod) QM_NOEXCEPT;

/**
 * @brief Gives the module's own prefix.
 *
 * Other modules may import it under other prefixes.
 *
 * @param[in] mod  Module to read. NULL gives NULL.
 *
 * @return The text, which belongs to the module and stays as long as the module
 *         is loaded; NULL without a module or when the module states none.
 *
 * @par Thread safety
 * May run beside other reads of the context; the caller keeps loads and unloads
 * away meanwhile.
 *
 * @see RFC 7950 section 7.1.4
 */
QM_API const char *QM_MOD_GetModulePrefix(const QmsModule *mod) QM_NOEXCEPT;

/**
 * @brief Gives the organization text of a module.
 *
 * It is kept whatever the load flags are.
 *
 * @param[in] mod  Module to read. NULL gives NULL.
 *
 * @return The text, which belongs to the module and stays as long as the module
 *         is loaded; NULL without a module or when the module states none.
 *
 * @par Thread safety
 * May run beside other reads of the context; the caller keeps loads and unloads
 * away meanwhile.
 *
 * @see RFC 7950 section 7.1.7
 */
QM_API const char *QM_MOD_GetOrganization(const QmsModule *mod) QM_NOEXCEPT;

/**
 * @brief Gives the revision date of a module.
 *
 * It is the date of the first revision statement, which is the newest in a
 * well-formed module; later ones are not kept.
 *
 * @param[in] mod  Module to read. NULL gives NULL.
 *
 * @return The text, which belongs to the module and stays as long as the module
 *         is loaded; NULL without a module or when the module states none.
 *
 * @par Thread safety
 * May run beside other reads of the context; the caller keeps loads and unloads
 * away meanwhile.
 *
 * @see RFC 7950 section 7.1.9
 */
QM_API const char *QM_MOD_GetRevision(const QmsModule *mod) QM_NOEXCEPT;

/**
 * @brief Gives the pointer that the client keeps with a module.
 *
 * @param[in] mod  Module to read. NULL gives NULL.
 *
 * @return What QM_MOD_SetPrivate() stored last; NULL before that.
 *
 * @par Thread safety
 * May run beside other reads of the context; the caller keeps loads and unloads
 * away meanwhile.
 *
 * @see QM_MOD_SetPrivate()
 */
QM_API void *QM_MOD_GetPrivate(const QmsModule *mod) QM_NOEXCEPT;

/**
 * @brief Keeps a pointer of the client with a module.
 *
 * The library never follows the pointer and never frees it. It is lost
 * when the module is unloaded, also when it is loaded again at once.
 *
 * @param[in,out] mod  Module to change. NULL is ignored.
 * @param[in]     p    Any pointer, also NULL. It stays the client's.
 *
 * @return The pointer stored before; NULL when there was none.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context.
 *
 * @see QM_MOD_GetPrivate(), QM_CTX_SetReloadModuleCbFunc()
 */
QM_API void *QM_MOD_SetPrivate(QmsModule *mod, void *p) QM_NOEXCEPT;

/**
 * @brief Finds a typedef of a module and gives its type.
 *
 * Only typedefs at the top of the module or of its submodules are known. The
 * first one of the name is taken.
 *
 * @param[in] mod   Module to search. NULL gives NULL.
 * @param[in] name  Name of the typedef, without prefix. NULL gives NULL.
 *
 * @return The type, which belongs to the typedef: its address is good until the
 *         next load or unload. NULL when there is no such typedef.
 *
 * @par Thread safety
 * May run beside other reads of the context; the caller keeps loads and unloads
 * away meanwhile.
 *
 * @see QM_TYPE_IterRealTypeDerivedName(); RFC 7950 section 7.3
 */
QM_API QmtType *QM_MOD_GetRealTypeByTypDefName(QmsModule *mod, const char *name) QM_NOEXCEPT;

/**
 * @brief Enables a feature of a module, or all of them.
 *
 * All features of a freshly loaded module are disabled. Whether the if-feature
 * statements of the feature itself hold is not looked at.
 *
 * @param[in,out] mod   Module to change. NULL is refused.
 * @param[in]     name  Name of the feature, without prefix, or "*" for every
 *                      feature of the module. NULL is refused.
 *
 * @retval 0   The feature is enabled; with "*" all are, also when the module has
 *             none.
 * @retval 22  An argument is NULL, or the module has no such feature; nothing
 *             changed.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context.
 *
 * @see QM_MOD_DisableFeature(), QM_CTX_IsModFeatureEnable();
 *      RFC 7950 section 7.20.1
 */
QM_API QM_NODISCARD uint32_t QM_MOD_EnableFeature(QmsModule *mod, const char *name) QM_NOEXCEPT;

/**
 * @brief Disables a feature of a module.
 *
 * Deliberate: there is no "*" here, it is looked up as the name of a feature.
 *
 * @param[in,out] mod   Module to change. NULL is refused.
 * @param[in]     name  Name of the feature, without prefix. NULL is refused.
 *
 * @retval 0   The feature is disabled.
 * @retval 22  An argument is NULL, or the module has no such feature; nothing
 *             changed.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context.
 *
 * @see QM_MOD_EnableFeature(), QM_CTX_DisableModFeature();
 *      RFC 7950 section 7.20.1
 */
QM_API QM_NODISCARD uint32_t QM_MOD_DisableFeature(QmsModule *mod, const char *name) QM_NOEXCEPT;

/**
 * @brief Calls a function for each identity of a module.
 *
 * The order is that of the definitions. Deliberate: the callback receives @p arg
 * as its second argument here, before a last one that is always 0.
 *
 * @param[in] mod  Module to read. NULL is refused.
 * @param[in] cb   Called for each identity; must not load or unload. NULL is
 *                 refused.
 * @param[in] arg  Handed to @p cb; may be NULL.
 *
 * @retval 0   @p cb returned 0 for every identity, or there is none.
 * @retval 22  @p mod or @p cb is NULL.
 * @return Anything else: the first non-zero result of @p cb, which ended the scan.
 *
 * @par Thread safety
 * May run beside other reads of the context; the caller keeps loads and unloads
 * away meanwhile.
 *
 * @see QM_MOD_ScanIdentityBase(), QM_MOD_GetIdentityName();
 *      RFC 7950 section 7.18
 */
QM_API QM_NODISCARD uint32_t QM_MOD_ScanAllIdentity(QmsModule *mod, QmIdentityScanFunc cb,
                                                    void *arg) QM_NOEXCEPT;

/**
 * @brief Calls a function for each base of an identity.
 *
 * Each base is given by the name of the module that defines it and the name of
 * the identity, in the order of the statements. Whether it exists is not looked
 * at.
 *
 * @param[in] identity  Identity to read. NULL is refused.
 * @param[in] cb        Called for each base; must not load or unload. NULL is
 *                      refused.
 * @param[in] arg       Handed to @p cb; may be NULL.
 *
 * @retval 0   @p cb returned 0 for every base, or there is none.
 * @retval 22  @p identity or @p cb is NULL.
 * @return Anything else: the first non-zero result of @p cb, which ended the scan.
 *
 * @par Thread safety
 * May run beside other reads of the context; the caller keeps loads and unloads
 * away meanwhile.
 *
 * @see QM_MOD_ScanAllIdentity(); RFC 7950 section 7.18.2
 */
QM_API QM_NODISCARD uint32_t QM_MOD_ScanIdentityBase(QmsIdentity *identity, QmIdentBaseScanFunc cb,
                                                     void *arg) QM_NOEXCEPT;

/**
 * @brief Gives the name of an identity.
 *
 * @param[in] identity  Identity to read. NULL gives NULL.
 *
 * @return The name, which belongs to the module and stays as long as the module
 *         is loaded; NULL without an identity.
 *
 * @par Thread safety
 * May run beside other reads of the context; the caller keeps loads and unloads
 * away meanwhile.
 *
 * @see QM_MOD_ScanAllIdentity(); RFC 7950 section 7.18
 */
QM_API const char *QM_MOD_GetIdentityName(const QmsIdentity *identity) QM_NOEXCEPT;

/**
 * @brief Gives the description of an identity.
 *
 * @param[in] identity  Identity to read. NULL gives NULL.
 *
 * @return The text, which belongs to the module and stays as long as the module
 *         is loaded; NULL without an identity, when it has no description, when
 *         the context was created without #QM_LOAD_DESCRIPTIONS, or when the
 *         identity came from the second or a later file of a split module.
 *
 * @par Thread safety
 * May run beside other reads of the context; the caller keeps loads and unloads
 * away meanwhile.
 *
 * @see QM_MOD_ScanAllIdentity(); RFC 7950 section 7.21.3
 */
QM_API const char *QM_MOD_GetIdentityDescription(const QmsIdentity *identity) QM_NOEXCEPT;

/**
 * @brief Calls a function for each top-level node of a module.
 *
 * Data nodes come first, then rpcs, then notifications, each in the order of the
 * module; augments are left out. The callback is told #QMS_TRAV_TOP. Nodes below
 * are not visited.
 *
 * @param[in] mod  Module to read. NULL is refused.
 * @param[in] cb   Called for each node; must not load or unload. NULL is refused.
 * @param[in] arg  Handed to @p cb; may be NULL.
 *
 * @retval 0   @p cb returned 0 for every node, or there is none.
 * @retval 22  @p mod or @p cb is NULL.
 * @return Anything else: the first non-zero result of @p cb, which ended the scan;
 *         #QMS_SCAN_SKIP_SUBTREE has no special meaning here.
 *
 * @par Thread safety
 * May run beside other reads of the context; the caller keeps loads and unloads
 * away meanwhile.
 *
 * @see QM_NODE_TreeScanAllNode(), QM_MOD_IterScanAugmentNode()
 */
QM_API QM_NODISCARD uint32_t QM_MOD_IterScanTopmostNode(QmsModule *mod, QmNodeScanFunc cb,
                                                        void *arg) QM_NOEXCEPT;

/**
 * @brief Calls a function for each augment of a module.
 *
 * The order is that of the statements. The callback is told #QMS_TRAV_TOP. An
 * augment is visited whether or not it is attached to its target.
 *
 * @param[in] mod  Module to read. NULL is refused.
 * @param[in] cb   Called for each augment; must not load or unload. NULL is
 *                 refused.
 * @param[in] arg  Handed to @p cb; may be NULL.
 *
 * @retval 0   @p cb returned 0 for every augment, or there is none.
 * @retval 22  @p mod or @p cb is NULL.
 * @return Anything else: the first non-zero result of @p cb, which ended the scan.
 *
 * @par Thread safety
 * May run beside other reads of the context; the caller keeps loads and unloads
 * away meanwhile.
 *
 * @see QM_NODE_GetAugmentTargetNode(), QM_MOD_IterScanTopmostNode();
 *      RFC 7950 section 7.17
 */
QM_API QM_NODISCARD uint32_t QM_MOD_IterScanAugmentNode(QmsModule *mod, QmNodeScanFunc cb,
                                                        void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_NODE_TreeScanAllNode(QmsNode *root, QmNodeScanFunc cb,
                                                     void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_NODE_IterScanChildrenNode(QmsNode *node, QmNodeScanFunc cb,
                                                          void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_NODE_IterScanSiblingNode(QmsNode *node, QmNodeScanFunc cb,
                                                         void *arg) QM_NOEXCEPT;

QM_API const char *QM_NODE_GetNodeName(const QmsNode *node) QM_NOEXCEPT;

QM_API QmsModule *QM_NODE_GetModule(const QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_GetNodeType(const QmsNode *node) QM_NOEXCEPT;

QM_API const char *QM_NODE_GetWhenCond(const QmsNode *node) QM_NOEXCEPT;

QM_API const char *QM_NODE_GetDescription(const QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_GetNodeKeyNum(const QmsNode *node) QM_NOEXCEPT;

QM_API void *QM_NODE_GetPrivate(const QmsNode *node) QM_NOEXCEPT;

QM_API void *QM_NODE_SetPrivate(QmsNode *node, void *p) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_IsKey(const QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_IsRwConfig(const QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_IsMandatory(const QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_IsOrderedByNode(const QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_IsNacmDefaultDenyAll(const QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_IsNacmDefaultDenyWrite(const QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_IsObsoleteNode(const QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_IsPresenceContainer(const QmsNode *node) QM_NOEXCEPT;

QM_API QmsNode *QM_NODE_GetParentNode(const QmsNode *node) QM_NOEXCEPT;

QM_API QmsNode *QM_NODE_GetNonChoiceCaseParent(const QmsNode *node) QM_NOEXCEPT;

QM_API QmsNode *QM_NODE_GetAugmentTargetNode(const QmsNode *node) QM_NOEXCEPT;

QM_API QmtType *QM_NODE_GetRealType(QmsNode *node) QM_NOEXCEPT;

QM_API uint32_t QM_NODE_IsEnabled(const QmsNode *node) QM_NOEXCEPT;

QM_API const char *QM_NODE_GetDefaultValueStr(const QmsNode *node) QM_NOEXCEPT;

QM_API const char *QM_NODE_GetUnitsValueStr(const QmsNode *node) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_NODE_ScanDerivedType(QmsNode *node, QmDerivedTypeScanFunc cb,
                                                     void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_NODE_ValidateValue(QmsNode *node, uint32_t inputKind,
                                                   const void *input) QM_NOEXCEPT;

QM_API QmtType *QM_NODE_FindRealTypeMatchedValue(QmsNode *node, uint32_t inputKind,
                                                 const void *input) QM_NOEXCEPT;

QM_API QmsNode *QM_NODE_GetLeafrefTargetNode(QmsNode *node, uint32_t follow) QM_NOEXCEPT;

/**
 * @brief Gives a node one more extension instance.
 *
 * A node that has an instance of this module, name and argument already is left
 * as it is. An instance of "ietf-netconf-acm" called "default-deny-all" or
 * "default-deny-write" marks the node and its whole subtree.
 *
 * @param[in,out] node      Node to change. NULL is refused.
 * @param[in]     module    Name of the module that defines the extension. Copied.
 *                          NULL is refused.
 * @param[in]     name      Name of the extension. Copied. NULL is refused.
 * @param[in]     argument  Argument of the instance. Copied. NULL: it has none.
 *
 * @retval 0   The node has the instance.
 * @retval 12  Out of memory; the node is as before.
 * @retval 22  A required argument is NULL, the node belongs to no context, or it
 *             has 65535 instances; nothing changed.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context.
 *
 * @see QM_NODE_ScanAllExtInsts(), QM_NODE_IsNacmDefaultDenyWrite();
 *      RFC 7950 section 7.19, RFC 8341 section 3.3
 */
QM_API QM_NODISCARD uint32_t QM_NODE_AppendExtInst(QmsNode *node, const char *module,
                                                   const char *name,
                                                   const char *argument) QM_NOEXCEPT;

/**
 * @brief Replaces the extension instances of a node by a copy of another node's.
 *
 * Nested instances are copied too. The access-control marks of the nodes do not
 * change. The nodes may belong to different contexts.
 *
 * @param[in,out] dst  Node to change. NULL is refused.
 * @param[in]     src  Node to copy from; it must have instances. NULL is refused.
 *
 * @retval 0   @p dst has the instances of @p src and no others.
 * @retval 12  Out of memory; @p dst is as before.
 * @retval 22  A node is NULL, @p dst belongs to no context, or @p src has no
 *             instances; nothing changed.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context.
 *
 * @see QM_NODE_CleanExtInsts(), QM_NODE_AppendExtInst()
 */
QM_API QM_NODISCARD uint32_t QM_NODE_ReplaceDstExtInst(QmsNode *dst,
                                                       const QmsNode *src) QM_NOEXCEPT;

/**
 * @brief Removes all extension instances of a node.
 *
 * Nested instances go as well. Access-control marks that came from an instance
 * stay set.
 *
 * @param[in,out] node  Node to change. NULL and a node without context are
 *                      ignored.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context.
 *
 * @see QM_NODE_ReplaceDstExtInst()
 */
QM_API void QM_NODE_CleanExtInsts(QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Calls a function for each extension instance of a node.
 *
 * Instances come in the order in which they were read or added; those nested in
 * an instance are left out.
 *
 * @param[in] node  Owner of the instances. NULL is refused.
 * @param[in] cb  Called with each instance, the names of the module and of the
 *                extension, and its argument or NULL. NULL is refused.
 * @param[in] arg  Handed to @p cb; may be NULL.
 *
 * @retval 0   @p cb returned 0 for every instance, or there is none.
 * @retval 22  @p node or @p cb is NULL.
 * @return Anything else: the first non-zero result of @p cb, which ended the scan.
 *
 * @par Thread safety
 * May run beside other reads of the context; the caller keeps loads and unloads
 * away meanwhile.
 *
 * @see QM_EXT_ScanAllChildExtInsts(); RFC 7950 section 7.19
 */
QM_API QM_NODISCARD uint32_t QM_NODE_ScanAllExtInsts(QmsNode *node, QmExtInstScanFunc cb,
                                                     void *arg) QM_NOEXCEPT;

/**
 * @brief Calls a function for each extension instance at the top of a module.
 *
 * Instances come in the order in which they were read; those of nodes and those
 * nested in an instance are left out.
 *
 * @param[in] module  Owner of the instances. NULL is refused.
 * @param[in] cb  Called with each instance, the names of the module and of the
 *                extension, and its argument or NULL. NULL is refused.
 * @param[in] arg  Handed to @p cb; may be NULL.
 *
 * @retval 0   @p cb returned 0 for every instance, or there is none.
 * @retval 22  @p module or @p cb is NULL.
 * @return Anything else: the first non-zero result of @p cb, which ended the scan.
 *
 * @par Thread safety
 * May run beside other reads of the context; the caller keeps loads and unloads
 * away meanwhile.
 *
 * @see QM_NODE_ScanAllExtInsts(), QM_EXT_ScanAllChildExtInsts(); RFC 7950 section 7.19
 */
QM_API QM_NODISCARD uint32_t QM_MOD_ScanAllExtInsts(QmsModule *module, QmExtInstScanFunc cb,
                                                    void *arg) QM_NOEXCEPT;

/**
 * @brief Calls a function for each extension instance nested in another.
 *
 * Instances come in the order in which they were read; only the children of
 * @p inst are visited, not what is nested in them.
 *
 * @param[in] inst  Owner of the instances. NULL is refused.
 * @param[in] cb  Called with each instance, the names of the module and of the
 *                extension, and its argument or NULL. NULL is refused.
 * @param[in] arg  Handed to @p cb; may be NULL.
 *
 * @retval 0   @p cb returned 0 for every instance, or there is none.
 * @retval 22  @p inst or @p cb is NULL.
 * @return Anything else: the first non-zero result of @p cb, which ended the scan.
 *
 * @par Thread safety
 * May run beside other reads of the context; the caller keeps loads and unloads
 * away meanwhile.
 *
 * @see QM_NODE_ScanAllExtInsts(), QM_MOD_ScanAllExtInsts(); RFC 7950 section 7.19
 */
QM_API QM_NODISCARD uint32_t QM_EXT_ScanAllChildExtInsts(QmsExtInst *inst, QmExtInstScanFunc cb,
                                                         void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_MOD_PrintModelTree(QmsModule *module, QmPrintOutputFunc output,
                                                   void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_NODE_PrintNodesTree(QmsNode *node, QmPrintOutputFunc output,
                                                    void *arg) QM_NOEXCEPT;

QM_API QM_NODISCARD uint32_t QM_NODE_PrintNodeHeader(QmsNode *node, QmPrintOutputFunc output,
                                                     void *arg) QM_NOEXCEPT;

QM_END_DECLS

#endif
