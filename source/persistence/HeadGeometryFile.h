#pragma once

#include "platform/ProfileFile.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>

namespace qmv40 {

/// The head geometry file: an initialisation-profile text file of seven numbers, written as "%.9e" and read in the C
/// locale, independently of the host's locale.

/// Where one number is in the file. The names are ASCII text.
struct HeadGeometryEntry {
    const wchar_t* section;
    const wchar_t* key;
};

/// The seven entries in the order in which they are written.
inline constexpr std::array<HeadGeometryEntry, 7> headGeometryEntries{
    {{L"HEADCENTRE", L"X"},
     {L"HEADCENTRE", L"Y"},
     {L"HEADCENTRE", L"Z"},
     {L"SAFEPOSITION", L"X"},
     {L"SAFEPOSITION", L"Y"},
     {L"SAFEPOSITION", L"Z"},
     {L"AlignmentOffset", L"RequiredRotationAroundZ"}}};

/// Indices into headGeometryEntries. Coordinates are in the order X, Y, Z.
inline constexpr std::size_t headCentreEntry = 0;
inline constexpr std::size_t safePositionEntry = 3;
inline constexpr std::size_t rotationEntry = 6;

/// The default that marks a missing number. A stored number of exactly this value cannot be distinguished from a
/// missing one.
inline constexpr double missingNumber = 999999999.0;
inline constexpr const char* missingNumberText = "999999999";

/// The text of a number with its terminator. The size is required: a text of more than 348 characters is cut.
using NumberText = std::array<char, 349>;

/// The text of an entry as a load reads it; nothing when the file, the section or the key is missing.
std::optional<std::string> ReadHeadGeometryText(const ProfileReader& file, const HeadGeometryEntry& entry);

/// The number of an entry. Raises QMV_E_READ_FROM_FILE when file, section or key is missing, and for a stored
/// 999999999. Text that is not a number reads as 0.0.
double ReadHeadGeometryNumber(const ProfileReader& file, const HeadGeometryEntry& entry);

/// Adds a number to the entries of `file`.
void WriteHeadGeometryNumber(ProfileWriter& file, const HeadGeometryEntry& entry, double value);

/// Writes all entries of `file`. Raises QMV_E_WRITE_TO_FILE if one could not be written.
void CommitHeadGeometry(ProfileWriter& file);

} // namespace qmv40
