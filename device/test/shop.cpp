// Steps that call a pavonix-shop.
#include "shop/errors.h"
#include "shop/faults/fault_outcomes.h"
#include "test/files.h"
#include "test/settings.h"
#include "test/steps.h"

namespace pavonix::device_test {

namespace {

constexpr int kSoldGood = 7, kUnknownGood = 99;

char meantRoom[128 * 1024], storedRoom[128 * 1024];

class ShopTrial {
public:
    ShopTrial(Test *test, const Settings &settings)
        : test_(test), settings_(settings), profile_(settings.profile), target_(Path(test->work).Add("shop.xml"))
    {
        if (profile_.length() == 0) {
            profile_ = ProfilePath(*test, Profile::kKey1024);
        }
    }

    void Run()
    {
        test_->report.Note(Join("http://", settings_.host.c_str(), ":", settings_.port, "/, profile ", profile_));
        const bool whole = TryPlainCalls();
        if (!whole) {
            test_->report.Skip(Join("the shop's faults, as a call without one did not succeed"));
            return;
        }
        for (const shop::FaultOutcome &fault : shop::kFaultOutcomes) {
            TryFault(fault.name, fault.download, fault.sale, fault.refusal);
        }
        for (const shop::ErrorKind &kind : shop::kErrorKinds) {
            const Line verdict = Join(kind.status, " code ", kind.code);
            TryFault(Join("code-", kind.code).c_str(), Join(kind.status, " none").c_str(), verdict.c_str(),
                     verdict.c_str());
        }
        test_->report.Note(Join("most stack used by a call: ", mostStack_, " bytes"));
    }

    void RemoveFiles() { DeleteFileW(target_.c_str()); }

private:
    // Stores the list that later downloads are compared with.
    bool TryPlainCalls()
    {
        Compare("list", "200 stored", List("", true));
        meant_ = ReadWhole(target_.c_str(), meantRoom, sizeof meantRoom);
        const bool listed = deviations_ == 0;
        Compare("good", "200 stored", Download(Export::kGood, "", true));
        Compare("buy", "200", Buy("", kSoldGood));
        Compare("buy what there is not", "404 code 903", Buy("", kUnknownGood));
        return listed && deviations_ == 0;
    }

    void TryFault(const char *name, const char *download, const char *sale, const char *refusal)
    {
        Compare(Join(name, ", list").c_str(), download, List(name, false));
        Compare(Join(name, ", sale").c_str(), sale, Buy(name, kSoldGood));
        Compare(Join(name, ", refusal").c_str(), refusal, Buy(name, kUnknownGood));
    }

    void Compare(const char *what, const char *expected, const Line &seen)
    {
        if (!test_->library.usable() && seen.length() == 0) {
            test_->report.Skip(Join(what, ": an earlier call still hangs"));
            ++deviations_;
            return;
        }
        const bool right = std::string_view(seen.c_str()) == expected;
        deviations_ += !right;
        test_->report.Check(right, right ? Join(what, ": ", seen) : Join(what, ": ", seen, "; expected: ", expected));
    }

    CallResult Make(Export function, const char *fault, const char *path, int good)
    {
        const Line url = *fault != 0 ? Join("http://", settings_.host.c_str(), "/fault/", fault, path)
                                     : Join("http://", settings_.host.c_str(), path);
        const Call call = {.function = function,
                           .profile = profile_.c_str(),
                           .target = target_.c_str(),
                           .url = url.c_str(),
                           .port = settings_.port,
                           .good = good};
        const CallResult result = test_->library.Make(call, static_cast<unsigned>(settings_.patience));
        mostStack_ = result.stack > mostStack_ ? result.stack : mostStack_;
        return result;
    }

    // Each returns the outcome as the shop's table of faults words it.
    Line List(const char *fault, bool plain) { return Download(Export::kList, fault, plain); }

    Line Download(Export function, const char *fault, bool plain)
    {
        if (!test_->library.usable()) {
            return {};
        }
        WriteWhole(target_.c_str(), kOld);
        const CallResult result = Make(function, fault, function == Export::kList ? "/shop/list" : "/shop/good", 0);
        if (!result.returned) {
            return Join("waits");
        }
        const std::string_view stored = ReadWhole(target_.c_str(), storedRoom, sizeof storedRoom);
        return Join(result.status, " ", plain ? (IsWholeXml(stored) ? "stored" : "not whole") : Compared(stored));
    }

    Line Buy(const char *fault, int good)
    {
        if (!test_->library.usable()) {
            return {};
        }
        const CallResult result = Make(Export::kBuy, fault, "/shop/buy", good);
        if (!result.returned) {
            return Join("waits");
        }
        return result.status == 0 || result.status == 200 ? Join(result.status)
                                                          : Join(result.status, " code ", result.code);
    }

    // Ends with the end tag of the element that it begins with.
    static bool IsWholeXml(std::string_view text)
    {
        while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) {
            text.remove_suffix(1);
        }
        return text.starts_with("<?xml") && (text.ends_with("</goods>") || text.ends_with("</good>"));
    }

    const char *Compared(std::string_view stored) const
    {
        constexpr std::size_t kStart = 500, kSample = 100;
        std::string_view rest = stored;
        while (!rest.empty() && rest.front() == 0) {
            rest.remove_prefix(1);
        }
        const std::string_view sample(rest.data(), rest.size() < kSample ? rest.size() : kSample);
        if (stored == kOld) {
            return "none";
        }
        if (stored == meant_) {
            return "right";
        }
        if (stored.starts_with(meant_)) {
            return "longer";
        }
        if (meant_.starts_with(stored) && stored.size() > kStart) {
            return "cut";
        }
        if (stored.size() - rest.size() >= kStart && meant_.starts_with(sample)) {
            return "zeros";
        }
        return stored.starts_with("200\r\n<?xml") || stored.starts_with("\x1F\x8B") ? "coded" : "other bytes";
    }

    static constexpr std::string_view kOld = "old";

    Test *test_;
    const Settings &settings_;
    Path profile_, target_;
    std::string_view meant_;
    unsigned mostStack_ = 0;
    int deviations_ = 0;
};

} // namespace

void TryShop(Test *test)
{
    test->report.Heading("A shop");
    Settings settings;
    if (!ReadSettings(Path(test->folder).Add("PavonixTest.ini"), &test->report, &settings)) {
        return;
    }
    ShopTrial trial(test, settings);
    trial.Run();
    trial.RemoveFiles();
}

} // namespace pavonix::device_test
