#pragma once

#include "interface/ErrorCodes.h"
#include "tests/soak/Model.h"

#include <cstdint>
#include <random>

/// What a long-lived client shares with nobody: the random choices, the files that it uses, how many calls it has made.
class Workshop {
public:
    Workshop(const std::filesystem::path& folder, const Answers& theAnswers, std::uint64_t seed);

    std::size_t Choose(std::size_t count) { return std::uniform_int_distribution<std::size_t>(0, count - 1)(random); }

    const Answers& answers;
    Bstr nowhere;
    Bstr scratch;
    std::filesystem::path scratchPath;
    AlignmentArray fewPoints;
    AlignmentArray onALine;
    AlignmentArray goodB;
    long calls = 0;

private:
    std::mt19937_64 random;
};

/// One calculator and what must come of every call on it. Throws with the reason at the first answer that is another.
class Client {
public:
    explicit Client(Workshop& theWorkshop) : workshop(theWorkshop), calculator(CreateCalculator()) {}

    /// Makes one call, chosen at random; after one that fails, also the call that restores the state.
    void Call();
    /// Puts the object into one certain state.
    void Settle();

private:
    void Plan();
    void PlanToNowhere();
    void AskForStart();
    void AskForPole();
    void AskForPosition();
    void SetPosition();
    void SetNoPosition();
    void TakeGeometry();
    void TakeBadGeometry();
    void Save();
    void SaveNowhere();
    void PassNoPointer();

    HRESULT Give(std::size_t which);
    /// The record that a failed call has left: there, and with this description.
    void Expect(HRESULT actual, HRESULT expected, const wchar_t* description = nullptr);

    Workshop& workshop;
    qmv40::ComPointer<IQMVCalculator2> calculator;
    std::optional<std::size_t> held;     ///< the geometry, if any
    std::optional<std::size_t> position; ///< where the head stands, if that is known
};
