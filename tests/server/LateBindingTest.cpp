#include "tests/server/LateCall.h"

#include "tests/server/Client.h"
#include "tests/server/Registry.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

#include <functional>

using namespace qmv40;

/// The operations of late-bound languages, without a registration: names and records come from the module's resource.

namespace {

class LateBinding : public Client {
protected:
    void SetUp() override { ASSERT_EQ(RegisteredTexts(), RegistryTexts{}); }

    TemporaryFolder folder;
};

/// In German 7,5 is a number, and the point separates thousands.
constexpr LCID german = 0x0407;

template <class Record> bool SameBytes(const Record& left, const Record& right) {
    return std::memcmp(&left, &right, sizeof left) == 0;
}

/// An array of points as a language with records creates it, from the object's type information.
class RecordArray {
public:
    RecordArray(IDispatch& object, const std::vector<HeadAlignmentDataItem>& points) {
        const auto interfaceInfo = Received<ITypeInfo>([&](ITypeInfo** out) { return object.GetTypeInfo(0, 0, out); });
        UINT index = 0;
        const auto library =
            Received<ITypeLib>([&](ITypeLib** out) { return interfaceInfo->GetContainingTypeLib(out, &index); });
        const auto type = Received<ITypeInfo>(
            [&](ITypeInfo** out) { return library->GetTypeInfoOfGuid(GUID_HeadAlignmentDataItem, out); });
        const auto record =
            Received<IRecordInfo>([&](IRecordInfo** out) { return GetRecordInfoFromTypeInfo(type.Get(), out); });
        array = SafeArrayCreateVectorEx(VT_RECORD, 0, static_cast<ULONG>(points.size()), record.Get());
        for (LONG i = 0; i < static_cast<LONG>(points.size()); ++i) {
            HeadAlignmentDataItem point = points[static_cast<std::size_t>(i)];
            EXPECT_EQ(SafeArrayPutElement(array, &i, &point), S_OK);
        }
    }
    RecordArray(const RecordArray&) = delete;
    RecordArray& operator=(const RecordArray&) = delete;
    ~RecordArray() { SafeArrayDestroy(array); }

    SAFEARRAY* Get() const { return array; }
    SAFEARRAY** Address() { return &array; }

private:
    SAFEARRAY* array = nullptr;
};

TEST_F(LateBinding, FindsTheEightMethodsInAnyLetterCase) {
    const auto calculator = server.Create();
    const wchar_t* const names[] = {L"LoadHeadGeometryFromFile", L"SaveHeadGeometryToFile", L"GetCurrentHeadPosition",
                                    L"SetCurrentHeadPosition",   L"CalculateMove",          L"EnterHeadGeometry",
                                    L"GetStartPosition",         L"GetPoleSpherePosition"};
    DISPID expected = 0;
    for (const std::wstring name : names) {
        std::wstring small;
        std::wstring capital;
        for (const wchar_t letter : name) {
            small += static_cast<wchar_t>(std::towlower(letter));
            capital += static_cast<wchar_t>(std::towupper(letter));
        }
        ++expected;
        for (const std::wstring& written : {name, small, capital})
            EXPECT_EQ(IdOf(*calculator.Get(), written.c_str()), expected) << std::filesystem::path(written);
    }
}

TEST_F(LateBinding, FindsParametersByName) {
    const auto calculator = server.Create();
    LPOLESTR names[] = {const_cast<LPOLESTR>(L"SetCurrentHeadPosition"), const_cast<LPOLESTR>(L"BPosition"),
                        const_cast<LPOLESTR>(L"aposition")};
    DISPID ids[] = {-5, -5, -5};
    EXPECT_EQ(calculator->GetIDsOfNames(IID_NULL, names, 3, 0, ids), S_OK);
    EXPECT_EQ(ids[0], 4);
    EXPECT_EQ(ids[1], 1);
    EXPECT_EQ(ids[2], 0);
}

TEST_F(LateBinding, RefusesAnUnknownName) {
    const auto calculator = server.Create();
    LPOLESTR names[] = {const_cast<LPOLESTR>(L"CalculateMoves")};
    DISPID id = 1;
    EXPECT_EQ(calculator->GetIDsOfNames(IID_NULL, names, 1, 0, &id), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(id, DISPID_UNKNOWN);
}

TEST_F(LateBinding, HasOneTypeInformation) {
    const auto calculator = server.Create();
    UINT count = 0;
    EXPECT_EQ(calculator->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(calculator->GetTypeInfoCount(nullptr), E_POINTER);
    EXPECT_EQ(calculator->GetTypeInfo(0, 0, nullptr), E_POINTER);
    int anything = 0;
    auto* info = reinterpret_cast<ITypeInfo*>(&anything);
    EXPECT_EQ(calculator->GetTypeInfo(1, 0, &info), DISP_E_BADINDEX);
    EXPECT_EQ(info, nullptr);
    const auto own = Received<ITypeInfo>([&](ITypeInfo** out) { return calculator->GetTypeInfo(0, 0, out); });
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(own->GetTypeAttr(&attributes), S_OK);
    EXPECT_TRUE(IsEqualGUID(attributes->guid, IID_IQMVCalculator2));
    own->ReleaseTypeAttr(attributes);
    EXPECT_EQ(References(*calculator.Get()), 1U) << "the type information must hold no reference to the object";
}

TEST_F(LateBinding, RefusesOtherMethodsAndPropertyWrites) {
    const auto calculator = server.Create();
    DISPPARAMS none{};
    DISPID id = 0;
    LPOLESTR names[] = {const_cast<LPOLESTR>(L"CalculateMove")};
    EXPECT_EQ(calculator->GetIDsOfNames(unknownIdentifier, names, 1, 0, &id), DISP_E_UNKNOWNINTERFACE);
    EXPECT_EQ(calculator->Invoke(8, unknownIdentifier, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
              DISP_E_UNKNOWNINTERFACE);
    for (const DISPID method : {DISPID{0}, DISPID{9}, DISPID{-1}, DISPID{DISPID_NEWENUM}})
        EXPECT_EQ(InvokeWith(*calculator.Get(), method, {}).code, DISP_E_MEMBERNOTFOUND) << method;
    for (const WORD flags : {WORD{DISPATCH_PROPERTYPUT}, WORD{DISPATCH_PROPERTYPUTREF}})
        EXPECT_EQ(InvokeWith(*calculator.Get(), 8, {}, {.flags = flags}).code, DISP_E_MEMBERNOTFOUND) << flags;
}

TEST_F(LateBinding, AcceptsACallMarkedAsAPropertyReadToo) {
    const auto calculator = server.Create();
    EXPECT_EQ(InvokeWith(*calculator.Get(), 8, {}, {.flags = DISPATCH_METHOD | DISPATCH_PROPERTYGET}).code, S_OK);
}

TEST_F(LateBinding, GivesTheResultsOfTheInterface) {
    const auto late = server.Create();
    const auto direct = WithGeometry();
    RecordArray aAxisPoints(*late.Get(), Head().ASet(45.0));
    RecordArray bAxisPoints(*late.Get(), Head().BSet(60.0));
    ASSERT_EQ(Call(*late.Get(), L"EnterHeadGeometry", aAxisPoints.Get(), bAxisPoints.Get()).code, S_OK);

    XYZData pole{};
    EXPECT_EQ(direct->GetPoleSpherePosition(&pole), S_OK);
    EXPECT_TRUE(SameBytes(RecordIn<XYZData>(Call(*late.Get(), L"GetPoleSpherePosition"), GUID_XYZData), pole));

    EXPECT_EQ(Call(*late.Get(), L"SetCurrentHeadPosition", 15.0, 30.0).code, S_OK);
    EXPECT_EQ(direct->SetCurrentHeadPosition(15.0, 30.0), S_OK);
    XYZData start{};
    EXPECT_EQ(direct->GetStartPosition(&start), S_OK);
    EXPECT_TRUE(SameBytes(RecordIn<XYZData>(Call(*late.Get(), L"GetStartPosition"), GUID_XYZData), start));

    RequiredMoves moves{};
    EXPECT_EQ(direct->CalculateMove(90.0, -45.0, &moves), S_OK);
    EXPECT_TRUE(SameBytes(RecordIn<RequiredMoves>(Call(*late.Get(), L"CalculateMove", 90.0, -45.0), GUID_RequiredMoves),
                          moves));

    double a = 0.0;
    double b = 0.0;
    EXPECT_EQ(Call(*late.Get(), L"GetCurrentHeadPosition", &a, &b).code, S_OK);
    EXPECT_EQ(a, 90.0);
    EXPECT_EQ(b, -45.0);
}

TEST_F(LateBinding, SavesAndLoadsByName) {
    const auto calculator = At(15.0, 30.0);
    const auto loaded = server.Create();
    Bstr path(folder.Path("head.ini"));
    EXPECT_EQ(Call(*calculator.Get(), L"SaveHeadGeometryToFile", path).code, S_OK);
    EXPECT_TRUE(std::filesystem::exists(folder.Path("head.ini")));
    EXPECT_EQ(Call(*loaded.Get(), L"LoadHeadGeometryFromFile", path).code, S_OK);
    EXPECT_EQ(loaded->SetCurrentHeadPosition(0.0, 0.0), S_OK);
    EXPECT_EQ(Call(*loaded.Get(), L"CalculateMove", 90.0, 0.0).code, S_OK) << "it has a geometry now";
}

TEST_F(LateBinding, AcceptsAFileNameInEveryForm) {
    ASSERT_EQ(At(0.0, 0.0)->SaveHeadGeometryToFile(Bstr(folder.Path("head.ini")).Address()), S_OK);
    Bstr path(folder.Path("head.ini"));
    VARIANT variable = Argument(path);
    VARIANT reference = Argument(path.Address());
    const struct {
        const char* why;
        VARIANT argument;
    } forms[] = {{"an expression", Argument(path)},
                 {"a text variable", Argument(path.Address())},
                 {"a script's variable", Argument(&variable)},
                 {"a script's variable that refers to a text", Argument(&reference)}};
    for (const auto& [why, argument] : forms) {
        const auto calculator = server.Create();
        EXPECT_EQ(InvokeWith(*calculator.Get(), 1, {argument}).code, S_OK) << why;
        EXPECT_EQ(calculator->SetCurrentHeadPosition(0.0, 0.0), S_OK);
        RequiredMoves moves{};
        EXPECT_EQ(calculator->CalculateMove(0.0, 15.0, &moves), S_OK) << why;
    }
    EXPECT_STREQ(path.Text(), folder.Path("head.ini").c_str()) << "the caller's text must not change";
}

TEST_F(LateBinding, AcceptsANumberInEveryForm) {
    double plain = 45.0;
    Bstr text(std::wstring(L"45.0"));
    Bstr exponent(std::wstring(L"4.5e1"));
    VARIANT number = Argument(45);
    VARIANT words = Argument(text);
    const struct {
        const char* why;
        VARIANT argument;
    } forms[] = {{"a double", Argument(45.0)},
                 {"a whole number", Argument(45)},
                 {"a byte", VariantOf(VT_UI1, BYTE{45})},
                 {"a single", VariantOf(VT_R4, 45.0F)},
                 {"a double variable", Argument(&plain)},
                 {"a script's variable", Argument(&number)},
                 {"a text", Argument(text)},
                 {"a text with an exponent", Argument(exponent)},
                 {"a text in a script's variable", Argument(&words)}};
    for (const auto& [why, argument] : forms) {
        for (const LCID locale : {LCID{LOCALE_USER_DEFAULT}, german}) {
            const auto calculator = server.Create();
            EXPECT_EQ(InvokeWith(*calculator.Get(), 4, {argument, Argument(-30.0)}, {.locale = locale}).code, S_OK)
                << why << ", locale " << locale;
            EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{45.0, -30.0})) << why << ", locale " << locale;
        }
    }
}

/// An argument and the expected result: accepted as this angle, or refused with this code.
struct NumberCase {
    const char* why;
    VARIANT argument;
    HRESULT code;
    double angle = 0.0;
};

void ExpectNumbers(IQMVCalculator2& calculator, const std::vector<NumberCase>& cases) {
    constexpr UINT firstOfTwo = 1; // counted from the last one
    for (const auto& [why, argument, code, angle] : cases) {
        for (const LCID locale : {LCID{LOCALE_USER_DEFAULT}, german}) {
            SCOPED_TRACE(testing::Message() << why << ", locale " << locale);
            ASSERT_EQ(calculator.SetCurrentHeadPosition(90.0, 0.0), S_OK);
            const auto outcome = InvokeWith(calculator, 4, {argument, Argument(-30.0)}, {.locale = locale});
            EXPECT_EQ(outcome.code, code);
            EXPECT_EQ(outcome.wrongArgument, code == S_OK ? Outcome::noArgument : firstOfTwo);
            double a = 0.0;
            double b = 0.0;
            EXPECT_EQ(calculator.GetCurrentHeadPosition(&a, &b), S_OK);
            EXPECT_EQ(a, code == S_OK ? angle : 90.0);
        }
    }
}

TEST_F(LateBinding, AcceptsATextOnlyIfAllOfItIsANumber) {
    constexpr HRESULT refused = DISP_E_TYPEMISMATCH;
    const struct {
        const wchar_t* text;
        HRESULT code;
        double angle;
        const char* why;
    } cases[] = {{L"45", S_OK, 45.0, "digits"},
                 {L"45.0", S_OK, 45.0, "a point"},
                 {L"45.", S_OK, 45.0, "no digit after the point: not ambiguous"},
                 {L".15e2", S_OK, 15.0, "no digit before the point: not ambiguous"},
                 {L"+45", S_OK, 45.0, "a sign"},
                 {L"-0", S_OK, 0.0, "a sign"},
                 {L"4.5e1", S_OK, 45.0, "an exponent, as languages write large numbers"},
                 {L"4.5E+01", S_OK, 45.0, "an exponent"},
                 {L" \t45 ", S_OK, 45.0, "blanks around it, as files and forms have them"},
                 {L"7,5", refused, 0.0, "a comma: 7.5 to one caller, 75 to another"},
                 {L"45,", refused, 0.0, "a comma"},
                 {L"4,5", refused, 0.0, "a comma: another program could read 45"},
                 {L"1,5e1", refused, 0.0, "a comma"},
                 {L"4 5", refused, 0.0, "a blank inside: it separates thousands in some countries"},
                 {L"4\u00A05", refused, 0.0, "a non-breaking space"},
                 {L"4'5", refused, 0.0, "an apostrophe: it separates thousands in some countries"},
                 {L"&H2D", refused, 0.0, "hexadecimal in Basic"},
                 {L"0x2D", refused, 0.0, "hexadecimal in C"},
                 {L"4.5d1", refused, 0.0, "an exponent of old languages"},
                 {L"inf", refused, 0.0, "a word"},
                 {L"nan", refused, 0.0, "a word"},
                 {L"45 degrees", refused, 0.0, "more than a number"},
                 {L"45\u00B0", refused, 0.0, "more than a number"},
                 {L"(45)", refused, 0.0, "parentheses: they mean a negative number in accounting"},
                 {L"45-", refused, 0.0, "a sign behind"},
                 {L"+-45", refused, 0.0, "two signs"},
                 {L"++45", refused, 0.0, "two signs"},
                 {L"4.5.0", refused, 0.0, "two points"},
                 {L"45e", refused, 0.0, "an exponent without digits"},
                 {L"\uFF14\uFF15", refused, 0.0, "digits of full width"},
                 {L"+", refused, 0.0, "no digits"},
                 {L".", refused, 0.0, "no digits"},
                 {L" ", refused, 0.0, "blanks alone"},
                 {L"", refused, 0.0, "an empty text is not zero"},
                 {L"1e999", DISP_E_OVERFLOW, 0.0, "a number beyond the largest double"}};
    const auto calculator = server.Create();
    for (const auto& [text, code, angle, why] : cases) {
        Bstr owned(std::wstring{text});
        VARIANT variable = Argument(owned);
        SCOPED_TRACE(std::filesystem::path(text));
        ExpectNumbers(*calculator.Get(), {{why, Argument(owned), code, angle},
                                          {why, Argument(owned.Address()), code, angle},
                                          {why, Argument(&variable), code, angle}});
    }
    Bstr afterNull(std::wstring(L"45\0", 3));
    Bstr tooLong(std::wstring(500, L'0') + L"45");
    ExpectNumbers(*calculator.Get(), {{"a zero character behind the number", Argument(afterNull), DISP_E_TYPEMISMATCH},
                                      {"500 digits", Argument(tooLong), DISP_E_TYPEMISMATCH},
                                      {"a null text", VariantOf(VT_BSTR, nullptr), DISP_E_TYPEMISMATCH}});
}

TEST_F(LateBinding, ConvertsOtherValuesAsThePlatformDoes) {
    const auto calculator = server.Create();
    VARIANT decimal{};
    V_DECIMAL(&decimal).Lo64 = 450;
    V_DECIMAL(&decimal).scale = 1;
    V_VT(&decimal) = VT_DECIMAL;
    std::vector<NumberCase> cases{
        {"Currency", VariantOf(VT_CY, LONGLONG{450000}), S_OK, 45.0},
        {"Decimal", decimal, S_OK, 45.0},
        {"Date, as a cell may be formatted", VariantOf(VT_DATE, 45.0), S_OK, 45.0},
        {"False is 0", VariantOf(VT_BOOL, VARIANT_FALSE), S_OK, 0.0},
        {"an empty variable is 0", VariantOf(VT_EMPTY, 0), S_OK, 0.0},
        {"Null", VariantOf(VT_NULL, 0), DISP_E_TYPEMISMATCH},
        {"left out", VariantOf(VT_ERROR, DISP_E_PARAMNOTFOUND), DISP_E_PARAMNOTFOUND},
        {"the error value of a cell", VariantOf(VT_ERROR, static_cast<SCODE>(0x800A07FA)), DISP_E_TYPEMISMATCH},
        {"Nothing", VariantOf(VT_DISPATCH, nullptr), DISP_E_TYPEMISMATCH},
        {"a null reference", VariantOf(VT_R8 | VT_BYREF, nullptr), DISP_E_TYPEMISMATCH}};
    for (const VARTYPE type : {VT_I1, VT_UI1, VT_I2, VT_UI2, VT_I4, VT_UI4, VT_I8, VT_UI8, VT_INT, VT_UINT})
        cases.push_back({"a whole number", VariantOf(type, LONGLONG{45}), S_OK, 45.0});
    ExpectNumbers(*calculator.Get(), cases);
}

/// An object whose default property is a value, like a cell of a spreadsheet.
class Cell final : public IDispatch {
public:
    explicit Cell(VARIANT theValue) : value(theValue) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        const bool own = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch);
        *object = own ? this : nullptr;
        return own ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                     UINT*) override {
        if (id != DISPID_VALUE || (flags & DISPATCH_PROPERTYGET) == 0) return DISP_E_MEMBERNOTFOUND;
        return VariantCopy(result, &value);
    }

private:
    VARIANT value;
};

TEST_F(LateBinding, ReadsTheDefaultPropertyOfAnObject) {
    const auto calculator = server.Create();
    Bstr comma(std::wstring(L"4,5"));
    Cell number(Argument(45.0));
    Cell text(Argument(comma));
    const auto object = [](IDispatch& one) { return VariantOf(VT_DISPATCH, &one); };
    ExpectNumbers(*calculator.Get(), {{"a cell with a number", object(number), S_OK, 45.0},
                                      {"a cell with a text", object(text), DISP_E_TYPEMISMATCH},
                                      {"no value", object(*calculator.Get()), DISP_E_TYPEMISMATCH}});
}

TEST_F(LateBinding, AcceptsRecordArraysInEveryForm) {
    const auto direct = WithGeometry();
    XYZData expected{};
    ASSERT_EQ(direct->GetPoleSpherePosition(&expected), S_OK);
    RecordArray aAxisPoints(*direct.Get(), Head().ASet(45.0));
    RecordArray bAxisPoints(*direct.Get(), Head().BSet(60.0));
    VARIANT aVariable = Argument(aAxisPoints.Get());
    VARIANT bVariable = Argument(bAxisPoints.Address());
    const struct {
        const char* why;
        VARIANT a;
        VARIANT b;
    } forms[] = {{"by value", Argument(aAxisPoints.Get()), Argument(bAxisPoints.Get())},
                 {"by reference", Argument(aAxisPoints.Address()), Argument(bAxisPoints.Address())},
                 {"in variables", Argument(&aVariable), Argument(&bVariable)}};
    for (const auto& [why, a, b] : forms) {
        const auto calculator = server.Create();
        EXPECT_EQ(InvokeWith(*calculator.Get(), 6, {a, b}).code, S_OK) << why;
        XYZData pole{};
        EXPECT_EQ(calculator->GetPoleSpherePosition(&pole), S_OK);
        EXPECT_TRUE(SameBytes(pole, expected)) << why;
    }
    EXPECT_EQ(aAxisPoints.Get()->rgsabound[0].cElements, 7U) << "the caller's array must not change";
}

TEST_F(LateBinding, WritesPositionsIntoVariables) {
    const auto calculator = At(15.0, -30.0);
    double a = 0.0;
    double b = 0.0;
    EXPECT_EQ(Call(*calculator.Get(), L"GetCurrentHeadPosition", &a, &b).code, S_OK);
    EXPECT_EQ(a, 15.0);
    EXPECT_EQ(b, -30.0);
    VARIANT aVariable{};
    VARIANT bVariable{};
    V_VT(&bVariable) = VT_BSTR;
    V_BSTR(&bVariable) = SysAllocString(L"what the variable held before");
    EXPECT_EQ(Call(*calculator.Get(), L"GetCurrentHeadPosition", &aVariable, &bVariable).code, S_OK);
    EXPECT_EQ(V_VT(&aVariable), VT_R8);
    EXPECT_EQ(V_R8(&aVariable), 15.0);
    EXPECT_EQ(V_VT(&bVariable), VT_R8);
    EXPECT_EQ(V_R8(&bVariable), -30.0);
}

/// The number in a variable of this type, by the platform's conversion.
double NumberAt(VARIANT reference) {
    VARIANT number{};
    EXPECT_EQ(VariantCopyInd(&number, &reference), S_OK);
    EXPECT_EQ(VariantChangeTypeEx(&number, &number, LOCALE_INVARIANT, 0, VT_R8), S_OK);
    return V_R8(&number);
}

TEST_F(LateBinding, WritesPositionsIntoReferencesOfEveryKind) {
    const auto calculator = At(15.0, 105.0);
    const VARTYPE types[] = {VT_I1,  VT_UI1,  VT_I2, VT_UI2, VT_I4, VT_UI4,  VT_I8,     VT_UI8,
                             VT_INT, VT_UINT, VT_R4, VT_R8,  VT_CY, VT_DATE, VT_DECIMAL};
    for (const VARTYPE type : types) {
        for (const bool inVariable : {false, true}) {
            SCOPED_TRACE(testing::Message() << "type " << type << (inVariable ? " in a variable" : ""));
            DECIMAL places[2]{};
            const auto reference = static_cast<VARTYPE>(type | VT_BYREF);
            VARIANT references[] = {VariantOf(reference, &places[0]), VariantOf(reference, &places[1])};
            const auto outcome =
                inVariable ? InvokeWith(*calculator.Get(), 3, {Argument(&references[0]), Argument(&references[1])})
                           : InvokeWith(*calculator.Get(), 3, {references[0], references[1]});
            EXPECT_EQ(outcome.code, S_OK);
            EXPECT_EQ(NumberAt(references[0]), 15.0);
            EXPECT_EQ(NumberAt(references[1]), 105.0);
            EXPECT_EQ(V_VT(&references[0]), reference);
        }
    }
}

TEST_F(LateBinding, WritesPositionsIntoTextVariablesWithAPoint) {
    const auto calculator = At(15.0, -30.0);
    Bstr a(std::wstring(L"what was there"));
    Bstr b(std::wstring(L""));
    EXPECT_EQ(Call(*calculator.Get(), L"GetCurrentHeadPosition", a.Address(), b.Address()).code, S_OK);
    EXPECT_STREQ(a.Text(), L"15");
    EXPECT_STREQ(b.Text(), L"-30");
}

TEST_F(LateBinding, WritesBothPositionsOrNeither) {
    const auto calculator = At(15.0, -165.0);
    double a = 1.0;
    DECIMAL place{};
    place.Lo64 = 2;
    const struct {
        const char* why;
        VARTYPE type;
        HRESULT code;
    } cases[] = {{"-165 is below the range of a signed byte", VT_I1, DISP_E_OVERFLOW},
                 {"-165 is below the range of a byte", VT_UI1, DISP_E_OVERFLOW},
                 {"no sign", VT_UI2, DISP_E_OVERFLOW},
                 {"no sign", VT_UI4, DISP_E_OVERFLOW},
                 {"no sign", VT_UI8, DISP_E_OVERFLOW},
                 {"a Boolean cannot hold the number", VT_BOOL, DISP_E_TYPEMISMATCH},
                 {"an object", VT_DISPATCH, DISP_E_TYPEMISMATCH},
                 {"an array", VT_ARRAY | VT_R8, DISP_E_TYPEMISMATCH}};
    for (const auto& [why, type, code] : cases) {
        SCOPED_TRACE(testing::Message() << why << ", type " << type);
        const VARIANT second = VariantOf(static_cast<VARTYPE>(type | VT_BYREF), &place);
        const auto outcome = InvokeWith(*calculator.Get(), 3, {Argument(&a), second});
        EXPECT_EQ(outcome.code, code);
        EXPECT_EQ(outcome.wrongArgument, 0U);
        EXPECT_EQ(a, 1.0);
        EXPECT_EQ(place.Lo64, 2U);
    }
}

TEST_F(LateBinding, AcceptsArgumentsByName) {
    const auto calculator = server.Create();
    EXPECT_EQ(InvokeWith(*calculator.Get(), 4, {Argument(-45.0), Argument(15.0)}, {.named = {1, 0}}).code, S_OK);
    EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{15.0, -45.0}));
    EXPECT_EQ(InvokeWith(*calculator.Get(), 4, {Argument(30.0), Argument(-60.0)}, {.named = {0, 1}}).code, S_OK);
    EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{30.0, -60.0}));
    EXPECT_EQ(InvokeWith(*calculator.Get(), 4, {Argument(-75.0), Argument(90.0)}, {.named = {1}}).code, S_OK)
        << "one by name, one by position";
    EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{90.0, -75.0}));
    EXPECT_EQ(InvokeWith(*calculator.Get(), 4, {Argument(0.0), Argument(0.0)}, {.named = {0, 7}}).code,
              DISP_E_PARAMNOTFOUND);
    EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{90.0, -75.0}));
}

TEST_F(LateBinding, AcceptsArgumentsByNameForEveryMethod) {
    const auto calculator = At(15.0, -30.0);
    double a = 0.0;
    double b = 0.0;
    EXPECT_EQ(InvokeWith(*calculator.Get(), 3, {Argument(&b), Argument(&a)}, {.named = {1, 0}}).code, S_OK);
    EXPECT_EQ(a, 15.0);
    EXPECT_EQ(b, -30.0);
    EXPECT_EQ(InvokeWith(*calculator.Get(), 5, {Argument(90), Argument(45)}, {.named = {1, 0}}).code, S_OK);
    EXPECT_EQ(CurrentPosition(*calculator.Get()), (Position{45.0, 90.0}));
    Bstr path(folder.Path("head.ini"));
    EXPECT_EQ(InvokeWith(*calculator.Get(), 2, {Argument(path)}, {.named = {0}}).code, S_OK);
    EXPECT_EQ(InvokeWith(*calculator.Get(), 1, {Argument(path)}, {.named = {0}}).code, S_OK);
}

TEST_F(LateBinding, RefusesMoreNamesThanArguments) {
    const auto calculator = server.Create();
    VARIANT angles[] = {Argument(0.0), Argument(0.0), Argument(0.0)};
    DISPID names[] = {0, 1, 0};
    DISPPARAMS parameters{angles, names, 2, 3};
    EXPECT_EQ(calculator->Invoke(4, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
              DISP_E_BADPARAMCOUNT);
}

TEST_F(LateBinding, RefusesTheWrongNumberOfArguments) {
    const auto calculator = server.Create();
    const struct {
        DISPID method;
        std::size_t right;
    } methods[] = {{1, 1}, {2, 1}, {3, 2}, {4, 2}, {5, 2}, {6, 2}, {7, 0}, {8, 0}};
    for (const auto& [method, right] : methods) {
        for (std::size_t count = 0; count <= 4; ++count) {
            if (count == right) continue;
            EXPECT_EQ(InvokeWith(*calculator.Get(), method, std::vector<VARIANT>(count, Argument(0.0))).code,
                      DISP_E_BADPARAMCOUNT)
                << "method " << method << " with " << count;
        }
    }
}

TEST_F(LateBinding, TellsWhichArgumentHasTheWrongType) {
    const auto calculator = server.Create();
    Bstr words(std::wstring(L"fifteen"));
    RecordArray points(*calculator.Get(), Head().ASet(45.0));
    const VARIANT object = VariantOf(VT_UNKNOWN, nullptr);
    const struct {
        const char* why;
        DISPID method;
        std::vector<VARIANT> arguments;
        UINT wrong; // the index counted from the last argument
    } calls[] = {{"no number, first", 4, {Argument(words), Argument(0.0)}, 1},
                 {"no number, second", 4, {Argument(0.0), Argument(words)}, 0},
                 {"no target", 5, {Argument(0.0), object}, 0},
                 {"no records, first", 6, {Argument(1), Argument(points.Get())}, 1},
                 {"no records, second", 6, {Argument(points.Get()), Argument(words)}, 0},
                 {"no name", 1, {Argument(points.Get())}, 0},
                 {"an object instead of a file name", 2, {object}, 0}};
    for (const auto& [why, method, arguments, wrong] : calls) {
        const auto outcome = InvokeWith(*calculator.Get(), method, arguments);
        EXPECT_EQ(outcome.code, DISP_E_TYPEMISMATCH) << why;
        EXPECT_EQ(outcome.wrongArgument, wrong) << why;
    }
    EXPECT_EQ(Call(*calculator.Get(), L"GetCurrentHeadPosition", words, words).scode, QMV_E_POSITION_UNKNOWN)
        << "no call may reach the object";
}

TEST_F(LateBinding, ReportsAFailingMethodByCodeSourceAndDescription) {
    using namespace failures;
    const auto fresh = server.Create();
    const auto placed = At(15.0, 30.0);
    double a = 12.5;
    double b = -12.5;
    Bstr nowhere(folder.Path("no such folder") / "head.ini");
    RecordArray few(*fresh.Get(), Head().ASet(45.0, 3));
    RecordArray enough(*fresh.Get(), Head().BSet(60.0));
    SAFEARRAY* none = nullptr;
    const struct {
        const char* how;
        std::function<Outcome()> action;
        Failure expected;
    } calls[] = {
        {"a position never set", [&] { return Call(*fresh.Get(), L"GetCurrentHeadPosition", &a, &b); }, noPosition},
        {"a plan without a geometry", [&] { return Call(*fresh.Get(), L"CalculateMove", 0.0, 0.0); }, noGeometry},
        {"a target between two steps", [&] { return Call(*placed.Get(), L"CalculateMove", 0, 7); }, stepOfB},
        {"a start without a geometry", [&] { return Call(*fresh.Get(), L"GetStartPosition"); }, noGeometry},
        {"a position out of range", [&] { return Call(*fresh.Get(), L"SetCurrentHeadPosition", 105.0, 0.0); },
         rangeOfA},
        {"too few points", [&] { return Call(*fresh.Get(), L"EnterHeadGeometry", few.Get(), enough.Get()); }, tooFewA},
        {"no array", [&] { return Call(*fresh.Get(), L"EnterHeadGeometry", none, enough.Get()); }, noArray},
        {"no file", [&] { return Call(*fresh.Get(), L"LoadHeadGeometryFromFile", nowhere); }, notRead},
        {"nowhere to save", [&] { return Call(*fresh.Get(), L"SaveHeadGeometryToFile", nowhere); }, notWritten}};
    for (const auto& [how, action, expected] : calls) {
        SCOPED_TRACE(how);
        const Outcome outcome = action();
        EXPECT_EQ(outcome.code, DISP_E_EXCEPTION);
        EXPECT_EQ(outcome.scode, expected.code);
        EXPECT_EQ(outcome.source, expected.source);
        EXPECT_EQ(outcome.description, expected.description);
        EXPECT_EQ(outcome.helpFile, expected.helpFile);
        EXPECT_EQ(V_VT(outcome.result.get()), VT_EMPTY);
    }
    EXPECT_EQ(a, 12.5);
    EXPECT_EQ(b, -12.5);
}

TEST_F(LateBinding, DoesNotReportAnEarlierFailure) {
    const auto fresh = server.Create();
    double a = 0.0;
    ASSERT_EQ(fresh->GetCurrentHeadPosition(&a, &a), QMV_E_POSITION_UNKNOWN);
    const auto outcome = Call(*fresh.Get(), L"CalculateMove", 0.0, 0.0);
    EXPECT_EQ(outcome.scode, QMV_E_NO_HEAD_GEOMETRY);
    EXPECT_EQ(outcome.source, L"CQMVCalculator::CalculateMove");
    SetErrorInfo(0, nullptr);
}

TEST_F(LateBinding, AcceptsNullPointersForResultsAndReports) {
    const auto calculator = At(15.0, 30.0);
    VARIANT targets[] = {Argument(30.0), Argument(90.0)};
    DISPPARAMS parameters{targets, nullptr, 2, 0};
    EXPECT_EQ(calculator->Invoke(5, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr), S_OK);
    targets[0] = Argument(7.0);
    EXPECT_EQ(calculator->Invoke(5, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
              DISP_E_EXCEPTION);
    VARIANT wrong[] = {Argument(30.0), VariantOf(VT_UNKNOWN, nullptr)};
    parameters.rgvarg = wrong;
    EXPECT_EQ(calculator->Invoke(5, IID_NULL, 0, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr),
              DISP_E_TYPEMISMATCH);
}

TEST_F(LateBinding, WorksInAnAggregatedObject) {
    // A second calculator is the outer object here. Late binding must call the inner one.
    const auto owner = server.Create();
    ComPointer<IUnknown> inner;
    ASSERT_EQ(server.Factory()->CreateInstance(owner.Get(), IID_IUnknown, inner.Receive()), S_OK);
    {
        ComPointer<IDispatch> part;
        ASSERT_EQ(inner->QueryInterface(IID_IDispatch, part.Receive()), S_OK);
        EXPECT_EQ(Call(*part.Get(), L"SetCurrentHeadPosition", 15.0, 30.0).code, S_OK);
        double a = 0.0;
        double b = 0.0;
        EXPECT_EQ(Call(*part.Get(), L"GetCurrentHeadPosition", &a, &b).code, S_OK);
        EXPECT_EQ(b, 30.0);
    }
    EXPECT_EQ(References(*owner.Get()), 1U);
    EXPECT_EQ(References(*inner.Get()), 1U);
}

} // namespace
