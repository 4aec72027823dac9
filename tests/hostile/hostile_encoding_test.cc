// SPDX-License-Identifier: BSD-3-Clause
// Encodings, marks and bytes that have no place in a text, in models and messages.
#include <gtest/gtest.h>
#include <qmodel/error.h>

#include <string>

#include "tests/hostile/hostile_text.h"
#include "tests/support/temp_folder.h"

namespace {

const char kBody[] =
    "<rpc name='op'><input><leaf name='a'><type name='string'/></leaf></input></rpc>"
    "<notification name='ev'><leaf name='a'><type name='string'/></leaf></notification>";

// ASCII text in an encoding with this number of bytes per character.
std::string Widen(const std::string& mark, const std::string& text, size_t bytes, bool bigEndian) {
  std::string out = mark;
  for (char c : text) {
    std::string wide(bytes, '\0');
    wide[bigEndian ? bytes - 1 : 0] = c;
    out += wide;
  }
  return out;
}

// A search directory with the file m.yin.
class ModelFile {
 public:
  explicit ModelFile(const std::string& content) { folder_.Write("m.yin", content); }

  uint32_t Load() const {
    QmCtx* ctx = QM_CTX_Create(0);
    EXPECT_EQ(QM_OK, QM_CTX_SetSearchDir(ctx, folder_.Dir()));
    const uint32_t status = QM_CTX_LoadModule(ctx, "m");
    EXPECT_EQ(status == QM_OK, QM_CTX_GetModuleByModName(ctx, "m") != nullptr);
    EXPECT_EQ(status == QM_OK, LoadErrorLines(ctx).empty());
    QM_CTX_Delete(ctx);
    return status;
  }

 private:
  temp_folder::Folder folder_;
};

// A file has a length, so the parser may find out its encoding by itself.
TEST(HostileEncoding, ModelFilesMayHaveAnyEncodingOfXml) {
  const std::string text = ModuleText(kBody);
  EXPECT_EQ(QM_OK, ModelFile("\xEF\xBB\xBF" + text).Load());
  EXPECT_EQ(QM_OK, ModelFile(Widen("\xFF\xFE", text, 2, false)).Load());
  EXPECT_EQ(QM_OK, ModelFile(Widen("\xFE\xFF", text, 2, true)).Load());
  EXPECT_EQ(QM_OK, ModelFile("<?xml version='1.0' encoding='ISO-8859-1'?>" + text).Load());
}

TEST(HostileEncoding, ModelFilesWithoutSenseAreRefused) {
  const std::string text = ModuleText(kBody);
  EXPECT_NE(QM_OK, ModelFile(Widen("\xFF\xFE", text, 2, true)).Load()) << "the mark lies";
  EXPECT_NE(QM_OK, ModelFile(Widen("\xFF\xFE", text, 2, false).substr(0, 201)).Load()) << "cut";
  EXPECT_NE(QM_OK, ModelFile("\xFF\xFE").Load());
  EXPECT_NE(QM_OK, ModelFile("\xEF\xBB\xBF").Load());
  EXPECT_NE(QM_OK, ModelFile("").Load());
  EXPECT_NE(QM_OK, ModelFile(std::string(1, '\0')).Load());
  EXPECT_NE(QM_OK, ModelFile(std::string(100000, '\0')).Load());
  EXPECT_NE(QM_OK, ModelFile("<?xml version='1.0' encoding='no-such'?>" + text).Load());
  EXPECT_NE(QM_OK,
            ModelFile("<?xml version='1.0' encoding='UTF-16'?>" + text.substr(0, 90)).Load());
}

TEST(HostileEncoding, NulBytesInAModelFileAreRefused) {
  const std::string text = ModuleText("<container name='c'/>");
  const std::string nul(1, '\0');
  for (const char* place : {"<container", "name='c'", "c'/>", "/></module>", "</module>"}) {
    SCOPED_TRACE(place);
    std::string hurt = text;
    hurt.insert(hurt.find(place), nul);
    EXPECT_NE(QM_OK, ModelFile(hurt).Load());
  }
}

// A text given in memory ends at its first NUL byte, so only encodings without any
// can be given so.
TEST(HostileEncoding, TextInMemoryEndsAtItsFirstNulByte) {
  const std::string text = ModuleText(kBody);
  EXPECT_EQ(QM_OK, LoadBesideOther(text + std::string(1, '\0') + "anything"));
  EXPECT_NE(QM_OK, LoadBesideOther(text.substr(0, 50) + std::string(1, '\0') + text.substr(50)));
  EXPECT_NE(QM_OK, LoadBesideOther(Widen("\xFF\xFE", text, 2, false)));
  EXPECT_NE(QM_OK, LoadBesideOther(Widen("\xFE\xFF", text, 2, true)));
  EXPECT_NE(QM_OK, LoadBesideOther(Widen("", text, 4, false)));
  EXPECT_EQ(QM_OK, LoadBesideOther("\xEF\xBB\xBF" + text));
  EXPECT_NE(QM_OK, LoadBesideOther("\xEF\xBB\xBF\xEF\xBB\xBF" + text));
}

TEST(HostileEncoding, MessagesThatAreNoUtf8AreRefusedWhereTheyDoNotSayOtherwise) {
  const std::string module = ModuleText(kBody);
  const std::string request = "<op xmlns='urn:m'><a>x</a></op>";
  const std::string event = "<ev xmlns='urn:m'><a>x</a></ev>";
  EXPECT_TRUE(IsValidRequest(module, request));
  EXPECT_TRUE(IsValidNotification(module, event));
  for (const std::string& mark : {std::string("\xFF\xFE"), std::string("\xFE\xFF")}) {
    EXPECT_FALSE(IsValidRequest(module, Widen(mark, request, 2, mark[0] == '\xFE')));
    EXPECT_FALSE(IsValidNotification(module, Widen(mark, event, 2, mark[0] == '\xFE')));
    EXPECT_FALSE(IsValidRequest(module, mark + request));
  }
  const char* const bad[] = {
      "\x80", "\xC0\xAF",     "\xC3", "\xE2", "\xED\xBF\xBF",     "\xF4\x90\x80\x80",
      "\xFE", "\xEF\xBF\xBF", "\x01", "\x1F", "\xF7\xBF\xBF\xBF", "\xC1\xBF",
  };
  for (const char* bytes : bad) {
    SCOPED_TRACE(testing::PrintToString(bytes));
    EXPECT_FALSE(
        IsValidRequest(module, std::string("<op xmlns='urn:m'><a>") + bytes + "</a></op>"));
    EXPECT_FALSE(IsValidRequest(module, std::string("<op xmlns='urn:m' b='") + bytes + "'/>"));
    EXPECT_FALSE(
        IsValidRequest(module, std::string("<op xmlns='urn:m'><!--") + bytes + "--></op>"));
    EXPECT_FALSE(IsValidRequest(module, std::string("<op") + bytes + " xmlns='urn:m'/>"));
    EXPECT_FALSE(
        IsValidNotification(module, std::string("<ev xmlns='urn:m'><a>") + bytes + "</a></ev>"));
    EXPECT_NE(QM_OK, LoadBesideOther(ModuleText(std::string("<container name='") + bytes + "'/>")));
  }
  for (const char* entity : {"&#0;", "&#1;", "&#xD800;", "&#xFFFE;", "&#x110000;", "&#99999999999;",
                             "&#-1;", "&#;", "&#x;", "&;", "&"}) {
    SCOPED_TRACE(entity);
    EXPECT_FALSE(
        IsValidRequest(module, std::string("<op xmlns='urn:m'><a>") + entity + "</a></op>"));
    EXPECT_NE(QM_OK,
              LoadBesideOther(ModuleText(std::string("<container name='c") + entity + "'/>")));
  }
}

TEST(HostileEncoding, CharactersAtTheEndsOfTheirRangesAreTaken) {
  const std::string module = ModuleText(kBody);
  for (const char* text :
       {"\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
        "\xEF\xBF\xBD", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF", "&#x10FFFF;", "&#9;"}) {
    SCOPED_TRACE(testing::PrintToString(text));
    EXPECT_TRUE(IsValidRequest(module, std::string("<op xmlns='urn:m'><a>") + text + "</a></op>"));
  }
}

}  // namespace
