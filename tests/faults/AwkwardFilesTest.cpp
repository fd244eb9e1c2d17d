#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TwoGeometries.h"

#include <gtest/gtest.h>

#include <string>

using namespace qmv40;

/// Names that are unusual and places where no geometry file can be.

namespace {

namespace fs = std::filesystem;

class AwkwardFiles : public testing::Test {
protected:
    Raised Saving(const fs::path& place) const {
        return ReturnedBy([&] { return calculator->SaveHeadGeometryToFile(Bstr(place).Address()); });
    }
    static Raised Loading(IQMVCalculator2& loader, const fs::path& place) {
        return ReturnedBy([&] { return loader.LoadHeadGeometryFromFile(Bstr(place).Address()); });
    }

    TemporaryFolder folder;
    ComPointer<IQMVCalculator2> calculator = TwoGeometries::Calculator(folder.Path(), 1);
};

TEST_F(AwkwardFiles, AreSavedAndLoadedUnderUnusualNames) {
    const struct {
        const char8_t* name;
        const char* why;
    } names[] = {
        {u8"head", "no extension"},
        {u8"head geometry of the left arm.ini", "blanks"},
        {u8" leading.ini", "a blank at the beginning"},
        {u8".ini", "an extension only"},
        {u8"[head].ini", "brackets"},
        {u8"a=b;c.ini", "characters with a meaning in the file"},
        {u8"100%.ini", "percent sign"},
        {u8"%TEMP%.ini", "the name of a variable"},
        {u8"Köpfe µm.ini", "letters beyond ASCII"},
        {u8"it's.ini", "an apostrophe"},
        {u8"HEAD.INI", "capitals"},
    };
    for (const auto& [name, why] : names) {
        SCOPED_TRACE(why);
        const TemporaryFolder own;
        const auto path = own.Path() / fs::path(name);
        ASSERT_EQ(Saving(path).code, S_OK);
        EXPECT_TRUE(fs::is_regular_file(path));
        const fs::directory_iterator files(own.Path());
        EXPECT_EQ(std::distance(begin(files), end(files)), 1) << "no other file may be left";
        const auto loader = CreateCalculator();
        EXPECT_EQ(Loading(*loader.Get(), path).code, S_OK);
        EXPECT_EQ(TwoGeometries::HeldBy(*loader.Get()), 1);
    }
}

TEST_F(AwkwardFiles, AreSavedInFoldersWithUnusualNames) {
    const auto place = folder.Path() / fs::path(u8"Meßmaschine 1 [links]") / fs::path(u8"a.b;c");
    fs::create_directories(place);
    ASSERT_EQ(Saving(place / "head.ini").code, S_OK);
    const auto loader = CreateCalculator();
    EXPECT_EQ(Loading(*loader.Get(), place / "head.ini").code, S_OK);
    EXPECT_EQ(TwoGeometries::HeldBy(*loader.Get()), 1);
}

TEST_F(AwkwardFiles, AreRefusedWhereNoFileCanBeCreated) {
    const auto file = folder.Path("file");
    std::ofstream(file) << "not a folder";
    const auto directory = folder.Path("directory");
    fs::create_directory(directory);
    const struct {
        fs::path place;
        const char* why;
    } places[] = {
        {folder.Path("none") / "head.ini", "the folder is missing"},
        {folder.Path("none") / "none" / "head.ini", "the folder and its parent are missing"},
        {directory, "the name of a folder"},
        {file / "head.ini", "a file instead of the folder"},
        {directory / (std::string(300, 'x') + ".ini"), "a name that is too long"},
    };
    for (const auto& [place, why] : places) {
        SCOPED_TRACE(why);
        ExpectFailure(Saving(place), failures::notWritten);
        ExpectFailure(Loading(*calculator.Get(), place), failures::notRead);
        EXPECT_EQ(TwoGeometries::HeldBy(*calculator.Get()), 1) << "the geometry must not change";
    }
    EXPECT_TRUE(fs::is_empty(directory));
    EXPECT_EQ(TwoGeometries::ContentOf(file), "not a folder");
    EXPECT_EQ(Saving(folder.Path("head.ini")).code, S_OK) << "the object must still work";
}

/// The path of a file in folders so deep that the path has `length` characters.
fs::path DeepFile(const fs::path& root, std::size_t length) {
    fs::path place = root;
    // 101: a separator and a folder's name. At least 10 characters remain for the file.
    while (place.native().size() + 101 + 10 < length) place /= std::string(100, 'd');
    return place / std::string(length - place.native().size() - 1, 'f');
}

TEST_F(AwkwardFiles, WithLongNamesAreSavedWholeOrRefused) {
    for (const std::size_t length :
         {200U, 240U, 250U, 255U, 259U, 260U, 300U, 1000U, 4000U, 4090U, 4096U, 5000U, 40000U}) {
        SCOPED_TRACE(length);
        const auto place = DeepFile(folder.Path(), length);
        std::error_code ignored;
        fs::create_directories(place.parent_path(), ignored);
        const Raised saved = Saving(place);
        const auto loader = CreateCalculator();
        const Raised loaded = Loading(*loader.Get(), place);
        if (saved.code == S_OK) {
            EXPECT_EQ(loaded.code, S_OK);
            EXPECT_EQ(TwoGeometries::HeldBy(*loader.Get()), 1);
        } else {
            EXPECT_EQ(saved.code, QMV_E_WRITE_TO_FILE);
            EXPECT_EQ(loaded.code, QMV_E_READ_FROM_FILE);
            EXPECT_GT(length, 255U) << "every platform accepts a name of this length";
        }
    }
    EXPECT_EQ(Saving(folder.Path("head.ini")).code, S_OK);
}

TEST_F(AwkwardFiles, AreRefusedWithoutAName) {
    Bstr empty{std::wstring()};
    BSTR none = nullptr;
    for (BSTR* const name : {empty.Address(), &none}) {
        EXPECT_EQ(calculator->LoadHeadGeometryFromFile(name), QMV_E_READ_FROM_FILE);
        EXPECT_EQ(TwoGeometries::HeldBy(*calculator.Get()), 1);
    }
    EXPECT_EQ(calculator->SaveHeadGeometryToFile(empty.Address()), QMV_E_WRITE_TO_FILE);
}

} // namespace
