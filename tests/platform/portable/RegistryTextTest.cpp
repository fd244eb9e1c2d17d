#include "platform/SettingsStore.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <optional>
#include <string>
#include <sys/stat.h>

using namespace qmv40;

/// Files in the registry export format are read as an import would understand them.

namespace {

using namespace std::string_literals;

constexpr const char* path = R"(Software\Hollbeck\VRX Software\QMV40Calculator)";
const std::string wide = "Windows Registry Editor Version 5.00\r\n\r\n";
const std::string narrow = "REGEDIT4\r\n\r\n";
const std::string heading = R"([HKEY_LOCAL_MACHINE\Software\Hollbeck\VRX Software\QMV40Calculator])"
                            "\r\n";

struct Stored {
    DWORD type;
    std::string bytes;
    bool operator==(const Stored&) const = default;
};

void PrintTo(const Stored& stored, std::ostream* stream) {
    *stream << "type " << stored.type << ' ' << testing::PrintToString(stored.bytes);
}

/// A settings store in a separate file.
class RegistryText : public testing::Test {
protected:
    RegistryText() { ::setenv("QMV40_SETTINGS", file.c_str(), 1); }
    ~RegistryText() override { ::unsetenv("QMV40_SETTINGS"); }

    void Put(const std::string& content) const {
        std::ofstream(file, std::ios::binary | std::ios::trunc)
            .write(content.data(), static_cast<std::streamsize>(content.size()));
    }

    static bool IsOpen() { return SettingsKey(path).IsOpen(); }

    static std::optional<Stored> Find(const char* name) {
        std::string buffer(1000, '\0');
        DWORD type = 0, length = 0;
        if (SettingsKey(path).Query(name, buffer, type, length) != ERROR_SUCCESS) return std::nullopt;
        return Stored{type, buffer.substr(0, length)};
    }

    const TemporaryFolder folder;
    const std::filesystem::path file = folder.Path("settings.reg");
};

Stored Text(const std::string& text) { return {REG_SZ, text + '\0'}; }

TEST_F(RegistryText, UnderstandsEveryKindOfValue) {
    const struct {
        std::string value;
        std::optional<Stored> stored;
        const char* why;
    } cases[] = {
        {R"("31.5")", Text("31.5"), "a text"},
        {R"("")", Text(""), "an empty text"},
        {R"("a\\b\"c")", Text("a\\b\"c"), "escaped backslash and quote"},
        {R"("\\\\")", Text("\\\\"), "two backslashes"},
        {R"("a\nb\rc\qd")", Text("a\nb\rcqd"), "escaped line ends; a backslash before any other letter is dropped"},
        {R"("a\0b")", Text("a\0b"s), "an escaped zero does not end the text"},
        {R"(  "x"  ; why)", Text("x"), "blanks and a comment around it"},
        {R"("a;b")", Text("a;b"), "no comment within quotes"},
        {R"("x" y)", std::nullopt, "other characters behind the text are garbage"},
        {R"("x)", std::nullopt, "an open text is garbage"},
        {R"("x\")", std::nullopt, "an escaped quote does not close the text"},
        {R"(x)", std::nullopt, "a bare word is garbage"},
        {R"()", std::nullopt, "a missing value is garbage"},
        {"dword:0000001f", Stored{REG_DWORD, "\x1F\0\0\0"s}, "a number"},
        {"dword:1F ; c", Stored{REG_DWORD, "\x1F\0\0\0"s}, "a short number with capitals"},
        {"dword:fedcba98", Stored{REG_DWORD, "\x98\xBA\xDC\xFE"}, "all digits"},
        {"dword:00000001f", std::nullopt, "too many digits"},
        {"dword:zz", std::nullopt, "no digits"},
        {"dword:", std::nullopt, "nothing"},
        {"dword:-1", std::nullopt, "no signs"},
        {"hex:01,2,fF", Stored{REG_BINARY, "\x01\x02\xFF"}, "bytes"},
        {"hex:", Stored{REG_BINARY, ""}, "no bytes"},
        {"hex:01,02,", Stored{REG_BINARY, "\1\2"}, "a comma at the end"},
        {"hex:01,02 ; c", Stored{REG_BINARY, "\1\2"}, "a comment behind"},
        {"hex:01,\\\r\n  02,\\\r\n  03", Stored{REG_BINARY, "\1\2\3"}, "on several lines"},
        {"hex:01,\\ ; c\r\n\t02", Stored{REG_BINARY, "\1\2"}, "a comment behind the backslash"},
        {"hex:\\\r\n01", Stored{REG_BINARY, "\1"}, "beginning on the next line"},
        {"hex:01,\\\r\n" + heading, Stored{REG_BINARY, "\1"}, "a heading ends the bytes"},
        {"hex:01,zz", std::nullopt, "no digits"},
        {"hex:123", std::nullopt, "no comma"},
        {"hex:-1", std::nullopt, "no signs"},
        {"hex", std::nullopt, "no colon"},
        {"hex(2:01", std::nullopt, "no closing bracket"},
        {"hex(x):01", std::nullopt, "no type"},
        {"hex():01", std::nullopt, "an empty type"},
        {"hex(4):01,02,03,04", Stored{REG_DWORD, "\1\2\3\4"}, "a number by its bytes"},
        {"hex(0):01", Stored{REG_NONE, "\1"}, "a value of no type"},
        {"hex(b):01,02", Stored{11, "\1\2"}, "any other type"},
        {"hex(ffffffff):01", Stored{0xFFFFFFFF, "\1"}, "the largest type number"},
        {"hex(1):31,00,32,00,00,00", Text("12"), "a text as UTF-16 bytes"},
        {"hex(2):25,00,e4,00,00,00", Stored{REG_EXPAND_SZ, "%\xC3\xA4\0"s}, "an expandable text as UTF-16 bytes"},
        {"hex(7):31,00,00,00,32,00,00,00,00,00",
         Stored{7, "1\0"
                   "2\0\0"s},
         "several texts"},
        {"hex(1):31,00", Stored{REG_SZ, "1"}, "a text without a terminator gets none"},
        {"hex(1):31,00,32", Stored{REG_SZ, "12"}, "half a unit"},
        {"hex(1):3d,d8,00,de", Stored{REG_SZ, "\xF0\x9F\x98\x80"}, "a character of two units"},
        {"hex(1):", Stored{REG_SZ, ""}, "no units"},
        {"-", std::nullopt, "a removed value"},
        {"str:\"x\"", std::nullopt, "an unknown kind"},
    };
    for (const auto& [value, stored, why] : cases) {
        Put(wide + heading + "\"before\"=\"1\"\r\n\"Name\"=" + value + "\r\n\"after\"=\"2\"\r\n");
        EXPECT_EQ(Find("Name"), stored) << value << ": " << why;
        EXPECT_EQ(Find("before"), Text("1")) << value;
        EXPECT_EQ(Find("after"), Text("2")) << value;
    }
}

TEST_F(RegistryText, FindsAValueByItsName) {
    const struct {
        const char* line;
        const char* name;
        bool isFound;
        const char* why;
    } cases[] = {
        {R"("Name"="1")", "Name", true, "plain"},
        {R"("nAME"="1")", "Name", true, "letter case does not matter"},
        {R"(  "Name"  =  "1")", "Name", true, "blanks around the name do not matter"},
        {R"("Na\"me\\"="1")", "Na\"me\\", true, "escapes"},
        {R"("a=b"="1")", "a=b", true, "an equals sign inside"},
        {R"("Name "="1")", "Name", false, "a blank inside the quotes counts"},
        {R"("Names"="1")", "Name", false, "a longer name"},
        {R"("Nam"="1")", "Name", false, "a shorter name"},
        {R"(Name="1")", "Name", false, "no quotes"},
        {R"("Name" "1")", "Name", false, "no equals sign"},
        {R"("Name="1")", "Name", false, "an open name"},
        {R"(;"Name"="1")", "Name", false, "a comment"},
        {R"(#"Name"="1")", "Name", false, "garbage in front"},
        {R"(@="1")", "", true, "the default value"},
        {R"(""="1")", "", true, "the default value with an empty name"},
        {R"(@="1")", "@", false, "the default value is not named @"},
        {R"("@"="1")", "@", true, "a value can be named @"},
    };
    for (const auto& [line, name, isFound, why] : cases) {
        Put(wide + heading + line + "\r\n");
        EXPECT_TRUE(IsOpen());
        EXPECT_EQ(Find(name), isFound ? std::optional(Text("1")) : std::nullopt) << line << ": " << why;
    }
}

TEST_F(RegistryText, LetsLaterLinesOverrideEarlierOnes) {
    const std::string removal = "[-" + heading.substr(1);
    const struct {
        std::string lines;
        std::optional<Stored> stored;
        bool isOpen;
        const char* why;
    } cases[] = {
        {heading + "\"n\"=\"1\"\r\n\"N\"=\"2\"\r\n", Text("2"), true, "a second value"},
        {heading + "\"n\"=\"1\"\r\n\"n\"=-\r\n", std::nullopt, true, "a removal"},
        {heading + "\"n\"=-\r\n\"n\"=\"1\"\r\n", Text("1"), true, "a value after the removal"},
        {heading + "\"n\"=\"1\"\r\n\"n\"=garbage\r\n", Text("1"), true, "garbage overrides nothing"},
        {heading + "\"n\"=\"1\"\r\n\"n\"=- garbage\r\n", Text("1"), true,
         "a removal with garbage behind it removes nothing"},
        {heading + "\"n\"=\"1\"\r\n" + heading + "\"m\"=\"2\"\r\n", Text("1"), true, "the key named twice"},
        {heading + "\"n\"=\"1\"\r\n" + heading + "\"n\"=\"2\"\r\n", Text("2"), true,
         "the key named twice, with the same value"},
        {heading + "\"n\"=\"1\"\r\n" + heading + "\"n\"=-\r\n", std::nullopt, true,
         "the key named twice, with a removal of the value"},
        {heading + "\"n\"=\"1\"\r\n[HKEY_LOCAL_MACHINE\\Software]\r\n\"n\"=\"2\"\r\n", Text("1"), true, "another key"},
        {heading + "\"n\"=\"1\"\r\n" + removal, std::nullopt, false, "a removal of the key"},
        {heading + "\"n\"=\"1\"\r\n" + removal + "\"n\"=\"2\"\r\n", std::nullopt, false,
         "values behind a removal of the key are ignored"},
        {heading + "\"n\"=\"1\"\r\n" + removal + heading, std::nullopt, true, "the key removed and named again"},
        {removal + heading + "\"n\"=\"1\"\r\n", Text("1"), true, "the key removed, named again and filled"},
        {heading + "\"n\"=\"1\"\r\n[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Hollbeck]\r\n", std::nullopt, false,
         "a removal of the parent removes the key"},
        {heading + "\"n\"=\"1\"\r\n[-HKEY_LOCAL_MACHINE\\Software\\Holl]\r\n", Text("1"), true,
         "a removal of another key does not"},
        {heading + "\"n\"=\"1\"\r\n[-HKEY_LOCAL_MACHINE]\r\n", Text("1"), true, "the root cannot be removed"},
        {heading + "\"n\"=\"1\"\r\n" + removal.substr(0, removal.size() - 3) + "\\Sub]\r\n", Text("1"), true,
         "a removal of a subkey does not"},
    };
    for (const auto& [lines, stored, isOpen, why] : cases) {
        Put(wide + lines);
        EXPECT_EQ(Find("n"), stored) << why;
        EXPECT_EQ(IsOpen(), isOpen) << why;
    }
}

TEST_F(RegistryText, FindsTheKeyByItsPath) {
    const struct {
        const char* heading;
        bool isOpen;
        bool hasValue;
        const char* why;
    } cases[] = {
        {R"([HKEY_LOCAL_MACHINE\Software\Hollbeck\VRX Software\QMV40Calculator])", true, true, "plain"},
        {R"([hkey_local_machine\SOFTWARE\hollbeck\vrx software\qmv40calculator])", true, true, "any letter case"},
        {R"(  [HKEY_LOCAL_MACHINE\Software\Hollbeck\VRX Software\QMV40Calculator] x)", true, true, "blanks, more text"},
        {R"([HKEY_LOCAL_MACHINE\Software\Hollbeck\VRX Software\QMV40Calculator\])", true, true, "backslash at the end"},
        {R"([HKEY_LOCAL_MACHINE\Software\Hollbeck\VRX Software\QMV40Calculator\Sub])", true, false, "a key below it"},
        {R"([HKEY_LOCAL_MACHINE\Software\Hollbeck\VRX Software\QMV40Calculator2])", false, false, "a longer name"},
        {R"([HKEY_LOCAL_MACHINE\Software\Hollbeck\VRX Software])", false, false, "its parent"},
        {R"([HKEY_CURRENT_USER\Software\Hollbeck\VRX Software\QMV40Calculator])", false, false, "another root"},
        {R"([HKLM\Software\Hollbeck\VRX Software\QMV40Calculator])", false, false, "an abbreviation"},
        {R"([Software\Hollbeck\VRX Software\QMV40Calculator])", false, false, "no root"},
        {R"([HKEY_LOCAL_MACHINE\Software\Hollbeck\VRX Software\QMV40Calculator)", false, false, "not closed"},
        {R"(;[HKEY_LOCAL_MACHINE\Software\Hollbeck\VRX Software\QMV40Calculator])", false, false, "a comment"},
        {R"([])", false, false, "nothing"},
        {R"([-])", false, false, "nothing to remove"},
        {R"(])", false, false, "no heading"},
    };
    for (const auto& [line, isOpen, hasValue, why] : cases) {
        Put(wide + line + "\r\n\"n\"=\"1\"\r\n");
        EXPECT_EQ(IsOpen(), isOpen) << why;
        EXPECT_EQ(Find("n"), hasValue ? std::optional(Text("1")) : std::nullopt) << why;
    }
}

TEST_F(RegistryText, SkipsLinesThatCannotBeUnderstood) {
    Put(wide + "\"early\"=\"1\"\r\n" + heading + "garbage\r\n=x\r\n\"k\"\r\n\r\n   \r\n; \"c\"=\"1\"\r\n[open\r\n" +
        "\0\xFF\xFE\r\n"s + "\"n\"=\"1\"\r\n");
    EXPECT_EQ(Find("early"), std::nullopt) << "belongs to no key";
    EXPECT_EQ(Find("c"), std::nullopt);
    EXPECT_EQ(Find("n"), Text("1"));
}

TEST_F(RegistryText, CanHaveAnyLineEnds) {
    for (const std::string end : {"\r\n", "\n", "\r"}) {
        Put("REGEDIT4" + end + end + heading.substr(0, heading.size() - 2) + end + "\"a\"=\"1\"" + end +
            "\"h\"=hex:01,\\" + end + "02" + end + "\"n\"=\"2\"");
        EXPECT_EQ(Find("a"), Text("1"));
        EXPECT_EQ(Find("n"), Text("2"));
        EXPECT_EQ(Find("h"), (Stored{REG_BINARY, "\1\2"}));
    }
}

TEST_F(RegistryText, HasNarrowCharactersInTheOlderFormat) {
    Put(narrow + heading +
        "\"a\"=hex(1):31,32,00\r\n\"b\"=hex(2):31,32\r\n\"c\"=\"\xE4\"\r\n\"d\"=hex(7):31,00,32,00,00\r\n");
    EXPECT_EQ(Find("a"), Text("12"));
    EXPECT_EQ(Find("b"), (Stored{REG_EXPAND_SZ, "12"}));
    EXPECT_EQ(Find("c"), Text("\xE4"));
    EXPECT_EQ(Find("d"), (Stored{7, "1\0"
                                    "2\0\0"s}));
}

TEST_F(RegistryText, CanBeUtf8OrUtf16WithAMark) {
    const std::u16string content = u"Windows Registry Editor Version 5.00\r\n\r\n"
                                   u"[HKEY_LOCAL_MACHINE\\Software\\Hollbeck\\VRX Software\\QMV40Calculator]\r\n"
                                   u"\"K\u00F6pfe \U0001F600\"=\"\u4E00\"\r\n\"h\"=hex(1):00,4e\r\n";
    std::string utf16 = "\xFF\xFE", swapped = "\xFE\xFF";
    for (const char16_t unit : content) {
        const char low = static_cast<char>(unit & 0xFF), high = static_cast<char>(unit >> 8);
        utf16 += {low, high};
        swapped += {high, low};
    }
    const std::string utf8 =
        wide + heading + "\"K\xC3\xB6pfe \xF0\x9F\x98\x80\"=\"\xE4\xB8\x80\"\r\n\"h\"=hex(1):00,4e\r\n";
    for (const std::string& encoded : {utf16, swapped, utf8, "\xEF\xBB\xBF" + utf8, utf16 + "?"}) {
        Put(encoded);
        EXPECT_EQ(Find("K\xC3\xB6pfe \xF0\x9F\x98\x80"), Text("\xE4\xB8\x80"));
        EXPECT_EQ(Find("h"), (Stored{REG_SZ, "\xE4\xB8\x80"})) << "hexadecimal bytes are always little-endian";
    }
}

TEST_F(RegistryText, HasNoKeyWithoutAFormatNameAtItsBeginning) {
    const struct {
        const char* firstLine;
        bool isOpen;
        const char* why;
    } cases[] = {
        {"Windows Registry Editor Version 5.00\r\n", true, "the newer format"},
        {"REGEDIT4\r\n", true, "the older format"},
        {" Windows Registry Editor Version 5.00 \r\n", true, "blanks around it"},
        {"regedit4\r\n", false, "letter case matters"},
        {"REGEDIT\r\n", false, "a still older format"},
        {"REGEDIT4x\r\n", false, "another name"},
        {"Windows Registry Editor Version 6.00\r\n", false, "another version"},
        {"\r\nREGEDIT4\r\n", false, "not on the first line"},
        {"", false, "missing"},
    };
    for (const auto& [firstLine, isOpen, why] : cases) {
        Put(firstLine + heading);
        EXPECT_EQ(IsOpen(), isOpen) << why;
    }
}

TEST_F(RegistryText, IsAnAbsentKeyWhenItCannotBeRead) {
    EXPECT_FALSE(IsOpen()) << "no file";
    Put("");
    EXPECT_FALSE(IsOpen()) << "an empty file";
    Put("\xFF\xFE");
    EXPECT_FALSE(IsOpen()) << "a mark alone";
    Put(narrow + heading);
    EXPECT_TRUE(IsOpen());
    std::filesystem::resize_file(file, (16U << 20) + 1);
    EXPECT_FALSE(IsOpen()) << "a file of more than 16 MiB";
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    EXPECT_FALSE(IsOpen()) << "a folder";
    std::filesystem::remove(file);
    ASSERT_EQ(::mkfifo(file.c_str(), 0666), 0);
    EXPECT_FALSE(IsOpen()) << "a pipe; opening it must not wait";
}

TEST_F(RegistryText, DoesNotChangeAfterItWasOpened) {
    Put(narrow + heading + "\"n\"=\"1\"\r\n");
    const SettingsKey key(path);
    Put(narrow + heading + "\"n\"=\"2\"\r\n");
    std::string buffer(2, '\0');
    DWORD type = 0, length = 0;
    EXPECT_EQ(key.Query("n", buffer, type, length), ERROR_SUCCESS);
    EXPECT_EQ(buffer, "1\0"s);
    EXPECT_EQ(Find("n"), Text("2"));
}

} // namespace
