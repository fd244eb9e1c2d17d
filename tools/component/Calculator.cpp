#include "tools/component/Calculator.h"

#include "tools/component/ComponentError.h"
#include "tools/text/Files.h"
#include "tools/text/Text.h"
#include "tools/text/WideText.h"

#include <filesystem>
#include <new>

namespace qmv40::component {

namespace {

void ThrowIfFailed(HRESULT result, const char* operation) {
    if (FAILED(result)) throw TakeComponentError(result, operation);
}

OwnedArray PointArray(std::span<const HeadAlignmentDataItem> points) {
    OwnedArray array = ArrayOf(points);
    if (!array) throw std::bad_alloc();
    return array;
}

/// A file name as the component takes it.
OwnedText FileNameArgument(const std::string& fileName) {
    // The profile functions of Windows look for a relative name in the Windows folder.
    const std::wstring name = text::FileNameForComponent(std::filesystem::absolute(text::PathOf(fileName)));
    OwnedText text(SysAllocStringLen(name.data(), static_cast<UINT>(name.size())));
    if (!text) throw std::bad_alloc();
    return text;
}

} // namespace

Calculator::Calculator() {
    ThrowIfFailed(
        CoCreateInstance(CLSID_QMVCalculator, nullptr, CLSCTX_INPROC_SERVER, IID_IQMVCalculator2, component.Receive()),
        "CoCreateInstance");
}

void Calculator::EnterHeadGeometry(std::span<const HeadAlignmentDataItem> aAxisPoints,
                                   std::span<const HeadAlignmentDataItem> bAxisPoints) {
    const OwnedArray aAxisArray = PointArray(aAxisPoints), bAxisArray = PointArray(bAxisPoints);
    SAFEARRAY *aAxis = aAxisArray.get(), *bAxis = bAxisArray.get();
    ThrowIfFailed(component->EnterHeadGeometry(&aAxis, &bAxis), "EnterHeadGeometry");
}

void Calculator::LoadHeadGeometry(const std::string& fileName) {
    text::RequireFile(fileName);
    const OwnedText name = FileNameArgument(fileName);
    BSTR text = name.get();
    ThrowIfFailed(component->LoadHeadGeometryFromFile(&text), "LoadHeadGeometryFromFile");
}

void Calculator::SaveHeadGeometry(const std::string& fileName) {
    const OwnedText name = FileNameArgument(fileName);
    BSTR text = name.get();
    ThrowIfFailed(component->SaveHeadGeometryToFile(&text), "SaveHeadGeometryToFile");
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
