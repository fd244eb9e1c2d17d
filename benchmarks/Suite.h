#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// The seconds of one call of each piece of timed work, one figure for each round.
class Timings {
public:
    void Add(const std::string& name, double seconds) { samples[name].push_back(seconds); }
    /// The median of the rounds; throws std::out_of_range for work that was not timed.
    double Median(const std::string& name) const;
    /// The median of the ratios of two pieces of work in the same round, so that a slow round has no influence.
    double MedianRatio(const std::string& ours, const std::string& peers) const;

private:
    std::map<std::string, std::vector<double>> samples;
};

/// A number of the table, computed after everything has been timed.
struct Figure {
    std::function<double(const Timings&)> value;
    std::string unit; ///< "s" is shown as ns, us, ms or s
};

/// The limit of a row: for its ratio when it has a peer, otherwise for the number itself.
struct Limit {
    double most;
    std::string text;
};

/// One line of the table.
struct Row {
    std::string subject;
    std::string size;
    Figure ours;
    std::string peer; ///< empty: nothing to compare with
    std::optional<Figure> peers;
    std::optional<Figure> ratio;
    std::optional<Limit> limit; ///< none: for information
};

/// How long to measure.
struct Effort {
    int rounds;
    double secondsEach; ///< the least time for one piece of work in one round
    bool large;         ///< include the sizes at which one call takes seconds
};

/// The pieces of timed work and the rows made from their times.
/// All work is timed once in every round, and a ratio is the median of the rounds' ratios. Other load of the machine
/// then affects our work and the peers' work alike.
class Suite {
public:
    explicit Suite(const Effort& theEffort) : effort(theEffort) {}

    bool IsLarge() const noexcept { return effort.large; }

    /// Times calls of `work`; counts the processor time of this thread.
    template <typename Work> void Time(const std::string& name, Work work) { Register(name, std::move(work)); }
    /// The same by the clock, for work that waits.
    template <typename Work> void TimeByTheClock(const std::string& name, Work work) {
        Register(name, std::move(work))->UseRealTime();
    }

    /// A row of one number; the limit is for this number.
    void Report(const std::string& subject, const std::string& size, const Figure& ours,
                std::optional<Limit> limit = std::nullopt);
    /// A row of two pieces of timed work; the limit is for their ratio.
    void Compare(const std::string& subject, const std::string& size, const std::string& ours,
                 const std::string& peersName, const std::string& peers, std::optional<Limit> limit = std::nullopt);
    /// Times a peer's work beside ours, which is already timed under the name "<subject> ours <size>".
    template <typename Work> void Against(const std::string& subject, const std::string& size, const std::string& peer,
                                          Work work, std::optional<Limit> limit = std::nullopt) {
        const std::string name = subject + ' ' + peer + ' ' + size;
        Time(name, std::move(work));
        Compare(subject, size, subject + " ours " + size, peer, name, std::move(limit));
    }
    /// A row of two known numbers.
    void Compare(const std::string& subject, const std::string& size, const std::string& unit, double ours,
                 const std::string& peersName, double peers);
    void Add(Row row) { rows.push_back(std::move(row)); }

    void Run();
    /// The table in Markdown, and how many of the limits are met.
    void Print() const;
    void WriteCsv(const std::string& path) const;

private:
    template <typename Work> benchmark::internal::Benchmark* Register(const std::string& name, Work work) {
        return benchmark::RegisterBenchmark(name.c_str(),
                                            [work](benchmark::State& state) {
                                                for ([[maybe_unused]] auto once : state) work();
                                            })
            ->MinTime(effort.secondsEach);
    }

    Effort effort;
    std::vector<Row> rows;
    Timings timings;
};

/// A whole number in groups of three digits.
std::string Grouped(std::size_t number);

/// The time of a piece of work.
Figure TimeOf(const std::string& name);
/// The ratio of two pieces of work.
Figure RatioOf(const std::string& ours, const std::string& peers);
/// A known number.
Figure Known(double value, const std::string& unit);
