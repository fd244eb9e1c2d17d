// Saves and loads the seven numbers of a head geometry.

#include "head/RoundThePole.h"

#include "errors/RaiseError.h"
#include "maths/RaisingGeometryErrors.h"
#include "persistence/HeadGeometryFile.h"

using namespace qmv40;

namespace {

/// Runs a load or a save. `ownCode` passes unchanged; any other code is raised again with the description of the whole
/// operation. The source is that of the load, for a save too: required.
template <typename Operation> void RaisingWholeFailure(const ErrorContext& context, HRESULT ownCode,
                                                       const wchar_t* description, Operation operation) {
    constexpr DWORD status = 0; // Always zero: required. A code is raised again only if it is zero.
    try {
        RaisingGeometryErrors(context, operation);
    } catch (const HRESULT code) {
        if (code == ownCode || status != 0) throw;
        RaiseError(code, L"RoundThePole::LoadFromFile", description);
    }
}

constexpr ErrorContext reading{L"RoundThePole::ReadDoubleFromIniFile", L"Error calling IniGetDoubleValue"};
constexpr ErrorContext writing{L"RoundThePole::WriteDoubleToIniFile", L"Error calling IniSetDoubleValue"};

} // namespace

double RoundThePole::ReadDoubleFromIniFile(const wchar_t* section, const wchar_t* key, const wchar_t* fileName) const {
    return RaisingGeometryErrors(reading, [&] {
        return ReadHeadGeometryNumber(ProfileReader(fileName), {section, key});
    });
}

void RoundThePole::WriteDoubleToIniFile(const wchar_t* section, const wchar_t* key, double value,
                                        const wchar_t* fileName) const {
    RaisingGeometryErrors(writing, [&] {
        ProfileWriter file(fileName);
        WriteHeadGeometryNumber(file, {section, key}, value);
        CommitHeadGeometry(file);
    });
}

void RoundThePole::SaveToFile(const BSTR* fileName) const {
    const ErrorContext context{L"RoundThePole::SaveToFile"};
    RaisingWholeFailure(context, QMV_E_WRITE_TO_FILE, L"Failed To Save File", [&] {
        ProfileWriter file(*fileName);
        WriteNumbers(file);
        CommitHeadGeometry(file);
    });
}

void RoundThePole::LoadFromFile(const BSTR* fileName) {
    const ErrorContext context{L"RoundThePole::LoadFromFile", L"Failed to Load Head Geometry from File"};
    RaisingWholeFailure(context, QMV_E_READ_FROM_FILE, L"Failed To Load File",
                        [&] { ReadNumbers(ProfileReader(*fileName)); });
}

void RoundThePole::WriteNumbers(ProfileWriter& file) const {
    const double numbers[] = {headCentre[0], headCentre[1], headCentre[2],          safePositionX,
                              safePositionY, safePositionZ, requiredRotationAroundZ};
    RaisingGeometryErrors(writing, [&] {
        for (std::size_t i = 0; i < headGeometryEntries.size(); ++i)
            WriteHeadGeometryNumber(file, headGeometryEntries.at(i), numbers[i]);
    });
}

void RoundThePole::ReadNumbers(const ProfileReader& file) {
    const auto read = [&](std::size_t entry) {
        return RaisingGeometryErrors(reading,
                                     [&] { return ReadHeadGeometryNumber(file, headGeometryEntries.at(entry)); });
    };
    for (int i = 0; i < 3; ++i) headCentre[i] = read(headCentreEntry + static_cast<std::size_t>(i));
    // Read a second time and not used: required.
    for (std::size_t i = 0; i < 3; ++i) read(headCentreEntry + i);

    safePositionX = read(safePositionEntry);
    safePositionY = read(safePositionEntry + 1);
    safePositionZ = read(safePositionEntry + 2);

    InitialiseFixedGeometry();
    CalculateLeverGeometry();
    // Replaces the Z just read: the saved Z must be in the file, and is never used, as required.
    CalculateSafePositionZ();
    requiredRotationAroundZ = read(rotationEntry);
    AdjustForMisAlignment(requiredRotationAroundZ, CMaGeometry::EAxisType::Z);
}
