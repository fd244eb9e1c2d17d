// What the platform's compiler finds in its own library, which is not here: the table that descriptions of types point
// to, the mark of floating point, and the start of the program.

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
