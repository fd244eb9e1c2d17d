#include "tools/settings/Complaint.h"

namespace qmv40::settings {

void PrintComplaints(const std::vector<Complaint>& complaints, std::ostream& out) {
    for (const Complaint& each : complaints) {
        out << "  ";
        if (each.line) out << "line " << *each.line << ": ";
        if (!each.about.empty()) out << '"' << each.about << "\" ";
        out << each.problem << ".\n    " << each.remedy << '\n';
    }
}

text::Json ComplaintsJson(const std::vector<Complaint>& complaints) {
    text::Json documents = text::Json::Array();
    for (const Complaint& each : complaints) {
        documents.PushBack({{"line", each.line ? text::Json(*each.line) : text::Json()},
                            {"about", each.about},
                            {"problem", each.problem},
                            {"remedy", each.remedy}});
    }
    return documents;
}

} // namespace qmv40::settings
