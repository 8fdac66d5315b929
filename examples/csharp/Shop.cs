// Stores the ten newest goods of a category and the description of one good, and buys that good.
// Usage: Shop PROFILE FOLDER URL PORT, for instance
//   Shop \shop\profile \shop http://127.0.0.1/shop 8080
using System;
using Pavonix;

class Shop
{
    static int Main(string[] arguments)
    {
        if (arguments.Length != 4)
        {
            Console.WriteLine("Usage: Shop PROFILE FOLDER URL PORT");
            return 2;
        }
        string profile = arguments[0], folder = arguments[1], url = arguments[2];
        int port = int.Parse(arguments[3]);

        const int type = 1, category = 1, newestFirst = 4;
        int status = PavonixClient.GetGoodList(profile, type, category, newestFirst, 0, 10, folder + "\\list.xml", true,
                                               url + "/list", port);
        Console.WriteLine("list: " + status);
        status = PavonixClient.GetOneGood(profile, type, 7, folder + "\\good.xml", false, url + "/good", port);
        Console.WriteLine("good: " + status);

        Verdict verdict = PavonixClient.Buy(profile, type, 7, false, url + "/buy", port);
        Console.WriteLine("buy: " + verdict.Status);
        if (verdict.Status == PavonixClient.Ok)
        {
            return 0;
        }
        Console.WriteLine("code: " + verdict.ErrorCode);
        Console.WriteLine("message: " + verdict.Message);
        Console.WriteLine("timestamp: " + verdict.ServerTimestamp);
        return 1;
    }
}
