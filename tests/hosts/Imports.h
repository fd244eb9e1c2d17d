#pragma once

/// During a scope, a loaded module calls another function instead of one that it imports by name.
class ReplacedImport {
public:
    ReplacedImport(void* module, const char* function, void* replacement);
    ReplacedImport(const ReplacedImport&) = delete;
    ReplacedImport& operator=(const ReplacedImport&) = delete;
    ~ReplacedImport();

    /// False if the module imports no such function.
    bool IsDone() const { return place != nullptr; }

private:
    void Put(void* function);

    void** place;
    void* before;
};
