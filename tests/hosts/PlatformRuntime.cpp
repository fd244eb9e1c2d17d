// The parts of the platform's compiler library that this program needs, because the library is not available: the
// virtual table of type descriptors, the mark of floating point, and the entry point.

extern "C" {
extern const void* const tableOfTypes[1] __asm__("??_7type_info@@6B@");
const void* const tableOfTypes[1] = {nullptr};
int _fltused = 1;

void exit(int);
int __getmainargs(int*, char***, char***, int, int*);
void mainCRTStartup();
}

int HostMain(int count, char** arguments);

void mainCRTStartup() {
    int count = 0;
    int newMode = 0;
    char** arguments = nullptr;
    char** environment = nullptr;
    __getmainargs(&count, &arguments, &environment, 0, &newMode);
    exit(HostMain(count, arguments));
}
