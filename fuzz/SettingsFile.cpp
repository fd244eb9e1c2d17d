// Reads any bytes as the settings file. Laws:
// - a query answers with a value, with "too small a buffer" or with "not there", and a second query answers the same; a
//   buffer that is too small is not written, and one of the length that the query names is large enough;
// - the readers of the fourteen settings give the stored number or the built-in one, by the documented rules, which are
//   written here a second time with the queries alone;
// - a value that a second, independent writer puts into the file reads back, with any lines before it, and with any
//   lines after it that name no key and no value.

#include "Support.h"

#include "platform/SettingsStore.h"
#include "settings/FixedHeadOffsets.h"

#include <utility>
#include <vector>

using namespace qmv40;

namespace {

const std::string& StoreName() {
    static const TemporaryFolder folder;
    static const std::string name = folder.Name("settings.reg");
    static const bool isChosen = ::setenv("QMV40_SETTINGS", name.c_str(), 1) == 0;
    Promise(isChosen, "the settings file can be chosen");
    return name;
}

struct Answer {
    LSTATUS status;
    DWORD type;
    DWORD length;
    std::string bytes; ///< what was copied

    bool operator==(const Answer&) const = default;
};

/// Queries with a buffer of `capacity` bytes on the heap, where the sanitizer detects accesses outside it.
Answer Query(const SettingsKey& opened, const char* name, std::size_t capacity) {
    std::vector<char> buffer(capacity, '#');
    Answer answer{ERROR_SUCCESS, 0xFFFFFFFFU, 0xFFFFFFFFU, {}};
    answer.status = opened.Query(name, buffer, answer.type, answer.length);
    if (answer.status == ERROR_SUCCESS) {
        Promise(answer.length <= capacity, "a query copies no more than the size of the buffer");
        answer.bytes.assign(buffer.data(), answer.length);
    } else {
        Promise(buffer == std::vector<char>(capacity, '#'), "a query without a value does not change the buffer");
    }
    return answer;
}

void PromiseSoundQueries(const SettingsKey& opened, const SettingsKey& openedAgain, const char* name,
                         std::size_t plenty) {
    const Answer answer = Query(opened, name, plenty);
    Promise(answer == Query(openedAgain, name, plenty), "the same query has the same answer");
    if (answer.status != ERROR_SUCCESS) {
        Promise(answer.status == ERROR_FILE_NOT_FOUND,
                "a query with a large buffer finds the value or reports that it is missing");
        Promise(answer.type == REG_NONE && answer.length == 0, "a missing value has no type and no length");
        return;
    }
    Promise(opened.IsOpen(), "a key with a value is open");
    Promise(answer == Query(opened, name, answer.length), "a buffer of the value's length is large enough");
    if (answer.length == 0) return;
    const Answer tooLong = Query(opened, name, answer.length - 1);
    Promise(tooLong.status == ERROR_MORE_DATA, "a buffer that is too small is refused");
    Promise(tooLong.length == answer.length && tooLong.type == answer.type,
            "a refusal gives the needed length and the type");
}

/// The rules of the offsets, written a second time: only texts count, and each may be at most as long as the one
/// before.
class DocumentedReader {
public:
    explicit DocumentedReader(const SettingsKey& theKey) : opened(theKey) {}

    double Read(const char* name, double defaultValue) {
        const Answer answer = Query(opened, name, std::exchange(room, 0));
        const bool isText = answer.type == REG_SZ || answer.type == REG_EXPAND_SZ;
        if (answer.status != ERROR_SUCCESS || !isText) return defaultValue;
        if (answer.length == 0) return 0.0; // an empty text does not begin a number
        if (answer.bytes.find('\0') == std::string::npos) return defaultValue;
        room = answer.length;
        return std::strtod(answer.bytes.c_str(), nullptr); // this program runs in the C locale
    }

private:
    const SettingsKey& opened;
    std::size_t room = 255;
};

/// `plenty`: the size of a buffer that is large enough for every value in the file.
void PromiseDocumentedOffsets(std::size_t plenty) {
    using enum HeadOffset;
    const SettingsKey opened(settingsKeyPath);
    const SettingsKey openedAgain(settingsKeyPath);
    for (const HeadOffset group : {HeadCentreToDriveCup, HeadCentreToLeverCentre, LeverCentreToBallCentre,
                                   LockedToUnlocked, UnlockingRotation, LockingRotation}) {
        for (const int selector : {0, 1}) {
            const FixedOffset offset = ReadFixedOffset(group, selector);
            const double* found[] = {&offset.x, &offset.y, &offset.z};
            DocumentedReader reader(opened);
            for (std::size_t i = 0; const HeadSetting& setting : SettingsOf(group)) {
                PromiseSoundQueries(opened, openedAgain, setting.name, plenty);
                const bool isNegated = selector != 0 && setting.mirror != Mirror::Never;
                const double value = reader.Read(setting.name, setting.builtIn);
                Promise(SameNumber(*found[i++], isNegated ? -value : value),
                        "a setting is the stored number or the built-in one, by the rules");
            }
        }
    }
}

/// The form in which the independent writer writes the file.
struct Writing {
    bool isOldFormat; ///< REGEDIT4: texts in bytes are narrow
    int mark;         ///< the byte-order mark: none, UTF-8, UTF-16 in either order
    int type;         ///< as a quoted text, or as the bytes of one of two types
    const char* lineEnd;

    static Writing Take(FuzzedDataProvider& input) {
        Writing writing{};
        writing.isOldFormat = input.ConsumeBool();
        writing.mark = input.ConsumeIntegralInRange(0, 3);
        writing.type = input.ConsumeIntegralInRange(0, 2);
        writing.lineEnd = input.PickValueInArray({"\r\n", "\n", "\r"});
        return writing;
    }

    bool IsWide() const { return mark >= 2; }

    std::string Encoded(std::string_view ascii) const {
        std::string bytes;
        for (const char c : ascii) {
            if (mark == 3) bytes += '\0';
            bytes += c;
            if (mark == 2) bytes += '\0';
        }
        return bytes;
    }
    std::string Mark() const {
        constexpr const char* marks[] = {"", "\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"};
        return marks[mark];
    }
    std::string Value(std::string_view asciiText) const {
        if (type == 0) return Quoted(asciiText);
        std::string value = type == 1 ? "hex(1):" : "hex(2):";
        for (const char c : std::string(asciiText) + '\0') {
            std::array<char, 8> digits{};
            std::snprintf(digits.data(), digits.size(), isOldFormat ? "%02x," : "%02x,00,", static_cast<unsigned>(c));
            // Long lines of bytes are broken with a backslash, as an exporting editor breaks them.
            if (value.size() - (value.rfind('\\') + 1) > 70) value += std::string("\\") + lineEnd + "  ";
            value += digits.data();
        }
        value.pop_back();
        return value;
    }

private:
    static std::string Quoted(std::string_view text) {
        std::string quoted = "\"";
        for (const char c : text) {
            if (c == '"' || c == '\\') quoted += '\\';
            quoted += c;
        }
        return quoted + '"';
    }
};

/// Bytes that cannot form a heading, a value name or a deletion.
std::string WithoutMeaning(std::string bytes) {
    for (char& c : bytes)
        if (c == '[' || c == '"' || c == '@') c = '#';
    return bytes;
}

/// Printable ASCII, including every character that needs an escape.
std::string TakeText(FuzzedDataProvider& input) {
    std::string text = input.ConsumeRandomLengthString(40);
    for (char& c : text) c = static_cast<char>(' ' + static_cast<unsigned char>(c) % 95U);
    return text;
}

void PromiseReadingBack(FuzzedDataProvider& input) {
    const Writing writing = Writing::Take(input);
    const std::string name = input.PickValueInArray({HeadSettings().front().name, HeadSettings().back().name});
    const std::string text = TakeText(input);
    std::string before = input.ConsumeRandomLengthString();
    std::string after = WithoutMeaning(input.ConsumeRemainingBytesAsString());
    if (writing.IsWide()) before.resize(before.size() / 2 * 2); // whole units

    const std::string end = writing.lineEnd;
    WriteFile(StoreName(),
              writing.Mark() +
                  writing.Encoded((writing.isOldFormat ? "REGEDIT4" : "Windows Registry Editor Version 5.00") + end) +
                  before + writing.Encoded(end + "[HKEY_LOCAL_MACHINE\\" + settingsKeyPath + "]" + end) +
                  writing.Encoded("\"" + name + "\"=" + writing.Value(text) + end) + after);
    constexpr std::size_t plenty = 255;
    const Answer answer = Query(SettingsKey(settingsKeyPath), name.c_str(), plenty);
    Promise(answer.status == ERROR_SUCCESS, "a value of the independent writer is found");
    Promise(answer.type == (writing.type == 2 ? REG_EXPAND_SZ : REG_SZ),
            "a value of the independent writer has its type");
    Promise(answer.bytes == text + '\0', "a value of the independent writer has its text");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    WriteFile(StoreName(), {reinterpret_cast<const char*>(data), size});
    PromiseDocumentedOffsets(2 * size + 16);

    FuzzedDataProvider input(data, size);
    PromiseReadingBack(input);
    return 0;
}
