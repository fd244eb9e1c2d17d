#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <unistd.h>

/// Helpers of the fuzz targets. A target uses the component with an input of bytes and checks laws about the results. A
/// broken law ends the program, and libFuzzer records the input.

/// Ends the program and prints `sentence`, the law, if it is not `kept`.
inline void Promise(bool kept, const char* sentence) {
    if (kept) return;
    std::fprintf(stderr, "PROMISE BROKEN: %s\n", sentence);
    std::abort();
}

/// A separate folder for this process, in the folder that TMPDIR names. It is removed at the end.
class ScratchFolder {
public:
    ScratchFolder() : folder(std::filesystem::temp_directory_path() / ("qmv40-fuzz-" + std::to_string(::getpid()))) {
        std::filesystem::create_directories(folder);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    const std::filesystem::path& Path() const noexcept { return folder; }
    std::string Name(const std::string& file) const { return folder / file; }

private:
    std::filesystem::path folder;
};

inline void WriteFile(const std::string& name, std::string_view content) {
    std::FILE* const file = std::fopen(name.c_str(), "wb");
    const bool isWritten = file != nullptr && std::fwrite(content.data(), 1, content.size(), file) == content.size();
    if (file == nullptr || std::fclose(file) != 0 || !isWritten) {
        std::perror(name.c_str());
        std::_Exit(EXIT_FAILURE); // a fault of the machine, not of the component
    }
}

/// The content of a file; empty if it does not exist.
inline std::string ReadFile(const std::string& name) {
    std::string content;
    std::FILE* const file = std::fopen(name.c_str(), "rb");
    if (file == nullptr) return content;
    std::array<char, 4096> part;
    while (const std::size_t length = std::fread(part.data(), 1, part.size(), file))
        content.append(part.data(), length);
    std::fclose(file);
    return content;
}

/// Whether two numbers have the same bits. All not-a-numbers count as equal.
inline bool SameNumber(double left, double right) {
    if (std::isnan(left) || std::isnan(right)) return std::isnan(left) && std::isnan(right);
    return std::bit_cast<std::uint64_t>(left) == std::bit_cast<std::uint64_t>(right);
}

/// A double of any kind: an ordinary one, a special one, or any eight bytes.
inline double TakeDouble(FuzzedDataProvider& input) {
    using Limits = std::numeric_limits<double>;
    constexpr std::array nasty{0.0,
                               -0.0,
                               1.0,
                               Limits::denorm_min(),
                               Limits::min(),
                               Limits::epsilon(),
                               Limits::max(),
                               Limits::lowest(),
                               1e154,
                               1e-160,
                               999999999.0,
                               2147483647.5,
                               -2147483648.5,
                               Limits::infinity(),
                               -Limits::infinity(),
                               Limits::quiet_NaN()};
    switch (input.ConsumeIntegralInRange(0, 3)) {
    case 0:
        return input.PickValueInArray(nasty);
    case 1:
        return std::bit_cast<double>(input.ConsumeIntegral<std::uint64_t>());
    case 2:
        return input.ConsumeIntegralInRange(-40000, 40000) / 16.0;
    default:
        return input.ConsumeFloatingPointInRange(-1000.0, 1000.0);
    }
}
