// What is POSIX' own under the file layer: names that differ in case only, links, pipes, limits.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "platform/Clock.h"
#include "platform/CodePage.h"
#include "platform/FileSystem.h"
#include "platform/Files.h"
#include "platform/Profile.h"
#include "platform/SystemError.h"
#include "tests/support/ScratchFolder.h"

namespace ostrel::platform {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

std::string SystemName(const ScratchFolder& folder, std::string_view name) {
  return ToUtf8(folder.Path()) + "/" + std::string(name);
}

int OpenToRead(const ScratchFolder& folder, TextView name) {
  return File().Open(folder.Path(name), FileAccess::kRead, FileCreation::kOpenExisting);
}

// While it lives, no file of this process grows beyond so many bytes.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &oBefore);
    const rlimit limit{bytes, oBefore.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &oBefore); }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit oBefore{};
};

class TimeZone {
 public:
  explicit TimeZone(const char* zone) { setenv("TZ", zone, 1); }
  ~TimeZone() { unsetenv("TZ"); }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;
};

TEST(FilesPosix, WhereThereIsNoMoreRoomTheDiskIsFull) {
  ScratchFolder folder;
  File file;
  ASSERT_EQ(file.Open(folder.Path(u"a"), FileAccess::kReadWrite, FileCreation::kOpenAlways), 0);
  const FileSizeLimit limit(10000);

  const int error = file.WriteAt(0, std::string(20000, 'x'));

  EXPECT_EQ(error, kDiskFull);
  EXPECT_EQ(file.Size(), 10000);  // a part was written before
}

// Another program's write to a file, without a lock: a shell's redirection, say.
class PlainWriter {
 public:
  explicit PlainWriter(const std::string& file)
      : descriptor(open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666)) {}
  ~PlainWriter() { close(descriptor); }
  PlainWriter(const PlainWriter&) = delete;
  PlainWriter& operator=(const PlainWriter&) = delete;

 private:
  int descriptor;
};

bool HasLeases(const ScratchFolder& folder) {
  folder.Write(u"probe", "");
  const int descriptor = open(SystemName(folder, "probe").c_str(), O_RDONLY | O_CLOEXEC);
  const bool leased = fcntl(descriptor, F_SETLEASE, F_RDLCK) == 0;
  close(descriptor);
  return leased;
}

TEST(FilesPosix, AFileThatIsBeingWrittenWithoutALockIsNotOpenedForReading) {
  ScratchFolder folder;
  const int expected = HasLeases(folder) ? kSharingViolation : 0;
  int whileWritten = 0;
  {
    const PlainWriter writer(SystemName(folder, "a.osl"));
    whileWritten = OpenToRead(folder, u"a.osl");
  }

  EXPECT_EQ(whileWritten, expected);
  EXPECT_EQ(OpenToRead(folder, u"a.osl"), 0);
}

TEST(FilesPosix, AFileThatIsOpenForReadingHoldsNoWriterUp) {
  ScratchFolder folder;
  folder.Write(u"a.osl", "abc");
  File file;
  ASSERT_EQ(file.Open(folder.Path(u"a.osl"), FileAccess::kRead, FileCreation::kOpenExisting), 0);

  const int writer = open(SystemName(folder, "a.osl").c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);

  EXPECT_GE(writer, 0);  // a lease that is still held would make it wait
  close(writer);
}

TEST(FilesPosix, AProfileSurvivesADiskThatIsFull) {
  ScratchFolder folder;
  const std::string before = "[G]\r\na=" + std::string(200, 'x') + "\r\n";
  folder.Write(u"osl.ini", before);
  const std::string value = "1";
  const FileSizeLimit limit(100);

  EXPECT_EQ(WriteProfileValue(folder.Path(u"osl.ini"), "G", "b", &value), kDiskFull);

  EXPECT_EQ(folder.Read(u"osl.ini"), before);
  EXPECT_EQ(folder.EntryCount(), 1u);
}

TEST(FilesPosix, TheExactFolderComesFirstAndThenTheFirstInTheAlphabet) {
  ScratchFolder folder;
  for (const TextView name : {u"NAME", u"Name", u"name"}) {
    folder.MakeFolder(name);
    folder.Write(Text(name) + u"/" + Text(name), "");
  }

  EXPECT_THAT(ListFiles(folder.Path(u"Name"), u"*"), ElementsAre(u"Name"));
  EXPECT_THAT(ListFiles(folder.Path(u"nAME"), u"*"), ElementsAre(u"NAME"));
  EXPECT_EQ(OpenToRead(folder, u"nAME\\NAME"), 0);
}

TEST(FilesPosix, NamesOfFilesThatDifferInCaseAreDifferentFiles) {
  ScratchFolder folder;
  folder.Write(u"name", "of before");
  File file;

  EXPECT_EQ(OpenToRead(folder, u"Name"), kFileNotFound);
  EXPECT_EQ(EraseFile(folder.Path(u"Name")), kFileNotFound);
  EXPECT_FALSE(ModifiedTime(folder.Path(u"Name")));
  ASSERT_EQ(file.Open(folder.Path(u"Name"), FileAccess::kWrite, FileCreation::kOpenAlways), 0);
  EXPECT_EQ(RenameOver(folder.Path(u"Name"), folder.Path(u"NAME")), 0);

  EXPECT_EQ(folder.Read(u"name"), "of before");
  EXPECT_THAT(ListFiles(folder.Path(), u"*"), ElementsAre(u"NAME", u"name"));
}

TEST(FilesPosix, ARenameInCaseOnlyIsCarriedOut) {
  ScratchFolder folder;
  folder.Write(u"a.txt", "abc");

  ASSERT_EQ(RenamePath(folder.Path(u"a.txt"), folder.Path(u"A.TXT")), 0);

  EXPECT_THAT(ListFiles(folder.Path(), u"*"), ElementsAre(u"A.TXT"));
}

TEST(FilesPosix, APipeIsNeitherOpenedNorWaitedFor) {
  ScratchFolder folder;
  ASSERT_EQ(mkfifo(SystemName(folder, "pipe.osl").c_str(), 0600), 0);

  EXPECT_EQ(OpenToRead(folder, u"pipe.osl"), kAccessDenied);
  EXPECT_EQ(File().Open(folder.Path(u"pipe.osl"), FileAccess::kWrite, FileCreation::kOpenAlways),
            kAccessDenied);

  EXPECT_TRUE(ListFiles(folder.Path(), u"*").empty());
}

TEST(FilesPosix, WhoeverReadsAPipeNoticesNothing) {
  ScratchFolder folder;
  const std::string pipe = SystemName(folder, "pipe.osl");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  pollfd reader{open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC), POLLIN, 0};

  File().Open(folder.Path(u"pipe.osl"), FileAccess::kWrite, FileCreation::kOpenAlways);

  EXPECT_EQ(poll(&reader, 1, 0), 0);  // a writer that came and went would be told
  close(reader.fd);
}

TEST(FilesPosix, ADeviceIsNotOpened) {
  EXPECT_EQ(File().Open(u"/dev/zero", FileAccess::kRead, FileCreation::kOpenExisting),
            kAccessDenied);
}

TEST(FilesPosix, ALinkIsFollowedAndOneInACircleIsAnError) {
  ScratchFolder folder;
  folder.Write(u"file", "abc");
  std::filesystem::create_symlink("file", SystemName(folder, "link"));
  std::filesystem::create_symlink("circle", SystemName(folder, "circle"));

  EXPECT_EQ(OpenToRead(folder, u"link"), 0);
  EXPECT_EQ(OpenToRead(folder, u"circle"), kInvalidName);

  EXPECT_THAT(ListFiles(folder.Path(), u"*"), ElementsAre(u"circle", u"file", u"link"));
}

TEST(FilesPosix, NamesThatNoProductPathCanReachAreNotListed) {
  ScratchFolder folder;
  for (const char* name : {"a\\b.osl", "\xFF.osl", "good.osl"}) {
    std::ofstream(SystemName(folder, name)).flush();
  }

  std::vector<Text> unreachable;
  EXPECT_THAT(ListFiles(folder.Path(), u"*.osl", &unreachable), ElementsAre(u"good.osl"));
  EXPECT_THAT(unreachable, ElementsAre(u"a\\b.osl", u"\uFFFD.osl"));
}

TEST(FilesPosix, AProfileBehindALinkStaysThereWithItsPermissions) {
  ScratchFolder folder;
  folder.Write(u"real.ini", "[G]\r\na=1\r\n");
  std::filesystem::permissions(SystemName(folder, "real.ini"), std::filesystem::perms(0640));
  std::filesystem::create_symlink("real.ini", SystemName(folder, "osl.ini"));
  const std::string value = "2";

  ASSERT_EQ(WriteProfileValue(folder.Path(u"osl.ini"), "G", "a", &value), 0);

  EXPECT_TRUE(std::filesystem::is_symlink(SystemName(folder, "osl.ini")));
  EXPECT_EQ(folder.Read(u"real.ini"), "[G]\r\na=2\r\n");
  EXPECT_EQ(std::filesystem::status(SystemName(folder, "real.ini")).permissions(),
            std::filesystem::perms(0640));
}

TEST(FilesPosix, AProfileKeepsForeignLinesByteForByte) {
  ScratchFolder folder;
  folder.Write(u"osl.ini", "\t[G] \n a = 1 \n\n  ; odd\xFF\n junk \n[H\n\n\n[I]\nb=2");
  const std::string value = "9";

  ASSERT_EQ(WriteProfileValue(folder.Path(u"osl.ini"), "G", "c", &value), 0);

  EXPECT_EQ(folder.Read(u"osl.ini"),
            "\t[G] \n a = 1 \n\n  ; odd\xFF\n junk \n[H\nc=9\r\n\n\n[I]\nb=2");
}

TEST(FilesPosix, TheCodePageIsTheProgramsOwn) { EXPECT_FALSE(SystemCodePage()); }

TEST(ClockPosix, TheGeneralDateIsInUsForm) {
  const TimeZone zone("UTC0");
  const TimePoint midnight = std::chrono::sys_days{2010y / 1 / 5};

  EXPECT_EQ(SystemClock().GeneralDate(midnight + 9h + 3min + 7s), u"1/5/2010 9:03:07 AM");
  EXPECT_EQ(SystemClock().GeneralDate(midnight + 12h), u"1/5/2010 12:00:00 PM");
  EXPECT_EQ(SystemClock().GeneralDate(midnight + 23h), u"1/5/2010 11:00:00 PM");
  EXPECT_EQ(SystemClock().GeneralDate(midnight + 1s), u"1/5/2010 12:00:01 AM");
  EXPECT_EQ(SystemClock().GeneralDate(midnight), u"1/5/2010");
}

TEST(ClockPosix, LocalTimeFollowsTheZoneAndItsSummer) {
  const TimeZone zone("EST5EDT,M3.2.0,M11.1.0");

  const LocalTime winter = SystemClock().ToLocalTime(std::chrono::sys_days{2010y / 1 / 5});
  const LocalTime summer = SystemClock().ToLocalTime(std::chrono::sys_days{2010y / 7 / 5});

  EXPECT_EQ(winter.offsetMinutes, -5 * 60);
  EXPECT_EQ(winter.hour, 19);
  EXPECT_EQ(winter.day, 4);
  EXPECT_EQ(summer.offsetMinutes, -4 * 60);
}

TEST(ClockPosix, ATimeBefore1970BelongsToTheSecondThatItIsIn) {
  const TimeZone zone("UTC0");

  const LocalTime local = SystemClock().ToLocalTime(TimePoint() - 1ms);

  EXPECT_EQ(local.year, 1969);
  EXPECT_EQ(local.second, 59);
}

}  // namespace
}  // namespace ostrel::platform
