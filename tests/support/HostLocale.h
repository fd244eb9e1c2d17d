#pragma once

#include <string>

/// Sets the locale of the C library, as a host program may, until the end of the scope.
class HostLocale {
public:
    enum class Language {
        German, ///< a decimal comma, and points between thousands
        Turkish ///< the same, and the letters I and i are not a pair
    };
    static constexpr Language all[] = {Language::German, Language::Turkish};

    /// Throws if this machine does not have the locale: a test must not pass with another one.
    explicit HostLocale(Language language);
    HostLocale(const HostLocale&) = delete;
    HostLocale& operator=(const HostLocale&) = delete;
    ~HostLocale();

    /// The name of the locale for setlocale.
    const std::string& Name() const noexcept { return name; }

private:
    std::string before;
    std::string name;
};
