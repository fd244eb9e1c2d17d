// Makes the module's class creatable as soon as the library is loaded: there is no registry that would say so.

#include "interface/Identifiers.h"
#include "server/EntryPoints.h"

using namespace qmv40;

namespace {

ClassAnnouncement announcement{CLSID_QMVCalculator, QMVCalculatorProgId, QMVCalculatorVersionIndependentProgId,
                               &DllGetClassObject};

const bool announced = [] {
    AnnounceClass(announcement);
    return true;
}();

} // namespace
