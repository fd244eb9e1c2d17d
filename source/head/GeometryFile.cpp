// The seven numbers of a head geometry, saved and loaded.

#include "head/RoundThePole.h"

#include "errors/RaiseError.h"
#include "persistence/HeadGeometryFile.h"

namespace {

constexpr const wchar_t* headCentreSection = L"HEADCENTRE";
constexpr const wchar_t* safePositionSection = L"SAFEPOSITION";
constexpr const wchar_t* alignmentSection = L"AlignmentOffset";
constexpr const wchar_t* rotationKey = L"RequiredRotationAroundZ";
constexpr const wchar_t* coordinateKeys[] = {L"X", L"Y", L"Z"};

/// Runs a load or a save. `ownCode` passes as it is, any other code is raised again as a failure of the whole
/// operation. Both operations are meant to report that under the name of the load: callers know the text.
template <typename Operation>
void RaisingWholeFailure(HRESULT ownCode, const wchar_t* description, Operation&& operation) {
    // Nothing ever sets this word; raising again is tied to its being zero.
    constexpr DWORD status = 0;
    try {
        operation();
    } catch (const HRESULT code) {
        if (code == ownCode || status != 0) throw;
        RaiseError(code, L"RoundThePole::LoadFromFile", description);
    }
}

} // namespace

double RoundThePole::ReadDoubleFromIniFile(const wchar_t* section, const wchar_t* key, const wchar_t* fileName) const {
    return ReadDoubleFromHeadGeometryFile(section, key, fileName);
}

void RoundThePole::WriteDoubleToIniFile(const wchar_t* section, const wchar_t* key, double value,
                                        const wchar_t* fileName) const {
    WriteDoubleToHeadGeometryFile(section, key, value, fileName);
}

void RoundThePole::SaveToFile(const BSTR* fileName) const {
    RaisingWholeFailure(QMV_E_WRITE_TO_FILE, L"Failed To Save File",
                        [&] { WriteTogether(*fileName, [&] { WriteNumbers(*fileName); }); });
}

void RoundThePole::LoadFromFile(const BSTR* fileName) {
    RaisingWholeFailure(QMV_E_READ_FROM_FILE, L"Failed To Load File",
                        [&] { ReadTogether(*fileName, [&] { ReadNumbers(*fileName); }); });
}

void RoundThePole::WriteNumbers(const wchar_t* fileName) const {
    for (int i = 0; i < 3; ++i) {
        WriteDoubleToIniFile(headCentreSection, coordinateKeys[i], headCentre[i], fileName);
    }
    WriteDoubleToIniFile(safePositionSection, L"X", safePositionX, fileName);
    WriteDoubleToIniFile(safePositionSection, L"Y", safePositionY, fileName);
    WriteDoubleToIniFile(safePositionSection, L"Z", safePositionZ, fileName);
    WriteDoubleToIniFile(alignmentSection, rotationKey, requiredRotationAroundZ, fileName);
}

void RoundThePole::ReadNumbers(const wchar_t* fileName) {
    for (int i = 0; i < 3; ++i) {
        headCentre[i] = ReadDoubleFromIniFile(headCentreSection, coordinateKeys[i], fileName);
    }
    // Read a second time and not used: meant, and harmless.
    CMaPoint unused(0.0, 0.0, 0.0);
    unused.x() = ReadDoubleFromIniFile(headCentreSection, L"X", fileName);
    unused.y() = ReadDoubleFromIniFile(headCentreSection, L"Y", fileName);
    unused.z() = ReadDoubleFromIniFile(headCentreSection, L"Z", fileName);

    safePositionX = ReadDoubleFromIniFile(safePositionSection, L"X", fileName);
    safePositionY = ReadDoubleFromIniFile(safePositionSection, L"Y", fileName);
    safePositionZ = ReadDoubleFromIniFile(safePositionSection, L"Z", fileName);

    InitialiseFixedGeometry();
    CalculateLeverGeometry();
    // Replaces the Z just read: the saved Z must be there and is meant never to survive a load.
    CalculateSafePositionZ();
    requiredRotationAroundZ = ReadDoubleFromIniFile(alignmentSection, rotationKey, fileName);
    AdjustForMisAlignment(requiredRotationAroundZ, CMaGeometry::EAxisType::Z);
}
