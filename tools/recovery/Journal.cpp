#include "tools/recovery/Journal.h"

#include "tools/plans/HeadAnglesText.h"
#include "tools/text/Failures.h"
#include "tools/text/Files.h"

#include <sstream>

namespace qmv40::recovery {

namespace {

struct Line {
    bool isBegun; ///< "before": the move is about to begin
    std::size_t number;
    model::HeadAngles from;
    model::HeadAngles to;
};

bool IsSame(const model::HeadAngles& left, const model::HeadAngles& right) {
    return left.a == right.a && left.b == right.b;
}

bool IsTerminated(const std::string& text) { return text.ends_with(';') || text.ends_with(";\r"); }

std::optional<Line> ParseLine(const std::string& text) {
    if (!IsTerminated(text)) return std::nullopt;
    std::istringstream words(text.substr(0, text.rfind(';')));
    std::string when, number, from, start, to, target, more;
    words >> when >> number >> from >> start >> to >> target;
    if (words.fail() || words >> more || (when != "before" && when != "after") || from != "from" || to != "to") {
        return std::nullopt;
    }
    const auto move = plans::ParseMoveNumber(number);
    const auto startAngles = plans::ParseHeadAngles(start);
    const auto targetAngles = plans::ParseHeadAngles(target);
    if (!move || !startAngles || !targetAngles) return std::nullopt;
    return Line{when == "before", *move, *startAngles, *targetAngles};
}

/// Reads the lines one after the other and compares each with the one before.
class Reader {
public:
    explicit Reader(const std::string& theFile) : file(theFile) {}

    void Read(const std::string& content) {
        std::istringstream lines(content);
        for (std::string text; std::getline(lines, text);) {
            const bool isCut = lines.eof() || !IsTerminated(text);
            const bool isLast = lines.eof() || lines.peek() == std::istringstream::traits_type::eof();
            if (isTorn = isLast && isCut; isTorn) return;
            ++lineNumber;
            const auto line = ParseLine(text);
            if (!line)
                Refuse("is not a line of a journal. A line of a journal is, for example: before 9 from 0,0 to 45,90;");
            Take(*line);
        }
    }

    Journal For(const model::HeadAngles& from, const model::HeadAngles& to) const {
        if (!last) return {{}, isTorn};
        if (!IsSame(last->from, from) || !IsSame(last->to, to)) {
            Refuse("belongs to the plan from " + plans::HeadAnglesText(last->from) + " to " +
                   plans::HeadAnglesText(last->to) + ", but the command asks about the plan from " +
                   plans::HeadAnglesText(from) + " to " + plans::HeadAnglesText(to));
        }
        const auto kind = last->isBegun ? KnownMove::Kind::During : KnownMove::Kind::After;
        // After a "before" line usually comes the "after" line of the same move. Therefore a torn line is taken for the
        // report that the move ended.
        return {{kind, last->number, last->isBegun && isTorn}, isTorn};
    }

private:
    [[noreturn]] void Refuse(const std::string& reason) const { throw text::InputError{file, lineNumber, reason}; }

    void Take(const Line& line) {
        const bool isSamePlan = last && IsSame(last->from, line.from) && IsSame(last->to, line.to);
        const std::string number = std::to_string(line.number);
        const bool endsTheMoveBefore = isSamePlan && last->isBegun && last->number == line.number;
        if (!line.isBegun && !endsTheMoveBefore) {
            Refuse("move " + number + " ends here, but the line before is not its beginning");
        }
        // After a stop, or in a way out, the same move or an earlier one can begin again.
        const std::size_t latest = last && !last->isBegun ? last->number + 1 : last ? last->number : plans::moveCount;
        if (line.isBegun && isSamePlan && line.number > latest) {
            Refuse("move " + number + " begins here, but the journal does not contain the end of the move before it");
        }
        last = line;
    }

    const std::string& file;
    std::size_t lineNumber = 0; ///< of the line that is being read, later of the last whole one
    std::optional<Line> last;
    bool isTorn = false;
};

} // namespace

Journal ReadJournal(const std::string& fileName, const model::HeadAngles& from, const model::HeadAngles& to) {
    Reader reader(fileName);
    reader.Read(text::ReadWholeFile(fileName));
    return reader.For(from, to);
}

} // namespace qmv40::recovery
