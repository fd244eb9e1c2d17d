#pragma once

/// The identifiers in the code and the registry entries of clients. They are written here a second time, so that a
/// change in the headers or in the type library is detected.
struct RequiredIdentifier {
    const char* name; ///< as in the type library
    const char* text;
};

inline constexpr RequiredIdentifier requiredIdentifiers[] = {
    {"QMVCalculator", "5B2E9C41-7A3D-4F6E-9B12-3C8D4E7F1A26"},
    {"CoQMV40CalculatorLib", "8E4F2A17-3B6C-4D59-A2E8-71F0C3B9D645"},
    {"IQMVCalculator", "2C7D91E3-6F4A-4B28-8D35-9E1A7C0B4F52"},
    {"IQMVCalculator2", "6A3E5F82-1D9B-4C47-B6E0-58F2D7A1C93E"},
    {"XYZData", "7F1C3A95-5E82-4D06-9C4A-B3E8D1F60274"},
    {"ArcData", "4E6A2D18-C3B7-4F91-85D2-9A0E7B3C6F41"},
    {"HeadAlignmentDataItem", "B8D5F047-2A69-4C3E-9F18-E7C2A45D0B93"},
    {"RequiredMoves", "0D4B8E61-92C5-4A7F-8E3B-16A9F2C7D058"},
};
