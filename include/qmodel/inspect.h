/* SPDX-License-Identifier: BSD-3-Clause */
#ifndef QMODEL_INSPECT_H
#define QMODEL_INSPECT_H

#include <stdint.h>

#include <qmodel/context.h>
#include <qmodel/export.h>
#include <qmodel/schema.h>

/**
 * @file
 * @brief Everything of a schema that a client may want to list.
 *
 * With these functions and those of <qmodel/schema.h> a client can write a YANG
 * library (RFC 8525), complete command lines, or document a model.
 *
 * Scans call a function for each item, in the order said. A result of the callback
 * other than 0 ends the scan and is its result. A callback reads the schema and
 * changes nothing in it: no load, unload, or switch of a feature.
 *
 * Thread rule: everything here reads. It may run beside other reads of the context;
 * the caller keeps loads, unloads and switches of features away meanwhile.
 */

QM_BEGIN_DECLS

/** A feature of a module. Opaque. */
typedef struct QmsFeature QmsFeature;

/** Receives one module. */
typedef uint32_t (*QmModuleScanFunc)(QmsModule *mod, void *arg);
/** Receives one feature. */
typedef uint32_t (*QmFeatureScanFunc)(const QmsFeature *feature, void *arg);
/** Receives the feature that an if-feature names, and 1 when it is enabled, else 0. */
typedef uint32_t (*QmIfFeatureScanFunc)(const char *module, const char *feature, uint32_t enabled,
                                        void *arg);
/** Receives a must: its condition, its error-message and its error-app-tag, both NULL when it has
 * none. Prefixes in the condition's literals are module names. */
typedef uint32_t (*QmMustScanFunc)(const char *condition, const char *message, const char *appTag,
                                   void *arg);
/** Receives a text, such as a default value or a name. */
typedef uint32_t (*QmTextScanFunc)(const char *text, void *arg);
/** Receives an identity and the module that defines it. */
typedef uint32_t (*QmDerivedIdentityScanFunc)(QmsModule *mod, QmsIdentity *identity, void *arg);

/** The status of a definition, RFC 7950 section 7.21.2. */
typedef enum QmStatementStatus {
  QM_STATUS_CURRENT = 0,    /**< Also when nothing is stated. */
  QM_STATUS_DEPRECATED = 1, /**< May go. */
  QM_STATUS_OBSOLETE = 2    /**< Is gone. */
} QmStatementStatus;

/* Steps. Loops without a callback: the first item with NULL, then the one after each. */

/**
 * @brief Gives the module after another one, in the order of names.
 *
 * @param[in] ctx  Context to read. NULL gives NULL.
 * @param[in] mod  Module of @p ctx; NULL for the first.
 *
 * @return The module, borrowed from the context; NULL after the last.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see QM_CTX_ScanAllModule()
 */
QM_API QmsModule *QM_CTX_GetNextModule(QmCtx *ctx, const QmsModule *mod) QM_NOEXCEPT;

/**
 * @brief Gives the top-level node of a module after another one.
 *
 * Data nodes come first, then rpcs, then notifications, each in schema order; choices are
 * among them.
 *
 * @param[in] mod   Module to read. NULL gives NULL.
 * @param[in] node  Top-level node of @p mod; NULL for the first.
 *
 * @return The node, borrowed from its module; NULL after the last.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see QM_MOD_IterScanTopmostNode()
 */
QM_API QmsNode *QM_MOD_GetNextTopNode(const QmsModule *mod, const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Gives the child of a node after another one, in schema order.
 *
 * @param[in] parent  Node to read. NULL gives NULL. An augment's children are those that it
 *                    adds, also where they hang under its target.
 * @param[in] child   Child of @p parent; NULL for the first.
 *
 * @return The child, borrowed from its module; NULL after the last.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see QM_NODE_IterScanChildrenNode()
 */
QM_API QmsNode *QM_NODE_GetNextChild(const QmsNode *parent, const QmsNode *child) QM_NOEXCEPT;

/* Modules. */

/**
 * @brief Calls a function for each loaded module.
 *
 * In the order of their names, compared byte by byte.
 *
 * @param[in] ctx  Context to read. NULL is refused.
 * @param[in] cb   Called for each module. NULL is refused.
 * @param[in] arg  Handed to @p cb.
 *
 * @retval 0   All modules were seen.
 * @retval 22  An argument is NULL.
 * @return Otherwise the result of @p cb that ended the scan.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see RFC 8525 section 3
 */
QM_API QM_NODISCARD uint32_t QM_CTX_ScanAllModule(QmCtx *ctx, QmModuleScanFunc cb,
                                                  void *arg) QM_NOEXCEPT;

/**
 * @brief Gives the description of a module.
 *
 * Kept only in a context that was made with #QM_LOAD_DESCRIPTIONS.
 *
 * @param[in] mod  Module to read. NULL gives NULL.
 *
 * @return The text, borrowed from the module; NULL when it has or keeps none.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see RFC 7950 section 7.21.3
 */
QM_API const char *QM_MOD_GetDescription(const QmsModule *mod) QM_NOEXCEPT;

/**
 * @brief Tells the version of YANG that a module is written in.
 *
 * @param[in] mod  Module to read. NULL gives 1.
 *
 * @return 11 for version 1.1, 1 for version 1 and without a statement.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see RFC 7950 section 7.1.2
 */
QM_API uint32_t QM_MOD_GetYangVersion(const QmsModule *mod) QM_NOEXCEPT;

/**
 * @brief Calls a function for each submodule that a module includes.
 *
 * By name, in the order in which they were read, those that submodules include with
 * them. Their revisions are not kept.
 *
 * @param[in] mod  Module to read. NULL is refused.
 * @param[in] cb   Called for each submodule. NULL is refused.
 * @param[in] arg  Handed to @p cb.
 *
 * @retval 0   All were seen.
 * @retval 22  An argument is NULL.
 * @return Otherwise the result of @p cb that ended the scan.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see RFC 7950 section 7.1.6
 */
QM_API QM_NODISCARD uint32_t QM_MOD_ScanInclude(const QmsModule *mod, QmTextScanFunc cb,
                                                void *arg) QM_NOEXCEPT;

/**
 * @brief Calls a function for each module that a module imports, by name.
 *
 * In the order in which the imports were read, whether or not the module is loaded; once
 * for each prefix.
 *
 * @param[in] mod  Module to read. NULL is refused.
 * @param[in] cb   Called for each import. NULL is refused.
 * @param[in] arg  Handed to @p cb.
 *
 * @retval 0   All were seen.
 * @retval 22  An argument is NULL.
 * @return Otherwise the result of @p cb that ended the scan.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see RFC 7950 section 7.1.5
 */
QM_API QM_NODISCARD uint32_t QM_MOD_ScanImport(const QmsModule *mod, QmTextScanFunc cb,
                                               void *arg) QM_NOEXCEPT;

/**
 * @brief Calls a function for each loaded module that deviates a module, by name.
 *
 * The module that was loaded last comes first.
 *
 * @param[in] mod  Module that is deviated. NULL is refused.
 * @param[in] cb   Called for each deviating module. NULL is refused.
 * @param[in] arg  Handed to @p cb.
 *
 * @retval 0   All were seen; also for a module that is not registered.
 * @retval 22  An argument is NULL.
 * @return Otherwise the result of @p cb that ended the scan.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see RFC 8525 section 3, "deviation"
 */
QM_API QM_NODISCARD uint32_t QM_MOD_ScanDeviatingModule(const QmsModule *mod, QmTextScanFunc cb,
                                                        void *arg) QM_NOEXCEPT;

/* Features. */

/**
 * @brief Calls a function for each feature of a module, in the order of the file.
 *
 * @param[in] mod  Module to read. NULL is refused.
 * @param[in] cb   Called for each feature. NULL is refused.
 * @param[in] arg  Handed to @p cb.
 *
 * @retval 0   All features were seen.
 * @retval 22  An argument is NULL.
 * @return Otherwise the result of @p cb that ended the scan.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see QM_MOD_EnableFeature(); RFC 7950 section 7.20.1
 */
QM_API QM_NODISCARD uint32_t QM_MOD_ScanAllFeature(const QmsModule *mod, QmFeatureScanFunc cb,
                                                   void *arg) QM_NOEXCEPT;

/**
 * @brief Gives the name of a feature.
 *
 * @param[in] feature  Feature to read. NULL gives NULL.
 *
 * @return The text, borrowed from the feature's module.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see RFC 7950 section 7.20.1
 */
QM_API const char *QM_FEATURE_GetName(const QmsFeature *feature) QM_NOEXCEPT;

/**
 * @brief Tells whether a feature is switched on.
 *
 * The feature's own if-features are not asked; QM_FEATURE_ScanIfFeature() tells them.
 *
 * @param[in] feature  Feature to read. NULL gives 0.
 *
 * @retval 1  It is.
 * @retval 0  It is not.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see QM_CTX_IsModFeatureEnable(); RFC 7950 section 7.20.1
 */
QM_API uint32_t QM_FEATURE_IsEnabled(const QmsFeature *feature) QM_NOEXCEPT;

/**
 * @brief Calls a function for each if-feature of a feature, in the order of the file.
 *
 * @param[in] ctx      Context in which the named features are looked up. NULL is refused.
 * @param[in] feature  Feature to read. NULL is refused.
 * @param[in] cb       Called for each if-feature. NULL is refused.
 * @param[in] arg      Handed to @p cb.
 *
 * @retval 0   All were seen.
 * @retval 22  An argument is NULL.
 * @return Otherwise the result of @p cb that ended the scan.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see RFC 7950 section 7.20.2
 */
QM_API QM_NODISCARD uint32_t QM_FEATURE_ScanIfFeature(QmCtx *ctx, const QmsFeature *feature,
                                                      QmIfFeatureScanFunc cb,
                                                      void *arg) QM_NOEXCEPT;

/* Nodes. */

/**
 * @brief Calls a function for each if-feature of a node.
 *
 * Its own ones in the order of the file, with those that its augment has brought.
 * QM_NODE_IsEnabled() tells whether all hold.
 *
 * @param[in] node  Node to read. NULL, and a node without a context, are refused.
 * @param[in] cb    Called for each if-feature. NULL is refused.
 * @param[in] arg   Handed to @p cb.
 *
 * @retval 0   All were seen.
 * @retval 22  An argument was refused.
 * @return Otherwise the result of @p cb that ended the scan.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see RFC 7950 section 7.20.2
 */
QM_API QM_NODISCARD uint32_t QM_NODE_ScanIfFeature(const QmsNode *node, QmIfFeatureScanFunc cb,
                                                   void *arg) QM_NOEXCEPT;

/**
 * @brief Calls a function for each must of a node, in the order in which they are checked.
 *
 * A node has one when at most, without a message of its own: QM_NODE_GetWhenCond().
 *
 * @param[in] node  Node to read. NULL is refused.
 * @param[in] cb    Called for each must. NULL is refused.
 * @param[in] arg   Handed to @p cb.
 *
 * @retval 0   All were seen.
 * @retval 22  An argument is NULL.
 * @return Otherwise the result of @p cb that ended the scan.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see RFC 7950 section 7.5.3
 */
QM_API QM_NODISCARD uint32_t QM_NODE_ScanMust(const QmsNode *node, QmMustScanFunc cb,
                                              void *arg) QM_NOEXCEPT;

/**
 * @brief Calls a function for each key leaf of a list, in the order of the key statement.
 *
 * The order in which the keys stand in a message and in a path. The callback's travType is
 * #QMS_TRAV_CHILD.
 *
 * @param[in] list  List to read. NULL, and a node of another kind, are refused.
 * @param[in] cb    Called for each key leaf. NULL is refused.
 * @param[in] arg   Handed to @p cb.
 *
 * @retval 0   All were seen; also of a list without keys.
 * @retval 22  An argument was refused.
 * @return Otherwise the result of @p cb that ended the scan.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see QM_NODE_GetNodeKeyNum(), QM_NODE_IsKey(); RFC 7950 section 7.8.2
 */
QM_API QM_NODISCARD uint32_t QM_NODE_ScanKey(const QmsNode *list, QmNodeScanFunc cb,
                                             void *arg) QM_NOEXCEPT;

/**
 * @brief Calls a function for each default of a leaf, leaf-list or choice.
 *
 * Of a leaf that of QM_NODE_GetDefaultValueStr(); of a leaf-list its own ones in order; of a
 * choice the name of its default case. Prefixes of identities are module names.
 *
 * @param[in] node  Node to read. NULL is refused; other kinds have none.
 * @param[in] cb    Called for each default. NULL is refused.
 * @param[in] arg   Handed to @p cb.
 *
 * @retval 0   All were seen.
 * @retval 22  An argument is NULL.
 * @return Otherwise the result of @p cb that ended the scan.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see RFC 7950 sections 7.6.1, 7.7.2 and 7.9.3
 */
QM_API QM_NODISCARD uint32_t QM_NODE_ScanDefault(const QmsNode *node, QmTextScanFunc cb,
                                                 void *arg) QM_NOEXCEPT;

/**
 * @brief Tells the status of a node.
 *
 * That of its own statement; it is not inherited.
 *
 * @param[in] node  Node to read. NULL gives #QM_STATUS_CURRENT.
 *
 * @return A #QmStatementStatus.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see QM_NODE_IsObsoleteNode(); RFC 7950 section 7.21.2
 */
QM_API uint32_t QM_NODE_GetStatus(const QmsNode *node) QM_NOEXCEPT;

/**
 * @brief Writes the path of a node.
 *
 * Every schema node on the way is a step, choices and cases among them, with the name of
 * its module where that changes: "/m:a/b/n:c". QM_CTX_GetTargetNode() finds the node by it
 * once each step has its module's name.
 *
 * @param[in]  node    Node whose path is wanted. NULL is refused.
 * @param[out] buffer  Receives the NUL-terminated path. NULL is refused.
 * @param[in]  size    Bytes of @p buffer; 3,096 are enough for every path that the library
 *                     prints itself.
 *
 * @retval 0    The path was written.
 * @retval 12   It does not fit; @p buffer is an empty text when @p size is not 0.
 * @retval 22   An argument was refused, or a step has no name.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see RFC 7950 section 6.5
 */
QM_API QM_NODISCARD uint32_t QM_NODE_GetPath(const QmsNode *node, char *buffer,
                                             uint32_t size) QM_NOEXCEPT;

/**
 * @brief Finds the node that a data path names.
 *
 * A data path names what has an element of its own: choices and cases, and the input and
 * output of an operation, are no steps. The first step names its module, a later one where the
 * module changes: "/m:system/dns/n:server". Predicates are passed over. In an operation the
 * input is looked at before the output.
 *
 * @param[in] ctx   Context to search. NULL gives NULL.
 * @param[in] path  Absolute path. NULL gives NULL.
 *
 * @return The node, borrowed from its module; NULL when there is none, or the path is none.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see RFC 7951 section 6.11 for the form
 */
QM_API QmsNode *QM_CTX_FindDataNode(QmCtx *ctx, const char *path) QM_NOEXCEPT;

/* Identities. */

/**
 * @brief Finds an identity of a module by its name.
 *
 * @param[in] mod   Module to search. NULL gives NULL.
 * @param[in] name  Name of the identity. NULL gives NULL.
 *
 * @return The identity, borrowed from the module; NULL when there is none.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see RFC 7950 section 7.18
 */
QM_API QmsIdentity *QM_MOD_FindIdentity(QmsModule *mod, const char *name) QM_NOEXCEPT;

/**
 * @brief Calls a function for each identity that is derived from one.
 *
 * Directly or over others, in all loaded modules: modules in the order of their names,
 * identities in that of their file. The identity itself is not among them. Those that a
 * disabled feature switches off are.
 *
 * @param[in] mod       Module that defines the base. NULL is refused.
 * @param[in] identity  The base. NULL is refused.
 * @param[in] cb        Called for each derived identity. NULL is refused.
 * @param[in] arg       Handed to @p cb.
 *
 * @retval 0   All were seen.
 * @retval 12  There was no memory for the search.
 * @retval 22  An argument is NULL.
 * @return Otherwise the result of @p cb that ended the scan.
 *
 * @par Thread safety
 * Reads; see the top of this file.
 *
 * @see QM_TYPE_ScanIdentRefBase(); RFC 7950 section 7.18.2
 */
QM_API QM_NODISCARD uint32_t QM_MOD_ScanDerivedIdentity(QmsModule *mod, QmsIdentity *identity,
                                                        QmDerivedIdentityScanFunc cb,
                                                        void *arg) QM_NOEXCEPT;

QM_END_DECLS

#endif
