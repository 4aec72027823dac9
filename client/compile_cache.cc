// SPDX-License-Identifier: BSD-3-Clause
// An entry is found by what was asked: the compiler, the options, directories and
// operands. It holds, beside what came of it, what the directories held and each file
// that was read, whole. All of this is compared with what stands there now, byte by byte,
// so no model, however made, is taken for another. The checksum is against damage only;
// the folder is its owner's alone.
#include "client/compile_cache.h"

#include <libxml/parser.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

#include <qmodel/version.h>

#include "client/cache_folder.h"
#include "client/file_input.h"
#include "compiler/fingerprint.h"
#include "compiler/reading/repository.h"

namespace {

using compiler::JobFile;
using compiler::JobModule;
using compiler::JobRequest;
using compiler::JobResult;
using compiler::JobState;

constexpr std::string_view kHead = "qmodel compiled ";

// Each step is invertible, so a change of one word changes the sum.
uint64_t Checksum(std::string_view text) {
  uint64_t sum = 0xcbf29ce484222325U;
  while (!text.empty()) {
    uint64_t word = 0;
    const size_t length = std::min(text.size(), sizeof(word));
    std::memcpy(&word, text.data(), length);
    sum = (sum ^ word) * 0x100000001b3U;
    sum ^= sum >> 32U;
    text.remove_prefix(length);
  }
  return sum;
}

void PutNumber(uint64_t number, std::string* record) {
  char bytes[sizeof(number)];
  std::memcpy(bytes, &number, sizeof(number));
  record->append(bytes, sizeof(bytes));
}

void PutText(std::string_view text, std::string* record) {
  PutNumber(text.size(), record);
  record->append(text);
}

void PutTexts(const std::vector<std::string>& texts, std::string* record) {
  PutNumber(texts.size(), record);
  for (const std::string& text : texts) PutText(text, record);
}

bool TakeNumber(std::string_view* record, uint64_t* number) {
  if (record->size() < sizeof(*number)) return false;
  std::memcpy(number, record->data(), sizeof(*number));
  record->remove_prefix(sizeof(*number));
  return true;
}

bool TakeText(std::string_view* record, std::string_view* text) {
  uint64_t length = 0;
  if (!TakeNumber(record, &length) || record->size() < length) return false;
  *text = record->substr(0, length);
  record->remove_prefix(length);
  return true;
}

bool TakeString(std::string_view* record, std::string* text) {
  std::string_view taken;
  if (!TakeText(record, &taken)) return false;
  *text = taken;
  return true;
}

bool TakeTexts(std::string_view* record, std::vector<std::string>* texts) {
  uint64_t count = 0;
  if (!TakeNumber(record, &count)) return false;
  for (; count > 0; --count) {
    if (!TakeString(record, &texts->emplace_back())) return false;
  }
  return true;
}

bool IsRelative(const std::string& path) {
  return !path.starts_with('/');
}

// Relative paths mean something else elsewhere. False: it is not known where they begin.
bool PutWorkingFolder(const JobRequest& request, std::string* record) {
  const bool isNeeded =
      std::any_of(request.folders.begin(), request.folders.end(), IsRelative) ||
      std::any_of(request.operands.begin(), request.operands.end(), [](const std::string& operand) {
        return compiler::IsFileOperand(operand) && IsRelative(operand);
      });
  char path[PATH_MAX] = "";
  if (isNeeded && getcwd(path, sizeof(path)) == nullptr) return false;
  PutText(path, record);
  return true;
}

// All that is asked for, by whom.
bool DescribeRequest(const JobRequest& request, std::string* record) {
  PutText(QM_VERSION_STRING, record);
  PutText(compiler::Fingerprint(), record);
  PutText(xmlParserVersion, record);
  const compiler::CompileOptions& options = request.options;
  for (const bool flag :
       {request.recursive, request.withImports, options.featuresComplete, options.dropFailing}) {
    PutNumber(flag ? 1 : 0, record);
  }
  PutNumber(options.features.size(), record);
  for (const compiler::FeatureName& name : options.features) {
    PutText(name.module, record);
    PutText(name.feature, record);
  }
  PutTexts(request.folders, record);
  PutTexts(request.operands, record);
  return PutWorkingFolder(request, record);
}

// A pipe gives what it holds only once, and not to the one that merely compares.
bool ReadsPlainFiles(const JobRequest& request) {
  for (const std::string& operand : request.operands) {
    struct stat info {};
    if (compiler::IsFileOperand(operand) && stat(operand.c_str(), &info) == 0 &&
        !S_ISREG(info.st_mode)) {
      return false;
    }
  }
  return true;
}

bool IsUnchanged(const std::string& path, std::string_view content) {
  struct stat info {};
  if (stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return false;
  std::string now;
  return std::cmp_equal(info.st_size, content.size()) && ReadRegularFile(path, &now) &&
         now == content;
}

bool AreInputsUnchanged(const JobRequest& request, std::string_view* record) {
  std::string_view listing;
  std::string now;
  uint64_t count = 0;
  if (!TakeText(record, &listing) || !ListInputs(request, &now) || listing != now ||
      !TakeNumber(record, &count)) {
    return false;
  }
  for (; count > 0; --count) {
    std::string path;
    std::string_view content;
    if (!TakeString(record, &path) || !TakeText(record, &content) || !IsUnchanged(path, content))
      return false;
  }
  return true;
}

void PutInputs(const JobResult& result, std::string* record) {
  PutText(result.listing, record);
  PutNumber(result.inputs.size(), record);
  for (const JobFile& file : result.inputs) {
    PutText(file.path, record);
    PutText(file.content, record);
  }
}

void PutResult(const JobResult& result, std::string* record) {
  PutNumber(result.state == JobState::kLost ? 1 : 0, record);
  PutTexts(result.operandNames, record);
  PutTexts(result.findings, record);
  PutNumber(result.modules.size(), record);
  for (const JobModule& module : result.modules) {
    PutText(module.name, record);
    PutText(module.source, record);
    PutText(module.yin, record);
  }
}

bool TakeResult(std::string_view record, const JobRequest& request, JobResult* result) {
  uint64_t lost = 0;
  uint64_t count = 0;
  if (!TakeNumber(&record, &lost) || !TakeTexts(&record, &result->operandNames) ||
      !TakeTexts(&record, &result->findings) || !TakeNumber(&record, &count)) {
    return false;
  }
  for (; count > 0; --count) {
    JobModule& module = result->modules.emplace_back();
    if (!TakeString(&record, &module.name) || !TakeString(&record, &module.source) ||
        !TakeString(&record, &module.yin)) {
      return false;
    }
  }
  result->state = lost == 0 ? JobState::kDone : JobState::kLost;
  return record.empty() && result->operandNames.size() == request.operands.size();
}

bool Fetch(const CacheFolder& folder, const JobRequest& request, const std::string& asked,
           JobResult* result) {
  std::string content;
  if (!folder.Read(Checksum(asked), &content) || !content.starts_with(kHead)) return false;
  std::string_view record = std::string_view(content).substr(kHead.size());
  uint64_t sum = 0;
  std::string_view described;
  return TakeNumber(&record, &sum) && sum == Checksum(record) && TakeText(&record, &described) &&
         described == asked && AreInputsUnchanged(request, &record) &&
         TakeResult(record, request, result);
}

void Keep(const CacheFolder& folder, const std::string& asked, const JobResult& result) {
  if (result.state > JobState::kLost) return;
  std::string record;
  PutText(asked, &record);
  PutInputs(result, &record);
  PutResult(result, &record);
  std::string content(kHead);
  PutNumber(Checksum(record), &content);
  folder.Write(Checksum(asked), content + record);
}

// False: there is no such entry, or not enough memory to read it.
bool TryFetch(const CacheFolder& folder, const JobRequest& request, const std::string& asked,
              JobResult* result) {
  try {
    if (Fetch(folder, request, asked, result)) return true;
  } catch (const std::bad_alloc&) {
  }
  *result = JobResult();
  return false;
}

}  // namespace

JobResult RunJobOnce(JobRequest request) {
  CacheFolder folder;
  std::string asked;
  if (!ReadsPlainFiles(request) || !DescribeRequest(request, &asked) || !folder.Open())
    return RunJob(request);
  JobResult result;
  if (TryFetch(folder, request, asked, &result)) return result;
  request.keepInputs = true;
  result = RunJob(request);
  try {
    Keep(folder, asked, result);
  } catch (const std::bad_alloc&) {
    // Then it is compiled again the next time.
  }
  return result;
}
