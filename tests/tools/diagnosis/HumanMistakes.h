#pragma once

#include "tests/tools/diagnosis/Measurement.h"

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// One capture of a head on paper, as it is made. Everything is drawn from the seed: the pole sphere, the mounting, the
/// stylus, the noise, the positions of both sets, and which set is captured first.
struct PaperCapture {
    explicit PaperCapture(std::uint64_t seed);

    double Between(double least, double most);
    /// The same, with either sign.
    double EitherSign(double least, double most);
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
    /// The number of a measurement within a set, with at least two measurements of the set on either side.
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
    std::vector<void (*)(PaperCapture&)> later; ///< what is left to be done to the readings
    std::string made;                           ///< the mistakes that were drawn, for messages

    /// The pole sphere's centre and the mounting angle at the end of the capture.
    qmv40::model::Vector3 TrueCentre() const { return (aSetIsFirst ? bSet : aSet).back().sphere; }
    double TrueMounting() const { return (aSetIsFirst ? bSet : aSet).back().mounting; }
};

/// What people do to a capture, or a way to make a faultless one.
struct HumanKind {
    const char* name;
    bool isClean;
    /// Names of findings that say what was done; where none is given any finding will do.
    std::vector<std::string_view> culprits;
    void (*circumstances)(PaperCapture&); ///< before the measurements; may be none
    void (*readings)(PaperCapture&);      ///< after them; may be none
};

/// The common ones, each with the name that it is to be found under.
const std::vector<HumanKind>& CommonMistakes();
/// The common and the odd ones.
const std::vector<HumanKind>& HumanKinds();

/// A capture of this kind.
PaperCapture MakeCapture(const HumanKind& kind, std::uint64_t seed);
