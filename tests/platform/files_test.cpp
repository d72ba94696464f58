#include "platform/files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "platform/system_time.h"

namespace kestrion {
namespace {

class FilesTest : public testing::Test {
  protected:
    void SetUp() override {
        folder_ = testing::TempDir() + "files_test_" + std::to_string(CurrentProcessNumber());
        std::filesystem::create_directory(folder_);
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    static std::string ContentOf(const std::string& path) {
        std::ostringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        return text.str();
    }

    std::string folder_;
};

TEST_F(FilesTest, WritesFlushesAndTellsTheSize) {
    const std::string path = folder_ + "/a";
    std::unique_ptr<OutputFile> file;
    ASSERT_EQ(CreateOutputFile(path, file), S_OK);
    std::uint64_t size = 99;
    EXPECT_EQ(file->Size(size), S_OK);
    EXPECT_EQ(size, 0U);
    EXPECT_EQ(file->Write("one\r\n"), S_OK);
    EXPECT_EQ(file->Write(""), S_OK);
    EXPECT_EQ(file->Write(std::string_view("\0two", 4)), S_OK);
    EXPECT_EQ(file->Flush(), S_OK);
    EXPECT_EQ(file->Size(size), S_OK);
    EXPECT_EQ(size, 9U);
    EXPECT_EQ(ContentOf(path), std::string("one\r\n\0two", 9)) << "others can read it meanwhile";
}

TEST_F(FilesTest, ReplacesWhatWasThere) {
    const std::string path = folder_ + "/a";
    std::ofstream(path) << "something longer";
    std::unique_ptr<OutputFile> file;
    ASSERT_EQ(CreateOutputFile(path, file), S_OK);
    EXPECT_EQ(file->Write("new"), S_OK);
    file.reset();
    EXPECT_EQ(ContentOf(path), "new");
}

TEST_F(FilesTest, AMissingFolderIsAPathThatIsNotFound) {
    std::unique_ptr<OutputFile> file;
    EXPECT_EQ(CreateOutputFile(folder_ + "/none/a", file), static_cast<HRESULT>(0x80070003U));
    EXPECT_EQ(file, nullptr);
}

TEST_F(FilesTest, AFolderCannotBeWritten) {
    std::unique_ptr<OutputFile> file;
    EXPECT_EQ(CreateOutputFile(folder_, file), static_cast<HRESULT>(0x80070005U));
}

TEST_F(FilesTest, AFullDeviceFailsTheWrite) {
    ASSERT_TRUE(FileExists("/dev/full"));
    std::unique_ptr<OutputFile> file;
    ASSERT_EQ(CreateOutputFile("/dev/full", file), S_OK);
    EXPECT_EQ(file->Write("x"), static_cast<HRESULT>(0x80070070U));
    EXPECT_EQ(file->Flush(), S_OK) << "nothing to make safe";
}

TEST_F(FilesTest, AFileExistsAndAFolderIsNone) {
    std::ofstream(folder_ + "/a") << "x";
    EXPECT_TRUE(FileExists(folder_ + "/a"));
    EXPECT_FALSE(FileExists(folder_ + "/b"));
    EXPECT_FALSE(FileExists(folder_));
    EXPECT_FALSE(FileExists(""));
}

TEST_F(FilesTest, ReadsAWholeFile) {
    const std::string bytes("one\r\n\0two\xFF", 10);
    std::ofstream(folder_ + "/a", std::ios::binary) << bytes;
    std::string content;
    std::string reason;
    EXPECT_EQ(ReadWholeFile(folder_ + "/a", 10, content, reason), S_OK);
    EXPECT_EQ(content, bytes);
    std::ofstream(folder_ + "/empty") << "";
    EXPECT_EQ(ReadWholeFile(folder_ + "/empty", 10, content, reason), S_OK);
    EXPECT_EQ(content, "");
    EXPECT_EQ(reason, "");
}

TEST_F(FilesTest, AFileBeyondTheLimitIsNotRead) {
    std::ofstream(folder_ + "/a") << "12345678901";
    std::string content = "as it was";
    std::string reason;
    EXPECT_EQ(ReadWholeFile(folder_ + "/a", 10, content, reason), static_cast<HRESULT>(0x800700DF));
    EXPECT_EQ(reason, "it is larger than 10 bytes");
    EXPECT_EQ(content, "as it was");
}

TEST_F(FilesTest, AFileThatTellsNoSizeIsReadToItsEnd) {
    std::string content;
    std::string reason;
    EXPECT_EQ(ReadWholeFile("/proc/self/stat", 100000, content, reason), S_OK);
    EXPECT_GT(content.size(), 10U);
    EXPECT_EQ(ReadWholeFile("/proc/self/stat", 10, content, reason),
              static_cast<HRESULT>(0x800700DF));
}

TEST_F(FilesTest, WhatIsNoFileIsNotReadAndSaysSo) {
    std::string content;
    std::string reason;
    EXPECT_EQ(ReadWholeFile(folder_ + "/none", 10, content, reason),
              static_cast<HRESULT>(0x80070003));
    EXPECT_EQ(reason, "no such file or directory");
    EXPECT_EQ(ReadWholeFile(folder_, 10, content, reason), static_cast<HRESULT>(0x80070005));
    EXPECT_EQ(reason, "it is a folder");
    EXPECT_EQ(ReadWholeFile("/dev/zero", 10, content, reason), static_cast<HRESULT>(0x80070005));
    EXPECT_EQ(reason, "it is no regular file");
    const std::string pipe = folder_ + "/pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(ReadWholeFile(pipe, 10, content, reason), static_cast<HRESULT>(0x80070005));
}

TEST(PathTest, TheCurrentDirectoryIsAbsolute) {
    EXPECT_TRUE(std::filesystem::path(CurrentDirectory()).is_absolute());
}

TEST(PathTest, ResolvesAgainstAFolder) {
    EXPECT_EQ(ResolvePath("/data/run", "a.xml"), "/data/run/a.xml");
    EXPECT_EQ(ResolvePath("/data/run", "../b/./a.xml"), "/data/b/a.xml");
    EXPECT_EQ(ResolvePath("/data/run", "/x/../a.xml"), "/x/../a.xml");
    EXPECT_EQ(ResolvePath("", "a.xml"), "a.xml");
}

TEST(PathTest, TellsTheFolder) {
    EXPECT_EQ(FolderOf("/data/run/a.xml"), "/data/run");
    EXPECT_EQ(FolderOf("a.xml"), "");
}

TEST(PathTest, ABareNameHasNoSeparator) {
    EXPECT_TRUE(IsBareName("a.xml"));
    EXPECT_FALSE(IsBareName("./a.xml"));
    EXPECT_FALSE(IsBareName("/a.xml"));
}

TEST(PathTest, TheExtensionIsThatOfTheFileName) {
    EXPECT_EQ(ExtensionOf("/data/run.d/a.tar.xml"), ".xml");
    EXPECT_EQ(ExtensionOf("/data/run.d/a"), "");
    EXPECT_EQ(ExtensionOf("a."), ".");
    EXPECT_EQ(ExtensionOf(".xml"), ".xml");
}

TEST(SystemTimeTest, TheTimeOfDayIsWithinItsBounds) {
    const WallTime now = CurrentWallTime();
    EXPECT_GT(now.secondsSinceEpoch, 1700000000);
    EXPECT_GE(now.year, 2023);
    EXPECT_TRUE(now.month >= 1 && now.month <= 12);
    EXPECT_TRUE(now.day >= 1 && now.day <= 31);
    EXPECT_TRUE(now.hour >= 0 && now.hour <= 23);
    EXPECT_TRUE(now.minute >= 0 && now.minute <= 59);
    EXPECT_TRUE(now.second >= 0 && now.second <= 60);
    EXPECT_TRUE(now.millisecond >= 0 && now.millisecond <= 999);
}

TEST(SystemTimeTest, TheFirstThreadHasTheNumberOfTheProcess) {
    EXPECT_EQ(CurrentThreadNumber(), CurrentProcessNumber());
}

}  // namespace
}  // namespace kestrion
