#include "tools/plans/MoveTable.h"

#include "tools/plans/HeadAnglesText.h"
#include "tools/plans/PlannedMove.h"
#include "tools/plans/TurnInWords.h"
#include "tools/text/Numbers.h"
#include "tools/text/Table.h"

namespace qmv40::plans {

namespace {

constexpr int lengthDecimals = 4;
constexpr int axisDecimals = 6;
constexpr std::size_t nameColumn = 1;

std::string Listed(const model::Vector3& vector, int decimals) {
    return text::FixedText(vector.x, decimals) + ", " + text::FixedText(vector.y, decimals) + ", " +
           text::FixedText(vector.z, decimals);
}

void AddArcNotes(text::Table& table, const ArcData& arc, const std::optional<model::Vector3>& start) {
    table.AddNote(nameColumn, "  " + TurnInWords(arc, start));
    table.AddNote(nameColumn, "  about (" + Listed(OriginOf(arc), lengthDecimals) + ") along (" +
                                  Listed(RotationVectorOf(arc), axisDecimals) + ")");
}

void AddMove(text::Table& table, const PlacedMove& placed) {
    const Move& move = AllMoves()[IndexOf(placed.move.id)];
    const auto coordinate = [&](double model::Vector3::*axis) {
        return placed.end ? text::FixedText((*placed.end).*axis, lengthDecimals) : std::string("unknown");
    };
    table.AddRow({std::to_string(NumberOf(move.id)), move.name, coordinate(&model::Vector3::x),
                  coordinate(&model::Vector3::y), coordinate(&model::Vector3::z), move.purpose});
    if (const auto* const arc = std::get_if<ArcData>(&placed.move.data)) AddArcNotes(table, *arc, placed.start);
}

/// A comma and the number, for each value.
std::string CsvFields(std::initializer_list<double> values) {
    std::string text;
    for (const double value : values) text.append(",").append(text::ExactText(value));
    return text;
}

std::string CsvRecord(const XYZData& end) {
    return ",straight" + CsvFields({end.XPosition, end.YPosition, end.ZPosition}) + ",,,,";
}

std::string CsvRecord(const ArcData& arc) {
    return ",arc" + CsvFields({arc.XOrigin, arc.YOrigin, arc.ZOrigin, arc.iRotationVector, arc.jRotationVector,
                               arc.kRotationVector, arc.RotationAngle});
}

std::string CsvPlace(const std::optional<model::Vector3>& place) {
    return place ? CsvFields({place->x, place->y, place->z}) : ",,,";
}

std::string CsvMove(const PlacedMove& placed) {
    const PlannedMove& move = placed.move;
    return std::to_string(NumberOf(move.id)) + ',' + NameOf(move.id) +
           std::visit([](const auto& record) { return CsvRecord(record); }, move.data) + CsvPlace(placed.start) +
           CsvPlace(placed.end);
}

} // namespace

void PrintMoveTable(std::span<const PlacedMove> moves, const text::Console& console) {
    text::Table table({{"#"},
                       {"Move", text::Table::Align::Left},
                       {"to X (mm)"},
                       {"to Y (mm)"},
                       {"to Z (mm)"},
                       {"What the machine does", text::Table::Align::Left}});
    for (const PlacedMove& placed : moves) AddMove(table, placed);
    table.Print(console);
}

std::string PlanTitle(const Plan& plan, std::size_t index, std::size_t count) {
    return "Plan" + (count == 1 ? "" : " " + std::to_string(index + 1)) + ": from " + HeadAnglesText(plan.from) +
           " to " + HeadAnglesText(plan.to) + " (deg)";
}

void PrintMoveTables(std::span<const Plan> plans, const text::Console& console) {
    for (std::size_t i = 0; i < plans.size(); ++i) {
        console.out << (i == 0 ? "" : "\n") << console.Strong(PlanTitle(plans[i], i, plans.size())) << "\n\n";
        PrintMoveTable(PlacedMoves(plans[i].moves), console);
    }
    console.out << "\nX, Y, Z are where a move ends. A move without a turn goes there straight. A turn is about the\n"
                   "axis through the first point, mm, along the direction.\n";
}

void PrintMovesAsCsv(std::span<const Plan> plans, const text::Console& console) {
    console.out << "Plan,Move,Name,Kind,X,Y,Z,i,j,k,RotationAngle,StartX,StartY,StartZ,EndX,EndY,EndZ\n";
    std::size_t planNumber = 0;
    for (const Plan& plan : plans) {
        ++planNumber;
        for (const PlacedMove& placed : PlacedMoves(plan.moves)) {
            console.out << std::to_string(planNumber) << ',' << CsvMove(placed) << '\n';
        }
    }
}

} // namespace qmv40::plans
