#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <thread>

#include "Hosts/Headless/OutputFile.h"
#include "Hosts/Headless/PictureWriter.h"

namespace zelkon {
namespace {

namespace fs = std::filesystem;

class PictureWriterTest : public testing::Test {
 protected:
  PictureWriterTest() : folder_(fs::temp_directory_path() / fs::path("zelkon-writer-" + std::to_string(getpid()))) {
    fs::create_directories(folder_);
  }
  ~PictureWriterTest() override { fs::remove_all(folder_); }
  std::string path(const std::string& name) const { return (folder_ / name).string(); }

  fs::path folder_;
};

TEST_F(PictureWriterTest, WritesEveryPictureOneAfterAnother) {
  PictureWriter writer;
  std::atomic<int> busy = 0, most = 0;
  for (int i = 0; i < 50; ++i) {
    writer.write(path(std::to_string(i)), [&, i] {
      most = std::max(most.load(), ++busy);
      std::this_thread::yield();
      --busy;
      return "picture " + std::to_string(i);
    });
  }
  writer.finish();
  EXPECT_EQ(most, 1);
  for (int i = 0; i < 50; ++i) EXPECT_EQ(readWholeFile(path(std::to_string(i))), "picture " + std::to_string(i));
}

TEST_F(PictureWriterTest, WorksBesideTheOneThatDraws) {
  PictureWriter writer;
  std::thread::id other;
  writer.write(path("a"), [&] {
    other = std::this_thread::get_id();
    return std::string("a");
  });
  writer.finish();
  EXPECT_NE(other, std::this_thread::get_id());
}

TEST_F(PictureWriterTest, TellsOnceWhatWentWrongAndGoesOn) {
  PictureWriter writer;
  writer.write(path("no/folder"), [] { return std::string("a"); });
  EXPECT_THROW(writer.write(path("b"), [] { return std::string("b"); }), FileError);
  EXPECT_FALSE(fs::exists(path("b")));
  writer.write(path("c"), []() -> std::string { throw FileError("no memory"); });
  EXPECT_THROW(writer.finish(), FileError);
  writer.finish();
  writer.write(path("d"), [] { return std::string("d"); });
  writer.finish();
  EXPECT_EQ(readWholeFile(path("d")), "d");
}

TEST_F(PictureWriterTest, WaitsForThePictureWhenItGoes) {
  {
    PictureWriter writer;
    writer.write(path("a"), [] {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      return std::string("a");
    });
  }
  EXPECT_EQ(readWholeFile(path("a")), "a");
}

TEST_F(PictureWriterTest, WithoutAPictureThereIsNothingToWaitFor) {
  PictureWriter writer;
  writer.finish();
}

}  // namespace
}  // namespace zelkon
