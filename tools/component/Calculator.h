#pragma once

#include "interface/IQMVCalculator.h"
#include "platform/ComPointer.h"
#include "tools/model/HeadAngles.h"

#include <span>
#include <string>

namespace qmv40::component {

/// The component, used through its public interface. Every failure that the component reports is thrown as
/// ComponentError.
class Calculator {
public:
    Calculator();

    void EnterHeadGeometry(std::span<const HeadAlignmentDataItem> aAxisPoints,
                           std::span<const HeadAlignmentDataItem> bAxisPoints);
    /// Throws InputError when the file is not there.
    void LoadHeadGeometry(const std::string& fileName);
    /// Throws InputError when the component cannot be given a name for the file.
    void SaveHeadGeometry(const std::string& fileName);

    void SetCurrentHeadPosition(const model::HeadAngles& angles);
    model::HeadAngles CurrentHeadPosition();
    /// Plans the indexing to `target`, which becomes the current position.
    RequiredMoves CalculateMove(const model::HeadAngles& target);
    XYZData StartPosition();
    XYZData PoleSpherePosition();

private:
    ComPointer<IQMVCalculator2> component;
};

} // namespace qmv40::component
