// Saves and loads the seven numbers of a head geometry.

#include "head/RoundThePole.h"

#include "errors/RaiseError.h"
#include "persistence/HeadGeometryFile.h"

#include <new>

using namespace qmv40;

namespace {

/// Raises E_OUTOFMEMORY with the text of the step if memory runs out in it.
template <typename Step> auto RaisingLackOfMemory(const ErrorContext& context, Step&& step) {
    try {
        return step();
    } catch (const std::bad_alloc&) {
        RaiseError(E_OUTOFMEMORY, context);
    }
}

/// Runs a load or a save. `ownCode` passes unchanged; any other code is raised again with the description of the whole
/// operation. Both then have the source of the load: required.
template <typename Operation> void RaisingWholeFailure(const ErrorContext& context, HRESULT ownCode,
                                                       const wchar_t* description, Operation operation) {
    constexpr DWORD status = 0; // Always zero: required. A code is raised again only if it is zero.
    try {
        RaisingLackOfMemory(context, operation);
    } catch (const HRESULT code) {
        if (code == ownCode || status != 0) throw;
        RaiseError(code, L"RoundThePole::LoadFromFile", description);
    }
}

double ReadEntry(const ProfileReader& file, std::size_t entry) {
    const ErrorContext context{L"RoundThePole::ReadDoubleFromIniFile", L"Error calling IniGetDoubleValue"};
    return RaisingLackOfMemory(context, [&] { return ReadHeadGeometryNumber(file, headGeometryEntries.at(entry)); });
}

void WriteEntry(ProfileWriter& file, std::size_t entry, double value) {
    const ErrorContext context{L"RoundThePole::WriteDoubleToIniFile", L"Error calling IniSetDoubleValue"};
    RaisingLackOfMemory(context, [&] { WriteHeadGeometryNumber(file, headGeometryEntries.at(entry), value); });
}

} // namespace

double RoundThePole::ReadDoubleFromIniFile(const wchar_t* section, const wchar_t* key, const wchar_t* fileName) const {
    const ErrorContext context{L"RoundThePole::ReadDoubleFromIniFile", L"Error calling IniGetDoubleValue"};
    return RaisingLackOfMemory(context, [&] {
        return ReadHeadGeometryNumber(ProfileReader(fileName), {section, key});
    });
}

void RoundThePole::WriteDoubleToIniFile(const wchar_t* section, const wchar_t* key, double value,
                                        const wchar_t* fileName) const {
    const ErrorContext context{L"RoundThePole::WriteDoubleToIniFile", L"Error calling IniSetDoubleValue"};
    RaisingLackOfMemory(context, [&] {
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
    for (std::size_t i = 0; i < headGeometryEntries.size(); ++i) WriteEntry(file, i, numbers[i]);
}

void RoundThePole::ReadNumbers(const ProfileReader& file) {
    for (int i = 0; i < 3; ++i) headCentre[i] = ReadEntry(file, headCentreEntry + static_cast<std::size_t>(i));
    // Read a second time and not used: required.
    CMaPoint unused(0.0, 0.0, 0.0);
    unused.x() = ReadEntry(file, headCentreEntry);
    unused.y() = ReadEntry(file, headCentreEntry + 1);
    unused.z() = ReadEntry(file, headCentreEntry + 2);

    safePositionX = ReadEntry(file, safePositionEntry);
    safePositionY = ReadEntry(file, safePositionEntry + 1);
    safePositionZ = ReadEntry(file, safePositionEntry + 2);

    InitialiseFixedGeometry();
    CalculateLeverGeometry();
    // Replaces the Z just read: the saved Z must be in the file, and is never used, as required.
    CalculateSafePositionZ();
    requiredRotationAroundZ = ReadEntry(file, rotationEntry);
    AdjustForMisAlignment(requiredRotationAroundZ, CMaGeometry::EAxisType::Z);
}
