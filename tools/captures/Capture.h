#pragma once

#include "interface/Records.h"
#include "tools/captures/CapturedPoint.h"
#include "tools/text/Csv.h"

#include <string>

namespace qmv40::captures {

/// The captured points of one axis in millimetres, and their lines in the file.
struct CaptureFile {
    std::string name;
    std::vector<HeadAlignmentDataItem> items;
    std::vector<std::size_t> lines; ///< of each item, counted from 1
};

/// Both files of a capture. A point is named by its number: the points of both sets are numbered together, those of the
/// A set first.
struct CaptureFiles {
    CaptureFile aAxis;
    CaptureFile bAxis;
    CapturedSets sets = {};        ///< brought to the locked position
    model::Vector3 unlocking = {}; ///< the shift by unlocking, which was subtracted from their points

    bool IsOfASet(std::size_t point) const { return point < aAxis.items.size(); }
    const CaptureFile& FileOf(std::size_t point) const { return IsOfASet(point) ? aAxis : bAxis; }
    const HeadAlignmentDataItem& ItemOf(std::size_t point) const { return FileOf(point).items[InFile(point)]; }
    std::size_t LineOf(std::size_t point) const { return FileOf(point).lines[InFile(point)]; }
    /// "file:line", the form in which compilers name places.
    std::string NameOf(std::size_t point) const;

private:
    std::size_t InFile(std::size_t point) const { return IsOfASet(point) ? point : point - aAxis.items.size(); }
};

/// The factor by which a length in `unit` is multiplied.
double MillimetresIn(text::LengthUnit unit);

/// The captured points of one axis: a CSV file with the columns APosition, BPosition, XPosition, YPosition, ZPosition,
/// or A, B, X, Y, Z. `unit`: what the coordinates are in. Throws InputError for a header that names another unit.
/// See Csv.h for what else is accepted and what is refused.
CaptureFile ReadCapture(const std::string& fileName, text::LengthUnit unit);

/// The points of a CSV file with the columns XPosition, YPosition, ZPosition, or X, Y, Z, as a capture has them; in
/// millimetres. `unit` and failures: as for ReadCapture.
std::vector<model::Vector3> ReadPoints(const std::string& fileName, text::LengthUnit unit);

/// The points with their angles. `unlocking`, the shift by unlocking, is subtracted from the positions, which brings
/// them to the locked position.
CapturedSets SetsOf(std::span<const HeadAlignmentDataItem> aAxis, std::span<const HeadAlignmentDataItem> bAxis,
                    const model::Vector3& unlocking);

} // namespace qmv40::captures
