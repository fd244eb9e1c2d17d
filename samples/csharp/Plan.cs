// Plan.exe <geometry file>: plans an indexing from a .NET program, on Linux and on Windows.
//
// Build it with the file of the binding: mcs Plan.cs Qmv40.cs, csc /platform:x64 Plan.cs Qmv40.cs, or both files in a
// project. Place libqmv40.so (or qmv40.dll and CoQMV40Calculator.dll) beside the program or where the system looks.

using System;
using System.Globalization;
using System.Linq;
using Qmv40;

static class Program
{
    static int Main(string[] arguments)
    {
        if (arguments.Length != 1) return 2;
        try
        {
            using (var head = new Calculator()) Plan(head, arguments[0]);
            return 0;
        }
        catch (HeadException failure)
        {
            ShowFailure(failure);
            return 1;
        }
    }

    static void Plan(Calculator head, string geometryFile)
    {
        head.Load(geometryFile);
        head.SetPosition(0, 0);
        try
        {
            head.CalculateMove(50, 90); // 50 is not a multiple of 15
        }
        catch (HeadException failure)
        {
            ShowFailure(failure);
        }
        ShowPosition(head);
        Moves plan = head.CalculateMove(45, 90);
        ShowPosition(head);
        foreach (Move move in plan.InOrder())
            Console.WriteLine(move.Number + " " + move.Name + " " + string.Join(" ", move.Numbers().Select(ThreeDecimals)));
    }

    static void ShowPosition(Calculator head)
    {
        double a, b;
        head.GetPosition(out a, out b);
        Console.WriteLine("position " + ThreeDecimals(a) + " " + ThreeDecimals(b));
    }

    static void ShowFailure(HeadException failure)
    {
        Console.WriteLine("refused 0x" + failure.Code.ToString("X8") + ": " + failure.Message);
    }

    static string ThreeDecimals(double number)
    {
        return (Math.Floor(number * 1000 + 0.5) / 1000).ToString("F3", CultureInfo.InvariantCulture);
    }
}
