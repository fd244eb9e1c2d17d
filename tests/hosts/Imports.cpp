#include "hosts/Imports.h"

#include "hosts/Platform.h"

namespace {

// Offsets in bytes in a loaded module (Portable Executable format), from the platform's documentation.
constexpr DWORD placeOfHeader = 0x3C;
constexpr DWORD imports = 24 + (sizeof(void*) == 8 ? 120 : 104); // counted from the header
constexpr DWORD namesOfModule = 0;                               // counted from a module's entry
constexpr DWORD nameOfModule = 12;
constexpr DWORD addressesOfModule = 16;
constexpr DWORD sizeOfEntry = 20;
constexpr DWORD hintBeforeName = 2;
constexpr Size byNumber = Size{1} << (8 * sizeof(Size) - 1); // the flag of an import by number, which has no name

/// The entry of the module's import table with the address of the function.
void** ImportOf(void* module, const char* function) {
    unsigned char* const image = static_cast<unsigned char*>(module);
    const auto word = [image](DWORD place) { return *reinterpret_cast<const unsigned int*>(image + place); };
    for (DWORD entry = word(word(placeOfHeader) + imports); word(entry + nameOfModule) != 0; entry += sizeOfEntry) {
        const auto* name = reinterpret_cast<const Size*>(image + word(entry + namesOfModule));
        auto* address = reinterpret_cast<void**>(image + word(entry + addressesOfModule));
        for (; *name != 0; ++name, ++address) {
            if ((*name & byNumber) == 0 &&
                strcmp(reinterpret_cast<const char*>(image + *name + hintBeforeName), function) == 0)
                return address;
        }
    }
    return nullptr;
}

} // namespace

ReplacedImport::ReplacedImport(void* module, const char* function, void* replacement)
    : place(ImportOf(module, function)), before(place == nullptr ? nullptr : *place) {
    Put(replacement);
}

ReplacedImport::~ReplacedImport() { Put(before); }

void ReplacedImport::Put(void* function) {
    constexpr DWORD readAndWrite = 4; // PAGE_READWRITE
    DWORD protection = 0;
    if (place == nullptr) return;
    VirtualProtect(place, sizeof *place, readAndWrite, &protection);
    *place = function;
    VirtualProtect(place, sizeof *place, protection, &protection);
}
