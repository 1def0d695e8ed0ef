// What an entry is, from what the file system answers, including the answers of
// file systems that Wine never gives: FAT and exFAT, deduplicated and cloud
// volumes, and systems and file servers that refuse a deletion request.

#include "sweep/deletion_rules.h"
#include "sweep/listing_rules.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

constexpr std::uint32_t kFolder = 0x00000010;
constexpr std::uint32_t kReparse = 0x00000410;
constexpr std::uint32_t kSymlinkTag = 0xA000000C;
constexpr std::uint32_t kMountPointTag = 0xA0000003;

// Wine makes symbolic links only; the other tags stand for what the file
// systems of a render node may hold. Values as Windows documents them:
// offline, recall on open, recall on data access, the cloud-files tag and its
// numbered variants. A handle is asked for its tag only at a reparse point, so
// FAT's refusal of the question never makes a plain folder a link, and a
// reparse point whose tag cannot be had is one.
TEST(EntryKind, EachEntryIsOneKindAndTheFirstThatHoldsWins)
{
    using K = EntryKind;
    // Where the entry stands, beyond its attributes and tag: "tag?" for a tag
    // a handle could not give, "root" at a volume's root, "path" for a folder
    // already on the path.
    const struct { const char* name; std::uint32_t attributes, tag; const char* where; K kind; } cases[] = {
        {"a", kFolder, kSymlinkTag, "", K::Plain}, {"a", kReparse, 0, "", K::Link},
        {"a", kReparse, kMountPointTag, "", K::Link}, {"a", kReparse, 0x8000000A, "", K::Link},
        {"a", kReparse, 0x00001234, "", K::Link}, {"a", 0x00000420, 0x9000001B, "", K::Link},
        {"a", kReparse, kReparseTagDedup, "", K::Plain}, {"a", kReparse, kReparseTagWof, "", K::Plain},
        {"a", kReparse, kReparseTagOneDrive, "", K::Plain}, {"a", kFolder, 0, "tag?", K::Plain},
        {"a", kReparse, 0, "tag?", K::Link}, {"a", 0x00000020, 0, "", K::Plain},
        {"a", 0x00001020, 0, "", K::Offline}, {"a", 0x00040010, 0, "", K::Offline},
        {"a", 0x00400020, 0, "", K::Offline}, {"a", 0x00000420, 0x9000001A, "", K::Offline},
        {"a", 0x00000420, 0x9000101A, "", K::Offline}, {"a", kReparse, 0x9000F01A, "", K::Offline},
        {"a", 0x00000020, 0x9000001A, "", K::Plain}, {"a", 0x00001410, kSymlinkTag, "", K::Offline},
        {"a", kFolder, 0, "path", K::Loop}, {"a", kReparse, kSymlinkTag, "path", K::Link},
        {"System Volume Information", kFolder, 0, "root", K::VolumeSystem},
        {"$Recycle.Bin", kReparse, kSymlinkTag, "root", K::VolumeSystem},
        {"PAGEFILE.SYS", 0x20, 0, "root", K::VolumeSystem}, {"swapfile.sys", 0x20, 0, "root", K::VolumeSystem},
        {"hiberfil.sys", 0x20, 0, "root", K::VolumeSystem}, {"DumpStack.log.tmp", 0x1020, 0, "root", K::VolumeSystem},
        {"System Volume Information", 0x20, 0, "root", K::Plain}, {"pagefile.sys", kFolder, 0, "root", K::Plain},
        {"pagefile.sys.bak", 0x20, 0, "root", K::Plain}, {"System Volume", kFolder, 0, "root", K::Plain},
        {"pagefile.sys", 0x20, 0, "", K::Plain},
    };
    for (const auto& c : cases) {
        const std::string where = c.where;
        EntryFacts facts{QString::fromLatin1(c.name), c.attributes, c.tag, where != "tag?", where == "root",
                         where == "path"};
        EXPECT_EQ(entryKind(facts), c.kind) << c.name << std::hex << " " << c.attributes << " " << c.tag;
    }
}

TEST(ListingEnd, OnlyAFirstFetchMayFindNothingAtAll)
{
    const struct { std::uint32_t error; bool first, ends; } cases[] = {
        {kErrorNoMoreFiles, true, true},   {kErrorNoMoreFiles, false, true},
        {kErrorFileNotFound, true, true},  {kErrorFileNotFound, false, false},
        {kErrorAccessDenied, true, false}, {0, true, false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(endsListing(c.error, c.first), c.ends) << c.error << " " << c.first;
}

TEST(FreedSpace, DeduplicatedAndCompressedFilesFreeNothingToCountOn)
{
    EXPECT_TRUE(freesItsSpace(0x20, kReparseTagDedup));
    EXPECT_TRUE(freesItsSpace(0x420, kSymlinkTag));
    EXPECT_FALSE(freesItsSpace(0x420, kReparseTagDedup));
    EXPECT_FALSE(freesItsSpace(0x420, kReparseTagWof));
}

// In the order of DeletionRequest.
const char* const kRequestNames[] = {"posix+ro", "posix", "classic", "reset", "none"};

// Each row: what the volume refused before, whether the file is read-only, and
// the system's answers to the requests in turn (0 grants one); then the
// requests made, in order, and what the volume is known to refuse afterwards.
TEST(DeletionRequest, EachRefusalIsLearntAndAReadOnlyFileIsResetWhenDenied)
{
    const std::uint32_t denied = kErrorAccessDenied, unknown = kErrorInvalidParameter;
    const struct {
        DeletionSupport before;
        bool readOnly;
        std::vector<std::uint32_t> answers;
        const char* requests;
        bool ignoreRefused, posixRefused;
    } cases[] = {
        {{}, false, {0}, "posix", false, false},
        {{}, true, {0}, "posix+ro", false, false},
        // Windows before 1809 refuses the flag, or the request.
        {{}, true, {unknown, denied}, "posix+ro posix reset", true, false},
        {{}, true, {unknown, unknown, denied}, "posix+ro posix classic reset", true, true},
        {{}, false, {unknown, 0}, "posix classic", false, true},
        {{false, true}, false, {0}, "classic", false, true},
        {{true, false}, true, {}, "reset", true, false},
        // A file server that takes the request and ignores its flag.
        {{}, true, {denied}, "posix+ro reset", false, false},
        // Any other failure stands.
        {{}, false, {denied}, "posix", false, false},
        {{}, true, {32}, "posix+ro", false, false},
    };
    for (const auto& c : cases) {
        DeletionSupport support = c.before;
        std::string made;
        DeletionRequest request = firstDeletionRequest(support, c.readOnly);
        for (std::size_t answer = 0; request != DeletionRequest::None; ++answer) {
            made += std::string(made.empty() ? "" : " ") + kRequestNames[static_cast<int>(request)];
            if (request == DeletionRequest::ResetReadOnly || answer >= c.answers.size() || c.answers[answer] == 0)
                break;
            request = nextDeletionRequest(request, c.answers[answer], c.readOnly, support);
        }
        EXPECT_EQ(made, c.requests) << c.requests;
        EXPECT_EQ(support.ignoreReadOnlyRefused, c.ignoreRefused) << c.requests;
        EXPECT_EQ(support.posixRefused, c.posixRefused) << c.requests;
    }
}

// Places on a volume as the system names them; Wine drops trailing dots and
// blanks from the names.
TEST(FolderPlace, NamesCompareExactlyButForTrailingDotsAndBlanks)
{
    const struct { const char *current, *expected; bool same; } cases[] = {
        {"\\a\\job", "\\a\\job", true},    {"\\a\\job", "\\a\\job.", true},   {"\\a\\job", "\\a\\job .", true},
        {"\\a\\Job", "\\a\\job", false},   {"\\b\\job", "\\a\\job", false},   {"\\a\\job\\x", "\\a\\job", false},
        {"\\", "\\", true},                {"", "\\a", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(standsAt(QString::fromLatin1(c.current), QString::fromLatin1(c.expected)), c.same) << c.current;
}

}
