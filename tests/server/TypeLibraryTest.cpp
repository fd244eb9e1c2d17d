#include "tests/server/Client.h"

#include <string>
#include <vector>

using namespace qmv40;

/// The type library, read as by object browsers and late-bound languages.

namespace {

class TypeLibrary : public Client {
protected:
    ComPointer<ITypeInfo> Info(REFGUID guid) const {
        return Received<ITypeInfo>([&](ITypeInfo** out) { return library->GetTypeInfoOfGuid(guid, out); });
    }

    ComPointer<ITypeLib> library =
        Received<ITypeLib>([](ITypeLib** out) { return LoadTypeLibEx(ServerPath().c_str(), REGKIND_NONE, out); });
};

class RegisteredTypeLibrary : public RegisteredClient {};

std::wstring Taken(BSTR text) {
    const std::wstring copy(text == nullptr ? L"" : text, SysStringLen(text));
    SysFreeString(text);
    return copy;
}

struct Words {
    std::wstring name;
    std::wstring help;
    bool operator==(const Words&) const = default;
};

template <class Documented> Words WordsOf(Documented& documented, long member) {
    BSTR name = nullptr;
    BSTR help = nullptr;
    EXPECT_EQ(documented.GetDocumentation(member, &name, &help, nullptr, nullptr), S_OK);
    return {Taken(name), Taken(help)};
}

/// A description of a type information, released at the end.
template <class T> class Lent {
public:
    using GiveBack = void (STDMETHODCALLTYPE ITypeInfo::*)(T*);
    template <class Take> Lent(ITypeInfo& theOwner, GiveBack theGiveBack, Take&& take)
        : owner(theOwner), giveBack(theGiveBack) {
        EXPECT_EQ(take(&description), S_OK);
    }
    Lent(const Lent&) = delete;
    Lent& operator=(const Lent&) = delete;
    ~Lent() { (owner.*giveBack)(description); }
    T* operator->() const { return description; }

private:
    ITypeInfo& owner;
    GiveBack giveBack;
    T* description = nullptr;
};

Lent<TYPEATTR> AttributesOf(ITypeInfo& info) {
    return {info, &ITypeInfo::ReleaseTypeAttr, [&](TYPEATTR** out) { return info.GetTypeAttr(out); }};
}
Lent<FUNCDESC> FunctionOf(ITypeInfo& info, UINT index) {
    return {info, &ITypeInfo::ReleaseFuncDesc, [&, index](FUNCDESC** out) { return info.GetFuncDesc(index, out); }};
}
Lent<VARDESC> FieldOf(ITypeInfo& info, UINT index) {
    return {info, &ITypeInfo::ReleaseVarDesc, [&, index](VARDESC** out) { return info.GetVarDesc(index, out); }};
}

TEST_F(TypeLibrary, IsTheFirstOfTheModule) {
    TLIBATTR* attributes = nullptr;
    ASSERT_EQ(library->GetLibAttr(&attributes), S_OK);
    EXPECT_TRUE(IsEqualGUID(attributes->guid, LIBID_CoQMV40CalculatorLib));
    EXPECT_EQ(attributes->wMajorVerNum, 1);
    EXPECT_EQ(attributes->wMinorVerNum, 0);
    EXPECT_EQ(attributes->lcid, 1033U); // English (United States)
    EXPECT_EQ(attributes->syskind, sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32);
    library->ReleaseTLibAttr(attributes);
    EXPECT_EQ(WordsOf(*library.Get(), MEMBERID_NIL),
              (Words{L"CoQMV40CalculatorLib", L"CoQMV40Calculator 1.0 Type Library"}));
}

TEST_F(TypeLibrary, IsAlsoAFileBesideTheModule) {
    const auto path = ServerPath().parent_path() / L"CoQMV40Calculator.tlb";
    const auto file =
        Received<ITypeLib>([&](ITypeLib** out) { return LoadTypeLibEx(path.c_str(), REGKIND_NONE, out); });
    ASSERT_TRUE(file);
    EXPECT_EQ(WordsOf(*file.Get(), MEMBERID_NIL), WordsOf(*library.Get(), MEMBERID_NIL));
    EXPECT_EQ(file->GetTypeInfoCount(), library->GetTypeInfoCount());
}

TEST_F(TypeLibrary, NamesAndDescribesItsTypes) {
    const struct {
        const GUID* guid;
        TYPEKIND kind;
        Words words;
    } types[] = {
        {&CLSID_QMVCalculator, TKIND_COCLASS, {L"QMVCalculator", L"QMVCalculator Class"}},
        {&IID_IQMVCalculator, TKIND_DISPATCH, {L"IQMVCalculator", L"IQMVCalculator Interface"}},
        {&IID_IQMVCalculator2, TKIND_DISPATCH, {L"IQMVCalculator2", L"IQMVCalculator2 Interface"}},
        {&GUID_XYZData, TKIND_RECORD, {L"XYZData", L"XYZ Data Item"}},
        {&GUID_ArcData, TKIND_RECORD, {L"ArcData", L"Arc Data Item"}},
        {&GUID_HeadAlignmentDataItem, TKIND_RECORD, {L"HeadAlignmentDataItem", L"Head Alignment Position information"}},
        {&GUID_RequiredMoves, TKIND_RECORD, {L"RequiredMoves", L"Required Moves"}}};
    EXPECT_EQ(library->GetTypeInfoCount(), std::size(types));
    for (const auto& [guid, kind, words] : types) {
        const auto info = Info(*guid);
        ASSERT_TRUE(info) << std::filesystem::path(words.name);
        EXPECT_EQ(WordsOf(*info.Get(), MEMBERID_NIL), words);
        EXPECT_EQ(AttributesOf(*info.Get())->typekind, kind) << std::filesystem::path(words.name);
    }
}

TEST_F(TypeLibrary, ListsTwoInterfacesOfTheClassAndOneDefault) {
    const auto coclass = Info(CLSID_QMVCalculator);
    ASSERT_EQ(AttributesOf(*coclass.Get())->cImplTypes, 2);
    const struct {
        UINT index;
        const IID* iid;
        INT flags;
    } interfaces[] = {{0, &IID_IQMVCalculator, IMPLTYPEFLAG_FDEFAULT}, {1, &IID_IQMVCalculator2, 0}};
    for (const auto& [index, iid, flags] : interfaces) {
        HREFTYPE reference = 0;
        INT found = -1;
        ASSERT_EQ(coclass->GetRefTypeOfImplType(index, &reference), S_OK);
        EXPECT_EQ(coclass->GetImplTypeFlags(index, &found), S_OK);
        EXPECT_EQ(found, flags);
        const auto info = Received<ITypeInfo>([&](ITypeInfo** out) { return coclass->GetRefTypeInfo(reference, out); });
        EXPECT_TRUE(IsEqualGUID(AttributesOf(*info.Get())->guid, *iid));
    }
}

/// The type information of the interface's virtual table. (That of a dual interface describes its dispatch side.)
ComPointer<ITypeInfo> EntriesOf(ITypeInfo& dual) {
    HREFTYPE reference = 0;
    EXPECT_EQ(dual.GetRefTypeOfImplType(static_cast<UINT>(-1), &reference), S_OK);
    return Received<ITypeInfo>([&](ITypeInfo** out) { return dual.GetRefTypeInfo(reference, out); });
}

struct Method {
    std::vector<std::wstring> names; ///< of the method and its parameters
    std::vector<VARTYPE> types;
    std::vector<USHORT> flags;
};

constexpr USHORT input = PARAMFLAG_FIN;
constexpr USHORT output = PARAMFLAG_FOUT;
constexpr USHORT result = PARAMFLAG_FOUT | PARAMFLAG_FRETVAL;

/// The eight methods in their order, which is also the order of their dispatch identifiers.
const std::vector<Method>& Methods() {
    static const std::vector<Method> methods{
        {{L"LoadHeadGeometryFromFile", L"FileName"}, {VT_PTR}, {input}},
        {{L"SaveHeadGeometryToFile", L"FileName"}, {VT_PTR}, {input}},
        {{L"GetCurrentHeadPosition", L"APosition", L"BPosition"}, {VT_PTR, VT_PTR}, {output, output}},
        {{L"SetCurrentHeadPosition", L"APosition", L"BPosition"}, {VT_R8, VT_R8}, {input, input}},
        {{L"CalculateMove", L"TargetAPosition", L"TargetBPosition", L"Moves"},
         {VT_R8, VT_R8, VT_PTR},
         {input, input, result}},
        {{L"EnterHeadGeometry", L"pAAxisPoints", L"pBAxisPoints"}, {VT_PTR, VT_PTR}, {input, input}},
        {{L"GetStartPosition", L"StartPosition"}, {VT_PTR}, {result}},
        {{L"GetPoleSpherePosition", L"PoleSpherePosition"}, {VT_PTR}, {result}}};
    return methods;
}

/// The seven methods of IDispatch come before ours.
constexpr std::size_t entriesBefore = 7;

void ExpectMethod(ITypeInfo& entries, UINT index, std::size_t number) {
    const Method& expected = Methods()[number];
    SCOPED_TRACE(std::filesystem::path(expected.names[0]));
    const auto function = FunctionOf(entries, index);
    EXPECT_EQ(function->memid, static_cast<MEMBERID>(number + 1));
    EXPECT_EQ(function->oVft, static_cast<SHORT>((entriesBefore + number) * sizeof(void*)));
    EXPECT_EQ(function->invkind, INVOKE_FUNC);
    EXPECT_EQ(function->elemdescFunc.tdesc.vt, VT_HRESULT);
    BSTR names[4]{};
    UINT found = 0;
    EXPECT_EQ(entries.GetNames(function->memid, names, 4, &found), S_OK);
    std::vector<std::wstring> taken;
    for (UINT i = 0; i < found; ++i) taken.push_back(Taken(names[i]));
    EXPECT_EQ(taken, expected.names);
    ASSERT_EQ(static_cast<std::size_t>(function->cParams), expected.types.size());
    for (std::size_t i = 0; i < expected.types.size(); ++i) {
        EXPECT_EQ(function->lprgelemdescParam[i].tdesc.vt, expected.types[i]) << i;
        EXPECT_EQ(function->lprgelemdescParam[i].paramdesc.wParamFlags, expected.flags[i]) << i;
    }
    EXPECT_NE(WordsOf(entries, function->memid).help, L"") << "every method must have a help text";
}

TEST_F(TypeLibrary, DescribesTheEightMethodsInTheirOrder) {
    const auto first = EntriesOf(*Info(IID_IQMVCalculator).Get());
    const auto second = EntriesOf(*Info(IID_IQMVCalculator2).Get());
    ASSERT_EQ(AttributesOf(*first.Get())->cFuncs, 7);
    ASSERT_EQ(AttributesOf(*second.Get())->cFuncs, 1);
    for (UINT i = 0; i < 7; ++i) ExpectMethod(*first.Get(), i, i);
    ExpectMethod(*second.Get(), 0, 7);
    EXPECT_EQ(AttributesOf(*second.Get())->cbSizeVft, (entriesBefore + 8) * sizeof(void*));
}

TEST_F(TypeLibrary, MarksBothInterfacesAsDualAndAutomation) {
    for (const IID* const iid : {&IID_IQMVCalculator, &IID_IQMVCalculator2}) {
        const auto info = Info(*iid);
        const WORD flags = AttributesOf(*info.Get())->wTypeFlags;
        EXPECT_NE(flags & TYPEFLAG_FDUAL, 0);
        EXPECT_NE(flags & TYPEFLAG_FDISPATCHABLE, 0);
        EXPECT_NE(AttributesOf(*EntriesOf(*info.Get()).Get())->wTypeFlags & TYPEFLAG_FOLEAUTOMATION, 0);
    }
}

struct Field {
    const wchar_t* name;
    ULONG offset;
    VARTYPE type;
};

void ExpectRecord(ITypeInfo& record, ULONG size, const std::vector<Field>& fields) {
    SCOPED_TRACE(std::filesystem::path(WordsOf(record, MEMBERID_NIL).name));
    EXPECT_EQ(AttributesOf(record)->cbSizeInstance, size);
    ASSERT_EQ(static_cast<std::size_t>(AttributesOf(record)->cVars), fields.size());
    for (UINT i = 0; i < fields.size(); ++i) {
        const auto field = FieldOf(record, i);
        EXPECT_EQ(WordsOf(record, field->memid).name, fields[i].name);
        EXPECT_EQ(field->oInst, fields[i].offset) << std::filesystem::path(fields[i].name);
        EXPECT_EQ(field->elemdescVar.tdesc.vt, fields[i].type) << std::filesystem::path(fields[i].name);
    }
    const auto info = Received<IRecordInfo>([&](IRecordInfo** out) { return GetRecordInfoFromTypeInfo(&record, out); });
    ASSERT_TRUE(info) << "late-bound languages create records with it";
    ULONG made = 0;
    EXPECT_EQ(info->GetSize(&made), S_OK);
    EXPECT_EQ(made, size);
}

/// The fields of a record. All are doubles, without padding.
std::vector<Field> Numbers(const std::vector<const wchar_t*>& names) {
    std::vector<Field> fields;
    for (const wchar_t* const name : names)
        fields.push_back({name, static_cast<ULONG>(fields.size() * sizeof(double)), VT_R8});
    return fields;
}

TEST_F(TypeLibrary, LaysOutTheSmallRecordsAsDoubles) {
    ExpectRecord(*Info(GUID_XYZData).Get(), 24, Numbers({L"XPosition", L"YPosition", L"ZPosition"}));
    ExpectRecord(*Info(GUID_ArcData).Get(), 56,
                 Numbers({L"XOrigin", L"YOrigin", L"ZOrigin", L"iRotationVector", L"jRotationVector",
                          L"kRotationVector", L"RotationAngle"}));
    ExpectRecord(*Info(GUID_HeadAlignmentDataItem).Get(), 40,
                 Numbers({L"APosition", L"BPosition", L"XPosition", L"YPosition", L"ZPosition"}));
}

TEST_F(TypeLibrary, LaysOutTheNineteenMovesInTheirOrder) {
    ExpectRecord(*Info(GUID_RequiredMoves).Get(), 680,
                 {{L"ApproachUnLockLever", 0, VT_USERDEFINED},
                  {L"EngageWithUnLockLever", 24, VT_USERDEFINED},
                  {L"UnLock", 48, VT_USERDEFINED},
                  {L"DisengageFromUnLockLever", 104, VT_USERDEFINED},
                  {L"RotateToPeg", 128, VT_USERDEFINED},
                  {L"MoveToPegAtSafeZ", 184, VT_USERDEFINED},
                  {L"ApproachPeg", 208, VT_USERDEFINED},
                  {L"EngageWithPeg", 232, VT_USERDEFINED},
                  {L"IntermediateAPosition", 256, VT_USERDEFINED},
                  {L"MoveToBPosition", 312, VT_USERDEFINED},
                  {L"MoveToAPosition", 368, VT_USERDEFINED},
                  {L"DisengageFromPeg", 424, VT_USERDEFINED},
                  {L"DisengageFromPegToSafeZ", 448, VT_USERDEFINED},
                  {L"RotateToLockLever", 472, VT_USERDEFINED},
                  {L"MoveToLockLeverAtSafeZ", 528, VT_USERDEFINED},
                  {L"ApproachLockLever", 552, VT_USERDEFINED},
                  {L"EngageWithLockLever", 576, VT_USERDEFINED},
                  {L"Lock", 600, VT_USERDEFINED},
                  {L"DisengageFromLockLever", 656, VT_USERDEFINED}});
}

TEST_F(RegisteredTypeLibrary, IsFoundForBothLocales) {
    for (const LCID locale : {LCID{1033}, LCID{0}}) {
        const auto library = Received<ITypeLib>(
            [&](ITypeLib** out) { return LoadRegTypeLib(LIBID_CoQMV40CalculatorLib, 1, 0, locale, out); });
        ASSERT_TRUE(library) << locale;
        EXPECT_EQ(WordsOf(*library.Get(), MEMBERID_NIL).name, L"CoQMV40CalculatorLib") << locale;
    }
}

TEST_F(RegisteredTypeLibrary, HasItsRecordsByTheirIdentifiers) {
    const struct {
        const GUID* guid;
        ULONG size;
    } records[] = {
        {&GUID_XYZData, 24}, {&GUID_ArcData, 56}, {&GUID_HeadAlignmentDataItem, 40}, {&GUID_RequiredMoves, 680}};
    for (const auto& [guid, size] : records) {
        const auto info = Received<IRecordInfo>([&](IRecordInfo** out) {
            return GetRecordInfoFromGuids(LIBID_CoQMV40CalculatorLib, 1, 0, 1033, *guid, out);
        });
        ASSERT_TRUE(info) << size;
        ULONG found = 0;
        EXPECT_EQ(info->GetSize(&found), S_OK);
        EXPECT_EQ(found, size);
    }
}

TEST_F(RegisteredTypeLibrary, IsNotFoundAfterTheUnregistration) {
    ASSERT_EQ(server.Unregister(), S_OK);
    for (const LCID locale : {LCID{1033}, LCID{0}}) {
        ITypeLib* library = nullptr;
        EXPECT_EQ(LoadRegTypeLib(LIBID_CoQMV40CalculatorLib, 1, 0, locale, &library), TYPE_E_LIBNOTREGISTERED);
        EXPECT_EQ(library, nullptr);
    }
}

} // namespace
