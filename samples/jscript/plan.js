// cscript //nologo plan.js <geometry file>: plans an indexing.
//
// A script has no records, and JScript hands every argument over by value: neither the plan nor the head's position can
// be read back here, failures can. qmv40.exe gives scripts the moves as text.

function hexadecimal(code) {
    return "0x" + (code >>> 0).toString(16).toUpperCase();
}

function plan(geometryFile) {
    var files = new ActiveXObject("Scripting.FileSystemObject");
    var head = new ActiveXObject("QMV.QMVCalculator.1");
    // A relative name would mean the Windows folder to the component.
    head.LoadHeadGeometryFromFile(files.GetAbsolutePathName(geometryFile));
    head.SetCurrentHeadPosition(0, 0);
    try {
        head.CalculateMove(50, 90); // not a step of 15 degrees
    } catch (failure) {
        WScript.Echo("refused " + hexadecimal(failure.number) + ": " + failure.description);
    }
    head.CalculateMove(45, 90);
}

if (WScript.Arguments.length != 1) WScript.Quit(2);
plan(WScript.Arguments(0));
