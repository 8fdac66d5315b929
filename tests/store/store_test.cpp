#include "store/body_writer.h"
#include "store/target_path.h"
#include "support/sandbox.h"
#include "support/tap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>

using namespace pavonix;

namespace {

class Store : public testing::Test {
protected:
    Sandbox box;
};

} // namespace

TEST_F(Store, ProbesWhatLiesAtAPath)
{
    box.Write("f.xml", "x");
    box.MakeFolder("a1");
    box.MakeFolder("a2");
    box.Write("mixed/b1/deep", "x");
    box.Write("mixed/b2", "x");
    box.Write("odd/[x]", "x");
    box.Write("odd/y*", "x");
    struct Row {
        const char *path;
        PathKind expected;
    };
    for (const Row &row : {Row{"f.xml", PathKind::kFile},
                           {"a1", PathKind::kFolder},
                           {"a1/", PathKind::kFolder},
                           {"missing", PathKind::kNothing},
                           {"f.xml/x", PathKind::kNothing},
                           {"a*", PathKind::kFolder},
                           {"?", PathKind::kNothing},
                           {"mixed/b?", PathKind::kFile},
                           {"mixed/b1/*", PathKind::kFile},
                           {"a1/*", PathKind::kNothing}, // "." and ".." are never entries
                           {"odd/[x]", PathKind::kFile},
                           {"odd/?[x]", PathKind::kNothing},
                           {"odd/[x*", PathKind::kFile}}) {
        EXPECT_EQ(ProbePath(box.Path(row.path).c_str()), row.expected) << row.path;
    }
    EXPECT_EQ(ProbePath(u"\\"), PathKind::kFolder) << "the root is a folder";
    EXPECT_EQ(ProbePath(u"\\de?"), PathKind::kFolder) << "a pattern in the root";
    EXPECT_EQ(ProbePath(box.Path("*" + std::string(300, 'x')).c_str()), PathKind::kNothing) << "longer than any name";
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(box.root());
    EXPECT_EQ(ProbePath(u"f.x*"), PathKind::kFile) << "a pattern without a folder";
    std::filesystem::current_path(before);
    EXPECT_EQ(ProbePath(u""), PathKind::kNothing);
    EXPECT_EQ(ProbePath(nullptr), PathKind::kNothing);
    EXPECT_EQ(ProbePath(std::u16string(5000, u'x').c_str()), PathKind::kNothing);
    EXPECT_EQ(ProbePath(u"\\tmp\\\xD800"), PathKind::kNothing) << "an unpaired surrogate";
    EXPECT_EQ(tap::Held().searches, 0);
}

TEST_F(Store, DeletesFilesAndLeavesFolders)
{
    box.Write("f.xml", "x");
    EXPECT_TRUE(DeleteTargetFile(box.Path("f.xml").c_str()));
    EXPECT_EQ(ProbePath(box.Path("f.xml").c_str()), PathKind::kNothing);
    EXPECT_TRUE(DeleteTargetFile(box.Path("f.xml").c_str())) << "a missing file is deleted too";

    box.MakeFolder("folder");
    errno = 0;
    EXPECT_FALSE(DeleteTargetFile(box.Path("folder").c_str()));
    EXPECT_EQ(errno, 0x10000000);
    EXPECT_EQ(ProbePath(box.Path("folder").c_str()), PathKind::kFolder);
}

TEST_F(Store, UsesThe260FirstCharactersOfAPath)
{
    const std::string folder(200, 'd');
    const auto ofLength = [&](std::size_t length) {
        return folder + "/" + std::string(length - box.Path(folder + "/").size(), 'n');
    };
    box.Write(ofLength(260), "x");
    EXPECT_TRUE(DeleteTargetFile(box.Path(ofLength(260 + 40)).c_str()));
    EXPECT_FALSE(box.Read(ofLength(260)).has_value()) << "by its first 260 characters";

    for (const std::size_t length : {259u, 260u}) {
        BodyWriter writer;
        writer.Open(box.Path(ofLength(length)).c_str());
        EXPECT_EQ(writer.usable(), length == 259) << "a device keeps a byte for the terminator";
    }
}

TEST_F(Store, PreparesTheLastFolderOnly)
{
    const auto prepare = [&](const std::u16string &path, std::u16string *written) {
        char16_t folder[260] = {u'?'};
        const bool result = PrepareTargetDirectory(path.c_str(), folder);
        *written = folder;
        return result;
    };
    std::u16string written;
    EXPECT_TRUE(prepare(u"\\list.xml", &written));
    EXPECT_EQ(written, u"?") << "the root";
    EXPECT_TRUE(prepare(box.Path("list.xml"), &written));
    EXPECT_EQ(written, u"?") << "a folder that exists leaves the buffer untouched";

    tap::Reset();
    EXPECT_TRUE(prepare(box.Path("one/list.xml"), &written));
    EXPECT_EQ(written, box.Path("one/"));
    EXPECT_EQ(tap::CountOf("CreateFolder"), 1);
    EXPECT_EQ(ProbePath(box.Path("one").c_str()), PathKind::kFolder);

    tap::Reset();
    EXPECT_FALSE(prepare(box.Path("two/three/list.xml"), &written));
    EXPECT_EQ(tap::CountOf("CreateFolder"), 1) << "the first failure ends it";
    EXPECT_EQ(ProbePath(box.Path("two").c_str()), PathKind::kNothing);

    EXPECT_TRUE(prepare(u"list.xml", &written)) << "no folder part";
    EXPECT_EQ(written, u"");
    EXPECT_TRUE(prepare(u"\\list.xml", &written)) << "the root";
    const auto inFolderOf = [&](std::size_t length) {
        return box.Path(std::string(length - box.Path("").size() - 1, 'x') + "/f");
    };
    EXPECT_TRUE(prepare(inFolderOf(259), &written)) << "fits exactly";
    EXPECT_FALSE(prepare(inFolderOf(260), &written)) << "too long";
    EXPECT_EQ(written, u"?");
    EXPECT_FALSE(PrepareTargetDirectory(nullptr, {}));

    tap::FailNth(1, false);
    EXPECT_FALSE(prepare(box.Path("list.xml"), &written)) << "out of memory";
}

TEST_F(Store, TestsTheWholeFolderOnceForEachSeparator)
{
    const std::u16string path = box.Path("new/list.xml");
    const auto separators = std::count(path.begin(), path.end(), u'\\');
    char16_t folder[260];
    tap::FailAlways("FindFirst"); // no search finds the folder, so each pass creates it again
    EXPECT_FALSE(PrepareTargetDirectory(path.c_str(), folder)) << "the second creation finds the folder there";
    EXPECT_EQ(tap::CountOf("CreateFolder"), 2);
    EXPECT_EQ(tap::CountOf("FindFirst"), 1 + 2 + 2);
    tap::Reset();
    EXPECT_TRUE(PrepareTargetDirectory(box.Path("other/list.xml").c_str(), folder));
    EXPECT_EQ(tap::CountOf("FindFirst"), 1 + 2 + static_cast<int>(separators) - 1);
}
