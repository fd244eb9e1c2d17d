#pragma once

// Prints a plan: one line for each move, with its number, its name and its numbers with three decimals.

#include <windows.h>

#include "CoQMV40Calculator.h"

#include <cmath>
#include <cstdio>
#include <initializer_list>
#include <string>

/// Rounded so that every language prints the same text, never a negative zero.
inline double Thousandths(double number) { return std::floor(number * 1000.0 + 0.5) / 1000.0; }

inline void ShowNumbers(std::initializer_list<double> numbers) {
    for (const double number : numbers) std::printf(" %.3f", Thousandths(number));
    std::printf("\n");
}

inline void ShowPosition(double a, double b) {
    std::printf("position");
    ShowNumbers({a, b});
}

inline void ShowMove(int number, const char* name, const XYZData& point) {
    std::printf("%d %s", number, name);
    ShowNumbers({point.XPosition, point.YPosition, point.ZPosition});
}

inline void ShowMove(int number, const char* name, const ArcData& arc) {
    std::printf("%d %s", number, name);
    ShowNumbers({arc.XOrigin, arc.YOrigin, arc.ZOrigin, arc.iRotationVector, arc.jRotationVector, arc.kRotationVector,
                 arc.RotationAngle});
}

inline void ShowPlan(const RequiredMoves& plan) {
    ShowMove(1, "ApproachUnLockLever", plan.ApproachUnLockLever);
    ShowMove(2, "EngageWithUnLockLever", plan.EngageWithUnLockLever);
    ShowMove(3, "UnLock", plan.UnLock);
    ShowMove(4, "DisengageFromUnLockLever", plan.DisengageFromUnLockLever);
    ShowMove(5, "RotateToPeg", plan.RotateToPeg);
    ShowMove(6, "MoveToPegAtSafeZ", plan.MoveToPegAtSafeZ);
    ShowMove(7, "ApproachPeg", plan.ApproachPeg);
    ShowMove(8, "EngageWithPeg", plan.EngageWithPeg);
    ShowMove(9, "IntermediateAPosition", plan.IntermediateAPosition);
    ShowMove(10, "MoveToBPosition", plan.MoveToBPosition);
    ShowMove(11, "MoveToAPosition", plan.MoveToAPosition);
    ShowMove(12, "DisengageFromPeg", plan.DisengageFromPeg);
    ShowMove(13, "DisengageFromPegToSafeZ", plan.DisengageFromPegToSafeZ);
    ShowMove(14, "RotateToLockLever", plan.RotateToLockLever);
    ShowMove(15, "MoveToLockLeverAtSafeZ", plan.MoveToLockLeverAtSafeZ);
    ShowMove(16, "ApproachLockLever", plan.ApproachLockLever);
    ShowMove(17, "EngageWithLockLever", plan.EngageWithLockLever);
    ShowMove(18, "Lock", plan.Lock);
    ShowMove(19, "DisengageFromLockLever", plan.DisengageFromLockLever);
}

/// The description is the component's text, in ASCII.
inline void ShowFailure(HRESULT code, const wchar_t* description) {
    std::printf("refused 0x%08lX: %ls\n", static_cast<unsigned long>(code), description);
}

/// A text for the component or from it. It is freed at the end.
class Text {
public:
    Text() = default;
    explicit Text(const std::wstring& characters) : text(SysAllocString(characters.c_str())) {}
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() { SysFreeString(text); }

    BSTR text = nullptr;
};

/// Initialises COM for the program in a single-threaded apartment, the kind of the component, so that no call is
/// marshalled.
class Apartment {
public:
    Apartment() { CoInitialize(nullptr); }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment() { CoUninitialize(); }
};

/// Makes the name absolute, because the component would look for a relative one in the Windows folder.
inline std::wstring AbsoluteName(const char* fileName) {
    wchar_t given[MAX_PATH] = L"";
    wchar_t absolute[MAX_PATH] = L"";
    MultiByteToWideChar(CP_ACP, 0, fileName, -1, given, MAX_PATH);
    GetFullPathNameW(given, MAX_PATH, absolute, nullptr);
    return absolute;
}
