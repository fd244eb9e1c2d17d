Attribute VB_Name = "QMV40Plan"
' PlanIndexing "C:\...\head.ini": plans an indexing from a 64-bit Office application; prints to the Immediate window.
'
' The tests of this component do not run it, because they have no Office.
'
' Tools > References: CoQMV40Calculator 1.0 Type Library. The records are declared there.
'
' CalculateMove throws its failure code as a C++ exception when it is called on a variable of the class: Basic cannot
' catch that, and the application may end. Called on a variable of type Object, it raises an ordinary error.
Option Explicit

Public Sub PlanIndexing(ByVal geometryFile As String)
    Dim head As QMVCalculator
    Dim lateBound As Object
    Dim plan As RequiredMoves
    Set head = New QMVCalculator
    Set lateBound = head
    head.LoadHeadGeometryFromFile geometryFile ' an absolute name: a relative one means the Windows folder
    head.SetCurrentHeadPosition 0, 0

    On Error Resume Next
    plan = lateBound.CalculateMove(50#, 90#) ' 50 is not a multiple of 15
    If Err.Number <> 0 Then Debug.Print "refused 0x" & Hex$(Err.Number) & ": " & Err.Description
    On Error GoTo 0

    ShowCurrentPosition head
    plan = lateBound.CalculateMove(45#, 90#)
    ShowCurrentPosition head
    ShowPlan plan
End Sub

Private Sub ShowCurrentPosition(ByVal head As QMVCalculator)
    Dim a As Double, b As Double
    head.GetCurrentHeadPosition a, b
    Debug.Print "position " & ThreeDecimals(a) & " " & ThreeDecimals(b)
End Sub

Private Sub ShowPlan(ByRef plan As RequiredMoves)
    ShowPoint 1, "ApproachUnLockLever", plan.ApproachUnLockLever
    ShowPoint 2, "EngageWithUnLockLever", plan.EngageWithUnLockLever
    ShowArc 3, "UnLock", plan.UnLock
    ShowPoint 4, "DisengageFromUnLockLever", plan.DisengageFromUnLockLever
    ShowArc 5, "RotateToPeg", plan.RotateToPeg
    ShowPoint 6, "MoveToPegAtSafeZ", plan.MoveToPegAtSafeZ
    ShowPoint 7, "ApproachPeg", plan.ApproachPeg
    ShowPoint 8, "EngageWithPeg", plan.EngageWithPeg
    ShowArc 9, "IntermediateAPosition", plan.IntermediateAPosition
    ShowArc 10, "MoveToBPosition", plan.MoveToBPosition
    ShowArc 11, "MoveToAPosition", plan.MoveToAPosition
    ShowPoint 12, "DisengageFromPeg", plan.DisengageFromPeg
    ShowPoint 13, "DisengageFromPegToSafeZ", plan.DisengageFromPegToSafeZ
    ShowArc 14, "RotateToLockLever", plan.RotateToLockLever
    ShowPoint 15, "MoveToLockLeverAtSafeZ", plan.MoveToLockLeverAtSafeZ
    ShowPoint 16, "ApproachLockLever", plan.ApproachLockLever
    ShowPoint 17, "EngageWithLockLever", plan.EngageWithLockLever
    ShowArc 18, "Lock", plan.Lock
    ShowPoint 19, "DisengageFromLockLever", plan.DisengageFromLockLever
End Sub

Private Sub ShowPoint(ByVal number As Long, ByVal moveName As String, ByRef point As XYZData)
    Debug.Print number & " " & moveName & " " & ThreeDecimals(point.XPosition) & " " & ThreeDecimals(point.YPosition) & _
        " " & ThreeDecimals(point.ZPosition)
End Sub

Private Sub ShowArc(ByVal number As Long, ByVal moveName As String, ByRef arc As ArcData)
    Debug.Print number & " " & moveName & " " & ThreeDecimals(arc.XOrigin) & " " & ThreeDecimals(arc.YOrigin) & " " & _
        ThreeDecimals(arc.ZOrigin) & " " & ThreeDecimals(arc.iRotationVector) & " " & _
        ThreeDecimals(arc.jRotationVector) & " " & ThreeDecimals(arc.kRotationVector) & " " & _
        ThreeDecimals(arc.RotationAngle)
End Sub

' Three decimals after a decimal point, with all regional settings.
Private Function ThreeDecimals(ByVal number As Double) As String
    Dim thousandths As Double, digits As String
    thousandths = Int(number * 1000 + 0.5)
    digits = Format$(Abs(thousandths), "0000")
    ThreeDecimals = IIf(thousandths < 0, "-", "") & Left$(digits, Len(digits) - 3) & "." & Right$(digits, 3)
End Function
