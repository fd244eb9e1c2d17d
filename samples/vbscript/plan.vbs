' cscript //nologo plan.vbs <geometry file>: plans an indexing.
'
' A script has no records: the plan itself cannot be read here. CalculateMove called as a statement checks the target and
' moves the remembered position on; qmv40.exe gives scripts the moves as text.
Option Explicit

If WScript.Arguments.Count <> 1 Then WScript.Quit 2

Dim files, head
Set files = CreateObject("Scripting.FileSystemObject")
Set head = CreateObject("QMV.QMVCalculator.1")
' A relative name would mean the Windows folder to the component.
head.LoadHeadGeometryFromFile files.GetAbsolutePathName(WScript.Arguments(0))
head.SetCurrentHeadPosition 0, 0

On Error Resume Next
head.CalculateMove 50, 90 ' not a step of 15 degrees
If Err.Number <> 0 Then
    WScript.Echo "refused 0x" & Hex(Err.Number) & ": " & Err.Description
End If
On Error GoTo 0

ShowCurrentPosition
head.CalculateMove 45, 90
ShowCurrentPosition

Sub ShowCurrentPosition()
    Dim a, b
    a = 0.0
    b = 0.0
    head.GetCurrentHeadPosition a, b
    WScript.Echo "position " & ThreeDecimals(a) & " " & ThreeDecimals(b)
End Sub

' Three decimals and a point, whatever the regional settings say.
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
