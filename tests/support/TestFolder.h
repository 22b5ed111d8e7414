// A folder of the running test's own under the test temporary folder, made when first
// used and removed with the object.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace plotmeter::testing {

class TestFolder {
 public:
  TestFolder() = default;
  // A folder named after the test and `suffix`, for a run that may go on beside another
  // of the same test.
  explicit TestFolder(std::string suffix) : suffix_(std::move(suffix)) {}
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;
  ~TestFolder() {
    if (!folder_.empty()) std::filesystem::remove_all(folder_);
  }

  // Where `name` stands in the folder; the folder itself for an empty name.
  std::string Path(const std::string& name = "") {
    if (folder_.empty()) {
      const ::testing::TestInfo* info = ::testing::UnitTest::GetInstance()->current_test_info();
      std::string test = std::string(info->test_suite_name()) + "_" + info->name() + suffix_;
      std::replace(test.begin(), test.end(), '/', '_');
      folder_ = std::filesystem::path(::testing::TempDir()) / test;
      std::filesystem::remove_all(folder_);
      std::filesystem::create_directories(folder_);
    }
    return name.empty() ? folder_.string() : (folder_ / name).string();
  }

  // Writes `text` byte for byte as `name`; returns its path.
  std::string Write(const std::string& name, const std::string& text) {
    std::string path = Path(name);
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }

  int FileCount() {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator(Path()), {}));
  }

  static std::string Contents(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
  }

 private:
  std::string suffix_;
  std::filesystem::path folder_;
};

}  // namespace plotmeter::testing
