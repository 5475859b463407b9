#include <gtest/gtest.h>
#include <zrschema/version.h>

#include <string>

namespace {

TEST(Version, OfTheHeadersIsWrittenOnceAsNumbersAndOnceAsText)
{
    EXPECT_EQ(std::string(ZR_VERSION_STRING), std::to_string(ZR_VERSION_MAJOR) + "." +
                                                  std::to_string(ZR_VERSION_MINOR) + "." +
                                                  std::to_string(ZR_VERSION_PATCH));
}

TEST(Version, OfTheLibraryIsThatOfTheHeadersItWasBuiltWith)
{
    EXPECT_STREQ(ZR_GetVersion(), ZR_VERSION_STRING);
}

} // namespace
