#pragma once

#include "hosts/Platform.h"

/// Prints `what` and remembers the failure unless `holds`.
void Expect(bool holds, const char* what, long detail = 0);
/// The exit code of the program: 0 if all expectations were met.
int Verdict();

/// The component, loaded from the folder of the program.
class Server {
public:
    Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    ~Server();

    /// A new calculator. The caller releases it.
    IQMVCalculator2* Create() const;
    HRESULT CanUnloadNow() const;
    HMODULE Module() const { return module; }

private:
    HMODULE module;
};

/// An array of records, created by the platform, with points of a head with its centre at (100, -200, 300), mounted
/// turned by 10 degrees: A turned from 0 to 90 with B at 45, or B from -180 to 90 with A at 60.
class AlignmentPoints {
public:
    enum Axis { A, B };

    explicit AlignmentPoints(Axis axis);
    AlignmentPoints(const AlignmentPoints&) = delete;
    AlignmentPoints& operator=(const AlignmentPoints&) = delete;
    ~AlignmentPoints();

    SAFEARRAY** Address() { return &array; }

private:
    SAFEARRAY* array;
};

/// A file name of this process and `number`, in the folder for temporary files. The file is deleted at the end.
class FileName {
public:
    explicit FileName(int number);
    FileName(const FileName&) = delete;
    FileName& operator=(const FileName&) = delete;
    ~FileName();

    BSTR* Address() { return &text; }

private:
    BSTR text;
};

/// The code that a call of CalculateMove threw, 0 for none. Counts the objects that the exception destroyed.
HRESULT ThrownByCalculateMove(IQMVCalculator2& calculator, double a, double b, RequiredMoves* moves);
/// The number of objects that exceptions have destroyed so far, in all threads.
long ObjectsDestroyed();

/// Whether the thread's error record has this description. Removes the record.
bool RecordSays(const wchar_t* description);
