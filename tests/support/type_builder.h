// SPDX-License-Identifier: BSD-3-Clause
#pragma once
#include <cstdint>
#include <initializer_list>
#include <utility>

#include "context/dict.h"
#include "types/records.h"

// Types made by hand: each function adds one constraint entry, as the loader does, so
// entries are added in ascending order of their kinds.
namespace type_builder {

// A dictionary for the length of a test.
class Dict {
 public:
  Dict();
  ~Dict();
  Dict(const Dict&) = delete;
  Dict& operator=(const Dict&) = delete;
  QmDict* Get() { return &dict_; }
  const char* Intern(const char* text);

 private:
  QmDict dict_{};
};

// A type record and its entries.
class Type {
 public:
  Type(Dict* dict, uint32_t baseType) : dict_(dict->Get()) { type_.baseType = baseType; }
  ~Type();
  Type(const Type&) = delete;
  Type& operator=(const Type&) = delete;
  QmtType* Get() { return &type_; }
  QmtType* operator->() { return &type_; }

 private:
  QmDict* dict_;
  QmtType type_{};
};

void* AddBody(QmtType* type, uint32_t kind, uint32_t itemCount, uint32_t loadFlags = 0);
QmtConsDerived* AddDerived(QmDict* dict, QmtType* type, const char* moduleName,
                           const char* typedefName, QmtType* resolved);
QmtConsBase* AddBases(QmDict* dict, QmtType* type,
                      std::initializer_list<std::pair<const char*, const char*>> bases);
QmtConsBit* AddBits(QmDict* dict, QmtType* type,
                    std::initializer_list<std::pair<const char*, uint32_t>> bits);
// A description that is not NULL makes the body keep descriptions.
struct EnumItem {
  const char* name;
  int32_t value;
  const char* description = nullptr;
};
QmtConsEnum* AddEnums(QmDict* dict, QmtType* type, std::initializer_list<EnumItem> enums);
void AddFraction(QmtType* type, uint8_t digits);
QmtConsPath* AddPath(QmDict* dict, QmtType* type, const char* path);
// Patterns with their invert-match.
QmtConsPattern* AddPatterns(QmDict* dict, QmtType* type,
                            std::initializer_list<std::pair<const char*, uint32_t>> patterns);
// The member records are zero-filled; the caller fills them.
QmtType* AddUnion(QmtType* type, uint32_t count);
// A range or length with the given segments, each `segSize` bytes; sets no flags.
QmtSegList* AddSegs(QmtType* type, uint32_t kind, const void* segs, uint32_t count,
                    uint32_t segSize);

template <typename Seg>
QmtSegList* AddSegs(QmtType* type, uint32_t kind, std::initializer_list<Seg> segs) {
  return AddSegs(type, kind, segs.begin(), static_cast<uint32_t>(segs.size()), sizeof(Seg));
}

// Checks a value given as text, or as the content of an element, with a fresh context.
uint32_t CheckText(QmtType* type, const char* text, QmtType** matched = nullptr);
uint32_t CheckElement(QmtType* type, const char* xml, QmtType** matched = nullptr);

}  // namespace type_builder
