#pragma once

#include "tools/model/Vector3.h"

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

/// A capture as a person makes it, point by point, on a head on paper: a simulated one. Each measurement has its own
/// circumstances, so that anything can go wrong between two of them. Machine coordinates, millimetres, degrees.
namespace paper {

using qmv40::model::Vector3;

/// One line of a capture: the angles as they were written down, and the machine's position as it was read.
struct CapturedLine {
    double a = 0.0;
    double b = 0.0;
    Vector3 position;

    bool operator==(const CapturedLine&) const = default;
};

/// One measurement of the pole sphere.
struct Measurement {
    double a = 0.0;          ///< the angles of the head
    double b = 0.0;          //
    double writtenA = 0.0;   ///< the angles that are written down
    double writtenB = 0.0;   //
    Vector3 sphere;          ///< the centre of the pole sphere
    double mounting = 0.0;   ///< how far the head is mounted turned about machine Z
    Vector3 tip;             ///< the stylus tip, in the head's frame at A = B = 0
    Vector3 shift;           ///< added to the reading: the shift by unlocking, a tip offset in force
    double leanX = 0.0;      ///< the B axis is turned about machine X and Y
    double leanY = 0.0;      //
    double squareness = 0.0; ///< the A axis is turned about the head's Y, out of square to the B axis
    double axisOffset = 0.0; ///< the A axis passes the B axis at this distance, along the head's Y

    /// Where the machine stands with the tip in the sphere's centre, without noise.
    Vector3 Reading() const;

    bool operator==(const Measurement&) const = default;
};

using Measurements = std::vector<Measurement>;

/// The lines of the measurements, with independent normal noise of the given standard deviation on every coordinate.
std::vector<CapturedLine> LinesOf(const Measurements& measurements, double noise, std::mt19937_64& generator);

} // namespace paper

/// One capture of a head on paper, as it is made. Everything is drawn from the seed: the pole sphere, the mounting, the
/// stylus, the noise, the positions of both sets, and which set is captured first.
struct PaperCapture {
    explicit PaperCapture(std::uint64_t seed);

    double Between(double least, double most);
    /// The same, with either sign.
    double EitherSign(double least, double most);
    /// A number from 0 to `count` - 1.
    std::size_t Below(std::size_t count);
    bool Either() { return Below(2) == 0; }
    template <typename T> T OneOf(std::initializer_list<T> choices) {
        return *(choices.begin() + Below(choices.size()));
    }
    /// A vector of any direction, its length between the two.
    qmv40::model::Vector3 Vector(double least, double most);

    /// The sets in the order in which they are captured.
    paper::Measurements& First() { return aSetIsFirst ? aSet : bSet; }
    paper::Measurements& Second() { return aSetIsFirst ? bSet : aSet; }
    paper::Measurements& AnySet() { return Either() ? aSet : bSet; }
    /// Changes every measurement from the `from`th of the capture on, in the order in which they are made.
    template <typename Change> void FromOn(std::size_t from, Change&& change) {
        std::size_t i = 0;
        for (auto* const set : {&First(), &Second()}) {
            for (auto& each : *set) {
                if (i++ >= from) change(each);
            }
        }
    }
    template <typename Change> void All(Change&& change) { FromOn(0, change); }
    /// The number of the measurement with which the second set begins.
    std::size_t Between() { return First().size(); }
    /// The number of a measurement within a set, with at least two measurements of the set before it and one after it.
    std::size_t WithinASet();

    /// Replaces both sets by measurements at these angles, with the head that was drawn.
    void SetPositions(double aSetHeldAt, const std::vector<double>& tilts, double bSetHeldAt,
                      const std::vector<double>& swivels);
    void Measure();

    std::mt19937_64 generator;
    paper::Measurement head; ///< the circumstances before anything goes wrong
    double noise;
    bool aSetIsFirst = true;
    paper::Measurements aSet, bSet;
    std::vector<paper::CapturedLine> aLines, bLines;  ///< after Measure()
    std::optional<qmv40::model::Vector3> knownSphere; ///< as a qualified stylus measured it
    std::optional<double> knownStylus;
    std::vector<void (*)(PaperCapture&)> later; ///< changes that are made to the readings at the end
    std::string made;                           ///< the mistakes that were drawn, for messages
    std::vector<std::size_t> changed;           ///< the points that a mistake changed; the A set is numbered first

    /// The pole sphere's centre and the mounting angle at the end of the capture.
    qmv40::model::Vector3 TrueCentre() const { return (aSetIsFirst ? bSet : aSet).back().sphere; }
    double TrueMounting() const { return (aSetIsFirst ? bSet : aSet).back().mounting; }
};

/// What people do to a capture, or a way to make a faultless one.
struct HumanKind {
    const char* name;
    bool isClean;
    /// Names of findings that say what was done. When there are none, any finding counts as the right one.
    std::vector<std::string_view> culprits;
    void (*circumstances)(PaperCapture&); ///< before the measurements; may be null
    void (*readings)(PaperCapture&);      ///< after them; may be null
};

/// The common kinds. A mistake has the names of the findings that may report it.
const std::vector<HumanKind>& CommonMistakes();
/// Rarer circumstances and mistakes, two mistakes at once, and mistakes for which there is no finding. For all except
/// one, any finding counts as the right one.
const std::vector<HumanKind>& OddMistakes();
/// The common and the odd ones.
const std::vector<HumanKind>& HumanKinds();

/// A capture of this kind.
PaperCapture MakeCapture(const HumanKind& kind, std::uint64_t seed);
