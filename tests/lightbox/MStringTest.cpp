#include <maya/MString.h>
#include <maya/MStringArray.h>

#include <gtest/gtest.h>
#include <optional>
#include <sstream>

namespace {

TEST(MStringTest, TextReadsAsANumberOnlyWhole) {
    const struct {
        const char* text;
        std::optional<int> asInt;
        std::optional<unsigned int> asUnsigned;
        std::optional<double> asDouble;
    } rows[] = {
        {"0", 0, 0, 0},
        {"-12", -12, std::nullopt, -12},
        {"+7", 7, 7, 7},
        {" 7", 7, 7, 7},
        {"7 ", std::nullopt, std::nullopt, std::nullopt},
        {"", std::nullopt, std::nullopt, std::nullopt},
        {"-", std::nullopt, std::nullopt, std::nullopt},
        {"+-5", std::nullopt, std::nullopt, std::nullopt},
        {"2147483647", 2147483647, 2147483647u, 2147483647},
        {"2147483648", std::nullopt, 2147483648u, 2147483648.0},
        {"4294967296", std::nullopt, std::nullopt, 4294967296.0},
        {"99999999999999999999999", std::nullopt, std::nullopt, 1e23},
        {"2.5", std::nullopt, std::nullopt, 2.5},
        {".5", std::nullopt, std::nullopt, 0.5},
        {"2,5", std::nullopt, std::nullopt, std::nullopt},
        {"1e3", std::nullopt, std::nullopt, 1000},
        {"12ab", std::nullopt, std::nullopt, std::nullopt},
    };
    for (const auto& row : rows) {
        const MString text(row.text);
        EXPECT_EQ(text.isInt(), row.asInt.has_value()) << row.text;
        EXPECT_EQ(text.asInt(), row.asInt.value_or(0)) << row.text;
        EXPECT_EQ(text.isUnsigned(), row.asUnsigned.has_value()) << row.text;
        EXPECT_EQ(text.asUnsigned(), row.asUnsigned.value_or(0)) << row.text;
        EXPECT_EQ(text.isDouble(), row.asDouble.has_value()) << row.text;
        EXPECT_DOUBLE_EQ(text.asDouble(), row.asDouble.value_or(0.0)) << row.text;
        EXPECT_EQ(text.isFloat(), row.asDouble.has_value()) << row.text;
    }
}

TEST(MStringTest, NumbersAreWrittenShortAndReadBack) {
    MString text;
    EXPECT_EQ((text = 0.1), "0.1");
    EXPECT_EQ(MString("f") + 0.1F, "f0.1");
    EXPECT_EQ((MString() + 16777217.0F).asFloat(), 16777216.0F);
    EXPECT_EQ((MString() + (1.0F / 3.0F)).asFloat(), 1.0F / 3.0F);
    EXPECT_EQ((MString() + (1.0 / 3.0)).asDouble(), 1.0 / 3.0);
    EXPECT_EQ(MString() + (-2147483647 - 1) + 4294967295u, "-21474836484294967295");
    EXPECT_TRUE(text.set(2.0 / 3.0, 3));
    EXPECT_EQ(text, "0.667");
    EXPECT_TRUE(text.set(12.5, 0));
    EXPECT_EQ(text, "12");
    EXPECT_TRUE(text.set(-1e300, 200));
    EXPECT_EQ(text.asDouble(), -1e300);
}

TEST(MStringTest, PartsAreCutInclusively) {
    const MString text("abcdef");
    const struct {
        int start;
        int end;
        const char* part;
    } rows[] = {{0, 0, "a"},  {1, 3, "bcd"}, {0, 5, "abcdef"}, {5, 5, "f"},
                {4, 9, "ef"}, {6, 6, ""},    {3, 2, ""},       {-1, 2, ""}};
    for (const auto& row : rows) {
        EXPECT_EQ(text.substring(row.start, row.end), row.part) << row.start << ' ' << row.end;
    }
    EXPECT_EQ(MString("a|b|c").index('|'), 1);
    EXPECT_EQ(MString("a|b|c").rindex('|'), 3);
    EXPECT_EQ(MString("abc").rindex('|'), -1);
    EXPECT_EQ(MString().index('|'), -1);
}

TEST(MStringTest, SplitsIntoThePiecesBetweenSeparators) {
    const struct {
        const char* text;
        const char* pieces;
    } rows[] = {{"a|b|c", "[a, b, c]"}, {"|a||b|", "[a, b]"}, {"abc", "[abc]"}, {"", "[]"}, {"||", "[]"}};
    for (const auto& row : rows) {
        MStringArray pieces;
        pieces.append("left over");
        EXPECT_TRUE(MString(row.text).split('|', pieces));
        std::ostringstream text;
        text << pieces;
        EXPECT_EQ(text.str(), row.pieces) << row.text;
    }
}

TEST(MStringTest, BytesOfOtherLanguagesAndNullsAreKept) {
    MString text("\xE7\xAD\x86 Ab\xC3\x84");
    EXPECT_EQ(text.length(), 8u);
    EXPECT_EQ(text.numChars(), 5u);
    EXPECT_EQ(text.toUpperCase(), "\xE7\xAD\x86 AB\xC3\x84");
    EXPECT_EQ(text.toLowerCase(), "\xE7\xAD\x86 ab\xC3\x84");
    int length = 0;
    const MString withNull("a\0b", 3);
    EXPECT_EQ(std::string(withNull.asChar(length), 3), std::string("a\0b", 3));
    EXPECT_EQ(length, 3);
    std::ostringstream stream;
    stream << withNull;
    EXPECT_EQ(stream.str().size(), 3u);
    EXPECT_FALSE(withNull == MString("a"));
}

TEST(MStringTest, NullPointersAreEmptyText) {
    const char* const none = nullptr;
    MString text(none);
    EXPECT_EQ(text.length(), 0u);
    EXPECT_TRUE(text == none);
    EXPECT_EQ(MString(none, 4).length(), 0u);
    EXPECT_EQ(MString("abc", -2).length(), 0u);
    EXPECT_EQ((MString("a") += none), "a");
    EXPECT_EQ(MString("kept").set(none), MS::kInvalidParameter);
    EXPECT_TRUE("ab" == "a" + MString("b"));
    text = "self";
    text += text;
    EXPECT_EQ(text, "selfself");
}

TEST(MStringArrayTest, RefusesIndexesOutOfRangeAndStaysAsItWas) {
    const MString source[] = {"a", "b", "c"};
    MStringArray array(source, 3);
    EXPECT_TRUE(array.insert("end", 3));
    EXPECT_TRUE(array.insert("start", 0));
    EXPECT_TRUE(array.insert("x", 6).error());
    EXPECT_TRUE(array.remove(5).error());
    EXPECT_TRUE(array.set("x", 5).error());
    EXPECT_TRUE(array.remove(1));
    EXPECT_TRUE(array.set("B", 1));
    std::ostringstream text;
    text << array;
    EXPECT_EQ(text.str(), "[start, B, c, end]");

    MStringArray copy;
    EXPECT_TRUE(copy.copy(array));
    EXPECT_TRUE(copy.append(copy[0]));
    EXPECT_EQ(copy[4], "start");
    EXPECT_EQ(array.length(), 4u);
    EXPECT_TRUE(copy.setLength(6));
    EXPECT_EQ(copy[5], "");
    EXPECT_TRUE(copy.setLength(1));
    EXPECT_EQ(copy.length(), 1u);
    EXPECT_TRUE(copy.clear());
    EXPECT_EQ(copy.length(), 0u);
    EXPECT_EQ(MStringArray(2, "fill")[1], "fill");
}

} // namespace
