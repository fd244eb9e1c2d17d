#include "tools/manual/Manual.h"

#include "tools/cli/Tool.h"

#include <sstream>

namespace qmv40::manual {

cli::CommandDescription DescribeTool() {
    std::ostringstream nowhere;
    const text::Console console{nowhere, nowhere};
    return cli::MakeTool(console)->Describe();
}

} // namespace qmv40::manual
