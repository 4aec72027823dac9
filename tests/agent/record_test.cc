// SPDX-License-Identifier: BSD-3-Clause
// Records made and filled by clients, and every record as XML.
#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <string>

#include <qmodel/qmodel.h>

#include "tests/support/message_fixture.h"

namespace {

using message_fixture::Schema;

uint32_t Append(const char* text, size_t length, void* arg) {
  EXPECT_LT(0u, length);
  static_cast<std::string*>(arg)->append(text, length);
  return 0;
}

std::string Write(const QmErrNode* err, QmCtx* ctx = nullptr, uint32_t flags = 0) {
  std::string text;
  EXPECT_EQ(QM_OK, QM_AGENT_WriteRecord(err, ctx, flags, Append, &text));
  xmlDoc* doc = xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, 0);
  EXPECT_NE(nullptr, doc) << "not well-formed: " << text;
  xmlFreeDoc(doc);
  return text;
}

// What stands between the tags of error-path, with its declarations.
std::string PathElement(const std::string& text) {
  const size_t begin = text.find("<error-path");
  const size_t end = text.find("</error-path>");
  return begin == std::string::npos ? "none" : text.substr(begin + 11, end - begin - 11);
}

class Record : public testing::Test {
 protected:
  Record() : err_(QM_AGENT_NewRecord(QM_ERR_TYPE_PROTOCOL, QM_ERR_TAG_LOCK_DENIED)) {}
  ~Record() override { QM_FreeErrNode(err_); }

  void Set(uint32_t field, const char* text) {
    EXPECT_EQ(QM_OK, QM_AGENT_SetRecordText(err_, field, text));
  }

  QmErrNode* err_;
};

constexpr char kHead[] =
    "<rpc-error xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\"><error-type>protocol</error-type>"
    "<error-tag>lock-denied</error-tag><error-severity>error</error-severity>";

TEST_F(Record, WithoutTextsHasItsThreeNames) {
  EXPECT_EQ(kHead + std::string("</rpc-error>"), Write(err_));
}

TEST_F(Record, IsWrittenInTheOrderOfTheRfc) {
  for (uint32_t field = QM_AGENT_FIELD_COUNT - 1; field >= QM_AGENT_FIELD_APP_TAG; --field) {
    EXPECT_EQ(nullptr, QM_AGENT_GetRecordText(err_, field));
    Set(field, std::to_string(field).c_str());
    EXPECT_EQ(std::to_string(field), QM_AGENT_GetRecordText(err_, field));
  }
  EXPECT_EQ(kHead + std::string("<error-app-tag>1</error-app-tag><error-path>2</error-path>"
                                "<error-message>3</error-message><error-info>"
                                "<bad-attribute>4</bad-attribute><bad-element>5</bad-element>"
                                "<bad-namespace>6</bad-namespace><session-id>7</session-id>"
                                "<missing-choice xmlns=\"urn:ietf:params:xml:ns:yang:1\">8"
                                "</missing-choice></error-info></rpc-error>"),
            Write(err_));
  EXPECT_EQ(kHead + std::string("<error-app-tag>1</error-app-tag><error-path>2</error-path>"
                                "<error-message>3</error-message><error-info>"
                                "<bad-attribute>4</bad-attribute><bad-element>5</bad-element>"
                                "</error-info></rpc-error>"),
            Write(err_, nullptr, QM_AGENT_RECORD_BARE));
}

TEST_F(Record, IsIndentedWhenAsked) {
  Set(QM_AGENT_FIELD_SESSION_ID, "4");
  EXPECT_EQ(R"(<rpc-error xmlns="urn:ietf:params:xml:ns:netconf:base:1.0">
  <error-type>protocol</error-type>
  <error-tag>lock-denied</error-tag>
  <error-severity>error</error-severity>
  <error-info>
    <session-id>4</session-id>
  </error-info>
</rpc-error>
)",
            Write(err_, nullptr, QM_AGENT_RECORD_INDENTED));
}

TEST_F(Record, TextsAreReplacedAndTakenAway) {
  Set(QM_AGENT_FIELD_MESSAGE, "one");
  Set(QM_AGENT_FIELD_MESSAGE, "two");
  EXPECT_STREQ("two", QM_GetErrorMessage(err_));
  Set(QM_AGENT_FIELD_MESSAGE, nullptr);
  EXPECT_EQ(nullptr, QM_GetErrorMessage(err_));
  Set(QM_AGENT_FIELD_MESSAGE, "");
  EXPECT_NE(std::string::npos, Write(err_).find("<error-message></error-message>"));
}

TEST_F(Record, RefusesWhatIsNoFieldTypeOrTag) {
  EXPECT_EQ(22u, QM_AGENT_SetRecordText(err_, 0, "x"));
  EXPECT_EQ(22u, QM_AGENT_SetRecordText(err_, QM_AGENT_FIELD_COUNT, "x"));
  EXPECT_EQ(22u, QM_AGENT_SetRecordText(nullptr, QM_AGENT_FIELD_PATH, "x"));
  EXPECT_EQ(nullptr, QM_AGENT_GetRecordText(err_, 0));
  EXPECT_EQ(nullptr, QM_AGENT_GetRecordText(err_, QM_AGENT_FIELD_COUNT));
  EXPECT_EQ(nullptr, QM_AGENT_GetRecordText(nullptr, QM_AGENT_FIELD_PATH));
  EXPECT_EQ(nullptr, QM_AGENT_NewRecord(0, QM_ERR_TAG_IN_USE));
  EXPECT_EQ(nullptr, QM_AGENT_NewRecord(5, QM_ERR_TAG_IN_USE));
  EXPECT_EQ(nullptr, QM_AGENT_NewRecord(QM_ERR_TYPE_RPC, 0));
  EXPECT_EQ(nullptr, QM_AGENT_NewRecord(QM_ERR_TYPE_RPC, 21));
  std::string text;
  EXPECT_EQ(22u, QM_AGENT_WriteRecord(nullptr, nullptr, 0, Append, &text));
  EXPECT_EQ(22u, QM_AGENT_WriteRecord(err_, nullptr, 0, nullptr, nullptr));
}

TEST_F(Record, EveryReasonHasItsRecord) {
  const auto tag = [](uint32_t reason) {
    QmErrNode* err = QM_AGENT_NewReasonRecord(reason);
    const uint32_t number = QM_GetErrorTag(err);
    EXPECT_STREQ(err == nullptr ? nullptr : QM_AGENT_GetReasonText(reason),
                 QM_GetErrorMessage(err));
    QM_FreeErrNode(err);
    return number;
  };
  EXPECT_EQ(0u, tag(QM_AGENT_REASON_NONE));
  EXPECT_EQ(QM_ERR_TAG_OPERATION_FAILED, tag(QM_AGENT_REASON_WRONG_CALL));
  EXPECT_EQ(QM_ERR_TAG_RESOURCE_DENIED, tag(QM_AGENT_REASON_NO_MEMORY));
  EXPECT_EQ(QM_ERR_TAG_TOO_BIG, tag(QM_AGENT_REASON_TOO_BIG));
  EXPECT_EQ(QM_ERR_TAG_TOO_BIG, tag(QM_AGENT_REASON_TOO_DEEP));
  EXPECT_EQ(QM_ERR_TAG_TOO_BIG, tag(QM_AGENT_REASON_TOO_MANY));
  EXPECT_EQ(QM_ERR_TAG_MALFORMED_MESSAGE, tag(QM_AGENT_REASON_NOT_UTF8));
  EXPECT_EQ(QM_ERR_TAG_MALFORMED_MESSAGE, tag(QM_AGENT_REASON_DOCUMENT_TYPE));
  EXPECT_EQ(QM_ERR_TAG_MALFORMED_MESSAGE, tag(QM_AGENT_REASON_NOT_XML));
  EXPECT_EQ(0u, tag(QM_AGENT_REASON_NOT_XML + 1));
}

TEST_F(Record, WhatIsNoXmlIsEscapedOrReplaced) {
  const auto message = [this](const char* text) {
    Set(QM_AGENT_FIELD_MESSAGE, text);
    const std::string all = Write(err_);
    const size_t begin = all.find("<error-message>") + 15;
    return all.substr(begin, all.find("</error-message>") - begin);
  };
  EXPECT_EQ("&lt;a&gt; &amp;amp; \"q\" 'q'", message("<a> &amp; \"q\" 'q'"));
  EXPECT_EQ("\t\n&#13;", message("\t\n\r"));
  EXPECT_EQ("\xEF\xBF\xBD\xEF\xBF\xBD", message("\x01\x1f"));
  EXPECT_EQ("\xC3\xA4\xF0\x9F\x98\x80", message("\xC3\xA4\xF0\x9F\x98\x80"));
  EXPECT_EQ("x\xEF\xBF\xBD\xEF\xBF\xBDy", message("x\xE2\x82y")) << "cut within a character";
  EXPECT_EQ("x\xEF\xBF\xBD", message("x\xC3"));
  EXPECT_EQ("\xEF\xBF\xBD", message("\xEF\xBF\xBF")) << "U+FFFF is no character of XML";
}

TEST_F(Record, PrefixesOfThePathAreBoundOnceEach) {
  Schema schema;
  for (const char* name : {"m", "n-1.x", "_o"}) schema.Load(name, "");
  const auto path = [this, &schema](const char* text) {
    Set(QM_AGENT_FIELD_PATH, text);
    return PathElement(Write(err_, schema.ctx()));
  };
  EXPECT_EQ(">/", path("/"));
  EXPECT_EQ(" xmlns:m=\"urn:m\">/m:a/b", path("/m:a/b"));
  EXPECT_EQ(
      " xmlns:m=\"urn:m\" xmlns:n-1.x=\"urn:n-1.x\" xmlns:_o=\"urn:_o\">/m:a/n-1.x:b/m:c/_o:d",
      path("/m:a/n-1.x:b/m:c/_o:d"));
  EXPECT_EQ(" xmlns:m=\"urn:m\">/m:a[k='/_o:x']/b[.=\"it's /_o:y\"]",
            path("/m:a[k='/_o:x']/b[.=\"it's /_o:y\"]"));
  EXPECT_EQ(">/absent:a/b", path("/absent:a/b"));
  EXPECT_EQ(">/a b:c/1m:d/m/:e", path("/a b:c/1m:d/m/:e"));
  EXPECT_EQ(">/" + std::string(70, 'x') + ":a", path(("/" + std::string(70, 'x') + ":a").c_str()));
  EXPECT_EQ(">", path(""));
  // Nothing is bound without a context, and in the bare form.
  Set(QM_AGENT_FIELD_PATH, "/m:a");
  EXPECT_EQ(">/m:a", PathElement(Write(err_)));
  EXPECT_EQ(">/m:a", PathElement(Write(err_, schema.ctx(), QM_AGENT_RECORD_BARE)));
}

TEST_F(Record, ANamespaceIsEscapedAndXmlIsNeverBound) {
  QmCtx* ctx = QM_CTX_Create(0);
  const char* const kHeadOfModule = "<module xmlns='urn:ietf:params:xml:ns:yang:yin:1' name='";
  const auto load = [&](const char* name, const char* ns) {
    EXPECT_EQ(QM_OK,
              QM_CTX_LoadMemory(ctx, (kHeadOfModule + std::string(name) + "'><namespace uri='" +
                                      ns + "'/><prefix value='p'/></module>")
                                         .c_str()));
  };
  load("q", "urn:&quot;&lt;&amp;");
  load("xml", "urn:x");
  load("xmlns", "urn:y");
  Set(QM_AGENT_FIELD_PATH, "/q:a/xml:b/xmlns:c");
  std::string text;
  EXPECT_EQ(QM_OK, QM_AGENT_WriteRecord(err_, ctx, 0, Append, &text));
  EXPECT_EQ(" xmlns:q=\"urn:&quot;&lt;&amp;\">/q:a/xml:b/xmlns:c", PathElement(text));
  QM_CTX_Delete(ctx);
}

TEST_F(Record, ABufferIsFilledAsSnprintfDoes) {
  Set(QM_AGENT_FIELD_MESSAGE, "a < b");
  const std::string whole = Write(err_);
  EXPECT_EQ(whole.size(), QM_AGENT_PrintRecord(err_, nullptr, 0, nullptr, 0));
  for (size_t size = 1; size <= whole.size() + 2; ++size) {
    std::string buffer(size + 1, '#');
    EXPECT_EQ(whole.size(), QM_AGENT_PrintRecord(err_, nullptr, 0, buffer.data(), size));
    EXPECT_EQ(whole.substr(0, size - 1), buffer.c_str()) << size;
    EXPECT_EQ('#', buffer[size]) << "wrote beyond " << size;
  }
  char text[4] = "xyz";
  EXPECT_EQ(0u, QM_AGENT_PrintRecord(nullptr, nullptr, 0, text, sizeof text));
  EXPECT_STREQ("", text);
}

TEST_F(Record, AnOutputThatFailsEndsTheWriting) {
  struct Sink {
    int calls = 0;
    int allowed = 0;
  };
  for (int allowed = 0; allowed < 10; ++allowed) {
    Sink sink = {0, allowed};
    EXPECT_EQ(77u, QM_AGENT_WriteRecord(
                       err_, nullptr, 0,
                       [](const char*, size_t, void* arg) {
                         auto* s = static_cast<Sink*>(arg);
                         return s->calls++ < s->allowed ? 0u : 77u;
                       },
                       &sink));
    EXPECT_EQ(allowed + 1, sink.calls);
  }
}

}  // namespace
