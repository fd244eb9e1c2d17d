// cscript //nologo plan.js <geometry file> [qmv40.exe]: plans an indexing.
//
// Scripts cannot use records, and JScript passes every argument by value: the script can read neither the plan nor the
// head's position, but it can read failures. So it stores the position itself (a refused target does not change it),
// and gets the numbers of the moves from qmv40.exe: the named one, or the one in the PATH.

var files = new ActiveXObject("Scripting.FileSystemObject");

function hexadecimal(code) {
    return "0x" + (code >>> 0).toString(16).toUpperCase();
}

function threeDecimals(number) {
    return (Math.floor(number * 1000 + 0.5) / 1000).toFixed(3);
}

function quoted(name) {
    return '"' + name + '"';
}

function showPosition(position) {
    WScript.Echo("position " + threeDecimals(position[0]) + " " + threeDecimals(position[1]));
}

// Runs the tool and shows its table: Plan, Move, Name, Kind, the numbers of a point or an arc, and more.
function showMoves(tool, geometryFile, from, to) {
    var table = files.BuildPath(files.GetSpecialFolder(2), files.GetTempName()); // 2: the temporary folder
    var command = quoted(tool) + " move --geometry " + quoted(geometryFile) + " --from " + from + " --to " + to;
    new ActiveXObject("WScript.Shell").Run('cmd /c "' + command + " --csv >" + quoted(table) + '"', 0, true);
    var reader = files.OpenTextFile(table);
    reader.ReadLine(); // the names of the columns
    while (!reader.AtEndOfStream) {
        var columns = reader.ReadLine().split(",");
        var text = columns[1] + " " + columns[2];
        for (var i = 4; i <= 10; ++i) {
            if (columns[i] !== "") text += " " + threeDecimals(parseFloat(columns[i]));
        }
        WScript.Echo(text);
    }
    reader.Close();
    files.DeleteFile(table);
}

function plan(geometryFile, tool) {
    var head = new ActiveXObject("QMV.QMVCalculator.1");
    var start = [0, 0];
    var target = [45, 90];
    head.LoadHeadGeometryFromFile(geometryFile);
    head.SetCurrentHeadPosition(start[0], start[1]);
    try {
        head.CalculateMove(50, 90); // 50 is not a multiple of 15
    } catch (failure) {
        WScript.Echo("refused " + hexadecimal(failure.number) + ": " + failure.description);
    }
    showPosition(start);
    head.CalculateMove(target[0], target[1]);
    showPosition(target);
    showMoves(tool, geometryFile, start, target);
}

if (WScript.Arguments.length < 1 || WScript.Arguments.length > 2) WScript.Quit(2);
// The component would look for a relative name in the Windows folder.
plan(files.GetAbsolutePathName(WScript.Arguments(0)), WScript.Arguments.length > 1 ? WScript.Arguments(1) : "qmv40");
