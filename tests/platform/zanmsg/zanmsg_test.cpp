#include "zanmsg.h"

#include <gtest/gtest.h>

namespace {

TEST(MessageCatalogueStandInTest, KnownKeysGiveEnglishTexts) {
  EXPECT_STREQ("Copy", msg_getXmlMsg("MSG_COMMON_COPY"));
  EXPECT_STREQ("Copying...", msg_getXmlMsg("MSG_FILEMAN_COPYING"));
  EXPECT_STREQ("OK", msg_getXmlMsg("MSG_COMMON_OK"));
}

TEST(MessageCatalogueStandInTest, EmptyAndNullKeysGiveEmptyText) {
  EXPECT_STREQ("", msg_getXmlMsg(""));
  EXPECT_STREQ("", msg_getXmlMsg(nullptr));
}

TEST(MessageCatalogueStandInTest, UnknownKeyGivesTheKeyItself) {
  EXPECT_STREQ("MSG_NO_SUCH_KEY", msg_getXmlMsg("MSG_NO_SUCH_KEY"));
}

}  // namespace
