// The head calculator for .NET: this one file, over the C interface (libqmv40.so, or qmv40.dll with
// CoQMV40Calculator.dll beside it). Copy it into a project, or compile it with yours.
//
// Angles are degrees: A (tilt) 0 to 90, B (swivel) -180 to 180, both in steps of 15. Lengths are in the unit of the
// captured points, positions in machine coordinates. A refused call throws a HeadException.

using System;
using System.Collections.Generic;
using System.Linq;
using System.Runtime.InteropServices;
using System.Text;

namespace Qmv40
{
    /// <summary>A point in machine coordinates.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct Point
    {
        public double XPosition, YPosition, ZPosition;
    }

    /// <summary>
    /// A turn of the machine's position about an axis. With a positive angle (degrees) the position moves clockwise
    /// when seen from the tip of the rotation vector towards its origin (left-handed).
    /// </summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct Arc
    {
        public double XOrigin, YOrigin, ZOrigin, iRotationVector, jRotationVector, kRotationVector, RotationAngle;
    }

    /// <summary>
    /// A captured point: the machine position while the stylus tip is on the pole sphere and the head is unlocked, and
    /// the head's angles (degrees) at that moment.
    /// </summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct AlignmentPoint
    {
        public double APosition, BPosition, XPosition, YPosition, ZPosition;
    }

    /// <summary>The 19 moves of one indexing, in the order in which the machine makes them.</summary>
    [StructLayout(LayoutKind.Sequential)]
    public struct Moves
    {
        public Point ApproachUnLockLever, EngageWithUnLockLever;
        public Arc UnLock;
        public Point DisengageFromUnLockLever;
        public Arc RotateToPeg;
        public Point MoveToPegAtSafeZ, ApproachPeg, EngageWithPeg;
        public Arc IntermediateAPosition, MoveToBPosition, MoveToAPosition;
        public Point DisengageFromPeg, DisengageFromPegToSafeZ;
        public Arc RotateToLockLever;
        public Point MoveToLockLeverAtSafeZ, ApproachLockLever, EngageWithLockLever;
        public Arc Lock;
        public Point DisengageFromLockLever;

        /// <summary>Number, name and record (a Point or an Arc) of every move, in order.</summary>
        public IEnumerable<Move> InOrder()
        {
            object all = this;
            return typeof(Moves).GetFields().OrderBy(field => field.MetadataToken)
                .Select((field, index) => new Move(index + 1, field.Name, field.GetValue(all)));
        }
    }

    public sealed class Move
    {
        internal Move(int number, string name, object record)
        {
            Number = number;
            Name = name;
            Record = record;
        }

        public int Number { get; private set; }
        public string Name { get; private set; }
        /// <summary>A Point or an Arc.</summary>
        public object Record { get; private set; }

        /// <summary>The numbers of the record, in the order of its fields.</summary>
        public IEnumerable<double> Numbers()
        {
            return Record.GetType().GetFields().OrderBy(field => field.MetadataToken)
                .Select(field => (double)field.GetValue(Record));
        }
    }

    /// <summary>A refused call. Message is the component's description, Source the failed operation.</summary>
    public sealed class HeadException : Exception
    {
        internal HeadException(int code, string source, string description) : base(description)
        {
            Code = code;
            Source = source;
        }

        /// <summary>The component's code, for example 0x8A00000E for a refused target.</summary>
        public int Code { get; private set; }
    }

    /// <summary>Plans for one head. Use each calculator on the thread that created it.</summary>
    public sealed class Calculator : IDisposable
    {
        readonly CalculatorHandle handle;

        public Calculator()
        {
            Check(Native.qmv40_create(out handle), CalculatorHandle.None);
        }

        public void Dispose()
        {
            handle.Dispose();
        }

        /// <summary>Replaces the head geometry by the one saved in a file.</summary>
        public void Load(string fileName)
        {
            Check(Native.qmv40_load(handle, Utf8(fileName)), handle);
        }

        public void Save(string fileName)
        {
            Check(Native.qmv40_save(handle, Utf8(fileName)), handle);
        }

        /// <summary>Computes the geometry from points captured while A alone, then while B alone was turned.</summary>
        public void EnterGeometry(AlignmentPoint[] aPoints, AlignmentPoint[] bPoints)
        {
            var aCount = new UIntPtr((uint)aPoints.Length);
            var bCount = new UIntPtr((uint)bPoints.Length);
            Check(Native.qmv40_enter_geometry(handle, aPoints, aCount, bPoints, bCount), handle);
        }

        /// <summary>Sets the head's current angles. If they are refused, the position is unknown.</summary>
        public void SetPosition(double a, double b)
        {
            Check(Native.qmv40_set_position(handle, a, b), handle);
        }

        /// <summary>The head's angles after the last SetPosition or CalculateMove.</summary>
        public void GetPosition(out double a, out double b)
        {
            Check(Native.qmv40_get_position(handle, out a, out b), handle);
        }

        /// <summary>The moves that turn the head to (a, b), which becomes the current position.</summary>
        public Moves CalculateMove(double a, double b)
        {
            Moves moves;
            Check(Native.qmv40_calculate_move(handle, a, b, out moves), handle);
            return moves;
        }

        /// <summary>The first point of any indexing from the current position.</summary>
        public Point StartPosition()
        {
            Point position;
            Check(Native.qmv40_start_position(handle, out position), handle);
            return position;
        }

        /// <summary>The centre of the pole sphere, which is the head centre of the geometry.</summary>
        public Point PoleSphere()
        {
            Point position;
            Check(Native.qmv40_pole_sphere(handle, out position), handle);
            return position;
        }

        static void Check(int code, CalculatorHandle calculator)
        {
            if (code >= 0) return;
            var source = new byte[4096];
            var description = new byte[4096];
            var size = new UIntPtr((uint)source.Length);
            Native.qmv40_last_error(calculator, source, size, description, size);
            throw new HeadException(code, Text(source), Text(description));
        }

        static byte[] Utf8(string text)
        {
            return Encoding.UTF8.GetBytes(text + "\0");
        }

        static string Text(byte[] utf8)
        {
            return Encoding.UTF8.GetString(utf8, 0, Array.IndexOf(utf8, (byte)0));
        }
    }

    /// <summary>A calculator of the C interface. It is freed also if it is not disposed of.</summary>
    sealed class CalculatorHandle : SafeHandle
    {
        public static readonly CalculatorHandle None = new CalculatorHandle();

        public CalculatorHandle() : base(IntPtr.Zero, true)
        {
        }

        public override bool IsInvalid
        {
            get { return handle == IntPtr.Zero; }
        }

        protected override bool ReleaseHandle()
        {
            Native.qmv40_destroy(handle);
            return true;
        }
    }

    static class Native
    {
        const string Library = "qmv40";

        [DllImport(Library)]
        public static extern int qmv40_create(out CalculatorHandle calculator);
        [DllImport(Library)]
        public static extern void qmv40_destroy(IntPtr calculator);
        [DllImport(Library)]
        public static extern int qmv40_load(CalculatorHandle calculator, byte[] file);
        [DllImport(Library)]
        public static extern int qmv40_save(CalculatorHandle calculator, byte[] file);
        [DllImport(Library)]
        public static extern int qmv40_enter_geometry(CalculatorHandle calculator, AlignmentPoint[] aPoints, UIntPtr aCount,
                                                      AlignmentPoint[] bPoints, UIntPtr bCount);
        [DllImport(Library)]
        public static extern int qmv40_set_position(CalculatorHandle calculator, double a, double b);
        [DllImport(Library)]
        public static extern int qmv40_get_position(CalculatorHandle calculator, out double a, out double b);
        [DllImport(Library)]
        public static extern int qmv40_calculate_move(CalculatorHandle calculator, double a, double b, out Moves moves);
        [DllImport(Library)]
        public static extern int qmv40_start_position(CalculatorHandle calculator, out Point position);
        [DllImport(Library)]
        public static extern int qmv40_pole_sphere(CalculatorHandle calculator, out Point position);
        [DllImport(Library)]
        public static extern int qmv40_last_error(CalculatorHandle calculator, byte[] source, UIntPtr sourceSize,
                                                  byte[] description, UIntPtr descriptionSize);
    }
}
