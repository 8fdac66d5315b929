// A purchase through the export, on a scripted peer: what is written to the
// caller's record, and what is not.
#include "pavonix/pavonix.h"
#include "support/device_profile_file.h"
#include "support/tap.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

using namespace pavonix;

namespace {

// A roomy record between guards, filled with a pattern.
struct GuardedRecord {
    BuyGoodRoomyResult record;
    unsigned char guard[64];

    GuardedRecord() { std::memset(static_cast<void *>(this), 0xA5, sizeof *this); }
    std::vector<unsigned char> Bytes() const
    {
        const auto *first = reinterpret_cast<const unsigned char *>(this);
        return std::vector<unsigned char>(first, first + sizeof *this);
    }
};

class Purchase : public testing::Test {
protected:
    void TearDown() override { tap::Reset(); }

    int Buy(const std::string &reply)
    {
        tap::Reset();
        tap::ScriptedPeer peer{{reply}, {}, 0};
        tap::UsePeer(&peer);
        const BuyGoodRequest request = {-1, -1, 1, 7, 0};
        return GetBuyGood(DeviceProfilePath().c_str(), &request, reinterpret_cast<BuyGoodResult *>(&guarded.record),
                          u"http://shop/buy", 80);
    }

    GuardedRecord guarded;
};

} // namespace

TEST_F(Purchase, LeavesTheRecordAloneForSuccessAndForSilence)
{
    const std::vector<unsigned char> before = guarded.Bytes();
    EXPECT_EQ(Buy("HTTP/1.1 200 OK\r\nX-Error-Code: 5\r\nX-Error-Message: m\r\n\r\nbody"), 200);
    EXPECT_EQ(guarded.Bytes(), before);
    tap::Reset();
    tap::FailAlways("ConnectSocket");
    const BuyGoodRequest request = {};
    EXPECT_EQ(GetBuyGood(DeviceProfilePath().c_str(), &request, reinterpret_cast<BuyGoodResult *>(&guarded.record),
                         u"http://127.0.0.1/buy", 80),
              0);
    EXPECT_EQ(guarded.Bytes(), before);
    EXPECT_EQ(Buy("HTTP/1.1 403 No\r\n\r\n"), 403);
    EXPECT_NE(guarded.Bytes(), before);
    const BuyGoodRequest other = {};
    EXPECT_EQ(GetBuyGood(nullptr, &other, nullptr, u"host", 80), 0) << "a null record is never written";
}

TEST_F(Purchase, WritesTheVerdict)
{
    struct Row {
        const char *reply;
        int code;
        std::u16string message, timestamp;
    };
    const std::u16string untouched(1, u'\xA5A5');
    for (const Row &row : {
             Row{"HTTP/1.1 403 No\r\nX-Error-Code: 906\r\nX-Error-Message: Clock\r\nX-Server-Timestamp: "
                 "2010-1-2\r\n\r\nb",
                 906, u" Clock", u" 2010-1-2"},
             {"HTTP/1.1 403 No\r\nX-Error-Code: 7\r\nX-Error-Message: \x80 \xE4\r\nX-Server-Timestamp: t\r\n\r\nb", 7,
              u" € ä", untouched},
             {"HTTP/1.1 500 No\r\n\r\nthe body", 0, u"the body", untouched},
             {"HTTP/1.1 500 No\r\nX-Error-Message: from head\r\n\r\n", 0, u"", untouched},
             {"HTTP/1.1 403 No\r\nX-Error-Code: 906\r\n\r\nb", 906, untouched, untouched},
             {"HTTP/1.1 403 No\r\nX-Error-Code: word\r\nX-Error-Message: m\r\n\r\nb", 0, u"b", untouched},
             {"HTTP/1.1 403 No\r\nX-Error-Code: -5\r\nX-Error-Message:\r\n\r\nb", -5, u"", untouched},
             {"HTTP/1.1 1\r\n\r\nlow status", 0, u"low status", untouched},
         }) {
        SCOPED_TRACE(row.reply);
        guarded = GuardedRecord();
        Buy(row.reply);
        EXPECT_EQ(guarded.record.errorCode, row.code);
        EXPECT_EQ(std::u16string(guarded.record.message, row.message.size()), row.message);
        EXPECT_EQ(std::u16string(guarded.record.serverTimestamp, row.timestamp.size()), row.timestamp);
        EXPECT_EQ(static_cast<unsigned>(guarded.record.reserved0), 0xA5A5A5A5u);
        EXPECT_EQ(static_cast<unsigned>(guarded.record.reserved1), 0xA5A5A5A5u);
    }
}

TEST_F(Purchase, StaysInsideTheRoomyRecord)
{
    const std::string head = "HTTP/1.1 403 No\r\nX-Error-Code: 906\r\nX-Server-Timestamp:";
    for (const std::string &reply :
         {std::string("HTTP/1.1 5 ") + std::string(1013, 'x'), "HTTP/1.1 500\r\n\r\n" + std::string(1024 - 16, 'x'),
          head + std::string(1024 - head.size() - 4, 't') + "\r\n\r\n",
          "X-Error-Message:" + std::string(1006, 'm') + "\r\n"}) {
        guarded = GuardedRecord();
        Buy(reply);
        for (const unsigned char byte : guarded.guard) {
            ASSERT_EQ(byte, 0xA5);
        }
    }
}
