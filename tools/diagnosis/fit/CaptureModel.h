#pragma once

#include "tools/captures/CapturedPoint.h"

#include <optional>
#include <span>
#include <vector>

namespace qmv40::diagnosis::fit {

/// A change that grows during the capture, from nothing at the first captured point to the whole at the last one.
struct Drift {
    /// The number of time constants during the capture. Positive: the change is fast at first and then slower;
    /// negative: slow at first and then faster; 0: even.
    double settling = 0.0;
    std::size_t start = 0; ///< the point that was captured first; those before it were captured after the others
};

/// A mistake in a capture, or an error of the head, that a model can have in addition to the unknowns of every head.
/// The fit finds its values.
struct ModelError {
    enum class Kind {
        TiltAngle,     ///< A was this much more than was written (radians)
        SwivelAngle,   ///< B was this much more than was written (radians)
        Place,         ///< the points stand off their places by this much (X, Y, Z)
        OtherTip,      ///< the stylus tip is off by this much (in the head's frame)
        LeaningHead,   ///< the B axis is turned about machine X and Y (radians)
        AxesNotSquare, ///< the A axis is turned about the head's Y, out of square to the B axis (radians)
        AxesApart      ///< the A axis passes the B axis at this distance, along the head's Y
    };

    Kind kind = Kind::Place;
    std::size_t first = 0; ///< concerns the points from here
    std::size_t last = 0;  ///< up to the one before this
    model::Vector3 values; ///< as many of them as the kind has
    bool isFixed = false;  ///< the values are known and not found by the fit
    bool isSwap = false;   ///< with the error before or after it: two points have each other's angle
    std::optional<Drift> drift = std::nullopt; ///< how the values grow during the capture

    std::size_t Unknowns() const;
    double ShareAt(std::size_t point) const; ///< of the values: less than 1 while it drifts
    bool Concerns(std::size_t point) const { return first <= point && point < last; }
    /// True for an error of the head: it concerns all `count` points, and is no mistake in the capture.
    bool IsOfTheHead(std::size_t count) const {
        const bool canBe = kind == Kind::LeaningHead || kind == Kind::AxesNotSquare || kind == Kind::AxesApart;
        return canBe && !drift && first == 0 && last >= count;
    }
};

/// The head as the captured angles describe it. With the stylus tip on a sphere at `poleSphere`, the machine stands at
///
///     poleSphere - Rz(mounting + B) * R(-X, A) * tip
///
/// while the head is locked. Rotations are right-handed. `tip` is in the head's frame at A = B = 0. The model errors
/// are added.
struct HeadModel {
    static constexpr std::size_t ownUnknowns = 7;

    model::Vector3 poleSphere;
    double mounting = 0.0; ///< radians
    model::Vector3 tip;
    std::vector<ModelError> errors;

    std::size_t Unknowns() const;
    /// True when the stylus points down at A = 0, as every stylus does.
    bool StylusHangs() const;
    /// The machine position for point `index`, captured at the angles that are written down for it.
    model::Vector3 Position(const captures::CapturedPoint& point, std::size_t index) const;
    /// The derivatives of that position by each unknown: pole sphere, mounting, tip, then the values of the errors in
    /// order.
    void Derivatives(const captures::CapturedPoint& point, std::size_t index, std::span<model::Vector3> out) const;
    /// The model with its unknowns changed by `step`.
    HeadModel Stepped(std::span<const double> step) const;
};

} // namespace qmv40::diagnosis::fit
