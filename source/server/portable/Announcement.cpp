// Announces the module's class when the library is loaded, because this system has no registry of classes.

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
