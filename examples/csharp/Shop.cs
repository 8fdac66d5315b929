// Stores the ten newest goods of a category and the description of one good, and buys that good.
// Usage: Shop PROFILE FOLDER URL PORT, for instance
//   Shop \shop\sample.profile \shop http://192.0.2.1/shop 8080
// Few handhelds have a console: ShopCe.csproj defines MESSAGE_BOX, and the report is a message box.
using System;
using System.IO;
using System.Text;
using Pavonix;

class Shop
{
    static StringBuilder report = new StringBuilder();

    static int Main(string[] arguments)
    {
        int exitCode = Run(arguments);
#if MESSAGE_BOX
        System.Windows.Forms.MessageBox.Show(report.ToString(), "Pavonix");
#else
        Console.Write(report.ToString());
#endif
        return exitCode;
    }

    static void Report(string line)
    {
        report.Append(line).Append('\n');
    }

    static int Run(string[] arguments)
    {
        if (arguments.Length != 4)
        {
            Report("Usage: Shop PROFILE FOLDER URL PORT");
            return 2;
        }
        try
        {
            return Visit(arguments[0], arguments[1], arguments[2], int.Parse(arguments[3])) ? 0 : 1;
        }
        catch (FormatException)
        {
            Report("The port is not a number: " + arguments[3]);
            return 2;
        }
        catch (Exception failure) // each framework throws another for a missing DLL
        {
            Report(failure.Message);
            Report("PAVONIX.dll must be beside this program, and be made for " + 8 * IntPtr.Size + " bits.");
            return 3;
        }
    }

    static bool Visit(string profile, string folder, string url, int port)
    {
        const int type = 1, category = 1, newestFirst = 4;
        string list = folder + "\\list.xml", good = folder + "\\good.xml";
        int status = PavonixClient.GetGoodList(profile, type, category, newestFirst, 0, 10, list, true,
                                               url + "/list", port);
        bool hasList = ReportDownload("list", status, list, "</goods>");
        status = PavonixClient.GetOneGood(profile, type, 7, good, false, url + "/good", port);
        bool hasGood = ReportDownload("good", status, good, "</good>");

        Verdict verdict = PavonixClient.Buy(profile, type, 7, false, url + "/buy", port);
        if (verdict.Status == PavonixClient.Ok)
        {
            Report("buy: 200, bought");
            return hasList && hasGood;
        }
        Report("buy: " + verdict.Status + ", code " + verdict.ErrorCode + ": " + verdict.Message);
        if (verdict.ErrorCode == PavonixClient.ClockIsOff)
        {
            Report("the server's time: " + verdict.ServerTimestamp);
        }
        return false;
    }

    static bool ReportDownload(string call, int status, string file, string closingTag)
    {
        if (status != PavonixClient.Ok && status != PavonixClient.Kept)
        {
            Report(call + ": " + status + ", nothing was stored");
            return false;
        }
        bool isComplete = PavonixClient.IsComplete(file, closingTag);
        Report(call + ": " + status + ", " + file + (isComplete ? " is complete" : " is missing or incomplete"));
        return isComplete;
    }
}
