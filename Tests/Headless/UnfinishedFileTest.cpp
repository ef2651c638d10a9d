// Unfinished files are gone whatever ends their process.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <system_error>
#include <thread>
#include <vector>

#include "Hosts/Headless/OutputFile.h"
#include "Hosts/Headless/UnfinishedFile.h"

namespace zelkon {
namespace {

namespace fs = std::filesystem;

class UnfinishedFileTest : public testing::Test {
 protected:
  UnfinishedFileTest()
      : folder_(fs::temp_directory_path() / fs::path("zelkon-unfinished-" + std::to_string(getpid()))) {
    fs::create_directories(folder_);
    descriptor_ = open(folder_.c_str(), O_PATH | O_DIRECTORY);
  }
  ~UnfinishedFileTest() override {
    close(descriptor_);
    fs::remove_all(folder_);
  }
  long files() const { return std::distance(fs::directory_iterator(folder_), fs::directory_iterator()); }

  // How a process ends that does this after it has taken care of signals.
  template <typename Body>
  int endOf(Body body) {
    const pid_t child = fork();
    if (child == 0) {
      const rlimit none{0, 0};
      setrlimit(RLIMIT_CORE, &none);
      UnfinishedFile::removeAllOnSignals();
      body();
      _exit(77);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
  }

  fs::path folder_;
  int descriptor_;
};

TEST_F(UnfinishedFileTest, HasItsNameOnceItIsWhole) {
  UnfinishedFile file(descriptor_);
  file.write("all ");
  EXPECT_EQ(files(), 1);
  EXPECT_FALSE(fs::exists(folder_ / "a"));
  file.write("of it");
  file.moveTo("a");
  EXPECT_EQ(files(), 1);
  EXPECT_EQ(readWholeFile((folder_ / "a").string()), "all of it");
}

TEST_F(UnfinishedFileTest, IsGoneWhereItIsNotMoved) {
  { UnfinishedFile file(descriptor_); }
  EXPECT_EQ(files(), 0);
  {
    UnfinishedFile file(descriptor_);
    EXPECT_THROW(file.moveTo("absent/a"), std::system_error);
    EXPECT_EQ(files(), 1);
  }
  EXPECT_EQ(files(), 0);
}

TEST_F(UnfinishedFileTest, IsGoneAfterEverySignalThatEndsTheProcess) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGXFSZ, SIGXCPU}) {
    const int status = endOf([&] {
      UnfinishedFile first(descriptor_), second(descriptor_), third(descriptor_);
      first.write("half");
      second.moveTo("whole");
      raise(signal);
    });
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), signal);
    EXPECT_EQ(files(), 1) << "the finished one stays";
    fs::remove(folder_ / "whole");
  }
}

TEST_F(UnfinishedFileTest, IsGoneWhereASignalComesWhileThreadsWrite) {
  for (int i = 0; i < 20; ++i) {
    const int status = endOf([&] {
      std::vector<std::thread> threads;
      for (int thread = 0; thread < 3; ++thread)
        threads.emplace_back([&] {
          for (;;) {
            UnfinishedFile file(descriptor_);
            file.write("half");
          }
        });
      usleep(static_cast<useconds_t>(1000 + 300 * i));
      kill(getpid(), SIGTERM);
      for (;;) pause();
    });
    ASSERT_TRUE(WIFSIGNALED(status));
    ASSERT_EQ(WTERMSIG(status), SIGTERM);
    ASSERT_EQ(files(), 0);
  }
}

TEST_F(UnfinishedFileTest, AnIgnoredSignalStaysIgnored) {
  const auto before = signal(SIGHUP, SIG_IGN);
  const int status = endOf([] { raise(SIGHUP); });
  signal(SIGHUP, before);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 77);
}

}  // namespace
}  // namespace zelkon
