#include "tools/text/LenientNumber.h"

#include "formats/AsciiText.h"
#include "formats/NumberText.h"
#include "tools/text/Numbers.h"

#include <cmath>

namespace qmv40::text {

namespace {

bool BeginsNumber(std::string_view text) {
    text = ascii::Trimmed(text);
    if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
    if (text.starts_with('.')) text.remove_prefix(1);
    return !text.empty() && text.front() >= '0' && text.front() <= '9';
}

/// Why the component reads another number than a person would; null when both read the same.
const char* Reason(const std::string& text, double value) {
    if (!std::isfinite(value)) return ", which is no length or angle";
    if (!BeginsNumber(text)) return ": it does not begin with a number";
    if (ParseNumber(ascii::Trimmed(text)).problem == nullptr) return nullptr;
    if (text.find(',') != std::string::npos) return ": the decimal mark is a point";
    return ": what follows the number is ignored";
}

} // namespace

LenientNumber ReadLenientNumber(const std::string& text) {
    const double value = qmv40::TextToDouble(text.c_str());
    const bool isNumber = BeginsNumber(text) && std::isfinite(value);
    const char* const reason = Reason(text, value);
    return {value, isNumber, reason == nullptr ? "" : "'" + text + "' reads as " + ExactText(value) + reason};
}

} // namespace qmv40::text
