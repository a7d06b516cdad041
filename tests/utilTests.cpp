#include "platform/names.h"
#include "tests/fixture.h"
#include "util/modUtility.h"

/// Bytes, numbers and names.
namespace tessel {
namespace {

TEST(ByteFields, AreReadWithinTheirBuffer) {
    const Byte bytes[] = {0x55, 0xAA, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x00, 0x80, 0x7F};
    EXPECT_EQ(GetByte(bytes, 1), 0xAA);
    EXPECT_EQ(GetWord(bytes, 0), 43605);
    EXPECT_EQ(GetWord(bytes, 2), 65535);
    EXPECT_EQ(GetLong(bytes, 2), -1);
    EXPECT_EQ(GetLong(bytes, 6), INT32_MIN);
    EXPECT_EQ(GetLong(bytes, 7), 0x7F800000);
    // A short buffer, and one that extends past the last index; the errors of the byte, word, long
    // and wide word at each index.
    const std::vector<Byte> large(32770);
    const std::pair<int, const char*> rows[] = {
        {-1, "9999"},    {0, "0000"},     {7, "0000"},     {8, "0090"},        {9, "0090"},
        {10, "0999"},    {11, "9999"},    {32764, "0000"}, {32765, "0060"},    {32766, "0060"},
        {32767, "0660"}, {32768, "---0"}, {32769, "---9"}, {INT32_MAX, "---9"}};
    for (const auto& [index, errors] : rows) {
        const ByteBuffer buffer = index < 12 ? ByteBuffer(bytes) : large;
        const auto i = static_cast<Integer>(index);
        std::string raised = errors;
        if (errors[0] != '-') {
            raised = std::to_string(ErrorOf([&] { GetByte(buffer, i); })) +
                     std::to_string(ErrorOf([&] { GetWord(buffer, i); })) +
                     std::to_string(ErrorOf([&] { GetLong(buffer, i); })) + errors[3];
        }
        EXPECT_EQ(raised, errors) << index;
        EXPECT_EQ(ErrorOf([&, at = index] { GetWideWord(buffer, at); }), errors[3] - '0') << index;
    }
    EXPECT_EQ(ErrorOf([] { GetByte({}, 0); }), 9);
    const Byte text[] = {'L', 'A', 0x00, 0xE5, 0x1F, 0x7F, 0x7E, ' '};
    EXPECT_EQ(GetString(text, 0, 8), "LA....~ ");
    EXPECT_EQ(GetString(text, 4, 11) + GetString(text, 8, 3) + GetString(text, -1, 3), "..~ ");
    EXPECT_EQ(GetString(text, 0, 0) + GetString(text, 0, -5) + GetString(large, 32766, 9), "..");
}

TEST(NumberText, IsFormattedAndParsed) {
    EXPECT_EQ(Hex2(0) + Hex2(15) + Hex2(16) + Hex2(255), "000F10FF");
    EXPECT_EQ(Hex4(0) + Hex4(512) + Hex4(43605) + Hex4(65535), "00000200AA55FFFF");
    EXPECT_EQ(Hex8(0) + Hex8(512) + Hex8(-1) + Hex8(INT32_MIN), "0000000000000200FFFFFFFF80000000");
    EXPECT_EQ(Padded(7, 4) + Padded(12345, 4) + Padded(-7, 3) + Padded(INT32_MIN, 4),
              "000712345-007-2147483648");
    std::string shown;
    for (const int byte : {65, 9, 10, 13, 0, 31, 126, 127, 255}) {
        shown += ByteToText(static_cast<Byte>(byte));
    }
    EXPECT_EQ(shown, "A\t\n\r<00><1F>~<7F><FF>");
    // User input, with "_" for a blank, and the number that it means.
    const std::vector<std::string> rows = Words(
        "32256=32256 __63__=63 &H7E00=32256 &h7e00=32256 0X7E00=32256 0x7e00=32256 1k=1024 "
        "32K=32768 1M=1048576 512m=536870912 513M=-1 524288k=536870912 524289k=-1 1kb=-1 1_k=-1 "
        "1k2=-1 k=0 M=0 =-1 ___=-1 &H=-1 0x=-1 -5=-1 +5=-1 1.5=-1 12h=-1 53687091=53687091 "
        "536870919=536870919 536870920=-1 &H3333333F=858993471 &H33333340=-1 &HFG=-1 "
        "000000000000000063=63 &H10k=16384 0xm=0 0=0 99999999999999999999=-1 &H\xC3\xBC=-1 x=-1");
    for (const std::string& row : rows) {
        std::string text = row.substr(0, row.find('='));
        std::replace(text.begin(), text.end(), '_', ' ');
        const std::string trimmed = Trimmed(text);
        EXPECT_EQ(ParseNumber(text), std::stol(row.substr(row.find('=') + 1))) << row;
        EXPECT_EQ(text, trimmed);
    }
}

TEST(Names, AreShortenedAndMadeSafe) {
    EXPECT_EQ(StripExtension("DISK1.IMG") + "|" + StripExtension("a.b.c") + "|" +
                  StripExtension(".img") + "|" + StripExtension("none") + "|" + StripExtension(""),
              "DISK1|a.b||none|");
    const std::string a250(250, 'a');
    const std::string face = "\U0001F600";
    const std::string rows[][3] = {
        // Name, on hosts with "/" paths, on hosts with drive letters.
        {"", "_", "_"},
        {".", "_", "_"},
        {"..", "__", "__"},
        {"...", "...", "___"},
        {"a/b\\c:d", "a_b\\c:d", "a_b_c_d"},
        {"<>\"|?*", "<>\"|?*", "______"},
        {std::string("a\0b\x1F\x7F", 5), "a_b__", "a_b__"},
        {"\u0080\u009F\u00A0", "__\u00A0", "__\u00A0"},
        {"end. ", "end. ", "end__"},
        {"CON.txt", "CON.txt", "_CON.txt"},
        {"Aux .x", "Aux .x", "_Aux .x"},
        {"lpt9", "lpt9", "_lpt9"},
        {"COM10", "COM10", "COM10"},
        {"CONIN$", "CONIN$", "_CONIN$"},
        {a250 + "12345.extension", a250.substr(5) + ".extension", a250.substr(5) + ".extension"},
        {a250 + face + "e", a250 + face + "e", a250 + face + "e"},
        {a250 + "12" + face, a250 + "12", a250 + "12"},
        {"CON." + a250 + "1", "CON." + a250 + "1", "_CON." + a250}};
    for (const auto& [name, posix, windows] : rows) {
        EXPECT_EQ(SafePosixName(name), posix) << name;
        EXPECT_EQ(SafeWindowsName(name), windows) << name;
    }
    const std::pair<std::u16string, std::string> units[] = {
        {u"a\u00DF\u20AC", "a\u00DF\u20AC"},
        {u"\xD83D\xDE00", face},
        {u"\xD83D", "\uFFFD"},
        {u"\xDE00\xD83D", "\uFFFD\uFFFD"},
        {u"\xD83D\xD83D\xDE00", "\uFFFD" + face},
        {u"\xFFFE\x7F\x80\x7FF\x800", "\uFFFE\x7F\u0080\u07FF\u0800"}};
    for (const auto& [name, text] : units) EXPECT_EQ(Utf8(name), text);
}

TEST(Numbers, SizesAreRoundedUp) {
    EXPECT_EQ(SizeText(1023), "1023 bytes");
    EXPECT_EQ(SizeText(1024), "1.0 KB");
    EXPECT_EQ(SizeText(67108864), "64.0 MB");
    EXPECT_EQ(SizeText(67108865), "64.1 MB");
    EXPECT_EQ(SizeText(1677721600), "1.6 GB");
    EXPECT_EQ(SizeText(1048575), "1024.0 KB");
}

}  // namespace
}  // namespace tessel
