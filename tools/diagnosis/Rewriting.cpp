#include "tools/diagnosis/Rewriting.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace qmv40::diagnosis {

namespace {

using Sets = Rewriting::Sets;
using model::Vector3;

/// The columns from which X, Y and Z are read: 1 is X, 2 is Y, 3 is Z; negative with the other sign.
using SourceColumns = std::array<int, 3>;

bool Concerns(Sets sets, bool isOfASet) { return sets == Sets::Both || (sets == Sets::ASet) == isOfASet; }

/// Collects the rewritings.
class Rewriter {
public:
    Rewriter(const captures::CapturedSets& theSets, const Vector3& theUnlocking)
        : sets(theSets), unlocking(theUnlocking) {}

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
            [&](captures::CapturedPoint& point) { point.position = change(point.position + unlocking) - unlocking; });
    }

    /// Reads X, Y and Z from other columns.
    void AddColumns(const Rewriting& rewriting, const SourceColumns& columns) {
        AddReading(rewriting, [&columns](const Vector3& v) {
            const auto at = [&](int column) {
                const double value = v[static_cast<std::size_t>(std::abs(column)) - 1];
                return column < 0 ? -value : value;
            };
            return Vector3{at(columns[0]), at(columns[1]), at(columns[2])};
        });
    }

    void Angles() {
        Add({FindingKind::SetsExchanged}, [](captures::CapturedPoint& point) { std::swap(point.a, point.b); });
        for (const Sets which : {Sets::Both, Sets::BSet}) {
            Add({FindingKind::SwivelReversed, which}, [](captures::CapturedPoint& point) { point.b = -point.b; });
        }
        Add({FindingKind::TiltReversed, Sets::Both, 2},
            [](captures::CapturedPoint& point) { point.a = 90.0 - point.a; });
        Add({FindingKind::TiltReversed, Sets::ASet, 1}, [](captures::CapturedPoint& point) { point.a = -point.a; });
        const auto [least, most] =
            std::ranges::minmax(std::span(sets.points).first(sets.aCount), {}, &captures::CapturedPoint::a);
        const double sum = least.a + most.a;
        Add({FindingKind::TiltReversed, Sets::ASet, 1},
            [sum](captures::CapturedPoint& point) { point.a = sum - point.a; });
    }

    void Coordinates(Sets which) {
        using enum FindingKind;
        // In both sets, X or Y mirrored and X exchanged with Y look the same as B counting in the other direction.
        const bool isOwnMistake = which != Sets::Both;
        if (isOwnMistake) {
            AddColumns({AxisMirrored, which, 0}, {-1, 2, 3});
            AddColumns({AxisMirrored, which, 1}, {1, -2, 3});
        }
        AddColumns({AxisMirrored, which, 2}, {1, 2, -3});
        if (isOwnMistake) AddColumns({AxesExchanged, which, 1}, {2, 1, 3});
        AddColumns({AxesExchanged, which, 2}, {3, 2, 1});
        AddColumns({AxesExchanged, which, 12}, {1, 3, 2});
        // The same with the vertical axis in the opposite direction
        AddColumns({AxesExchanged, which, 2}, {-3, 2, -1});
        AddColumns({AxesExchanged, which, 12}, {1, -3, -2});
    }

    void Arms() {
        for (const SourceColumns& columns : {SourceColumns{-3, 2, 1}, SourceColumns{3, 2, -1}, SourceColumns{1, -3, 2},
                                             SourceColumns{1, 3, -2}, SourceColumns{1, -2, -3}}) {
            AddColumns({FindingKind::ArmHorizontal}, columns);
        }
    }

    void Units() {
        constexpr double inch = 25.4;
        for (const Sets which : {Sets::ASet, Sets::BSet}) {
            for (const double factor : {inch, 1.0 / inch, 1000.0, 0.001, 10.0, 0.1}) {
                AddReading({FindingKind::UnitsWrong, which, which == Sets::ASet ? 1 : 2, factor},
                           [factor](const Vector3& v) { return factor * v; });
            }
        }
    }

    const captures::CapturedSets& sets;
    Vector3 unlocking;
    std::vector<Rewritten> all;
};

} // namespace

std::vector<Rewritten> AllRewritings(const captures::CapturedSets& sets, const Vector3& unlocking) {
    return Rewriter(sets, unlocking).All();
}

} // namespace qmv40::diagnosis
