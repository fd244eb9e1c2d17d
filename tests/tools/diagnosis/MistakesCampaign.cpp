// Captures of simulated heads with one or two human mistakes each, and faultless ones, judged as `qmv40 geometry`
// judges them.
//     qmv40_mistakes [captures] [seed] [--show CULPRIT|HARM|CLEAN|ALL] [--kind TEXT]
// Prints a table. The exit code is 1 when a wrong geometry was accepted.

#include "tests/tools/diagnosis/PaperTrial.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

struct Count {
    int captures = 0, harmful = 0, accepted = 0, named = 0, refused = 0;

    void operator+=(const Count& other) {
        captures += other.captures;
        harmful += other.harmful;
        accepted += other.accepted;
        named += other.named;
        refused += other.refused;
    }
};

struct Asked {
    int captures = 1000;
    std::uint64_t seed = 1;
    std::string show;
    std::string kind;
};

Asked Read(int count, char** arguments) {
    Asked asked;
    int numbers = 0;
    for (int i = 1; i < count; ++i) {
        if (std::strcmp(arguments[i], "--show") == 0 && i + 1 < count) {
            asked.show = arguments[++i];
        } else if (std::strcmp(arguments[i], "--kind") == 0 && i + 1 < count) {
            asked.kind = arguments[++i];
        } else if (numbers++ == 0) {
            asked.captures = std::atoi(arguments[i]);
        } else {
            asked.seed = std::strtoull(arguments[i], nullptr, 10);
        }
    }
    return asked;
}

Count Try(const HumanKind& kind, std::uint64_t seed, const std::string& show) {
    const PaperCapture capture = MakeCapture(kind, seed);
    const PaperTrial trial(capture);
    Count count{.captures = 1};
    count.harmful = trial.IsAccepted() && trial.IsWrong() ? 1 : 0;
    count.accepted = trial.IsAccepted() ? 1 : 0;
    count.named = !trial.IsAccepted() && trial.Names(kind.culprits) ? 1 : 0;
    // A geometry can be wrong although no mistake was made. To refuse it is right, and is not counted.
    count.refused = kind.isClean && !trial.IsAccepted() && !trial.IsWrong() ? 1 : 0;
    const bool isShown = (show == "HARM" && count.harmful != 0) || (show == "CLEAN" && count.refused != 0) ||
                         (show == "CULPRIT" && !kind.isClean && count.named == 0) || show == "ALL";
    if (isShown) {
        std::printf("%s%s, seed %llu, %zu and %zu points, %s first, noise %.4f, stylus %.1f: %s%s\n", kind.name,
                    capture.made.c_str(), static_cast<unsigned long long>(seed), capture.aSet.size(),
                    capture.bSet.size(), capture.aSetIsFirst ? "A" : "B", capture.noise, -capture.head.tip.z,
                    trial.componentAnswered ? "" : "refused by the component; ", trial.Text().c_str());
    }
    return count;
}

void Print(const char* name, const Count& count, bool isClean) {
    const int refused = count.captures - count.accepted;
    std::printf("| %-42s | %8d | %16d | ", name, count.captures, count.harmful);
    if (isClean) {
        std::printf("%15s | %13d |\n", "", count.refused);
    } else {
        std::printf("%13.1f %% | %13d |\n", refused > 0 ? 100.0 * count.named / refused : 100.0, refused);
    }
}

} // namespace

int main(int count, char** arguments) {
    const Asked asked = Read(count, arguments);
    std::printf(
        "seed %llu\n\n| capture | captures | accepted wrongly | culprit named | refused |\n|---|---|---|---|---|\n",
        static_cast<unsigned long long>(asked.seed));
    const auto& kinds = HumanKinds();
    Count clean, spoilt;
    const int each = std::max(1, asked.captures / static_cast<int>(kinds.size()));
    for (std::size_t k = 0; k < kinds.size(); ++k) {
        if (std::string(kinds[k].name).find(asked.kind) == std::string::npos) continue;
        Count all;
        for (int i = 0; i < each; ++i) {
            // Within a run no two captures have the same seed.
            all += Try(kinds[k], asked.seed * 1000003 + k * 100003 + static_cast<std::uint64_t>(i), asked.show);
        }
        Print(kinds[k].name, all, kinds[k].isClean);
        std::fflush(stdout);
        (kinds[k].isClean ? clean : spoilt) += all;
    }
    Print("all faultless ones", clean, true);
    Print("all with a mistake", spoilt, false);
    return clean.harmful + spoilt.harmful > 0 ? 1 : 0;
}
