#include "store/delete_target_file.h"
#include "store/prepare_target_directory.h"
#include "store/probe_path.h"
#include "support/sandbox.h"
#include "support/tap.h"

#include <gtest/gtest.h>

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
        int expected;
    };
    for (const Row &row : {Row{"f.xml", kPathFile},
                           {"a1", kPathFolder},
                           {"a1/", kPathFolder},
                           {"a1//", kPathFolder},
                           {"missing", kPathNothing},
                           {"missing/", kPathNothing},
                           {"f.xml/x", kPathNothing},
                           {"a*", kPathFolder},
                           {"a?", kPathFolder},
                           {"?", kPathNothing},
                           {"mixed/b?", kPathFile},
                           {"mixed/b1/*", kPathFile},
                           {"*.xml", kPathFile},
                           {"a1/*", kPathNothing}, // "." and ".." are never entries
                           {"odd/[x]", kPathFile},
                           {"odd/?[x]", kPathNothing},
                           {"odd/[x*", kPathFile},
                           {"none/*", kPathNothing}}) {
        EXPECT_EQ(ProbePath(box.Path(row.path).c_str()), row.expected) << row.path;
    }
    EXPECT_EQ(ProbePath(u"\\"), kPathFolder) << "the root is a folder";
    EXPECT_EQ(ProbePath(u""), kPathNothing);
    EXPECT_EQ(ProbePath(nullptr), kPathNothing);
    EXPECT_EQ(ProbePath(std::u16string(5000, u'x').c_str()), kPathNothing);
    EXPECT_EQ(ProbePath(u"\\tmp\\\xD800"), kPathNothing) << "half a character is no name";
    EXPECT_EQ(tap::Held().searches, 0);
}

TEST_F(Store, DeletesFilesAndLeavesFolders)
{
    box.Write("f.xml", "x");
    EXPECT_EQ(DeleteTargetFile(box.Path("f.xml").c_str()), 1);
    EXPECT_EQ(ProbePath(box.Path("f.xml").c_str()), kPathNothing);
    EXPECT_EQ(DeleteTargetFile(box.Path("f.xml").c_str()), 1) << "a delete was attempted";

    box.MakeFolder("folder");
    errno = 0;
    EXPECT_EQ(DeleteTargetFile(box.Path("folder").c_str()), 0);
    EXPECT_EQ(errno, 0x10000000);
    EXPECT_EQ(ProbePath(box.Path("folder").c_str()), kPathFolder);
}

TEST_F(Store, DeletesByTheFirst260Characters)
{
    std::u16string path = box.Path("");
    path += std::u16string(path.back() == u'\\' ? u"" : u"\\") + std::u16string(200, u'd') + u"\\";
    std::filesystem::create_directory(box.root() / std::string(200, 'd'));
    const std::string name(260 - path.size(), 'n');
    const std::string cut = std::string(200, 'd') + "/" + name;
    box.Write(cut, "x");
    path += std::u16string(name.begin(), name.end());
    ASSERT_EQ(path.size(), 260u);
    EXPECT_EQ(DeleteTargetFile((path + std::u16string(40, u'm')).c_str()), 1);
    EXPECT_FALSE(box.Read(cut).has_value());
}

TEST_F(Store, PreparesTheLastFolderOnly)
{
    const auto prepare = [&](const std::u16string &path, std::u16string *written) {
        char16_t folder[260] = {u'?'};
        const int result = PrepareTargetDirectory(path.c_str(), folder);
        *written = folder;
        return result;
    };
    std::u16string written;
    EXPECT_EQ(prepare(box.Path("list.xml"), &written), 1);
    EXPECT_EQ(written, u"?") << "a folder that exists leaves the buffer untouched";

    tap::Reset();
    EXPECT_EQ(prepare(box.Path("one/list.xml"), &written), 1);
    EXPECT_EQ(written, box.Path("one/"));
    EXPECT_EQ(tap::CountOf("CreateFolder"), 1);
    EXPECT_EQ(ProbePath(box.Path("one").c_str()), kPathFolder);

    tap::Reset();
    EXPECT_EQ(prepare(box.Path("two/three/list.xml"), &written), 0);
    EXPECT_EQ(tap::CountOf("CreateFolder"), 1) << "the first failure ends it";
    EXPECT_EQ(ProbePath(box.Path("two").c_str()), kPathNothing);

    EXPECT_EQ(prepare(u"list.xml", &written), 1) << "no folder part";
    EXPECT_EQ(written, u"");
    EXPECT_EQ(prepare(u"\\list.xml", &written), 1) << "the root";
    EXPECT_EQ(prepare(box.Path(std::string(300, 'x') + "/f"), &written), 0) << "longer than its room";
    EXPECT_EQ(written, u"?");
    EXPECT_EQ(PrepareTargetDirectory(nullptr, {}), 0);

    tap::FailNth(1, false);
    EXPECT_EQ(prepare(box.Path("list.xml"), &written), 0) << "no memory";
}

TEST_F(Store, TestsTheWholeFolderOnceForEachSeparator)
{
    const std::u16string path = box.Path("new/list.xml");
    const auto separators = std::count(path.begin(), path.end(), u'\\');
    char16_t folder[260];
    tap::FailAlways("FindFirst"); // a search that finds nothing, so every pass tries again
    EXPECT_EQ(PrepareTargetDirectory(path.c_str(), folder), 0) << "the second creation finds the folder there";
    EXPECT_EQ(tap::CountOf("CreateFolder"), 2);
    EXPECT_EQ(tap::CountOf("FindFirst"), 1 + 2 + 2);
    tap::Reset();
    EXPECT_EQ(PrepareTargetDirectory(box.Path("other/list.xml").c_str(), folder), 1);
    EXPECT_EQ(tap::CountOf("FindFirst"), 1 + 2 + static_cast<int>(separators) - 1);
}
