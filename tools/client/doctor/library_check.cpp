#include "doctor/library_check.h"

#include "call/call_record.h"
#include "diagnostics/device_reading.h"
#include "diagnostics/rules.h"
#include "diagnostics/xml_fault.h"
#include "path.h"
#include "wide_text.h"

#include <random>

namespace client {

namespace {

constexpr int kCalls = 3;

// A temporary folder for the stored file.
class Folder {
public:
    Folder() : path_(std::filesystem::temp_directory_path() / ("pavonix-" + std::to_string(std::random_device()())))
    {
        std::error_code error;
        if (!std::filesystem::create_directory(path_, error)) {
            throw Failure(ExitCode::kLocalFailure, "cannot create a temporary folder: " + TextOf(path_));
        }
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all, error);
    }
    ~Folder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;

    std::string File() const { return TextOf(path_ / "stored.xml"); }

private:
    std::filesystem::path path_;
};

int Call(const ShopLibrary &library, const Examination &examination, const std::string &target)
{
    const WideText profile = ToWidePath(examination.profile.empty() ? target + ".none" : examination.profile);
    const WideText path = ToWidePath(target);
    const WideText url = ToWide(examination.url);
    return examination.good ? library.getOneGoodXml(profile.c_str(), &*examination.good, path.c_str(), 1, url.c_str(),
                                                    examination.port)
                            : library.getGoodListXml(profile.c_str(), &examination.list, path.c_str(), 1, url.c_str(),
                                                     examination.port);
}

} // namespace

void LibraryCheck::Run()
{
    const ShopLibrary library;
    const Folder folder;
    const int expected = diagnostics::DeviceReading(plain_).status();
    int whole = 0;
    std::string statuses;
    bool same = true;
    for (int i = 0; i < kCalls; ++i) {
        progress_->Show("call " + std::to_string(i + 1) + " of " + std::to_string(kCalls) + " through the library");
        CallRecord record(diagnostics::Call::kDownload);
        record.deadline = CallRecord::Clock::now() + 2 * examination_.patience;
        record.readsOn = false;
        const Recording recording(&record);
        const int status = Call(library, examination_, folder.File());
        statuses += i > 0 ? ", " : "";
        statuses += std::to_string(status);
        same = same && status == expected;
        whole += status == PAVONIX_OK && diagnostics::XmlFaultOfFile(folder.File()).empty() ? 1 : 0;
    }
    const std::string shown = "status " + statuses + "; " + std::to_string(whole) + " of " + std::to_string(kCalls) +
                              " files are complete XML";
    diagnosis_->SetExamined(diagnostics::Topic::kLibrary, shown);
    // results vary from call to call if the server splits its first packet
    const bool split = diagnosis_->HasErrors() && !diagnosis_->HasLastingErrors();
    const bool shouldBeWhole = expected == PAVONIX_OK && !diagnosis_->HasErrors();
    if (!split && (!same || (shouldBeWhole && whole < kCalls))) {
        diagnosis_->Add(diagnostics::RuleNamed("library-differs"),
                        "plain: status " + std::to_string(expected) + "; library: " + shown);
    } else if (expected == PAVONIX_OK && whole < kCalls) {
        diagnosis_->Add(diagnostics::RuleNamed("file-not-whole"), shown);
    }
}

} // namespace client
