// Writes pictures one after another on a thread of its own, while others are drawn; where no thread can be started, on
// the one that draws.
#pragma once

#include <condition_variable>
#include <exception>
#include <mutex>
#include <string>
#include <thread>

#include "Hosts/Headless/ChartPicture.h"

namespace zelkon {

class PictureWriter {
 public:
  PictureWriter() = default;
  // Waits for the picture that is being written. What goes wrong with it then is lost: finish() tells.
  ~PictureWriter();
  PictureWriter(const PictureWriter&) = delete;
  PictureWriter& operator=(const PictureWriter&) = delete;

  // Begins as soon as the picture before is written. Throws what went wrong with that one.
  void write(const std::string& path, PictureBytes bytes);
  // Returns when all is written. Throws what went wrong.
  void finish();

 private:
  bool start();
  void run();

  std::mutex mutex_;
  std::condition_variable changed_;
  // Under the mutex:
  std::string path_;
  PictureBytes bytes_;  // of the picture that is being written; empty while there is none
  std::exception_ptr problem_;
  bool isEnding_ = false;

  std::thread thread_;  // from the first picture on
};

}  // namespace zelkon
