#include "TemporaryFolder.h"

#include "UnlinkGuard.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace brisko::test {

TemporaryFolder::TemporaryFolder() {
  std::string pattern = (fs::canonical(fs::temp_directory_path()) / "brisko-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    std::perror("mkdtemp");
    std::abort();
  }
  path_ = pattern;
  UnlinkGuard::allow(path_);
}

TemporaryFolder::~TemporaryFolder() {
  if (testing::Test::HasFailure()) {
    std::fprintf(stderr, "kept: %s\n", path_.c_str());
    return;
  }
  std::error_code error;
  for (auto it = fs::recursive_directory_iterator(path_, error); it != fs::end(it);
       it.increment(error)) {
    if (it->is_directory(error) && !it->is_symlink(error)) {
      fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, error);
    }
  }
  fs::remove_all(path_, error);
  UnlinkGuard::disallow(path_);
}

std::string TemporaryFolder::folder(std::string_view name) const {
  std::string made = *this / name;
  fs::create_directories(made);
  return made;
}

std::string TemporaryFolder::file(std::string_view name, std::string_view content) const {
  std::string made = *this / name;
  fs::create_directories(fs::path(made).parent_path());
  std::ofstream(made, std::ios::binary) << content;
  return made;
}

std::string TemporaryFolder::sizedFile(std::string_view name, std::size_t size) const {
  std::string made = file(name);
  fs::resize_file(made, size);
  return made;
}

std::string TemporaryFolder::link(std::string_view name, std::string_view target) const {
  std::string made = *this / name;
  fs::create_directories(fs::path(made).parent_path());
  fs::create_symlink(target, made);
  return made;
}

std::string contentOf(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

bool exists(const std::string& path) {
  std::error_code error;
  return fs::symlink_status(path, error).type() != fs::file_type::not_found;
}

}  // namespace brisko::test
