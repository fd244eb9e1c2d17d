#include "tools/diagnosis/Thinning.h"

#include "tools/diagnosis/Thresholds.h"

#include <algorithm>
#include <cmath>

namespace qmv40::diagnosis {

namespace {

/// The number of points of a set that are searched. A capture by hand rarely has more.
constexpr std::size_t mostOfASet = 100;

void KeepEvenly(std::size_t first, std::size_t last, std::vector<std::size_t>& kept) {
    const std::size_t count = last - first;
    const std::size_t wanted = std::min(count, mostOfASet);
    for (std::size_t i = 0; i < wanted; ++i) {
        kept.push_back(wanted == count ? first + i : first + i * (count - 1) / (wanted - 1));
    }
}

double Misfit(const fit::HeadModel& model, const captures::CapturedPoint& point, std::size_t index) {
    const model::Vector3 off = point.position - model.Position(point, index);
    return point.weight * model::Dot(off, off);
}

/// A part of a large capture that is searched instead of all points: points spread evenly over each set, the first and
/// the last included.
class Thinning {
public:
    explicit Thinning(const captures::CapturedSets& theSets) : sets(theSets) {
        KeepEvenly(0, sets.aCount, kept);
        keptOfASet = kept.size();
        KeepEvenly(sets.aCount, sets.points.size(), kept);
    }

    bool IsThinned() const { return kept.size() < sets.points.size(); }

    captures::CapturedSets Thinned() const {
        captures::CapturedSets thinned;
        for (const std::size_t index : kept) thinned.points.push_back(sets.points[index]);
        thinned.aCount = keptOfASet;
        return thinned;
    }

    /// The findings of the part, extended to all points. An error that begins or ends between two points of the part
    /// begins or ends at the point where it explains most. Points that are still far off become errors of their own,
    /// up to eight errors in all. The fit to a rewritten capture stays that of the part.
    HeadExplained OfAll(HeadExplained ofPart) const {
        HeadExplained all;
        all.rewriting = ofPart.rewriting;
        all.plain = fit::FitHead(sets.points, ofPart.plain.model);
        if (all.rewriting) {
            all.fit = std::move(ofPart.fit);
            return all;
        }
        fit::HeadFit fit;
        fit.model = ofPart.fit.model;
        for (fit::ModelError& error : fit.model.errors) error = OfAll(error, ofPart.fit.model);
        AddPointsOff(fit);
        all.fit = fit::FitHead(sets.points, fit.model);
        fit::FindVariances(sets.points, all.fit);
        return all;
    }

private:
    fit::ModelError OfAll(const fit::ModelError& error, const fit::HeadModel& model) const {
        fit::ModelError ofAll = error;
        ofAll.first = error.first == 0 ? 0 : kept[error.first];
        ofAll.last = error.last == kept.size() ? sets.points.size() : kept[error.last - 1] + 1;
        if (error.drift) ofAll.drift->start = kept[error.drift->start];
        const bool isSingle = error.last - error.first == 1;
        if (isSingle || error.IsOfTheHead(kept.size())) return ofAll;
        const auto isEdge = [&](std::size_t i) { return i == 0 || i == keptOfASet || i == kept.size(); };
        if (!isEdge(error.first)) ofAll.first = BestEnd(error.first, error, true, model);
        if (isEdge(error.last)) {
            ofAll.last = error.last == keptOfASet ? sets.aCount : sets.points.size();
        } else {
            ofAll.last = BestEnd(error.last, error, false, model);
        }
        return ofAll;
    }

    /// The best end of the error's interval, among all points between the searched points `end` - 1 and `end`.
    std::size_t BestEnd(std::size_t end, const fit::ModelError& error, bool isFirst,
                        const fit::HeadModel& model) const {
        fit::HeadModel with = model, without = model;
        std::erase_if(with.errors, [&](const fit::ModelError& each) {
            return each.kind != error.kind || each.first != error.first;
        });
        for (fit::ModelError& each : with.errors) each.first = 0, each.last = sets.points.size();
        without.errors.clear();
        // The change of the sum of squares when the points up to this one leave the interval (`isFirst`) or join it.
        // The end is where it is smallest.
        double sum = 0.0, least = 0.0;
        std::size_t best = kept[end - 1] + 1;
        for (std::size_t i = kept[end - 1] + 1; i < kept[end]; ++i) {
            const double gain = Misfit(without, sets.points[i], i) - Misfit(with, sets.points[i], i);
            sum += isFirst ? gain : -gain;
            if (sum >= least) continue;
            least = sum;
            best = i + 1;
        }
        return best;
    }

    void AddPointsOff(fit::HeadFit& fit) const {
        // In standard deviations: far more than noise alone moves any of a million points.
        constexpr double farOff = 8.0;
        constexpr std::size_t most = 8; // errors in all: a capture with so many mistakes is to be repeated
        double sum = 0.0;
        for (const std::size_t i : kept) sum += Misfit(fit.model, sets.points[i], i);
        const double variance = std::max(sum / (3.0 * static_cast<double>(kept.size())), thresholds::leastVariance);
        for (std::size_t i = 0; i < sets.points.size() && fit.model.errors.size() < most; ++i) {
            if (Misfit(fit.model, sets.points[i], i) > farOff * farOff * variance) {
                fit.model.errors.push_back({fit::ModelError::Kind::Place, i, i + 1, {}});
            }
        }
    }

    const captures::CapturedSets& sets;
    std::vector<std::size_t> kept;
    std::size_t keptOfASet = 0;
};

} // namespace

HeadExplained ExplainHead(const captures::CapturedSets& sets, const model::Vector3& unlocking) {
    const Thinning thinning(sets);
    if (!thinning.IsThinned()) return SearchMistakes(sets, unlocking);
    return thinning.OfAll(SearchMistakes(thinning.Thinned(), unlocking));
}

} // namespace qmv40::diagnosis
