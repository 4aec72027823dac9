/* SPDX-License-Identifier: BSD-3-Clause */
#ifndef QMODEL_CONTEXT_H
#define QMODEL_CONTEXT_H

#include <stdint.h>

#include <qmodel/export.h>

/**
 * @file
 * @brief The schema context: its life, lookups, features, search directories and hooks.
 *
 * A context holds the YANG modules (RFC 7950) that were loaded into it, and every
 * call on them starts from it. The context owns the modules, and these own their
 * definitions and schema nodes: pointers to them, and to their texts, are borrowed.
 * A borrowed pointer holds until the next load or unload on its context. A load may
 * change modules that are there already; an unload may destroy and rebuild more than
 * the one named, see QM_CTX_UnloadModule().
 *
 * Thread rule: a context has no lock. Calls that only read, lookups among them, and
 * validation runs on different documents may run side by side while nothing is
 * loaded, unloaded or switched, as a feature is. The client serialises loads, unloads
 * and changes with everything else on the same context.
 *
 * Hook rule: the hooks of a context run inside the load, unload or deletion that
 * raises them. At each of those moments every walk, lookup and print over the
 * modules that are registered ends and stays in its tree. So a hook may read them
 * all, but must not load, unload, or delete the context. In the hook for private
 * data, the node that dies and the nodes below it may be read by their name and
 * module only. A memory hook (QM_MemRegisterCallBack()) must not call the library.
 */

QM_BEGIN_DECLS

/** The schema context. Opaque. */
typedef struct QmCtx QmCtx;
/** One module. Opaque; owned by its context. */
typedef struct QmsModule QmsModule;
/** One schema node. Opaque; owned by its module. */
typedef struct QmsNode QmsNode;

/** Bits of the load flags of QM_CTX_Create(). */
typedef enum QmLoadFlag {
  QM_LOAD_IMPORTS = 0x1,      /**< Loading a module also loads all its imports, transitively. */
  QM_LOAD_DESCRIPTIONS = 0x2, /**< Keep description texts. */
  QM_LOAD_UNITS = 0x8         /**< Keep units texts. */
} QmLoadFlag;

/**
 * Gives a node's private data, never NULL, back to the client when the node is
 * destroyed. Of the subtree that dies, only names and modules may be read.
 */
typedef void (*QmPridataFreeFunc)(QmsNode *node, void *privateData);
/** Tells that an augment's first child was attached to, or is about to leave, its target. */
typedef void (*QmFirstAugChildRelinkFunc)(QmCtx *ctx, QmsNode *node);
/**
 * Tells that a deviation of @p deviatingModName, with the target path
 * @p deviationPath, is about to remove a node. The result is not evaluated.
 */
typedef uint32_t (*QmBeforeDeviateNotSupportFunc)(QmCtx *ctx, QmsNode *node,
                                                  const char *deviatingModName,
                                                  const char *deviationPath);
/**
 * Tells that a deviation is about to change a node's extension instances. The
 * result is not evaluated.
 */
typedef uint32_t (*QmBeforeDeviateExtInstFunc)(QmCtx *ctx, QmsNode *node);
/** Tells that an unload is about to destroy a module. */
typedef void (*QmReloadModuleCbFunc)(QmCtx *ctx, const char *modName);
/**
 * Decides whether an instance of the extension @p keyword, defined in the module
 * @p modName, is kept: 0 keeps it, anything else skips it.
 */
typedef uint32_t (*QmExtInstFilterCbFunc)(const char *modName, const char *keyword);

/* Life of a context. */

/**
 * @brief Creates an empty schema context.
 *
 * Memory hooks, if the client has any, are registered before the first context is
 * created. The call also initialises libxml2, so it comes before any thread parses.
 * When there is memory for the context but not for its load errors, the context is
 * made all the same; no load error is recorded then.
 *
 * @param[in] loadFlags  Bits of #QmLoadFlag; other bits are kept and not used. They
 *                       hold for the life of the context.
 *
 * @return The context, owned by the caller and deleted with QM_CTX_Delete(); NULL
 *         without memory.
 *
 * @par Thread safety
 * Contexts are independent of each other: several threads may each create one.
 *
 * @see QM_MemRegisterCallBack()
 */
QM_API QmCtx *QM_CTX_Create(uint32_t loadFlags) QM_NOEXCEPT;

/**
 * @brief Deletes a context with everything that it owns.
 *
 * Load errors go first, then all modules with their schema nodes, the relations
 * between modules, the search directories, and the texts. Every pointer that the
 * library handed out for this context is invalid afterwards. The hook for private
 * data is called for each node that has some.
 *
 * @param[in] ctx  Context to delete. NULL is ignored.
 *
 * @par Thread safety
 * No other thread may use the context any more, nor may a scan of its load errors
 * or a validation run be in progress.
 */
QM_API void QM_CTX_Delete(QmCtx *ctx) QM_NOEXCEPT;

/* Lookups. */

/**
 * @brief Finds a loaded module by its name.
 *
 * @param[in] ctx   Context to search. NULL gives NULL.
 * @param[in] name  Name of the module. NULL gives NULL.
 *
 * @return The module, borrowed: it holds until the next load or unload. NULL
 *         when no module of that name is loaded.
 *
 * @par Thread safety
 * May run beside other reading calls on the same context, but not beside a load,
 * an unload or a change.
 */
QM_API QmsModule *QM_CTX_GetModuleByModName(QmCtx *ctx, const char *name) QM_NOEXCEPT;

/**
 * @brief Finds a loaded module by its namespace.
 *
 * Deliberate: a module that was loaded without a namespace is found for any
 * namespace. No other module can be loaded beside it.
 *
 * @param[in] ctx  Context to search. NULL gives NULL.
 * @param[in] ns   Namespace of the module. NULL gives NULL.
 *
 * @return The module, borrowed: it holds until the next load or unload. NULL
 *         when no module of that namespace is loaded.
 *
 * @par Thread safety
 * May run beside other reading calls on the same context, but not beside a load,
 * an unload or a change.
 */
QM_API QmsModule *QM_CTX_GetModuleByModNs(QmCtx *ctx, const char *ns) QM_NOEXCEPT;

/**
 * @brief Finds a schema node by its absolute schema node identifier.
 *
 * The path is written with module names instead of prefixes, and a module name
 * stands only at the first step and where the module changes: "/m:a/b/n:c". The
 * last module name tells the module that defines the node. When other steps come
 * before it, the node was added to a foreign tree, and it is looked for below the
 * augments of its module whose target is exactly the part before; so it is found
 * whether or not the augment is attached at the moment.
 *
 * @param[in]  ctx      Context to search. NULL gives NULL.
 * @param[in]  path     Path of the node; choices and cases are steps of it. Module
 *                      names have at most 64 characters. NULL gives NULL.
 * @param[out] augment  Receives the augment below which the node was found, else
 *                      NULL. May be NULL.
 *
 * @return The node, owned by its module; NULL when the path cannot be split, its
 *         module is not loaded, there is no such node, or memory ran out.
 *
 * @par Thread safety
 * May run beside other reading calls on the same context, but not beside a load,
 * an unload or a change.
 *
 * @see RFC 7950 section 6.5 (schema node identifier)
 */
QM_API QmsNode *QM_CTX_GetTargetNode(QmCtx *ctx, const char *path, QmsNode **augment) QM_NOEXCEPT;

/* Features. */

/**
 * @brief Disables a feature of a loaded module.
 *
 * Features are disabled when a module is loaded and are enabled through its
 * record.
 *
 * @param[in,out] ctx       Context of the module. NULL is refused.
 * @param[in]     modName   Name of the module. NULL is refused.
 * @param[in]     featName  Name of the feature. NULL is refused.
 *
 * @retval 0   The feature is disabled; also when it was so before.
 * @retval 22  An argument is NULL, the module is not loaded, or it has no such
 *             feature.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context.
 *
 * @see QM_MOD_EnableFeature(), RFC 7950 section 7.20.1
 */
QM_API QM_NODISCARD uint32_t QM_CTX_DisableModFeature(QmCtx *ctx, const char *modName,
                                                      const char *featName) QM_NOEXCEPT;

/**
 * @brief Tells whether a feature of a loaded module is enabled.
 *
 * Deliberate: the result for a NULL argument is not 0, so a caller tests for
 * exactly 1.
 *
 * @param[in] ctx       Context of the module.
 * @param[in] modName   Name of the module.
 * @param[in] featName  Name of the feature.
 *
 * @retval 1   The feature is enabled.
 * @retval 0   It is disabled, or there is no such module or feature.
 * @retval 22  An argument is NULL.
 *
 * @par Thread safety
 * May run beside other reading calls on the same context, but not beside a load,
 * an unload or a change.
 *
 * @see QM_FEATURE_IsEnabled(), RFC 7950 section 7.20.1
 */
QM_API uint32_t QM_CTX_IsModFeatureEnable(QmCtx *ctx, const char *modName,
                                          const char *featName) QM_NOEXCEPT;

/* Patterns. */

/**
 * @brief Sets whether the context keeps the compiled forms of patterns.
 *
 * It does not in a new context: each check of a value compiles the patterns of its
 * type, and nothing is kept. While it does, a pattern is compiled when the first value
 * is checked against it, and its compiled form serves all later checks, in all threads.
 * Each QM_CTX_UnloadModule(), switching off and QM_CTX_Delete() free all of them. The
 * results of checks are the same either way; what is saved is most of the time that a
 * check takes.
 *
 * A pattern that does not compile is not kept, but tried again at each check. Compiled
 * forms are blocks of libxml2 and do not pass the memory hooks; the records that lead to
 * them do, and without memory for one its form is not kept.
 *
 * @param[in,out] ctx  Context to change. NULL is refused.
 * @param[in]     on   0 to keep nothing, and free what is kept; anything else to keep.
 *
 * @retval 0   Set; also when it was so before.
 * @retval 22  @p ctx is NULL.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context, value checks
 * and validations included.
 *
 * @see RFC 7950 section 9.4.5
 */
QM_API QM_NODISCARD uint32_t QM_CTX_SetKeepPatterns(QmCtx *ctx, uint32_t on) QM_NOEXCEPT;

/* Search directories. */

/**
 * @brief Adds a directory to the end of the search path for YIN files.
 *
 * Directories are searched in the order in which they were added. Trailing slashes
 * are dropped, so "/etc/yin/" and "/etc/yin" name the same entry; nothing else in
 * the path is normalised. Adding a directory that is already on the path changes
 * nothing and succeeds. There is no limit on their number.
 *
 * @param[in,out] ctx  Context to change. NULL is refused.
 * @param[in]     dir  Absolute path of an existing directory. Copied. NULL is
 *                     refused.
 *
 * @retval 0   The directory is on the search path.
 * @retval 12  Out of memory while the path table grew; the path is as before.
 * @retval 20  @p dir is not absolute or not an existing directory, or there was no
 *             memory to normalise it; the path is as before.
 * @retval 22  An argument is NULL, or there was no memory to keep the text; the
 *             path is as before.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context.
 *
 * @see QM_CTX_UnSetSearchDir(), QM_CTX_LoadModule()
 */
QM_API QM_NODISCARD uint32_t QM_CTX_SetSearchDir(QmCtx *ctx, const char *dir) QM_NOEXCEPT;

/**
 * @brief Takes a directory, or all of them, off the search path.
 *
 * The others keep their order. Taking off a directory that is not on the path
 * succeeds. Deliberate: a directory that no longer exists cannot be taken off by
 * its name; NULL takes it off with all others.
 *
 * @param[in,out] ctx  Context to change. NULL is refused.
 * @param[in]     dir  The directory, written as for QM_CTX_SetSearchDir(); NULL
 *                     empties the search path.
 *
 * @retval 0   The directory is not on the search path.
 * @retval 20  @p dir is not absolute or not an existing directory, or there was no
 *             memory to normalise it; the path is as before.
 * @retval 22  @p ctx is NULL.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context.
 */
QM_API QM_NODISCARD uint32_t QM_CTX_UnSetSearchDir(QmCtx *ctx, const char *dir) QM_NOEXCEPT;

/* Hooks. What they may do is said at the top of this file: read, and nothing else. */

/**
 * @brief Sets the hook that takes back a schema node's private data.
 *
 * It is called when a node with private data is destroyed: by an unload, a
 * deviation, a failed load or the deletion of the context. The subtree is out of
 * the schema by then and its module may be half destroyed: of the node and those
 * below it, the hook may read the name (QM_NODE_GetNodeName()) and the module
 * (QM_NODE_GetModule()), which may have lost its own name. The modules that are
 * still registered may be walked as in any hook.
 *
 * @param[in,out] ctx   Context to change. NULL is ignored.
 * @param[in]     func  The hook; NULL removes it.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context.
 *
 * @see QM_NODE_SetPrivate()
 */
QM_API void QM_CTX_SetPridataFreeFunc(QmCtx *ctx, QmPridataFreeFunc func) QM_NOEXCEPT;

/**
 * @brief Sets the hook that tells of an augment being attached or detached.
 *
 * It is called with the augment's first child, once all children hang under the
 * target, and again before they go back to the augment. In both cases a walk from
 * the augment shows its children where they are, in the list of the target.
 *
 * @param[in,out] ctx   Context to change. NULL is ignored.
 * @param[in]     func  The hook; NULL removes it.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context.
 *
 * @see RFC 7950 section 7.17
 */
QM_API void QM_CTX_SetFirstAugChildRelinkFunc(QmCtx *ctx,
                                              QmFirstAugChildRelinkFunc func) QM_NOEXCEPT;

/**
 * @brief Sets the hook that is told before a deviation removes a node.
 *
 * The node is still in its tree during the call and is freed afterwards. The
 * result of the hook does not stop the deviation.
 *
 * @param[in,out] ctx   Context to change. NULL is ignored.
 * @param[in]     func  The hook; NULL removes it.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context.
 *
 * @see RFC 7950 section 7.20.3.2 ("not-supported")
 */
QM_API void QM_CTX_SetBeforeDeviateNotSupportFunc(QmCtx *ctx,
                                                  QmBeforeDeviateNotSupportFunc func) QM_NOEXCEPT;

/**
 * @brief Sets the hook that is told before a deviation changes a node's extension
 * instances.
 *
 * The result of the hook does not stop the deviation.
 *
 * @param[in,out] ctx   Context to change. NULL is ignored.
 * @param[in]     func  The hook; NULL removes it.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context.
 */
QM_API void QM_CTX_SetBeforeDeviateExtInstFunc(QmCtx *ctx,
                                               QmBeforeDeviateExtInstFunc func) QM_NOEXCEPT;

/**
 * @brief Sets the hook that is told of each module that an unload destroys.
 *
 * An unload also destroys the modules that the named one has changed, and loads
 * them again. For each of them, the named one included, the hook is called just
 * before the module is destroyed; its pointers are still valid.
 *
 * @param[in,out] ctx   Context to change. NULL is ignored.
 * @param[in]     func  The hook; NULL removes it.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context.
 *
 * @see QM_CTX_UnloadModule()
 */
QM_API void QM_CTX_SetReloadModuleCbFunc(QmCtx *ctx, QmReloadModuleCbFunc func) QM_NOEXCEPT;

/**
 * @brief Sets the hook that chooses which extension instances a load keeps.
 *
 * Without a hook every instance is kept whose prefix can be resolved.
 *
 * @param[in,out] ctx   Context to change. NULL is ignored.
 * @param[in]     func  The hook; NULL removes it.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context.
 *
 * @see RFC 7950 section 7.19
 */
QM_API void QM_CTX_SetExtInstFilterCbFunc(QmCtx *ctx, QmExtInstFilterCbFunc func) QM_NOEXCEPT;

QM_END_DECLS

#endif
