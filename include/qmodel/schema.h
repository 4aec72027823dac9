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
 *
 * A module holds four lists of top-level nodes (data nodes, rpcs, notifications
 * and augments), and each node its children. Choices, cases, input and output
 * are nodes of their own. What an augment adds stands among the children of its
 * target once that is loaded, and names the augmenting module as its own.
 *
 * Modules, nodes, types and texts that a function gives are borrowed: they hold
 * until the next load or unload on their context, and are not freed by the
 * client. Accessors and lookups take NULL and answer 0 or NULL. The scans hand
 * each item to a callback, in the order of the model, and stop at the first
 * result that is not 0; they refuse a NULL callback with 22.
 *
 * Thread safety: functions that only read may run side by side while nothing is
 * loaded, unloaded or switched in the same context; the others are serialised by
 * the caller.
 */

QM_BEGIN_DECLS

/** An identity of a module. Opaque. */
typedef struct QmsIdentity QmsIdentity;
/** One use of an extension statement. Opaque. */
typedef struct QmsExtInst QmsExtInst;

/** Kinds of schema nodes, RFC 7950 section 7. Each is the statement of its name. */
typedef enum QmsNodeKind {
  QMS_NODE_NONE = 0, /**< Not a statement. */
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
  QMS_NODE_INPUT = 12,  /**< Of an rpc or action. */
  QMS_NODE_OUTPUT = 13, /**< Of an rpc or action. */
  QMS_NODE_AUGMENT = 14,
  QMS_NODE_KIND_COUNT = 15 /**< Number of kinds. */
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
 * @return The text, borrowed from the module; NULL without a module.
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
 * @return The text, borrowed from the module; NULL without a module or when the module
 *         states none.
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
 * @return The text, borrowed from the module; NULL without a module or when the module
 *         states none.
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
 * @return The text, borrowed from the module; NULL without a module or when the module
 *         states none.
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
 * @return The text, borrowed from the module; NULL without a module or when the module
 *         states none.
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
 * @return The type, borrowed from the typedef; NULL when there is no such typedef.
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
 * @return The name, borrowed from the module; NULL without an identity.
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
 * @return The text, borrowed from the module; NULL without an identity, when it has
 *         no description, when the context was created without
 *         #QM_LOAD_DESCRIPTIONS, or when the identity came from the second or a
 *         later file of a split module.
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

/**
 * @brief Walks a node and its whole subtree in pre-order.
 *
 * The root comes first, with travel type #QMS_TRAV_TOP; a first child with
 * #QMS_TRAV_CHILD and a next sibling with #QMS_TRAV_SIBLING. A node whose
 * children were visited comes a second time, with #QMS_TRAV_PARENT, when the walk goes up
 * past it, except the root, with which the walk ends. A callback that returns
 * #QMS_SCAN_SKIP_SUBTREE keeps the walk from the children of that node.
 *
 * For an augment that is attached to its target, the subtree is what the
 * augment added there. The tree must not be changed while it is walked.
 *
 * @param[in]     root  the node to begin with; NULL is refused
 * @param[in]     cb    receives each node, the travel type and @p arg; NULL is
 *                      refused
 * @param[in,out] arg   passed to @p cb; may be NULL
 *
 * @retval 0   The walk came to its end.
 * @retval 22  @p root or @p cb is NULL.
 * @return any other number: the result of @p cb that ended the walk
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_NODE_IterScanChildrenNode()
 */
QM_API QM_NODISCARD uint32_t QM_NODE_TreeScanAllNode(QmsNode *root, QmNodeScanFunc cb,
                                                     void *arg) QM_NOEXCEPT;

/**
 * @brief Hands the schema children of a node to a callback, in order.
 *
 * All children count, also choices, cases, input and output. For an augment
 * that is attached to its target these are the nodes that it added, not those
 * that follow them in the target.
 *
 * @param[in]     node  the parent; NULL is refused
 * @param[in]     cb    receives each child, #QMS_TRAV_CHILD and @p arg; NULL is
 *                      refused
 * @param[in,out] arg   passed to @p cb; may be NULL
 *
 * @retval 0   All children were handed over, or there are none.
 * @retval 22  @p node or @p cb is NULL.
 * @return any other number: the first result of @p cb that is not 0
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_NODE_TreeScanAllNode(), QM_NODE_IterScanSiblingNode()
 */
QM_API QM_NODISCARD uint32_t QM_NODE_IterScanChildrenNode(QmsNode *node, QmNodeScanFunc cb,
                                                          void *arg) QM_NOEXCEPT;

/**
 * @brief Hands a node and the siblings after it to a callback, in order.
 *
 * @param[in]     node  the node to begin with; NULL is refused
 * @param[in]     cb    receives each node, #QMS_TRAV_SIBLING and @p arg; NULL is
 *                      refused
 * @param[in,out] arg   passed to @p cb; may be NULL
 *
 * @retval 0   All siblings were handed over.
 * @retval 22  @p node or @p cb is NULL.
 * @return any other number: the first result of @p cb that is not 0
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_NODE_IterScanChildrenNode()
 */
QM_API QM_NODISCARD uint32_t QM_NODE_IterScanSiblingNode(QmsNode *node, QmNodeScanFunc cb,
                                                         void *arg) QM_NOEXCEPT;

/**
 * @brief Gives the name of a node.
 *
 * An augment's name is its target path, with module names instead of prefixes.
 *
 * @param[in] node  the node; may be NULL
 *
 * @return the name, owned by the node; NULL when @p node is NULL
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_NODE_GetModule()
 */
QM_API const char *QM_NODE_GetNodeName(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Gives the module that defines a node.
 *
 * For a node that an augment added this is the module of the augment, not
 * that of the tree in which the node stands.
 *
 * @param[in] node  the node; may be NULL
 *
 * @return the module, owned by its context; NULL when @p node is NULL
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_MOD_GetModuleName()
 */
QM_API QmsModule *QM_NODE_GetModule(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Tells the kind of a node.
 *
 * @param[in] node  the node; may be NULL
 *
 * @return a #QmsNodeKind; #QMS_NODE_NONE (0) when @p node is NULL
 *
 * @par Thread safety
 * Reads the schema only.
 */
QM_API uint32_t QM_NODE_GetNodeType(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Gives the when-condition of a node.
 *
 * Prefixes are replaced by the names of their modules. A child of an augment
 * also carries the condition of the augment, rewritten so that it is evaluated
 * with the child as context node; when both have one, the text is
 * "(augment's) and (child's)".
 *
 * @param[in] node  the node; may be NULL
 *
 * @return the condition, owned by the node; NULL when it has none or @p node
 *         is NULL
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_XPATH_EvalCondition(), RFC 7950 section 7.21.5
 */
QM_API const char *QM_NODE_GetWhenCond(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Gives the description of a node.
 *
 * Descriptions are kept only in a context with the load flag
 * #QM_LOAD_DESCRIPTIONS.
 *
 * @param[in] node  the node; may be NULL
 *
 * @return the text, owned by the node; NULL when none is kept or @p node is
 *         NULL
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see RFC 7950 section 7.21.3
 */
QM_API const char *QM_NODE_GetDescription(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Tells how many leaves the key of a list names.
 *
 * Deliberate: the number is that of the key statement. It stays when a
 * deviation removes a key leaf.
 *
 * @param[in] node  the node; may be NULL
 *
 * @return the number of keys, 0 to 255; 0 for a node that is no list or when
 *         @p node is NULL
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_NODE_IsKey(), RFC 7950 section 7.8.2
 */
QM_API uint32_t QM_NODE_GetNodeKeyNum(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Gives the client's pointer that is kept with a node.
 *
 * @param[in] node  the node; may be NULL
 *
 * @return what was set last; NULL when nothing was or @p node is NULL
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_NODE_SetPrivate()
 */
QM_API void *QM_NODE_GetPrivate(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Keeps a pointer of the client with a node.
 *
 * The library does not look at it. When the node is destroyed and the pointer
 * is not NULL, it goes back through the hook of QM_CTX_SetPridataFreeFunc().
 *
 * @param[in,out] node  the node; may be NULL
 * @param[in]     p     the pointer; stays the client's; NULL takes it away
 *
 * @return the pointer that was kept before; NULL when there was none or
 *         @p node is NULL
 *
 * @par Thread safety
 * The caller serialises this with every other use of the node.
 *
 * @see QM_NODE_GetPrivate()
 */
QM_API void *QM_NODE_SetPrivate(QmsNode *node, void *p) QM_NOEXCEPT;

/**
 * @brief Tells whether a node is a key leaf of its list.
 *
 * @param[in] node  the node; may be NULL
 *
 * @return 1 for a leaf below a list whose key names it, else 0
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_NODE_GetNodeKeyNum(), RFC 7950 section 7.8.2
 */
QM_API uint32_t QM_NODE_IsKey(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Tells whether a node is configuration.
 *
 * A node without any config value, of its own or inherited, counts as
 * configuration.
 *
 * @param[in] node  the node; may be NULL
 *
 * @return 1 for configuration, 0 for state data or when @p node is NULL
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see RFC 7950 section 7.21.1
 */
QM_API uint32_t QM_NODE_IsRwConfig(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Tells whether a node has the statement "mandatory true".
 *
 * @param[in] node  the node; may be NULL
 *
 * @return 1 when it has, else 0
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see RFC 7950 section 7.6.5
 */
QM_API uint32_t QM_NODE_IsMandatory(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Tells whether the entries of a list or leaf-list are ordered by the user.
 *
 * @param[in] node  the node; may be NULL
 *
 * @return 1 with the statement "ordered-by user", else 0
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see RFC 7950 section 7.7.7
 */
QM_API uint32_t QM_NODE_IsOrderedByNode(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Tells whether a node is marked "default-deny-all".
 *
 * The mark is inherited: that of a parent replaces the marks of its children.
 *
 * @param[in] node  the node; may be NULL
 *
 * @return 1 when it is, else 0
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see RFC 8341 section 9
 */
QM_API uint32_t QM_NODE_IsNacmDefaultDenyAll(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Tells whether a node is marked "default-deny-write".
 *
 * The mark is inherited: that of a parent replaces the marks of its children.
 *
 * @param[in] node  the node; may be NULL
 *
 * @return 1 when it is, else 0
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see RFC 8341 section 9
 */
QM_API uint32_t QM_NODE_IsNacmDefaultDenyWrite(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Tells whether a node has the status "obsolete".
 *
 * @param[in] node  the node; may be NULL
 *
 * @return 1 when it has, else 0
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see RFC 7950 section 7.21.2
 */
QM_API uint32_t QM_NODE_IsObsoleteNode(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Tells whether a node is a container with a presence statement.
 *
 * @param[in] node  the node; may be NULL
 *
 * @return 1 for a presence container, else 0
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see RFC 7950 section 7.5.1
 */
QM_API uint32_t QM_NODE_IsPresenceContainer(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Gives the schema parent of a node.
 *
 * Choices, cases, input and output are parents like any other node.
 *
 * @param[in] node  the node; may be NULL
 *
 * @return the parent; NULL for a top-level node, below an augment that is not
 *         attached to its target, and when @p node is NULL
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_NODE_GetNonChoiceCaseParent()
 */
QM_API QmsNode *QM_NODE_GetParentNode(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Gives the nearest ancestor that is neither a choice nor a case.
 *
 * @param[in] node  the node; may be NULL
 *
 * @return the ancestor; NULL when there is none or @p node is NULL
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_NODE_GetParentNode()
 */
QM_API QmsNode *QM_NODE_GetNonChoiceCaseParent(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Gives the node to which an augment adds its children.
 *
 * The target is looked up by the path of the augment each time.
 *
 * @param[in] node  the node; may be NULL
 *
 * @return the target; NULL when it is not loaded, when @p node is no augment,
 *         or when @p node is NULL
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_CTX_GetTargetNode(), RFC 7950 section 7.17
 */
QM_API QmsNode *QM_NODE_GetAugmentTargetNode(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Gives the type of a leaf or leaf-list.
 *
 * @param[in] node  the node; may be NULL
 *
 * @return the type, owned by the node; NULL for nodes of other kinds and when
 *         @p node is NULL
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_TYPE_GetBuiltInBaseType()
 */
QM_API QmtType *QM_NODE_GetRealType(QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Tells whether all if-features of a node are enabled.
 *
 * Only the node itself is looked at, not its ancestors.
 *
 * @param[in] node  the node; may be NULL
 *
 * @return 1 when all are enabled or there are none; 0 when one is not, when its
 *         module is not loaded, and when @p node is NULL
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_CTX_IsModFeatureEnable(), RFC 7950 section 7.20.2
 */
QM_API uint32_t QM_NODE_IsEnabled(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Gives the default value of a leaf.
 *
 * This is the leaf's own default, else the first one along the typedefs from
 * which its type derives, of which at most 128 are looked at. Deliberate: a
 * mandatory leaf has no default, whatever its statements say.
 *
 * @param[in] node  the node; may be NULL
 *
 * @return the value, owned by the leaf or typedef; NULL when there is none, for
 *         nodes of other kinds, and when @p node is NULL
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see RFC 7950 sections 7.6.1 and 7.3.4
 */
QM_API const char *QM_NODE_GetDefaultValueStr(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Gives the units of a leaf or leaf-list.
 *
 * These are the node's own units, else the first ones along the typedefs from
 * which its type derives, of which at most 128 are looked at. Units are kept
 * only in a context with the load flag #QM_LOAD_UNITS.
 *
 * @param[in] node  the node; may be NULL
 *
 * @return the text, owned by the node or typedef; NULL when there is none, for
 *         nodes of other kinds, and when @p node is NULL
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see RFC 7950 sections 7.6 and 7.3.3
 */
QM_API const char *QM_NODE_GetUnitsValueStr(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Hands the typedefs from which the type of a node derives to a callback.
 *
 * The nearest typedef comes first. A built-in type is handed over once, without
 * names. A typedef that is not loaded is handed over by its names, with NULL for
 * its type, and is the last one.
 *
 * @param[in]     node  a leaf or leaf-list; NULL is refused
 * @param[in]     cb    receives the module and name of each typedef, its type and
 *                      @p arg; NULL is refused
 * @param[in,out] arg   passed to @p cb; may be NULL
 *
 * @retval 0   All typedefs were handed over.
 * @retval 22  @p node or @p cb is NULL, @p node has no type or belongs to no
 *             context, or the typedefs form a chain of more than 128 links.
 * @return any other number: the first result of @p cb that is not 0
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_TYPE_IterRealTypeDerivedName()
 */
QM_API QM_NODISCARD uint32_t QM_NODE_ScanDerivedType(QmsNode *node, QmDerivedTypeScanFunc cb,
                                                     void *arg) QM_NOEXCEPT;

/**
 * @brief Checks a value against the type of a leaf or leaf-list.
 *
 * All restrictions along the typedefs of the type are checked, and for a
 * leafref those of the leaf to which it refers. Whether that leaf has an
 * instance with the value is not looked at.
 *
 * @param[in] node       a leaf or leaf-list; NULL is refused
 * @param[in] inputKind  1: @p input is a NUL-terminated text; 2: @p input is a
 *                       libxml2 element (`xmlNode`) whose text is the value
 * @param[in] input      the value; stays the caller's
 *
 * @retval 0      The value is valid.
 * @retval 12     Memory ran out while the bases of an identity were followed.
 * @retval 22     @p node is NULL, has no type or belongs to no context, or the
 *                type cannot be used.
 * @retval 28672  A restriction of the type has no content.
 * @retval 28673  A typedef is not loaded, or more than 128 links were followed.
 * @retval 28674  The value is no identity derived from the bases of the type.
 * @retval 28675  The value is no list of the type's bits, or memory ran out
 *                while it was read.
 * @retval 28676  The value is no enum of the type.
 * @retval 28677  The length is outside the length restriction.
 * @retval 28678  The leaf of a leafref, or its type, is not found.
 * @retval 28679  A pattern is not matched, or an inverted one is.
 * @retval 28680  The value is no number, or is outside the range.
 * @retval 28681  No member of the union accepts the value.
 * @retval 28682  The value is no boolean.
 * @retval 28683  The value is not base64.
 * @retval 28684  There is a value where the type is empty.
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_NODE_FindRealTypeMatchedValue(), RFC 7950 section 9
 */
QM_API QM_NODISCARD uint32_t QM_NODE_ValidateValue(QmsNode *node, uint32_t inputKind,
                                                   const void *input) QM_NOEXCEPT;

/**
 * @brief Gives the type that accepts a value of a leaf or leaf-list.
 *
 * For a union this is the member that accepts the value, and for a leafref the
 * type of the leaf to which it refers. Where that type derives from a typedef it
 * is the type of the innermost typedef; otherwise it is that type itself.
 *
 * @param[in] node       a leaf or leaf-list; NULL is refused
 * @param[in] inputKind  how @p input is given, as for QM_NODE_ValidateValue()
 * @param[in] input      the value; stays the caller's
 *
 * @return the type, owned by the schema; NULL when the value is not valid or
 *         @p node is NULL, has no type or belongs to no context
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_NODE_ValidateValue()
 */
QM_API QmtType *QM_NODE_FindRealTypeMatchedValue(QmsNode *node, uint32_t inputKind,
                                                 const void *input) QM_NOEXCEPT;

/**
 * @brief Gives the leaf to which a leafref refers.
 *
 * The path is that of the leaf's type or of the typedef from which it derives,
 * and is looked up from the leaf. Predicates in it are not evaluated.
 *
 * @param[in] node    a leaf or leaf-list of type leafref; may be NULL
 * @param[in] follow  0: the first target is the answer. Any other number: while
 *                    the target is a leafref, it is followed in its turn, for at
 *                    most 128 lookups.
 *
 * @return the target; NULL when a target is not loaded, when a chain of leafrefs
 *         does not end within 128 lookups, when @p node is no leafref, and when
 *         @p node is NULL
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_TYPE_GetTypeConsDataLeafrefPath(), RFC 7950 section 9.9
 */
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

/**
 * @brief Prints the schema of a module as an indented tree, one node per line.
 *
 * The text is the line "module: NAME", then the data nodes, then each augment
 * with the nodes that it adds, then "rpcs:" and "notifications:" with theirs
 * where the module has any. Nodes with an if-feature that is not enabled are
 * left out with all below them. Names of nodes that other modules define carry
 * the name of their module.
 *
 * The text goes to @p output in chunks of at most 8191 bytes, each ending with
 * a whole line. A line of more than about a thousand characters can fail the
 * print.
 *
 * @param[in]     module  the module; NULL is refused
 * @param[in]     output  receives each chunk, NUL-terminated, its length and
 *                        @p arg; NULL is refused. A result other than 0 ends the
 *                        print.
 * @param[in,out] arg     passed to @p output; may be NULL
 *
 * @retval 0   The whole text was handed over.
 * @retval 1   @p output refused a chunk, a line did not fit, or memory ran out
 *             on the way; chunks may have been handed over.
 * @retval 12  There is no memory for the buffer; nothing was handed over.
 * @retval 22  @p module or @p output is NULL.
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_NODE_PrintNodesTree(), RFC 8340
 */
QM_API QM_NODISCARD uint32_t QM_MOD_PrintModelTree(QmsModule *module, QmPrintOutputFunc output,
                                                   void *arg) QM_NOEXCEPT;

/**
 * @brief Prints one node with its subtree, below the lines that lead to it.
 *
 * The text is that of QM_NODE_PrintNodeHeader(), then the node and all below
 * it at the place where they stand in the tree of their module.
 *
 * @param[in]     node    the node; NULL is refused. A node below an augment that
 *                        is not attached to its target has no place in a tree and
 *                        is refused as well.
 * @param[in]     output  receives the text, as for QM_MOD_PrintModelTree(); NULL
 *                        is refused
 * @param[in,out] arg     passed to @p output; may be NULL
 *
 * @retval 0   The whole text was handed over.
 * @retval 1   @p output refused a chunk, a line did not fit, or memory ran out
 *             on the way; chunks may have been handed over.
 * @retval 12  There is no memory for the buffer; nothing was handed over.
 * @retval 22  @p node or @p output is NULL, or @p node is not in a tree.
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_MOD_PrintModelTree(), RFC 8340
 */
QM_API QM_NODISCARD uint32_t QM_NODE_PrintNodesTree(QmsNode *node, QmPrintOutputFunc output,
                                                    void *arg) QM_NOEXCEPT;

/**
 * @brief Prints the lines that lead to a node in the tree of its module.
 *
 * These are "module: NAME" with the module of the tree, then "rpcs:" or
 * "notifications:" when the node stands in one, then one line for each ancestor
 * from the top down. The node itself is not printed. An ancestor with an
 * if-feature that is not enabled has no line.
 *
 * @param[in]     node    the node; NULL is refused. A node below an augment that
 *                        is not attached to its target has no place in a tree and
 *                        is refused as well.
 * @param[in]     output  receives the text, as for QM_MOD_PrintModelTree(); NULL
 *                        is refused
 * @param[in,out] arg     passed to @p output; may be NULL
 *
 * @retval 0   The whole text was handed over.
 * @retval 1   @p output refused a chunk, a line did not fit, or memory ran out
 *             on the way; chunks may have been handed over.
 * @retval 12  There is no memory for the buffer; nothing was handed over.
 * @retval 22  @p node or @p output is NULL, or @p node is not in a tree.
 *
 * @par Thread safety
 * Reads the schema only.
 *
 * @see QM_NODE_PrintNodesTree(), RFC 8340
 */
QM_API QM_NODISCARD uint32_t QM_NODE_PrintNodeHeader(QmsNode *node, QmPrintOutputFunc output,
                                                     void *arg) QM_NOEXCEPT;

QM_END_DECLS

#endif
