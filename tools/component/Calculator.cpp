#include "tools/component/Calculator.h"

#include "tools/component/ComponentError.h"
#include "tools/text/Files.h"
#include "tools/text/Text.h"
#include "tools/text/WideText.h"

#include <algorithm>
#include <filesystem>
#include <new>

namespace qmv40::component {

namespace {

void ThrowIfFailed(HRESULT result, const char* operation) {
    if (FAILED(result)) throw TakeComponentError(result, operation);
}

/// Captured points in the form that the interface takes: an array of one dimension, indexed from 0.
class AlignmentArray {
public:
    explicit AlignmentArray(std::span<const HeadAlignmentDataItem> items) {
        if (FAILED(SafeArrayAllocDescriptor(1, &array))) throw std::bad_alloc();
        array->cbElements = sizeof(HeadAlignmentDataItem);
        array->rgsabound[0] = {static_cast<ULONG>(items.size()), 0};
        if (FAILED(SafeArrayAllocData(array))) {
            SafeArrayDestroy(array);
            throw std::bad_alloc();
        }
        std::ranges::copy(items, static_cast<HeadAlignmentDataItem*>(array->pvData));
    }
    AlignmentArray(const AlignmentArray&) = delete;
    AlignmentArray& operator=(const AlignmentArray&) = delete;
    ~AlignmentArray() { SafeArrayDestroy(array); }

    SAFEARRAY** Address() noexcept { return &array; }

private:
    SAFEARRAY* array = nullptr;
};

/// A file name as the component takes it.
class FileNameArgument {
public:
    explicit FileNameArgument(const std::string& fileName) {
        // The profile functions of Windows look for a relative name in the Windows folder.
        const std::wstring name = text::FileNameForComponent(std::filesystem::absolute(text::PathOf(fileName)));
        text = SysAllocStringLen(name.data(), static_cast<UINT>(name.size()));
        if (text == nullptr) throw std::bad_alloc();
    }
    FileNameArgument(const FileNameArgument&) = delete;
    FileNameArgument& operator=(const FileNameArgument&) = delete;
    ~FileNameArgument() { SysFreeString(text); }

    BSTR* Address() noexcept { return &text; }

private:
    BSTR text;
};

} // namespace

Calculator::Calculator() {
    void* created = nullptr;
    ThrowIfFailed(CoCreateInstance(CLSID_QMVCalculator, nullptr, CLSCTX_INPROC_SERVER, IID_IQMVCalculator2, &created),
                  "CoCreateInstance");
    component.reset(static_cast<IQMVCalculator2*>(created));
}

void Calculator::EnterHeadGeometry(std::span<const HeadAlignmentDataItem> aAxisPoints,
                                   std::span<const HeadAlignmentDataItem> bAxisPoints) {
    AlignmentArray aAxisArray(aAxisPoints);
    AlignmentArray bAxisArray(bAxisPoints);
    ThrowIfFailed(component->EnterHeadGeometry(aAxisArray.Address(), bAxisArray.Address()), "EnterHeadGeometry");
}

void Calculator::LoadHeadGeometry(const std::string& fileName) {
    text::RequireFile(fileName);
    FileNameArgument name(fileName);
    ThrowIfFailed(component->LoadHeadGeometryFromFile(name.Address()), "LoadHeadGeometryFromFile");
}

void Calculator::SaveHeadGeometry(const std::string& fileName) {
    FileNameArgument name(fileName);
    ThrowIfFailed(component->SaveHeadGeometryToFile(name.Address()), "SaveHeadGeometryToFile");
}

void Calculator::SetCurrentHeadPosition(const model::HeadAngles& angles) {
    ThrowIfFailed(component->SetCurrentHeadPosition(angles.a, angles.b), "SetCurrentHeadPosition");
}

model::HeadAngles Calculator::CurrentHeadPosition() {
    model::HeadAngles angles{};
    ThrowIfFailed(component->GetCurrentHeadPosition(&angles.a, &angles.b), "GetCurrentHeadPosition");
    return angles;
}

RequiredMoves Calculator::CalculateMove(const model::HeadAngles& target) {
    RequiredMoves moves{};
    // This one method throws its failure code.
    CatchingCodes("CalculateMove",
                  [&] { ThrowIfFailed(component->CalculateMove(target.a, target.b, &moves), "CalculateMove"); });
    return moves;
}

XYZData Calculator::StartPosition() {
    XYZData position{};
    ThrowIfFailed(component->GetStartPosition(&position), "GetStartPosition");
    return position;
}

XYZData Calculator::PoleSpherePosition() {
    XYZData position{};
    ThrowIfFailed(component->GetPoleSpherePosition(&position), "GetPoleSpherePosition");
    return position;
}

} // namespace qmv40::component
