#include "cli/Complaint.h"

void PrintComplaints(const std::vector<Complaint>& complaints, std::ostream& out) {
    for (const Complaint& each : complaints) {
        out << "  ";
        if (each.line) out << "line " << *each.line << ": ";
        if (!each.about.empty()) out << '"' << each.about << "\" ";
        out << each.problem << ".\n    " << each.remedy << '\n';
    }
}

Json ComplaintsJson(const std::vector<Complaint>& complaints) {
    Json documents = Json::array();
    for (const Complaint& each : complaints) {
        documents.push_back({{"line", each.line ? Json(*each.line) : Json()},
                             {"about", each.about},
                             {"problem", each.problem},
                             {"remedy", each.remedy}});
    }
    return documents;
}
