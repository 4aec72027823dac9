/* SPDX-License-Identifier: BSD-3-Clause */
#ifndef QMODEL_LOADER_H
#define QMODEL_LOADER_H

#include <stdint.h>

#include <qmodel/context.h>
#include <qmodel/export.h>

/**
 * @file
 * @brief Loading and unloading of modules, and the load errors.
 *
 * Modules are read from YIN files (RFC 7950 section 13) with libxml2. No network
 * address and no external entity is followed, nothing is printed, and the parser
 * settings of the calling thread stay as they are. The statements `grouping`,
 * `uses` and `refine` are skipped: a file has to spell out its data nodes.
 *
 * A failed load gives a status; its causes are recorded as English sentences, with
 * the base name of the file that was being read, and are fetched afterwards.
 *
 * Thread rule: the client serialises loads and unloads with everything else on the
 * same context. Only the recorded errors may be scanned at any time.
 */

QM_BEGIN_DECLS

/** Receives one recorded load error. @p yinFile is NULL when no file was being read. */
typedef uint32_t (*QmLoadFailScanFunc)(const char *modName, const char *yinFile,
                                       const char *message, void *userData);

/**
 * @brief Loads a module by its name from the search directories.
 *
 * The directories are searched in the order in which they were set, for
 * "NAME.yin", else for "NAME@*.yin"; revision dates are not compared. Files
 * "NAME@@SUFFIX.yin" are parts of one module and are merged, at most 10 in a call.
 * Submodules are read with their module. Of a module that is loaded already only
 * parts are read that were not there before; its files must be there all the same.
 *
 * With #QM_LOAD_IMPORTS all imported modules are loaded too, transitively; when one
 * of them fails, the named module stays. Augments and deviations of the module
 * take effect as soon as their target is loaded, and the module is augmented and
 * deviated by modules loaded before it.
 *
 * What went wrong is told by QM_CTX_ScanAllSchemaLoadFail(). The messages of an
 * earlier attempt to load the same module are forgotten first.
 *
 * @param[in,out] ctx      Context to load into. NULL is refused.
 * @param[in]     modName  Name of the module. NULL is refused.
 *
 * @retval 0   The module is loaded, with its imports when the flag asks for them.
 *             A part of a split module, an augment or a deviation may have failed
 *             all the same; a message then tells so.
 * @retval 1   The name or the namespace belongs to another module.
 * @retval 2   There is no file for the module, or for an import; or memory ran out
 *             while files were looked for.
 * @retval 12  Out of memory.
 * @retval 22  An argument is NULL; or a file could not be read, is not a valid
 *             module, or is one of another name; or memory ran out on the way.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context.
 *
 * @see QM_CTX_SetSearchDir(), RFC 7950 section 13 (YIN)
 */
QM_API QM_NODISCARD uint32_t QM_CTX_LoadModule(QmCtx *ctx, const char *modName) QM_NOEXCEPT;

/**
 * @brief Loads a module from a YIN text in memory.
 *
 * Deliberate: when a module of that name is loaded already, that one stays, the new
 * one is dropped, and the call succeeds. Imports of the module are not loaded,
 * whatever the load flags. Submodules are read from the search directories, of a
 * split one only the first file found. Messages are recorded under the module's
 * name, with a file name only for those about a submodule; those of an earlier
 * attempt are not forgotten first. When the module is refused because of its
 * namespace, no message is left.
 *
 * @param[in,out] ctx      Context to load into. NULL is refused.
 * @param[in]     yinText  The whole text, NUL-terminated, not kept. NULL is
 *                         refused.
 *
 * @retval 0   A module of that name is loaded.
 * @retval 1   The text is no valid module, its namespace belongs to another
 *             module, or memory ran out while the module was built.
 * @retval 22  An argument is NULL, or the text is not well-formed XML.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context.
 *
 * @see RFC 7950 section 13 (YIN)
 */
QM_API QM_NODISCARD uint32_t QM_CTX_LoadMemory(QmCtx *ctx, const char *yinText) QM_NOEXCEPT;

/**
 * @brief Removes a module and undoes what it changed in others.
 *
 * Modules that the named one deviates are destroyed too and loaded again from their
 * files, with the same features enabled; so is a module that augments one of those
 * to be destroyed when another module deviates them both. Augments of the modules
 * concerned are taken apart first; those of modules that stay wait for their target
 * to be loaded again. A module that was merged from several files is itself loaded
 * again from them, deliberately.
 *
 * All pointers to the modules that were destroyed, and to their nodes, are invalid
 * afterwards, also for a module that was loaded again; the hook of
 * QM_CTX_SetReloadModuleCbFunc() names them one by one.
 *
 * Unloading a module that is not loaded forgets the messages recorded for its name.
 *
 * @param[in,out] ctx      Context to unload from. NULL is accepted: nothing happens.
 * @param[in]     modName  Name of the module. NULL is accepted: nothing happens.
 *
 * @return 0 when the module is gone, or was not there, and every reload succeeded.
 *         12 without memory, and 22 for a target path that cannot be split, end the
 *         work at that point: modules removed until then stay removed. Any other
 *         value says that a module could not be loaded or a feature not be enabled
 *         again; it is a sum of statuses and has no further meaning.
 *
 * @par Thread safety
 * The caller serialises this with every other call on the same context.
 */
QM_API QM_NODISCARD uint32_t QM_CTX_UnloadModule(QmCtx *ctx, const char *modName) QM_NOEXCEPT;

/**
 * @brief Calls a function for each recorded load error.
 *
 * Modules come in ascending order of their names, the errors of one module in the
 * order in which they were recorded. The first two of each module are kept, and a
 * message is cut at 511 characters. They stay until the module is loaded anew or
 * destroyed, or an unload names it.
 *
 * The function runs with the records locked. It must not load or unload; an error
 * that it would record is dropped, and it finds no records itself except through a
 * scan. Texts are valid during the call only.
 *
 * @param[in] ctx       Context whose errors are wanted. NULL gives 0.
 * @param[in] callback  Receives them; a result other than 0 stops the scan. NULL
 *                      gives 0.
 * @param[in] userData  Handed to @p callback.
 *
 * @return 0 after the last error, also when there is none or the records could not
 *         be locked; else the first result of @p callback that is not 0.
 *
 * @par Thread safety
 * May run beside any other call on the same context except QM_CTX_Delete().
 */
QM_API QM_NODISCARD uint32_t QM_CTX_ScanAllSchemaLoadFail(QmCtx *ctx, QmLoadFailScanFunc callback,
                                                          void *userData) QM_NOEXCEPT;

QM_END_DECLS

#endif
