// PlanThroughCom.exe <geometry file>: plans an indexing from a 64-bit .NET program through COM, on Windows.
//
// The tests of this component do not run it, because they have no .NET on Windows.
//
// Build: csc /platform:x64 PlanThroughCom.cs, or in a console project with <PlatformTarget>x64</PlatformTarget>.
//
// CalculateMove throws its failure code as a C++ exception. A .NET program can catch the exception, but cannot read the
// code in it. So that method is called through the dispatch interface, which returns the failure. (The "dynamic"
// keyword cannot be used: it cannot receive a record without a registered .NET assembly.)

using System;
using System.Globalization;
using System.IO;
using System.Linq;
using System.Runtime.InteropServices;
using DISPPARAMS = System.Runtime.InteropServices.ComTypes.DISPPARAMS;
using EXCEPINFO = System.Runtime.InteropServices.ComTypes.EXCEPINFO;

[StructLayout(LayoutKind.Sequential)]
struct XYZData
{
    public double XPosition, YPosition, ZPosition;
}

[StructLayout(LayoutKind.Sequential)]
struct ArcData
{
    public double XOrigin, YOrigin, ZOrigin, iRotationVector, jRotationVector, kRotationVector, RotationAngle;
}

[StructLayout(LayoutKind.Sequential)]
struct RequiredMoves
{
    public XYZData ApproachUnLockLever;
    public XYZData EngageWithUnLockLever;
    public ArcData UnLock;
    public XYZData DisengageFromUnLockLever;
    public ArcData RotateToPeg;
    public XYZData MoveToPegAtSafeZ;
    public XYZData ApproachPeg;
    public XYZData EngageWithPeg;
    public ArcData IntermediateAPosition;
    public ArcData MoveToBPosition;
    public ArcData MoveToAPosition;
    public XYZData DisengageFromPeg;
    public XYZData DisengageFromPegToSafeZ;
    public ArcData RotateToLockLever;
    public XYZData MoveToLockLeverAtSafeZ;
    public XYZData ApproachLockLever;
    public XYZData EngageWithLockLever;
    public ArcData Lock;
    public XYZData DisengageFromLockLever;
}

// The methods in the order of the interface. The order must not change.
[ComImport, Guid("2C7D91E3-6F4A-4B28-8D35-9E1A7C0B4F52"), InterfaceType(ComInterfaceType.InterfaceIsDual)]
interface IQMVCalculator
{
    void LoadHeadGeometryFromFile([In, MarshalAs(UnmanagedType.BStr)] ref string fileName);
    void SaveHeadGeometryToFile([In, MarshalAs(UnmanagedType.BStr)] ref string fileName);
    void GetCurrentHeadPosition(out double aPosition, out double bPosition);
    void SetCurrentHeadPosition(double aPosition, double bPosition);
    RequiredMoves CalculateMove(double targetAPosition, double targetBPosition); // see LateBound.CalculateMove
    void EnterHeadGeometry([In] ref IntPtr aAxisPoints, [In] ref IntPtr bAxisPoints); // SAFEARRAYs of records
    XYZData GetStartPosition();
}

[ComImport, Guid("00020400-0000-0000-C000-000000000046"), InterfaceType(ComInterfaceType.InterfaceIsIUnknown)]
interface IDispatch
{
    void GetTypeInfoCount(out uint count);
    void GetTypeInfo(uint index, uint locale, out IntPtr info);
    void GetIDsOfNames([In] ref Guid reserved, [In] ref IntPtr names, uint count, uint locale, out int id);

    [PreserveSig]
    int Invoke(int id, [In] ref Guid reserved, uint locale, ushort flags, [In] ref DISPPARAMS arguments, IntPtr result,
               ref EXCEPINFO exception, IntPtr argumentError);
}

static class LateBound
{
    const int CalculateMoveId = 5;
    const ushort DispatchMethod = 1;
    const int DispatchException = unchecked((int)0x80020009);
    const int VariantSize = 24; // of a 64-bit process
    const int RecordOffset = 8;
    const short VariantRecord = 36;

    [DllImport("oleaut32.dll")]
    static extern int VariantClear(IntPtr variant);

    public static RequiredMoves CalculateMove(object calculator, double targetA, double targetB)
    {
        IntPtr variants = Marshal.AllocCoTaskMem(3 * VariantSize);
        try
        {
            Marshal.Copy(new byte[3 * VariantSize], 0, variants, 3 * VariantSize); // all empty
            Marshal.GetNativeVariantForObject(targetB, variants); // the last argument comes first
            Marshal.GetNativeVariantForObject(targetA, variants + VariantSize);
            IntPtr result = variants + 2 * VariantSize;
            Invoke((IDispatch)calculator, variants, result);
            return TakeRecord(result);
        }
        finally
        {
            Marshal.FreeCoTaskMem(variants);
        }
    }

    static void Invoke(IDispatch calculator, IntPtr variants, IntPtr result)
    {
        var arguments = new DISPPARAMS { rgvarg = variants, cArgs = 2 };
        var exception = new EXCEPINFO();
        Guid reserved = Guid.Empty;
        int called = calculator.Invoke(CalculateMoveId, ref reserved, 0, DispatchMethod, ref arguments, result,
                                       ref exception, IntPtr.Zero);
        if (called == DispatchException)
            throw new COMException(exception.bstrDescription, exception.scode) { Source = exception.bstrSource };
        Marshal.ThrowExceptionForHR(called);
    }

    static RequiredMoves TakeRecord(IntPtr variant)
    {
        try
        {
            if (Marshal.ReadInt16(variant) != VariantRecord) throw new InvalidCastException("not a record");
            IntPtr record = Marshal.ReadIntPtr(variant, RecordOffset);
            return (RequiredMoves)Marshal.PtrToStructure(record, typeof(RequiredMoves));
        }
        finally
        {
            VariantClear(variant);
        }
    }
}

static class Program
{
    // The component belongs to single-threaded apartments. From another apartment every call would be marshalled.
    [STAThread]
    static int Main(string[] arguments)
    {
        if (arguments.Length != 1) return 2;
        try
        {
            Plan(Path.GetFullPath(arguments[0])); // the component looks for a relative name in the Windows folder
            return 0;
        }
        catch (COMException failure)
        {
            ShowFailure(failure);
            return 1;
        }
    }

    static void Plan(string geometryFile)
    {
        object created = Activator.CreateInstance(Type.GetTypeFromProgID("QMV.QMVCalculator.1", true));
        var calculator = (IQMVCalculator)created;
        calculator.LoadHeadGeometryFromFile(ref geometryFile);
        calculator.SetCurrentHeadPosition(0, 0);
        try
        {
            LateBound.CalculateMove(created, 50, 90); // 50 is not a multiple of 15
        }
        catch (COMException failure)
        {
            ShowFailure(failure);
        }
        ShowCurrentPosition(calculator);
        RequiredMoves plan = LateBound.CalculateMove(created, 45, 90);
        ShowCurrentPosition(calculator);
        ShowPlan(plan);
    }

    static void ShowCurrentPosition(IQMVCalculator calculator)
    {
        double a, b;
        calculator.GetCurrentHeadPosition(out a, out b);
        Console.WriteLine("position " + ThreeDecimals(a) + " " + ThreeDecimals(b));
    }

    static void ShowPlan(RequiredMoves plan)
    {
        int number = 0;
        foreach (var field in typeof(RequiredMoves).GetFields().OrderBy(one => one.MetadataToken))
        {
            object move = field.GetValue(plan);
            var numbers = move.GetType().GetFields().OrderBy(one => one.MetadataToken)
                              .Select(one => ThreeDecimals((double)one.GetValue(move)));
            Console.WriteLine(++number + " " + field.Name + " " + string.Join(" ", numbers));
        }
    }

    static void ShowFailure(COMException failure)
    {
        Console.WriteLine("refused 0x" + failure.ErrorCode.ToString("X8") + ": " + failure.Message);
    }

    static string ThreeDecimals(double number)
    {
        return (Math.Floor(number * 1000 + 0.5) / 1000).ToString("F3", CultureInfo.InvariantCulture);
    }
}
