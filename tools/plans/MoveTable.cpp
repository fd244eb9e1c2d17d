#include "tools/plans/MoveTable.h"

#include "tools/plans/HeadAnglesText.h"
#include "tools/plans/Moves.h"
#include "tools/text/Numbers.h"
#include "tools/text/Table.h"

namespace qmv40::plans {

namespace {

constexpr int lengthDecimals = 4;
constexpr std::size_t pathColumn = 2;

void AddMove(text::Table& table, std::size_t number, const Move& move, const RequiredMoves& moves) {
    const std::string head = std::to_string(number);
    const auto addRow = [&](const char* path, double x, double y, double z) {
        table.AddRow({head, move.name, path, text::FixedText(x, lengthDecimals), text::FixedText(y, lengthDecimals),
                      text::FixedText(z, lengthDecimals), move.purpose});
    };
    std::visit(ForKind{[&](XYZData RequiredMoves::*field) {
                           const XYZData& end = moves.*field;
                           addRow("straight to", end.XPosition, end.YPosition, end.ZPosition);
                       },
                       [&](ArcData RequiredMoves::*field) {
                           const ArcData& arc = moves.*field;
                           addRow("arc about", arc.XOrigin, arc.YOrigin, arc.ZOrigin);
                           table.AddNote(pathColumn, TurnInWords(arc));
                       }},
               move.field);
}

std::string CsvFields(const char* kind, std::initializer_list<double> values) {
    std::string text = kind;
    for (const double value : values) text.append(",").append(text::ExactText(value));
    return text;
}

std::string CsvPosition(const XYZData& end) {
    return CsvFields("straight", {end.XPosition, end.YPosition, end.ZPosition}) + ",,,,";
}

std::string CsvArc(const ArcData& arc) {
    return CsvFields("arc", {arc.XOrigin, arc.YOrigin, arc.ZOrigin, arc.iRotationVector, arc.jRotationVector,
                             arc.kRotationVector, arc.RotationAngle});
}

std::string CsvMove(const Move& move, const RequiredMoves& moves) {
    return std::visit(ForKind{[&](XYZData RequiredMoves::*field) { return CsvPosition(moves.*field); },
                              [&](ArcData RequiredMoves::*field) { return CsvArc(moves.*field); }},
                      move.field);
}

} // namespace

void PrintMoveTables(std::span<const Plan> plans, const text::Console& console) {
    for (std::size_t i = 0; i < plans.size(); ++i) {
        const std::string number = plans.size() == 1 ? "" : " " + std::to_string(i + 1);
        const std::string title = "Plan" + number + ": from " + HeadAnglesText(plans[i].from) + " to " +
                                  HeadAnglesText(plans[i].to) + " (deg)";
        console.out << (i == 0 ? "" : "\n") << console.Strong(title) << "\n\n";
        text::Table table({{"#"},
                           {"Move", text::Table::Align::Left},
                           {"Path", text::Table::Align::Left},
                           {"X (mm)"},
                           {"Y (mm)"},
                           {"Z (mm)"},
                           {"What the machine does", text::Table::Align::Left}});
        std::size_t moveNumber = 0;
        for (const Move& move : AllMoves()) AddMove(table, ++moveNumber, move, plans[i].moves);
        table.Print(console);
    }
    console.out << "\nAn arc's X, Y, Z are a point on the axis about which the machine's position turns.\n";
}

void PrintMovesAsCsv(std::span<const Plan> plans, const text::Console& console) {
    console.out << "Plan,Move,Name,Kind,X,Y,Z,i,j,k,RotationAngle\n";
    std::size_t planNumber = 0;
    for (const Plan& plan : plans) {
        ++planNumber;
        std::size_t moveNumber = 0;
        for (const Move& move : AllMoves()) {
            console.out << std::to_string(planNumber) << ',' << std::to_string(++moveNumber) << ',' << move.name << ','
                        << CsvMove(move, plan.moves) << '\n';
        }
    }
}

} // namespace qmv40::plans
