#pragma once

#include <string>

/// The C library's locale as a host may have set it, for the length of a scope.
class HostLocale {
public:
    enum class Language {
        German, ///< a comma for the decimal point, a point between thousands
        Turkish ///< the same, and letters I and i that are no pair
    };
    static constexpr Language all[] = {Language::German, Language::Turkish};

    /// Throws when this machine does not have it: a test must not pass with another one.
    explicit HostLocale(Language language);
    HostLocale(const HostLocale&) = delete;
    HostLocale& operator=(const HostLocale&) = delete;
    ~HostLocale();

    /// Its name for setlocale.
    const std::string& Name() const noexcept { return name; }

private:
    std::string before;
    std::string name;
};
