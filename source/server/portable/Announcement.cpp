// Makes the module's class creatable when the library is loaded. There is no registry of classes on this system.

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
