#pragma once

#include <functional>

/// Single numbers of a head geometry file: an initialisation-profile text file, numbers written as "%.9e" and read in
/// the C locale whatever the host has set.

/// The number stored under `key` in `section`. Raises QMV_E_READ_FROM_FILE when file, section or key is missing; a
/// stored 999999999 cannot be told from a missing value and fails too. Text that is not a number reads as 0.0.
double ReadDoubleFromHeadGeometryFile(const wchar_t* section, const wchar_t* key, const wchar_t* fileName);

/// Stores `value`, keeping everything else in the file. Raises QMV_E_WRITE_TO_FILE when the file cannot be written.
void WriteDoubleToHeadGeometryFile(const wchar_t* section, const wchar_t* key, double value, const wchar_t* fileName);

/// Runs `reads`, which sees the file as it is at one moment, whoever replaces it meanwhile.
void ReadTogether(const wchar_t* fileName, const std::function<void()>& reads);

/// Runs `writes`, whose values reach the file together or not at all. Raises QMV_E_WRITE_TO_FILE when it cannot be
/// written. On Windows there are files that can only be written value by value: see ProfileBatch.
void WriteTogether(const wchar_t* fileName, const std::function<void()>& writes);
