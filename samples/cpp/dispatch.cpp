// dispatch <geometry file>: plans an indexing through late binding, which works with every compiler: methods are found
// by name, and every failure is returned as a code, also that of CalculateMove.

#include "Show.h"

#include <utility>
#include <vector>

namespace {

/// An argument or a result of a call.
class Value {
public:
    Value() { VariantInit(&value); }
    explicit Value(double number) : Value() {
        V_VT(&value) = VT_R8;
        V_R8(&value) = number;
    }
    explicit Value(const std::wstring& text) : Value() {
        V_VT(&value) = VT_BSTR;
        V_BSTR(&value) = SysAllocString(text.c_str());
    }
    /// A reference to a number that the method writes.
    explicit Value(double* place) : Value() {
        V_VT(&value) = VT_R8 | VT_BYREF;
        V_R8REF(&value) = place;
    }
    Value(Value&& other) noexcept : Value() { std::swap(value, other.value); }
    Value& operator=(Value&&) = delete;
    ~Value() { VariantClear(&value); }

    VARIANT value;
};

/// A failed call: its code and description.
struct Failure {
    HRESULT code;
    std::wstring description;
};

[[noreturn]] void ThrowException(const EXCEPINFO& exception) {
    const Failure failure{exception.scode, exception.bstrDescription != nullptr ? exception.bstrDescription : L""};
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    throw failure;
}

void Require(HRESULT result, const wchar_t* step) {
    if (FAILED(result)) throw Failure{result, step};
}

class Calculator {
public:
    Calculator() {
        CLSID identifier{};
        Require(CLSIDFromProgID(L"QMV.QMVCalculator.1", &identifier), L"CLSIDFromProgID");
        void* created = nullptr;
        Require(CoCreateInstance(identifier, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, &created),
                L"CoCreateInstance");
        dispatch = static_cast<IDispatch*>(created);
    }
    Calculator(const Calculator&) = delete;
    Calculator& operator=(const Calculator&) = delete;
    ~Calculator() { dispatch->Release(); }

    template <typename... Arguments> Value Call(const wchar_t* method, Arguments... arguments) {
        std::vector<Value> values;
        (values.emplace_back(arguments), ...);
        return Invoke(method, values);
    }

private:
    Value Invoke(const wchar_t* method, const std::vector<Value>& values) {
        std::wstring name = method;
        LPOLESTR names[] = {name.data()};
        DISPID id = DISPID_UNKNOWN;
        Require(dispatch->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), method);

        std::vector<VARIANT> backwards; // the last argument comes first
        for (auto value = values.rbegin(); value != values.rend(); ++value) backwards.push_back(value->value);
        DISPPARAMS parameters{backwards.data(), nullptr, static_cast<UINT>(backwards.size()), 0};
        Value result;
        EXCEPINFO exception{};
        const HRESULT called = dispatch->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                                                &result.value, &exception, nullptr);
        if (called == DISP_E_EXCEPTION) ThrowException(exception);
        Require(called, method);
        return result;
    }

    IDispatch* dispatch = nullptr;
};

void ShowCurrentPosition(Calculator& calculator) {
    double a = 0.0;
    double b = 0.0;
    calculator.Call(L"GetCurrentHeadPosition", &a, &b);
    ShowPosition(a, b);
}

void Plan(const char* geometryFile) {
    Calculator calculator;
    calculator.Call(L"LoadHeadGeometryFromFile", AbsoluteName(geometryFile));
    calculator.Call(L"SetCurrentHeadPosition", 0.0, 0.0);

    try {
        calculator.Call(L"CalculateMove", 50.0, 90.0); // 50 is not a multiple of 15
    } catch (const Failure& failure) {
        ShowFailure(failure.code, failure.description.c_str());
    }
    ShowCurrentPosition(calculator);
    const Value plan = calculator.Call(L"CalculateMove", 45.0, 90.0);
    ShowCurrentPosition(calculator);
    if (V_VT(&plan.value) == VT_RECORD) ShowPlan(*static_cast<const RequiredMoves*>(V_RECORD(&plan.value)));
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) return 2;
    const Apartment apartment;
    try {
        Plan(arguments[1]);
        return 0;
    } catch (const Failure& failure) {
        ShowFailure(failure.code, failure.description.c_str());
        return 1;
    }
}
