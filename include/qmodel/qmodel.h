/* SPDX-License-Identifier: BSD-3-Clause */
#ifndef QMODEL_QMODEL_H
#define QMODEL_QMODEL_H

/**
 * @file
 * @brief All public headers of libqmodel.
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
