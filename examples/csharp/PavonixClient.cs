// The shop client for managed applications: .NET Compact Framework 2.0 and later, the
// desktop's .NET Framework, and Mono. Written in C# 2.0, which Visual Studio 2005 has.
//
// Records are passed as arrays of numbers and bytes, not as marshalled structures: all
// these runtimes pass arrays of plain values unchanged, but differ in texts inside a
// structure.
using System;
using System.IO;
using System.Runtime.InteropServices;
using System.Text;

namespace Pavonix
{
    // The server's reply to a purchase.
    public class Verdict
    {
        public int Status;             // what the call returned
        public int ErrorCode;          // 0: no code was sent
        public string Message;
        public string ServerTimestamp; // for code 906, otherwise empty
    }

    // One call at a time: the library's calls share their state and take no lock.
    public static class PavonixClient
    {
        public const int Failed = 0; // no reply
        public const int Kept = 1;   // the file exists and force was false
        public const int Ok = 200;   // any other result is the HTTP status
        public const int ClockIsOff = 906;

        // Offsets in the result record, in bytes. It has room for the longest reply
        // that the library can hold, so that no server can overrun it; an overlong
        // message runs on into the room of the timestamp.
        const int CodeAt = 8;
        const int MessageAt = 12;
        const int TimestampAt = 524;
        const int RecordSize = TimestampAt + 2 * 1024;

        public static int GetGoodList(string profile, int type, int category, int sort, int start, int max,
                                      string target, bool force, string url, int port)
        {
            int[] request = new int[] { 0, 0, type, category, sort, start, max };
            KeepWinsock();
            return AfterDownload(GetGoodListXml(profile, request, target, force ? 1 : 0, url, port), target);
        }

        public static int GetOneGood(string profile, int type, int id, string target, bool force, string url, int port)
        {
            int[] request = new int[] { 0, 0, type, id };
            KeepWinsock();
            return AfterDownload(GetOneGoodXml(profile, request, target, force ? 1 : 0, url, port), target);
        }

        public static Verdict Buy(string profile, int type, int id, bool force, string url, int port)
        {
            int[] request = new int[] { 0, 0, type, id, force ? 1 : 0 };
            byte[] record = new byte[RecordSize];
            Verdict verdict = new Verdict();
            KeepWinsock();
            verdict.Status = GetBuyGood(profile, request, record, url, port);
            winsockIsKept = verdict.Status != Failed;
            verdict.ErrorCode = BitConverter.ToInt32(record, CodeAt);
            verdict.Message = TextAt(record, MessageAt);
            verdict.ServerTimestamp = verdict.ErrorCode == ClockIsOff ? TextAt(record, TimestampAt) : "";
            return verdict;
        }

        // An unsuccessful call may call WSACleanup once or twice too often. Two more starts
        // than the program needs keep its own sockets open.
        static bool winsockIsKept = false;

        static void KeepWinsock()
        {
            PlatformID system = Environment.OSVersion.Platform;
            byte[] data = new byte[512]; // more than the record has on any system
            for (int start = 0; start < 2 && !winsockIsKept; ++start)
            {
                if (system == PlatformID.WinCE)
                {
                    StartOnDevice(0x202, data);
                }
                else if (system == PlatformID.Win32NT)
                {
                    StartOnDesktop(0x202, data);
                }
            }
            winsockIsKept = true;
        }

        static int AfterDownload(int status, string target)
        {
            winsockIsKept = status == Ok && File.Exists(NativePath(target));
            return status;
        }

        // The library's paths have backslashes on every system.
        static string NativePath(string path)
        {
            return path.Replace('\\', Path.DirectorySeparatorChar);
        }

        // True if the file exists and ends with this tag; a result of 200 does not guarantee it.
        public static bool IsComplete(string file, string closingTag)
        {
            file = NativePath(file);
            if (!File.Exists(file))
            {
                return false;
            }
            using (FileStream stored = File.OpenRead(file))
            {
                byte[] end = new byte[64];
                stored.Seek(-Math.Min(64, stored.Length), SeekOrigin.End);
                int length = stored.Read(end, 0, end.Length);
                return Encoding.ASCII.GetString(end, 0, length).IndexOf(closingTag) >= 0;
            }
        }

        [DllImport("ws2.dll", EntryPoint = "WSAStartup")]
        static extern int StartOnDevice(short version, byte[] data);

        [DllImport("ws2_32.dll", EntryPoint = "WSAStartup")]
        static extern int StartOnDesktop(short version, byte[] data);

        // Header values begin with the space after the colon.
        static string TextAt(byte[] record, int offset)
        {
            int end = offset;
            while (end < record.Length && BitConverter.ToInt16(record, end) != 0)
            {
                end += 2;
            }
            return Encoding.Unicode.GetString(record, offset, end - offset).Trim();
        }

        [DllImport("PAVONIX.dll", CharSet = CharSet.Unicode)]
        static extern int GetGoodListXml(string profile, int[] request, string target, int force, string url, int port);

        [DllImport("PAVONIX.dll", CharSet = CharSet.Unicode)]
        static extern int GetOneGoodXml(string profile, int[] request, string target, int force, string url, int port);

        // [In, Out]: a runtime that copies the array copies it back too.
        [DllImport("PAVONIX.dll", CharSet = CharSet.Unicode)]
        static extern int GetBuyGood(string profile, int[] request, [In, Out] byte[] record, string url, int port);
    }
}
