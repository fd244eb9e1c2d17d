#include "formats/RegistryText.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>

using namespace qmv40;

namespace {

using namespace std::string_literals;
using Kind = RegistryLine::Kind;

const std::string wide = "Windows Registry Editor Version 5.00\r\n";
const std::string root = "HKEY_LOCAL_MACHINE\\";

TEST(RegistryLines, HaveNumbersKeysNamesAndValues) {
    const std::string text = wide + "\"early\"=\"1\"\r\n"
                                    "\r\n"
                                    "[HKEY_LOCAL_MACHINE\\A\\B\\] note\n"
                                    "; \"no\"=\"1\"\n"
                                    "  \"X\" = \"1.5\" ; why\r"
                                    "@=dword:1F\n"
                                    "\"bytes\"=hex(2):31,00,\\\r\n"
                                    "  32,00,\\ ; goes on\r\n"
                                    "\r\n"
                                    "\"x\"=-\n"
                                    "bare word \n"
                                    "\"half\"=hex:01,\\\n"
                                    "zz\n"
                                    "[-HKEY_CURRENT_USER\\C]\n"
                                    "\"X\"=\"1\"\n"
                                    "[HKEY_CURRENT_USER\\C]\n"
                                    "\"open=1";
    using Type = RegistryType;
    const struct {
        Kind kind;
        std::size_t number;
        std::string content, key, name;
        std::optional<Type> type;
        std::string bytes;
        const char* why;
    } expected[] = {
        {Kind::Key, 4, "[HKEY_LOCAL_MACHINE\\A\\B\\] note", root + "A\\B", "", {}, "", "nothing above a key counts"},
        {Kind::Value, 6, "\"X\" = \"1.5\" ; why", root + "A\\B", "X", Type::Text, "1.5\0"s,
         "comment lines are left out"},
        {Kind::Value, 7, "@=dword:1F", root + "A\\B", "", Type::Number, "\x1F\0\0\0"s, "the default value"},
        {Kind::Value, 8, "\"bytes\"=hex(2):31,00,\\", root + "A\\B", "bytes", Type::ExpandableText, "12",
         "three lines"},
        {Kind::RemovedValue, 11, "\"x\"=-", root + "A\\B", "x", {}, "", "the name keeps its letter case"},
        {Kind::Nonsense, 12, "bare word", root + "A\\B", "", {}, "", "no name"},
        {Kind::Nonsense,
         13,
         "\"half\"=hex:01,\\",
         root + "A\\B",
         "half",
         {},
         "",
         "the continuation line cannot be understood"},
        {Kind::Nonsense, 14, "zz", root + "A\\B", "", {}, "", "that line counts separately"},
        {Kind::RemovedKey,
         15,
         "[-HKEY_CURRENT_USER\\C]",
         "HKEY_CURRENT_USER\\C",
         "",
         {},
         "",
         "nothing below it counts"},
        {Kind::Key, 17, "[HKEY_CURRENT_USER\\C]", "HKEY_CURRENT_USER\\C", "", {}, "", "keys of all roots are listed"},
        {Kind::Nonsense, 18, "\"open=1", "HKEY_CURRENT_USER\\C", "", {}, "", "the name does not end"},
    };
    const RegistryLines found = RegistryLinesIn(text);
    EXPECT_TRUE(found.hasFormat);
    ASSERT_EQ(found.lines.size(), std::size(expected));
    for (std::size_t i = 0; i < found.lines.size(); ++i) {
        const auto& [kind, number, content, key, name, type, bytes, why] = expected[i];
        const RegistryLine& line = found.lines[i];
        SCOPED_TRACE(why);
        EXPECT_EQ(line.kind, kind);
        EXPECT_EQ(line.number, number);
        EXPECT_EQ(line.content, content);
        EXPECT_EQ(line.key, key);
        EXPECT_EQ(line.name, name);
        ASSERT_EQ(line.value.has_value(), type.has_value());
        if (!type) continue;
        EXPECT_EQ(line.value->type, *type);
        EXPECT_EQ(line.value->bytes, bytes);
    }
}

TEST(RegistryLines, AreListedAlsoWithoutAFormatName) {
    const RegistryLines found = RegistryLinesIn("nothing of the kind\n[HKEY_LOCAL_MACHINE\\A]\n");
    EXPECT_FALSE(found.hasFormat);
    ASSERT_EQ(found.lines.size(), 1U);
    EXPECT_EQ(found.lines[0].number, 2U);
    EXPECT_TRUE(RegistryLinesIn("REGEDIT4").hasFormat);
    EXPECT_TRUE(RegistryLinesIn("\xEF\xBB\xBF" + wide).hasFormat);
    EXPECT_TRUE(RegistryLinesIn("").lines.empty());
}

bool HasName(const RegistryLine& line, const std::string& name) {
    return line.name == name || (line.name == "M" && name == "m");
}

/// The value under the name in the key after an import of the lines.
std::optional<RegistryValue> Imported(const RegistryLines& lines, const std::string& key, const std::string& name) {
    std::optional<RegistryValue> value;
    if (!lines.hasFormat) return value;
    for (const RegistryLine& line : lines.lines) {
        if (line.key != key) continue;
        if (line.kind == Kind::RemovedKey) value.reset();
        if (!HasName(line, name)) continue;
        if (line.kind == Kind::RemovedValue) value.reset();
        if (line.kind == Kind::Value) value = line.value;
    }
    return value;
}

// The list of all lines and the query for one value must agree.
TEST(RegistryLines, AgreeWithTheQueryForOneValue) {
    constexpr std::uint64_t seed = 20261122;
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    const std::string parts[] = {"\n\"n\"=\"1\"\n",
                                 "\n\"n\"=hex:01,\\\n",
                                 "\n@=dword:7\n",
                                 "\n\"M\"=\"2\"\n",
                                 "\"n\"=",
                                 "\"n\"=\"1\"",
                                 "\"n\"=-",
                                 "\"m\"=\"2\"",
                                 "@=",
                                 "hex:01,\\",
                                 "hex(1):31,00",
                                 "02,\\",
                                 "03",
                                 "dword:7",
                                 "\"",
                                 "\n",
                                 "\n",
                                 "\r\n",
                                 ";",
                                 " ",
                                 "[HKEY_LOCAL_MACHINE\\K]\n",
                                 "[-HKEY_LOCAL_MACHINE\\K]\n",
                                 "[HKEY_LOCAL_MACHINE\\L]\n"};
    std::uniform_int_distribution<std::size_t> part(0, std::size(parts) - 1);
    int foundValues = 0;
    for (int round = 0; round < 5000; ++round) {
        std::string text = wide + "[HKEY_LOCAL_MACHINE\\K]\n";
        for (int i = 0; i < 12; ++i) text += parts[part(random)];
        SCOPED_TRACE(text);
        const RegistryLines lines = RegistryLinesIn(text);
        const RegistryKeyText key(text, "K");
        for (const std::string name : {"n", "m", ""}) {
            const std::optional<RegistryValue> found = key.Find(name);
            const std::optional<RegistryValue> imported = Imported(lines, root + "K", name);
            ASSERT_EQ(found.has_value(), imported.has_value()) << name;
            if (!found) continue;
            ++foundValues;
            ASSERT_EQ(found->type, imported->type) << name;
            ASSERT_EQ(found->bytes, imported->bytes) << name;
        }
    }
    EXPECT_GT(foundValues, 1000) << "too few values were compared";
}

} // namespace
