#pragma once

#include "interface/ErrorCodes.h"
#include "tests/soak/Model.h"

#include <cstdint>
#include <random>

/// What all clients share: the required results, random numbers, files, arguments, and the number of calls.
class SharedState {
public:
    SharedState(const std::filesystem::path& folder, const Answers& theAnswers, std::uint64_t seed);

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

/// One calculator and the required results of its calls. Throws the reason at the first wrong result.
class Client {
public:
    explicit Client(SharedState& theShared) : shared(theShared), calculator(CreateCalculator()) {}

    /// Makes one random call. After a refused geometry it also gives a good one.
    void Call();
    /// Sets the object to one fixed state.
    void SetFixedState();

private:
    void Plan();
    void PlanToInvalidTarget();
    void AskForStart();
    void AskForPole();
    void AskForPosition();
    void SetPosition();
    void SetInvalidPosition();
    void ReplaceGeometry();
    void OfferInvalidGeometry();
    void Save();
    void SaveNowhere();
    void PassNoPointer();

    HRESULT Give(std::size_t which);
    /// Counts a call and checks its code. If a description is given, the error record must have it.
    void Expect(HRESULT actual, HRESULT expected, const wchar_t* description = nullptr);

    SharedState& shared;
    qmv40::ComPointer<IQMVCalculator2> calculator;
    std::optional<std::size_t> held;     ///< the geometry, if any
    std::optional<std::size_t> position; ///< the head's position, if it is known
};
