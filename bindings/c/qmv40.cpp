#include "bindings/c/qmv40.h"

#include "bindings/c/Component.h"
#include "bindings/c/Failure.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <new>
#include <span>

// NOLINTBEGIN(readability-identifier-naming): the names of the C interface

using namespace qmv40;
using namespace qmv40::bindings;

/// The calculator of one C caller. The thread is initialised before the calculator and uninitialised after it.
struct qmv40_calculator {
    ThreadReadiness readiness;
    Component component = CreateComponent();
    Failure failure;
};

namespace {

static_assert(sizeof(qmv40_alignment_point) == sizeof(HeadAlignmentDataItem));

/// The failure of a call without a calculator.
thread_local Failure failureWithoutCalculator;

/// Runs `step`, which returns a code or throws one, and keeps its failure. Returns a code and throws nothing.
template <typename Step> std::int32_t Run(Failure& failure, const char* call, const Step& step) {
    HRESULT code = E_UNEXPECTED;
    try {
        code = step();
    } catch (const Refusal& refusal) {
        KeepRefusal(failure, refusal, call);
        return refusal.code;
    } catch (const HRESULT thrown) { // CalculateMove throws its failure code
        code = thrown;
    } catch (const std::bad_alloc&) {
        code = E_OUTOFMEMORY;
    } catch (const std::exception&) {
        code = E_FAIL;
    }
    if (FAILED(code)) KeepComponentFailure(failure, code, call);
    return code;
}

template <typename Step> std::int32_t Call(qmv40_calculator* calculator, const char* call, const Step& step) {
    const auto refuse = []() -> HRESULT { throw Refusal{E_POINTER, "the calculator is null"}; };
    if (calculator == nullptr) return Run(failureWithoutCalculator, call, refuse);
    return Run(calculator->failure, call, [&] { return step(*calculator->component.Get()); });
}

/// An absolute name: the profile functions of Windows look for a relative one in the Windows folder.
std::wstring AbsoluteName(std::u8string_view name) {
    try {
        const auto absolute = std::filesystem::absolute(name).string<WideUnit>();
        return {absolute.begin(), absolute.end()};
    } catch (const std::filesystem::filesystem_error&) {
        throw Refusal{E_INVALIDARG, "the file name is not UTF-8, or there is no working folder"};
    }
}

/// Calls `method` with a file name in the component's form.
template <typename Method> HRESULT WithFileName(const char* file, const Method& method) {
    if (file == nullptr) throw Refusal{E_POINTER, "the file name is null"};
    const std::string_view bytes(file);
    const std::wstring name = AbsoluteName(std::u8string(bytes.begin(), bytes.end()));
    const OwnedText text(SysAllocStringLen(name.data(), static_cast<UINT>(name.size())));
    if (!text) throw std::bad_alloc();
    BSTR argument = text.get();
    return method(&argument);
}

/// The captured points in the component's form.
OwnedArray PointArray(const qmv40_alignment_point* points, std::size_t count) {
    if (points == nullptr && count > 0) throw Refusal{E_POINTER, "the captured points are null"};
    constexpr std::size_t most = 1'000'000'000; // 40 GB, more than any capture; within an array's 32-bit bound
    if (count > most) throw Refusal{E_INVALIDARG, "there are too many captured points"};
    OwnedArray array = ArrayOf(std::span(points, count));
    if (!array) throw std::bad_alloc();
    return array;
}

/// Calls `method` with a record of the component and copies it into the caller's.
template <typename Record, typename CallersRecord, typename Method>
HRESULT WithRecord(CallersRecord* result, const Method& method) {
    Record record{};
    const HRESULT code = method(result == nullptr ? nullptr : &record);
    if (SUCCEEDED(code) && result != nullptr) *result = std::bit_cast<CallersRecord>(record);
    return code;
}

/// Cuts the text before the first character that does not fit completely.
void Copy(const std::string& text, char* buffer, std::size_t size) {
    if (buffer == nullptr || size == 0) return;
    const auto continues = [&](std::size_t at) { return (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U; };
    std::size_t length = std::min(text.size(), size - 1);
    while (length > 0 && length < text.size() && continues(length)) --length;
    const std::span<char> room(buffer, size);
    *std::ranges::copy(std::string_view(text).substr(0, length), room.begin()).out = '\0';
}

} // namespace

int32_t qmv40_create(qmv40_calculator** calculator) {
    return Run(failureWithoutCalculator, "qmv40_create", [&]() -> HRESULT {
        if (calculator == nullptr) throw Refusal{E_POINTER, "the address for the calculator is null"};
        *calculator = nullptr;
        *calculator = std::make_unique<qmv40_calculator>().release();
        return S_OK;
    });
}

void qmv40_destroy(qmv40_calculator* calculator) { std::unique_ptr<qmv40_calculator>(calculator).reset(); }

const char* qmv40_version(void) { return QMV40_VERSION; }

int32_t qmv40_load(qmv40_calculator* calculator, const char* file) {
    return Call(calculator, __func__, [&](IQMVCalculator2& component) {
        return WithFileName(file, [&](BSTR* name) { return component.LoadHeadGeometryFromFile(name); });
    });
}

int32_t qmv40_save(qmv40_calculator* calculator, const char* file) {
    return Call(calculator, __func__, [&](IQMVCalculator2& component) {
        return WithFileName(file, [&](BSTR* name) { return component.SaveHeadGeometryToFile(name); });
    });
}

int32_t qmv40_enter_geometry(qmv40_calculator* calculator, const qmv40_alignment_point* a_points, size_t a_count,
                             const qmv40_alignment_point* b_points, size_t b_count) {
    return Call(calculator, __func__, [&](IQMVCalculator2& component) {
        const OwnedArray aArray = PointArray(a_points, a_count), bArray = PointArray(b_points, b_count);
        SAFEARRAY *a = aArray.get(), *b = bArray.get();
        return component.EnterHeadGeometry(&a, &b);
    });
}

int32_t qmv40_set_position(qmv40_calculator* calculator, double a, double b) {
    return Call(calculator, __func__,
                [&](IQMVCalculator2& component) { return component.SetCurrentHeadPosition(a, b); });
}

int32_t qmv40_get_position(qmv40_calculator* calculator, double* a, double* b) {
    return Call(calculator, __func__,
                [&](IQMVCalculator2& component) { return component.GetCurrentHeadPosition(a, b); });
}

int32_t qmv40_calculate_move(qmv40_calculator* calculator, double a, double b, qmv40_moves* moves) {
    return Call(calculator, __func__, [&](IQMVCalculator2& component) {
        return WithRecord<RequiredMoves>(moves,
                                         [&](RequiredMoves* record) { return component.CalculateMove(a, b, record); });
    });
}

int32_t qmv40_start_position(qmv40_calculator* calculator, qmv40_xyz* position) {
    return Call(calculator, __func__, [&](IQMVCalculator2& component) {
        return WithRecord<XYZData>(position, [&](XYZData* record) { return component.GetStartPosition(record); });
    });
}

int32_t qmv40_pole_sphere(qmv40_calculator* calculator, qmv40_xyz* position) {
    return Call(calculator, __func__, [&](IQMVCalculator2& component) {
        return WithRecord<XYZData>(position, [&](XYZData* record) { return component.GetPoleSpherePosition(record); });
    });
}

int32_t qmv40_last_error(qmv40_calculator* calculator, char* source, size_t source_size, char* description,
                         size_t description_size) {
    const Failure& failure = calculator == nullptr ? failureWithoutCalculator : calculator->failure;
    Copy(failure.source, source, source_size);
    Copy(failure.description, description, description_size);
    return failure.code;
}

int32_t qmv40_component(qmv40_calculator* calculator, char* file, size_t size) {
    return Call(calculator, __func__, [&](IQMVCalculator2&) {
        Copy(FileOf(calculator->component), file, size);
        return S_OK;
    });
}

// NOLINTEND(readability-identifier-naming)
