#include "Hosts/Headless/OutputFile.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

namespace zelkon {

void writeWholeFile(const std::string& path, const std::string& bytes) {
  if (path == "-") {
    std::cout.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    std::cout.flush();
    if (!std::cout) throw FileError("standard output: cannot be written");
    return;
  }
  const std::string unfinished = path + ".part" + std::to_string(getpid());
  std::FILE* file = std::fopen(unfinished.c_str(), "wb");
  if (!file) throw FileError(path + ": cannot be written: " + std::strerror(errno));
  bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  int problem = errno;
  if (std::fclose(file) != 0) {
    problem = written ? errno : problem;
    written = false;
  }
  if (written && std::rename(unfinished.c_str(), path.c_str()) != 0) {
    problem = errno;
    written = false;
  }
  if (written) return;
  std::remove(unfinished.c_str());
  throw FileError(path + ": cannot be written: " + std::strerror(problem));
}

std::string readWholeFile(const std::string& path) {
  if (path == "-") return {std::istreambuf_iterator<char>(std::cin), {}};
  std::error_code ignored;
  if (std::filesystem::is_directory(path, ignored)) throw FileError(path + ": cannot be read: this is a folder");
  std::ifstream file(path, std::ios::binary);
  if (!file) throw FileError(path + ": cannot be read: " + std::strerror(errno));
  std::string text{std::istreambuf_iterator<char>(file), {}};
  if (file.bad()) throw FileError(path + ": cannot be read");
  return text;
}

}  // namespace zelkon
