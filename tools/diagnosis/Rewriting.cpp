#include "tools/diagnosis/Rewriting.h"

#include <algorithm>
#include <functional>

namespace qmv40::diagnosis {

namespace {

using Sets = Rewriting::Sets;
using model::Vector3;

bool Concerns(Sets sets, bool isOfASet) { return sets == Sets::Both || (sets == Sets::ASet) == isOfASet; }

/// Collects the rewritings.
class Rewriter {
public:
    Rewriter(const fit::CapturedSets& theSets, const Vector3& theUnlocking) : sets(theSets), unlocking(theUnlocking) {}

    std::vector<Rewritten> All() {
        Angles();
        for (const Sets which : {Sets::Both, Sets::ASet, Sets::BSet}) Coordinates(which);
        Arms();
        Units();
        return std::move(all);
    }

private:
    template <typename Change> void Add(const Rewriting& rewriting, Change&& change) {
        Rewritten rewritten{rewriting, sets};
        for (std::size_t i = 0; i < sets.points.size(); ++i) {
            if (Concerns(rewriting.sets, sets.IsOfASet(i))) change(rewritten.sets.points[i]);
        }
        all.push_back(std::move(rewritten));
    }
    /// `change` changes the positions as they were read.
    template <typename Change> void AddReading(const Rewriting& rewriting, Change&& change) {
        Add(rewriting,
            [&](fit::CapturedPoint& point) { point.position = change(point.position + unlocking) - unlocking; });
    }

    void Angles() {
        Add({Rewriting::Kind::SetsExchanged}, [](fit::CapturedPoint& point) { std::swap(point.a, point.b); });
        for (const Sets which : {Sets::Both, Sets::BSet}) {
            Add({Rewriting::Kind::SwivelReversed, which}, [](fit::CapturedPoint& point) { point.b = -point.b; });
        }
        Add({Rewriting::Kind::TiltReversed}, [](fit::CapturedPoint& point) { point.a = 90.0 - point.a; });
        Add({Rewriting::Kind::TiltReversed, Sets::ASet}, [](fit::CapturedPoint& point) { point.a = -point.a; });
        const auto [least, most] =
            std::ranges::minmax(std::span(sets.points).first(sets.aCount), {}, &fit::CapturedPoint::a);
        const double sum = least.a + most.a;
        Add({Rewriting::Kind::TiltReversed, Sets::ASet}, [sum](fit::CapturedPoint& point) { point.a = sum - point.a; });
    }

    void Coordinates(Sets which) {
        // Mirroring X or Y in both sets, or exchanging them, has the same effect as counting B in the other direction.
        const bool isOwnMistake = which != Sets::Both;
        for (const int axis : {0, 1, 2}) {
            if (axis != 2 && !isOwnMistake) continue;
            AddReading({Rewriting::Kind::AxisMirrored, which, 1.0, axis}, [axis](Vector3 v) {
                v[static_cast<std::size_t>(axis)] = -v[static_cast<std::size_t>(axis)];
                return v;
            });
        }
        if (isOwnMistake)
            AddReading({Rewriting::Kind::AxesExchanged, which, 1.0, 0, 1}, [](const Vector3& v) {
                return Vector3{v.y, v.x, v.z};
            });
        AddReading({Rewriting::Kind::AxesExchanged, which, 1.0, 0, 2}, [](const Vector3& v) {
            return Vector3{v.z, v.y, v.x};
        });
        AddReading({Rewriting::Kind::AxesExchanged, which, 1.0, 1, 2}, [](const Vector3& v) {
            return Vector3{v.x, v.z, v.y};
        });
        // The same with the vertical axis in the opposite direction
        AddReading({Rewriting::Kind::AxesExchanged, which, 1.0, 0, 2}, [](const Vector3& v) {
            return Vector3{-v.z, v.y, -v.x};
        });
        AddReading({Rewriting::Kind::AxesExchanged, which, 1.0, 1, 2}, [](const Vector3& v) {
            return Vector3{v.x, -v.z, -v.y};
        });
    }

    void Arms() {
        AddReading({Rewriting::Kind::ArmHorizontal}, [](const Vector3& v) { return Vector3{-v.z, v.y, v.x}; });
        AddReading({Rewriting::Kind::ArmHorizontal}, [](const Vector3& v) { return Vector3{v.z, v.y, -v.x}; });
        AddReading({Rewriting::Kind::ArmHorizontal}, [](const Vector3& v) { return Vector3{v.x, -v.z, v.y}; });
        AddReading({Rewriting::Kind::ArmHorizontal}, [](const Vector3& v) { return Vector3{v.x, v.z, -v.y}; });
        AddReading({Rewriting::Kind::ArmHorizontal}, [](const Vector3& v) { return Vector3{v.x, -v.y, -v.z}; });
    }

    void Units() {
        constexpr double inch = 25.4;
        for (const Sets which : {Sets::ASet, Sets::BSet}) {
            for (const double factor : {inch, 1.0 / inch, 1000.0, 0.001, 10.0, 0.1}) {
                AddReading({Rewriting::Kind::UnitsMixed, which, factor},
                           [factor](const Vector3& v) { return factor * v; });
            }
        }
    }

    const fit::CapturedSets& sets;
    Vector3 unlocking;
    std::vector<Rewritten> all;
};

} // namespace

std::vector<Rewritten> AllRewritings(const fit::CapturedSets& sets, const Vector3& unlocking) {
    return Rewriter(sets, unlocking).All();
}

} // namespace qmv40::diagnosis
