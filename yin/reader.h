// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <libxml/tree.h>

#include <cstdint>

#include "context/internal.h"
#include "platform/file.h"
#include "yin/records.h"

QM_BEGIN_INTERNAL_DECLS

xmlDoc* QMS_LOADER_ReadYinFileToXmlDoc(const char* path);
xmlDoc* QMS_LOADER_ReadFileContentAsDoc(RtkVfsFile* file);

QM_END_INTERNAL_DECLS
