/* SPDX-License-Identifier: BSD-3-Clause */
#ifndef QMODEL_QMODEL_H
#define QMODEL_QMODEL_H

/**
 * @file
 * @brief All public headers of libqmodel.
 *
 * @mainpage
 *
 * YANG data models at run time, for programs that manage network devices: models are
 * loaded, questions about them answered, values checked, and rpc, action and notification
 * messages validated, with defaults completed and failures as NETCONF error records.
 *
 * A program makes a context, loads modules, and validates:
 * @code
 * QmCtx *ctx = QM_CTX_Create(QM_LOAD_IMPORTS);
 * if (ctx != NULL && QM_CTX_SetSearchDir(ctx, "/usr/share/models") == QM_OK &&
 *     QM_CTX_LoadModule(ctx, "router-system") == QM_OK) {
 *   QmErrNode *error = NULL;
 *   uint32_t verdict =
 *       QM_AGENT_ValidateRequestText(ctx, text, length, NULL, SendOn, connection, &error);
 *   if (verdict == QM_AGENT_INVALID &&
 *       QM_AGENT_WriteRecord(error, ctx, 0, Answer, connection) != QM_OK)
 *     Close(connection);
 *   QM_FreeErrNode(error);
 * }
 * QM_CTX_Delete(ctx);
 * @endcode
 *
 * Where to read on, in the order in which a program needs it:
 * - @ref context.h "Contexts": their making and end, lookups, features, search directories, hooks
 * - @ref loader.h "Loading": modules come and go; what went wrong
 * - @ref agent.h "The kit for agents": parsing, validation with a verdict of its own, error
 *   records as XML, events
 * - @ref data.h "Validation": the step below the kit
 * - @ref error.h "Statuses and error records"
 * - @ref schema.h "Modules and nodes", @ref inspect.h "lists of everything", @ref types.h "types"
 * - @ref memory.h "Memory hooks"
 * - @ref xpath.h "Conditions"
 *
 * A program in C++17 or later may include qmodel/qmodel.hpp instead: a context that is owned,
 * views of modules and nodes that loops run over, callbacks that are lambdas.
 *
 * The functions here are the promise of the library's soname. A guide for clients, examples,
 * a page on errors, threads and ownership come with the sources, in the folder docs.
 */

#include <qmodel/agent.h>
#include <qmodel/context.h>
#include <qmodel/data.h>
#include <qmodel/error.h>
#include <qmodel/export.h>
#include <qmodel/inspect.h>
#include <qmodel/loader.h>
#include <qmodel/memory.h>
#include <qmodel/schema.h>
#include <qmodel/types.h>
#include <qmodel/version.h>
#include <qmodel/xpath.h>

#endif
