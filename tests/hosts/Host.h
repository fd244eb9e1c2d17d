#pragma once

#include "hosts/Platform.h"

/// Prints `what` and remembers the failure unless `holds`.
void Expect(bool holds, const char* what, long detail = 0);
/// What the program returns: 0 when everything that was expected held.
int Verdict();

/// The component loaded from beside the program.
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

/// An array of records as the platform makes it, filled with points of a head that is mounted turned by 10 degrees at
/// (100, -200, 300): A turned from 0 to 90 with B at 45, or B from -180 to 90 with A at 60.
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

/// What one call of CalculateMove threw, 0 for nothing; counts the objects that were destroyed on the way to the catch.
HRESULT ThrownByCalculateMove(IQMVCalculator2& calculator, double a, double b, RequiredMoves* moves);
/// How many objects the call above has destroyed so far, on all threads.
long ObjectsDestroyed();

/// Whether the thread's error record has this description. Takes the record.
bool RecordSays(const wchar_t* description);
