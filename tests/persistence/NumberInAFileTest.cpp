#include "persistence/HeadGeometryFile.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

using namespace qmv40;

/// Single numbers in the platform's profile files.

namespace {

class NumberInAFile : public testing::Test {
protected:
    void Content(const std::string& content) const { std::ofstream(path, std::ios::binary) << content; }
    std::string Content() const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    double Read(const wchar_t* section = L"HEADCENTRE", const wchar_t* key = L"X") const {
        return ReadHeadGeometryNumber(ProfileReader(path.wstring().c_str()), {section, key});
    }
    void Write(double value, const wchar_t* section = L"HEADCENTRE", const wchar_t* key = L"X") const {
        WriteTo(path.wstring(), value, section, key);
    }

    static void WriteTo(const std::wstring& file, double value, const wchar_t* section, const wchar_t* key) {
        ProfileWriter writer(file.c_str());
        WriteHeadGeometryNumber(writer, {section, key}, value);
        CommitHeadGeometry(writer);
    }

    TemporaryFolder folder;
    std::filesystem::path path = folder.Path("head.ini");
};

TEST_F(NumberInAFile, CreatesFileAndSection) {
    Write(-6.95);
    EXPECT_EQ(Content(), "[HEADCENTRE]\r\nX=-6.950000000e+00\r\n");
    EXPECT_EQ(Read(), -6.95);
}

TEST_F(NumberInAFile, IsReplacedInItsLine) {
    Content("[HEADCENTRE]\r\nX=1\r\nY=2\r\n[Other]\r\nX=3\r\n");
    Write(7.0);
    EXPECT_EQ(Content(), "[HEADCENTRE]\r\nX=7.000000000e+00\r\nY=2\r\n[Other]\r\nX=3\r\n");
}

TEST_F(NumberInAFile, IsAddedToItsSectionAndKeepsTheRest) {
    Content("[HEADCENTRE]\r\nX=1\r\n[Other]\r\nX=3\r\n");
    Write(7.0, L"HEADCENTRE", L"Y");
    EXPECT_EQ(Content(), "[HEADCENTRE]\r\nX=1\r\nY=7.000000000e+00\r\n[Other]\r\nX=3\r\n");
    EXPECT_EQ(Read(L"HEADCENTRE", L"Y"), 7.0);
    EXPECT_EQ(Read(L"Other", L"X"), 3.0);
}

TEST_F(NumberInAFile, IsFoundInAnyLetterCaseWithBlanksAndQuotes) {
    for (const char* const content :
         {"[headcentre]\r\nx=12.5\r\n", "[HEADCENTRE]\r\n  X  =  12.5  \r\n", "[HEADCENTRE]\r\nX=\"12.5\"\r\n",
          "[HEADCENTRE]\r\nX='12.5'\r\n", "; note\r\n[HEADCENTRE]\r\n;X=1\r\nX=12.5 ; of the pole\r\nX=13\r\n",
          "[HEADCENTRE]\nX=12.5\n", "[HEADCENTRE]\r\nX=12.5"}) {
        SCOPED_TRACE(content);
        Content(content);
        EXPECT_EQ(Read(), 12.5);
    }
}

TEST_F(NumberInAFile, IsMissingWithoutItsFileItsSectionOrItsKey) {
    const auto missing = [this](const char* why) {
        SCOPED_TRACE(why);
        ExpectFailure(RaisedBy([this] { Read(); }), failures::notRead);
    };
    missing("no file");
    for (const char* const content : {"", "[Other]\r\nX=1\r\n", "[HEADCENTRE]\r\nY=1\r\n", "X=1\r\n",
                                      "[HEADCENTRE]\r\n[Other]\r\nX=1\r\n", "[HEADCENTRE]\r\nX\r\n"}) {
        Content(content);
        missing(content);
    }
}

// An empty value is not missing: it is a text that does not begin with a number.
TEST_F(NumberInAFile, IsZeroWhenItsTextIsEmpty) {
    Content("[HEADCENTRE]\r\nX=\r\n");
    EXPECT_EQ(Read(), 0.0);
}

TEST_F(NumberInAFile, CannotBeStoredWhereNoFileCanBeCreated) {
    ExpectFailure(RaisedBy([&] { WriteTo(folder.Path().wstring(), 1.0, L"HEADCENTRE", L"X"); }), failures::notWritten);
}

TEST_F(NumberInAFile, MayBeInAFileWithANameBeyondAscii) {
    const std::wstring name = folder.Path().wstring() + L"/K\u00F6pfe \u00B5m.ini";
    WriteTo(name, 0.25, L"HEADCENTRE", L"X");
    EXPECT_EQ(ReadHeadGeometryNumber(ProfileReader(name.c_str()), {L"HEADCENTRE", L"X"}), 0.25);
    EXPECT_TRUE(std::filesystem::exists(folder.Path() / std::filesystem::path(u8"K\u00F6pfe \u00B5m.ini")));
}

} // namespace
