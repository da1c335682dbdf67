#include "core/support/PercentEncoding.h"

#include <gtest/gtest.h>

namespace tidewright {
namespace {

using namespace std::string_view_literals;

TEST(PercentEncoding, KeepsWhatIsUnreservedAndWhatItIsTold) {
    EXPECT_EQ(percentEncoded("AZaz09-._~", ""), "AZaz09-._~");
    EXPECT_EQ(percentEncoded("a b/c%d", ""), "a%20b%2Fc%25d");
    EXPECT_EQ(percentEncoded("a b/c%d", "/"), "a%20b/c%25d");
    EXPECT_EQ(percentEncoded("é\n\xFF\0"sv, "/"), "%C3%A9%0A%FF%00");
    EXPECT_EQ(percentEncoded("", "/"), "");
}

TEST(PercentEncoding, DecodesPairsOfDigitsAndNothingElse) {
    EXPECT_EQ(percentDecoded("a%20b%2fc%2F"), "a b/c/");
    EXPECT_EQ(percentDecoded("%C3%A9%00"), "é\0"sv);
    for (const char* text : {"%", "%4", "100%", "%zz", "%4z", "%-1", "% 1", "%+1"})
        EXPECT_EQ(percentDecoded(text), text);
    EXPECT_EQ(percentDecoded("%%41"), "%A");
    EXPECT_EQ(percentDecoded("%2541"), "%41") << "once only";
}

TEST(PercentEncoding, AllBytesComeBack) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    EXPECT_EQ(percentDecoded(percentEncoded(bytes, "")), bytes);
    EXPECT_EQ(percentDecoded(percentEncoded(bytes, "/:@")), bytes);
}

} // namespace
} // namespace tidewright
