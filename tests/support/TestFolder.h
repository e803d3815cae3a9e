// SPDX-License-Identifier: Apache-2.0
#pragma once
// A folder of its own for each test and process, removed afterwards: CTest runs the cases of one
// program at the same time.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

class TestFolder {
public:
    TestFolder() { std::filesystem::create_directories(path); }
    ~TestFolder() { std::filesystem::remove_all(path); }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    const std::filesystem::path path =
        std::filesystem::temp_directory_path() /
        ("orbel-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()) +
         "-" + std::to_string(getpid()));
};
