#include "Hosts/Headless/OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include "Hosts/Headless/PrintableText.h"
#include "Hosts/Headless/UnfinishedFile.h"

namespace zelkon {

namespace {

constexpr size_t kBlock = 64 * 1024;

std::string textOf(int problem) { return std::generic_category().message(problem); }

FileError cannotWrite(const std::string& path, const std::string& problem) {
  return FileError(printableName(path) + ": cannot be written: " + problem);
}

// An open file or folder, or -1.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  operator int() const { return number_; }  // NOLINT(google-explicit-constructor): stands for its number

 private:
  int number_;
};

Descriptor openFolder(int within, const std::string& path, int flags) {
  return Descriptor(openat(within, path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC | flags));
}

void writeInFolder(int folder, const std::string& name, const std::string& bytes) {
  UnfinishedFile file(folder);
  file.write(bytes);
  file.moveTo(name);
}

bool isLink(int folder, const std::string& name) {
  struct stat found;
  return fstatat(folder, name.c_str(), &found, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(found.st_mode);
}

std::vector<std::string> componentsOf(const std::string& name) {
  std::vector<std::string> components;
  for (size_t start = 0; start <= name.size();) {
    const size_t end = std::min(name.find('/', start), name.size());
    if (std::string component = name.substr(start, end - start); !component.empty() && component != ".")
      components.push_back(std::move(component));
    start = end + 1;
  }
  return components;
}

}  // namespace

void writeWholeFile(const std::string& path, const std::string& bytes) {
  if (path.find('\0') != std::string::npos) throw cannotWrite(path, textOf(EINVAL));
  const size_t slash = path.rfind('/');
  const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
  const std::string parent = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  const Descriptor folder = openFolder(AT_FDCWD, parent, 0);
  if (folder < 0) throw cannotWrite(path, textOf(errno));
  try {
    writeInFolder(folder, name, bytes);
  } catch (const std::system_error& error) {
    throw cannotWrite(path, textOf(error.code().value()));
  }
}

std::string readWholeFile(const std::string& path, size_t most) {
  const auto fail = [&](const std::string& problem) -> FileError {
    return FileError((path == "-" ? "standard input" : printableName(path)) + ": " + problem);
  };
  if (path.find('\0') != std::string::npos) throw fail("cannot be read: " + textOf(EINVAL));
  const Descriptor opened(path == "-" ? -1 : open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (opened < 0 && path != "-") throw fail("cannot be read: " + textOf(errno));
  const int file = path == "-" ? STDIN_FILENO : static_cast<int>(opened);
  std::string text;
  struct stat facts;
  if (fstat(file, &facts) == 0 && S_ISREG(facts.st_mode))
    text.reserve(std::min(static_cast<size_t>(facts.st_size), most) + kBlock);
  for (;;) {
    const size_t before = text.size();
    text.resize(before + kBlock);
    const ssize_t count = read(file, text.data() + before, kBlock);
    const int problem = errno;
    text.resize(before + static_cast<size_t>(std::max<ssize_t>(count, 0)));
    if (count < 0 && problem == EISDIR) throw fail("cannot be read: this is a folder");
    if (count < 0 && problem != EINTR) throw fail("cannot be read: " + textOf(problem));
    if (count == 0) return text;
    if (text.size() > most) throw fail("there are more than " + std::to_string(most) + " bytes");
  }
}

bool isNameBelowFolder(const std::string& name) {
  if (name.empty() || name.front() == '/' || name.back() == '/' || name.find('\0') != std::string::npos) return false;
  const std::vector<std::string> components = componentsOf(name);
  return !components.empty() && std::find(components.begin(), components.end(), "..") == components.end();
}

OutputFolder::OutputFolder(const std::string& path) : path_(path) {
  std::error_code failure;
  if (!path.empty()) std::filesystem::create_directories(path, failure);
  if (failure) throw FileError(printableName(path) + ": cannot be made: " + textOf(failure.value()));
  folder_ = open(path.empty() ? "." : path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
  if (folder_ < 0) throw FileError(printableName(path) + ": cannot be opened: " + textOf(errno));
}

OutputFolder::~OutputFolder() { close(folder_); }

void OutputFolder::write(const std::string& name, const std::string& bytes) const {
  if (!isNameBelowFolder(name)) throw FileError(quotedText(name) + ": a name below the output folder is expected");
  const std::string path = path_.empty() ? name : path_ + "/" + name;
  std::vector<std::string> components = componentsOf(name);
  const std::string last = std::move(components.back());
  components.pop_back();

  const auto refuseLink = [&](int folder, const std::string& component) {
    if (isLink(folder, component))
      throw cannotWrite(path, quotedText(component) + " is a symbolic link, which could lead out of the folder");
  };
  Descriptor folder = openFolder(folder_, ".", O_NOFOLLOW);
  for (const std::string& component : components) {
    Descriptor inner = openFolder(folder, component, O_NOFOLLOW);
    if (inner < 0) {
      const int problem = errno;
      refuseLink(folder, component);
      throw cannotWrite(path, textOf(problem));
    }
    folder = std::move(inner);
  }
  // Moving a file to its place never writes through a link; this only tells of one.
  refuseLink(folder, last);
  try {
    writeInFolder(folder, last, bytes);
  } catch (const std::system_error& error) {
    throw cannotWrite(path, textOf(error.code().value()));
  }
}

}  // namespace zelkon
