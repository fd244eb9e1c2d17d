#include "benchmarks/Suite.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <fstream>
#include <stdexcept>

namespace {

double Middle(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 != 0 ? values[middle] : 0.5 * (values[middle - 1] + values[middle]);
}

/// Passes the times on and shows the progress.
class Collector : public benchmark::BenchmarkReporter {
public:
    explicit Collector(Timings& theTimings) : timings(theTimings) {}

    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.error_occurred) throw std::runtime_error(run.error_message);
            const bool byTheClock = run.run_name.time_type == "real_time";
            const double seconds = byTheClock ? run.real_accumulated_time : run.cpu_accumulated_time;
            timings.Add(run.run_name.function_name, seconds / static_cast<double>(run.iterations));
        }
        std::fputc('.', stderr);
    }

private:
    Timings& timings;
};

std::string Text(double value) {
    constexpr int significantDigits = 3;
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.begin(), text.end(), value, std::chars_format::general, significantDigits).ptr;
    return {text.begin(), end};
}

/// A time in the unit that suits its size.
std::string Shown(double value, const std::string& unit) {
    if (unit != "s") return Text(value) + ' ' + unit;
    constexpr std::array<const char*, 4> units{"s", "ms", "us", "ns"};
    std::size_t chosen = 0;
    // With three digits, 0.9995 is shown as 1.
    while (value < 0.9995 && chosen + 1 < units.size()) value *= 1e3, ++chosen;
    return Text(value) + ' ' + units[chosen];
}

struct Evaluated {
    double ours;
    std::optional<double> peers;
    std::optional<double> ratio;
    std::optional<bool> isKept;
};

std::optional<double> Value(const std::optional<Figure>& figure, const Timings& timings) {
    return figure ? std::optional(figure->value(timings)) : std::nullopt;
}

Evaluated Evaluate(const Row& row, const Timings& timings) {
    Evaluated evaluated{row.ours.value(timings), Value(row.peers, timings), Value(row.ratio, timings), std::nullopt};
    if (row.limit) evaluated.isKept = evaluated.ratio.value_or(evaluated.ours) <= row.limit->most;
    return evaluated;
}

std::string Verdict(const Evaluated& evaluated) {
    if (!evaluated.isKept) return "";
    return *evaluated.isKept ? "yes" : "NO";
}

using Cells = std::array<std::string, 8>;

Cells CellsOf(const Row& row, const Evaluated& evaluated) {
    return {row.subject,
            row.size,
            Shown(evaluated.ours, row.ours.unit),
            row.peer,
            row.peers ? Shown(*evaluated.peers, row.peers->unit) : "",
            row.ratio ? Text(*evaluated.ratio) : "",
            row.limit ? row.limit->text : "",
            Verdict(evaluated)};
}

void PrintAligned(const std::vector<Cells>& lines) {
    std::array<std::size_t, 8> widths{};
    for (const Cells& cells : lines)
        for (std::size_t i = 0; i < cells.size(); ++i) widths[i] = std::max(widths[i], cells[i].size());
    for (const Cells& cells : lines) {
        for (std::size_t i = 0; i < cells.size(); ++i)
            std::printf("| %-*s ", static_cast<int>(widths[i]), cells[i].c_str());
        std::puts("|");
    }
}

} // namespace

double Timings::Median(const std::string& name) const { return Middle(samples.at(name)); }

double Timings::MedianRatio(const std::string& ours, const std::string& peers) const {
    std::vector<double> ratios = samples.at(ours);
    std::transform(ratios.begin(), ratios.end(), samples.at(peers).begin(), ratios.begin(), std::divides<>());
    return Middle(std::move(ratios));
}

std::string Grouped(std::size_t number) {
    std::string text = std::to_string(number);
    for (std::size_t at = text.size(); at > 3;) text.insert(at -= 3, 1, ' ');
    return text;
}

Figure TimeOf(const std::string& name) {
    return {[name](const Timings& timings) { return timings.Median(name); }, "s"};
}

Figure RatioOf(const std::string& ours, const std::string& peers) {
    return {[ours, peers](const Timings& timings) { return timings.MedianRatio(ours, peers); }, ""};
}

Figure Known(double value, const std::string& unit) {
    return {[value](const Timings&) { return value; }, unit};
}

void Suite::Report(const std::string& subject, const std::string& size, const Figure& ours,
                   std::optional<Limit> limit) {
    rows.push_back({subject, size, ours, "", std::nullopt, std::nullopt, std::move(limit)});
}

void Suite::Compare(const std::string& subject, const std::string& size, const std::string& ours,
                    const std::string& peersName, const std::string& peers, std::optional<Limit> limit) {
    rows.push_back({subject, size, TimeOf(ours), peersName, TimeOf(peers), RatioOf(ours, peers), std::move(limit)});
}

void Suite::Compare(const std::string& subject, const std::string& size, const std::string& unit, double ours,
                    const std::string& peersName, double peers) {
    rows.push_back(
        {subject, size, Known(ours, unit), peersName, Known(peers, unit), Known(ours / peers, ""), std::nullopt});
}

void Suite::Run() {
    Collector collector(timings);
    for (int round = 1; round <= effort.rounds; ++round) {
        std::fprintf(stderr, "Round %d of %d ", round, effort.rounds);
        benchmark::RunSpecifiedBenchmarks(&collector);
        std::fputc('\n', stderr);
    }
}

void Suite::Print() const {
    std::vector<Cells> lines{{"subject", "size", "ours", "peer", "peer's", "ours / peer's", "target", "met"}};
    Cells rule;
    rule.fill("---");
    lines.push_back(rule);
    int limits = 0;
    int kept = 0;
    for (const Row& row : rows) {
        const Evaluated evaluated = Evaluate(row, timings);
        lines.push_back(CellsOf(row, evaluated));
        limits += evaluated.isKept ? 1 : 0;
        kept += evaluated.isKept.value_or(false) ? 1 : 0;
    }
    PrintAligned(lines);
    std::printf("\n%d of %d targets met\n", kept, limits);
}

void Suite::WriteCsv(const std::string& path) const {
    std::ofstream file(path);
    file.precision(6);
    file << "subject,size,ours,unit,peer,peers,ratio,target,met\n";
    for (const Row& row : rows) {
        const Evaluated evaluated = Evaluate(row, timings);
        file << row.subject << ',' << row.size << ',' << evaluated.ours << ',' << row.ours.unit << ',' << row.peer
             << ',';
        if (row.peers) file << *evaluated.peers << ',' << *evaluated.ratio;
        if (!row.peers) file << ',';
        file << ',' << (row.limit ? row.limit->text : "") << ',' << Verdict(evaluated) << '\n';
    }
    if (!file.flush()) throw std::runtime_error("cannot write " + path);
}
