' cscript //nologo plan.vbs <geometry file> [qmv40.exe]: plans an indexing.
'
' Scripts cannot use records, so this one cannot read the plan. CalculateMove as a statement checks the target and sets
' the current position. qmv40.exe, the named one or the one in the PATH, prints the numbers of the moves.
Option Explicit

Dim files, head, tool
If WScript.Arguments.Count < 1 Or WScript.Arguments.Count > 2 Then WScript.Quit 2
tool = "qmv40"
If WScript.Arguments.Count = 2 Then tool = WScript.Arguments(1)

Set files = CreateObject("Scripting.FileSystemObject")
Set head = CreateObject("QMV.QMVCalculator.1")
' The component would look for a relative name in the Windows folder.
head.LoadHeadGeometryFromFile files.GetAbsolutePathName(WScript.Arguments(0))
head.SetCurrentHeadPosition 0, 0

On Error Resume Next
head.CalculateMove 50, 90 ' 50 is not a multiple of 15
If Err.Number <> 0 Then
    WScript.Echo "refused 0x" & Hex(Err.Number) & ": " & Err.Description
End If
On Error GoTo 0

ShowCurrentPosition
head.CalculateMove 45, 90
ShowCurrentPosition
ShowMoves "--from 0,0 --to 45,90"

Sub ShowCurrentPosition()
    Dim a, b
    a = 0.0
    b = 0.0
    head.GetCurrentHeadPosition a, b
    WScript.Echo "position " & ThreeDecimals(a) & " " & ThreeDecimals(b)
End Sub

' Runs the tool and shows its table: Plan, Move, Name, Kind, the numbers of a point or an arc, and more.
Sub ShowMoves(angles)
    Dim table, command, reader, columns, text, i
    table = files.BuildPath(files.GetSpecialFolder(2), files.GetTempName) ' 2: the temporary folder
    command = Quoted(tool) & " move --geometry " & Quoted(files.GetAbsolutePathName(WScript.Arguments(0))) & " " & angles
    CreateObject("WScript.Shell").Run "cmd /c """ & command & " --csv >" & Quoted(table) & """", 0, True
    Set reader = files.OpenTextFile(table)
    reader.ReadLine ' the names of the columns
    Do Until reader.AtEndOfStream
        columns = Split(reader.ReadLine, ",")
        text = columns(1) & " " & columns(2)
        For i = 4 To 10
            If columns(i) <> "" Then text = text & " " & ThreeDecimals(NumberIn(columns(i)))
        Next
        WScript.Echo text
    Loop
    reader.Close
    files.DeleteFile table
End Sub

Function Quoted(name)
    Quoted = """" & name & """"
End Function

' A number with a decimal point, with all regional settings.
Function NumberIn(text)
    Dim decimalMark
    decimalMark = Mid(CStr(1.5), 2, 1)
    NumberIn = CDbl(Replace(text, ".", decimalMark))
End Function

' Three decimals after a decimal point, with all regional settings.
Function ThreeDecimals(number)
    Dim thousandths, digits, sign
    thousandths = Int(number * 1000 + 0.5)
    sign = ""
    If thousandths < 0 Then sign = "-"
    digits = CStr(Abs(thousandths))
    Do While Len(digits) < 4
        digits = "0" & digits
    Loop
    ThreeDecimals = sign & Left(digits, Len(digits) - 3) & "." & Right(digits, 3)
End Function
