#include "interface/Identifiers.h"
#include "tests/support/RequiredIdentifiers.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <string>

namespace {

std::string TextOf(const GUID& guid) {
    char text[40];
    const auto& d = guid.Data4;
    std::snprintf(text, sizeof text, "%08lX-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X",
                  static_cast<unsigned long>(guid.Data1), guid.Data2, guid.Data3, d[0], d[1], d[2], d[3], d[4], d[5],
                  d[6], d[7]);
    return text;
}

TEST(Identifiers, OfTheHeadersAreTheRequiredOnes) {
    const std::map<std::string, GUID> declared{{"QMVCalculator", CLSID_QMVCalculator},
                                               {"CoQMV40CalculatorLib", LIBID_CoQMV40CalculatorLib},
                                               {"IQMVCalculator", IID_IQMVCalculator},
                                               {"IQMVCalculator2", IID_IQMVCalculator2},
                                               {"XYZData", GUID_XYZData},
                                               {"ArcData", GUID_ArcData},
                                               {"HeadAlignmentDataItem", GUID_HeadAlignmentDataItem},
                                               {"RequiredMoves", GUID_RequiredMoves}};
    for (const auto& [name, text] : requiredIdentifiers) EXPECT_EQ(TextOf(declared.at(name)), text) << name;
}

TEST(Identifiers, OfTheProgramsAreTheRequiredOnes) {
    EXPECT_STREQ(QMVCalculatorProgId, L"QMV.QMVCalculator.1");
    EXPECT_STREQ(QMVCalculatorVersionIndependentProgId, L"QMV.QMVCalculator");
}

} // namespace
