// Reads any bytes as the settings file. Laws:
// - a query answers with a value, with "too small a buffer" or with "not there", and a second query answers the same; a
//   buffer that is too small is not written, and one of the length that the query names is large enough;
// - the readers of the fourteen settings give the stored number or the built-in one, by the documented rules, which are
//   written here a second time with the queries alone;
// - a value that a second, independent writer puts into the file reads back, whatever is in the lines before it, and
//   whatever follows that names no key and no value.

#include "Support.h"

#include "platform/SettingsStore.h"
#include "settings/FixedHeadOffsets.h"

#include <utility>
#include <vector>

using namespace qmv40;

namespace {

constexpr const char* key = R"(Software\Hollbeck\VRX Software\QMV40Calculator)";

const std::string& StoreName() {
    static const ScratchFolder folder;
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

using Triple = std::array<double, 3>;

struct OffsetRule {
    HeadOffset offset;
    int selector;
    std::array<const char*, 3> names;
    Triple defaults;
    Triple mirror;
};

constexpr std::array driveCup{"Head Centre To Drive Cup X Offset", "Head Centre To Drive Cup Y Offset",
                              "Head Centre To Drive Cup Z Offset"};
constexpr std::array leverCentre{"Head Centre To Lever Centre X Offset", "Head Centre To Lever Centre Y Offset",
                                 "Head Centre To Lever Centre Z Offset"};
constexpr std::array ballCentre{"Lever Centre To Ball Centre X Offset", "Lever Centre To Ball Centre Y Offset",
                                "Lever Centre To Ball Centre Z Offset"};
constexpr std::array unlocking{"Locked To Unlocked X Offset", "Locked To Unlocked Y Offset",
                               "Locked To Unlocked Z Offset"};

const OffsetRule offsetRules[] = {
    {HeadOffset::HeadCentreToDriveCup, 0, driveCup, {-6.95, 24.0, -11.5}, {1, 1, 1}},
    {HeadOffset::HeadCentreToLeverCentre, 0, leverCentre, {30.3, 0.0, -32.25}, {1, 1, 1}},
    {HeadOffset::HeadCentreToLeverCentre, 1, leverCentre, {30.3, 0.0, -32.25}, {-1, 1, 1}},
    {HeadOffset::LeverCentreToBallCentre, 0, ballCentre, {0.0, -19.3, -4.3}, {1, 1, 1}},
    {HeadOffset::LeverCentreToBallCentre, 1, ballCentre, {0.0, -19.3, -4.3}, {1, -1, 1}},
    {HeadOffset::LockedToUnlocked, 0, unlocking, {0.0, 0.0, -1.5}, {1, 1, 1}},
};

struct RotationRule {
    HeadOffset offset;
    const char* name;
    double defaultValue;
};
const RotationRule rotationRules[] = {
    {HeadOffset::UnlockingRotation, "Locked To Unlocked Lever Rotation", 135.0},
    {HeadOffset::LockingRotation, "UnLocked To locked Lever Rotation", 138.0},
};

/// `plenty`: the size of a buffer that is large enough for every value in the file.
void PromiseDocumentedOffsets(std::size_t plenty) {
    const SettingsKey opened(key);
    const SettingsKey openedAgain(key);
    for (const OffsetRule& rule : offsetRules) {
        const FixedOffset offset = ReadFixedOffset(rule.offset, rule.selector);
        const Triple found{offset.x, offset.y, offset.z};
        DocumentedReader reader(opened);
        for (std::size_t i = 0; i < found.size(); ++i) {
            PromiseSoundQueries(opened, openedAgain, rule.names[i], plenty);
            const double expected = rule.mirror[i] * reader.Read(rule.names[i], rule.defaults[i]);
            Promise(SameNumber(found[i], expected), "an offset is the stored number or the built-in one, by the rules");
        }
    }
    for (const RotationRule& rule : rotationRules) {
        PromiseSoundQueries(opened, openedAgain, rule.name, plenty);
        const double expected = DocumentedReader(opened).Read(rule.name, rule.defaultValue);
        Promise(SameNumber(ReadFixedRotation(rule.offset), expected),
                "a rotation is the stored number or the built-in one, by the rules");
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
            // Lines of bytes are broken where an exporting editor would break them.
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
    const std::string name = input.PickValueInArray({driveCup[0], rotationRules[1].name});
    const std::string text = TakeText(input);
    std::string before = input.ConsumeRandomLengthString();
    std::string after = WithoutMeaning(input.ConsumeRemainingBytesAsString());
    if (writing.IsWide()) before.resize(before.size() / 2 * 2); // whole units

    const std::string end = writing.lineEnd;
    WriteFile(StoreName(),
              writing.Mark() +
                  writing.Encoded((writing.isOldFormat ? "REGEDIT4" : "Windows Registry Editor Version 5.00") + end) +
                  before + writing.Encoded(end + "[HKEY_LOCAL_MACHINE\\" + key + "]" + end) +
                  writing.Encoded("\"" + name + "\"=" + writing.Value(text) + end) + after);
    constexpr std::size_t plenty = 255;
    const Answer answer = Query(SettingsKey(key), name.c_str(), plenty);
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
