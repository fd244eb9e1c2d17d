#include "platform/windows/NarrowNames.h"

#include <gtest/gtest.h>

#include <string>

using namespace qmv40;

/// The bytes that are passed to the profile functions for a name, and the names for which there are none.

namespace {

/// The code pages of a machine, and conversions that refuse the same arguments as those of Windows.
struct Machine {
    UINT thread = 1252;
    UINT system = 1252;
    std::wstring shortPath; ///< the short path of every file; empty for none
    std::wstring only;      ///< the only existing file or folder; empty: all exist
    int refusals = 0;
} machine;

UINT CodePage(UINT codePage) {
    return codePage == CP_THREAD_ACP ? machine.thread : codePage == CP_ACP ? machine.system : codePage;
}

int Refuse(DWORD error) {
    ++machine.refusals;
    SetLastError(error);
    return 0;
}

/// Code pages for which the flags must be 0. (UTF-8 and GB18030 also accept WC_ERR_INVALID_CHARS.)
bool TakesNoFlags(UINT codePage) {
    constexpr UINT others[] = {42, 50220, 50221, 50222, 50225, 50227, 50229, 65000};
    return codePage == 65001 || codePage == 54936 || (codePage >= 57002 && codePage <= 57011) ||
           std::find(std::begin(others), std::end(others), codePage) != std::end(others);
}

int WINAPI Narrow(UINT codePage, DWORD flags, LPCWCH wide, int length, LPSTR narrow, int size, LPCCH defaultChar,
                  LPBOOL usedDefault) {
    const UINT page = CodePage(codePage);
    const bool isUtf = page == 65000 || page == 65001;
    const DWORD allowed = page == 65001 || page == 54936 ? WC_ERR_INVALID_CHARS : 0;
    if (TakesNoFlags(page) && (flags & ~allowed) != 0) return Refuse(ERROR_INVALID_FLAGS);
    if (isUtf && (defaultChar != nullptr || usedDefault != nullptr)) return Refuse(ERROR_INVALID_PARAMETER);
    if (length == 0 || wide == nullptr) return Refuse(ERROR_INVALID_PARAMETER);
    return WideCharToMultiByte(page, flags, wide, length, narrow, size, defaultChar, usedDefault);
}

int WINAPI Widen(UINT codePage, DWORD flags, LPCCH narrow, int length, LPWSTR wide, int size) {
    const UINT page = CodePage(codePage);
    const DWORD allowed = page == 65001 || page == 54936 ? MB_ERR_INVALID_CHARS : 0;
    if (TakesNoFlags(page) && (flags & ~allowed) != 0) return Refuse(ERROR_INVALID_FLAGS);
    if (length == 0 || narrow == nullptr) return Refuse(ERROR_INVALID_PARAMETER);
    return MultiByteToWideChar(page, flags, narrow, length, wide, size);
}

DWORD WINAPI ShortPath(LPCWSTR name, LPWSTR path, DWORD size) {
    if (machine.shortPath.empty() || (!machine.only.empty() && machine.only != name)) return 0;
    if (machine.shortPath.size() >= size) return static_cast<DWORD>(machine.shortPath.size() + 1);
    machine.shortPath.copy(path, machine.shortPath.size());
    path[machine.shortPath.size()] = L'\0';
    return static_cast<DWORD>(machine.shortPath.size());
}

const NameConversions conversions{Narrow, Widen, ShortPath};

class NarrowNames : public testing::Test {
protected:
    NarrowNames() { machine = {}; }
    ~NarrowNames() override { EXPECT_EQ(machine.refusals, 0) << "Windows would refuse these arguments"; }

    static void Become(UINT thread, UINT system) {
        machine.thread = thread;
        machine.system = system;
    }
};

constexpr const wchar_t* german = L"C:\\k\u00F6pf.ini";
constexpr const wchar_t* polish = L"C:\\g\u0142owa.ini";
constexpr const wchar_t* russian = L"C:\\\u0433\u043E\u043B\u043E\u0432\u0430.ini";
constexpr const wchar_t* japanese = L"C:\\\u982D.ini";

TEST_F(NarrowNames, AreInTheThreadsCodePageIfTheSystemReadsTheSame) {
    const struct {
        UINT codePage;
        const wchar_t* name;
        const char* bytes;
        const char* why;
    } cases[] = {
        {1252, german, "C:\\k\xF6pf.ini", "Western"},
        {1250, polish, "C:\\g\xB3owa.ini", "Central European"},
        {1250, german, "C:\\k\xF6pf.ini", "which has umlauts too"},
        {1251, russian, "C:\\\xE3\xEE\xEB\xEE\xE2\xE0.ini", "Cyrillic"},
        {932, japanese, "C:\\\x93\xAA.ini", "two bytes a character"},
        {65001, german, "C:\\k\xC3\xB6pf.ini", "UTF-8, as a manifest may ask for"},
        {65001, japanese, "C:\\\xE9\xA0\xAD.ini", "UTF-8"},
        {65001, L"C:\\\xD83D\xDE00.ini", "C:\\\xF0\x9F\x98\x80.ini", "a character of two units"},
        {54936, german, "C:\\k\x81\x30\x8B\x32pf.ini", "GB18030"},
        {1252, L"", "", "an empty name"},
    };
    for (const auto& [codePage, name, bytes, why] : cases) {
        if (IsValidCodePage(codePage) == 0) continue;
        Become(codePage, codePage);
        EXPECT_EQ(NarrowName(name, conversions), bytes) << why;
        if (*name == L'\0') machine.refusals = 0; // an empty name needs no conversion
    }
}

TEST_F(NarrowNames, AreNoneWhenTheCodePageLacksACharacter) {
    const struct {
        UINT codePage;
        const wchar_t* name;
        const char* why;
    } cases[] = {
        {1252, polish, "a similar letter is another name"},
        {1252, russian, "question marks"},
        {1251, german, "a similar letter"},
        {932, german, "a similar letter"},
        {65001, L"C:\\\xD83D.ini", "a lone surrogate"},
        {1252, nullptr, "no name"},
    };
    for (const auto& [codePage, name, why] : cases) {
        Become(codePage, codePage);
        EXPECT_EQ(NarrowName(name, conversions), std::nullopt) << why;
        EXPECT_EQ(NarrowFileName(name, conversions), std::nullopt) << why;
    }
}

TEST_F(NarrowNames, AreOtherwiseInTheSystemsCodePage) {
    Become(1250, 1252);
    EXPECT_EQ(NarrowName(german, conversions), "C:\\k\xF6pf.ini") << "the letter has the same byte in both";
    EXPECT_EQ(NarrowName(polish, conversions), std::nullopt) << "the system would read g\xB3owa.ini";
    Become(1251, 1252);
    EXPECT_EQ(NarrowName(german, conversions), "C:\\k\xF6pf.ini") << "the thread's code page has no such letter";
    Become(65001, 1252);
    EXPECT_EQ(NarrowName(german, conversions), "C:\\k\xF6pf.ini");
    Become(1252, 65001);
    EXPECT_EQ(NarrowName(russian, conversions), "C:\\\xD0\xB3\xD0\xBE\xD0\xBB\xD0\xBE\xD0\xB2\xD0\xB0.ini");
}

TEST_F(NarrowNames, OfFilesAreOtherwiseTheShortNames) {
    Become(1250, 1252);
    machine.shortPath = L"C:\\GOWA~1.INI";
    EXPECT_EQ(NarrowFileName(polish, conversions), "C:\\GOWA~1.INI");
    EXPECT_EQ(NarrowFileName(german, conversions), "C:\\k\xF6pf.ini") << "this long name can be converted";
    machine.shortPath = polish; // a disk without short names returns the long name
    EXPECT_EQ(NarrowFileName(polish, conversions), std::nullopt);
}

TEST_F(NarrowNames, OfNewFilesHaveTheShortNameOfTheirFolder) {
    machine.only = L"C:\\g\u0142owa";
    machine.shortPath = L"C:\\GOWA~1";
    EXPECT_EQ(NarrowFileName(L"C:\\g\u0142owa\\k\u00F6pf.ini", conversions), "C:\\GOWA~1\\k\xF6pf.ini");
    EXPECT_EQ(NarrowFileName(L"C:\\g\u0142owa\\g\u0142owa.ini", conversions), std::nullopt)
        << "a new file has no short name";
    EXPECT_EQ(NarrowFileName(L"g\u0142owa.ini", conversions), std::nullopt) << "no folder";
}

TEST_F(NarrowNames, OfFilesEndBefore260Characters) {
    EXPECT_TRUE(NarrowFileName(std::wstring(259, L'x').c_str(), conversions));
    EXPECT_FALSE(NarrowFileName(std::wstring(260, L'x').c_str(), conversions));
    EXPECT_FALSE(NarrowFileName(L"", conversions));
}

} // namespace
