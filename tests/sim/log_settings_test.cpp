#include <fstream>

#include <gtest/gtest.h>

#include "sim/LogSettings.h"
#include "tests/sim/PlayedServices.h"

namespace qlx::sim {
namespace {

/// What a configuration file with these settings in its logging section gives.
LogSettings Read(const std::string& settings) {
  const ScratchDirectory directory;
  const auto path = directory.path() / "QLXConfig.xml";
  std::ofstream(path) << "<MZP><Logging_Configuration>" << settings << "</Logging_Configuration></MZP>";
  return ReadLogSettings(path);
}

TEST(LogSettings, ComeFromTheLoggingSection) {
  const LogSettings settings =
      Read("<TCP_Port>40000</TCP_Port><File_Name>C:\\a\\b.log</File_Name><File_Size>7</File_Size>");
  EXPECT_EQ(settings.port, 40000);
  EXPECT_EQ(settings.file_name, "b.log");
  EXPECT_EQ(settings.file_bytes, 7U * 1024);
}

TEST(LogSettings, KeepTheirDefaultsWithoutAFile) {
  const LogSettings settings = ReadLogSettings("/nonexistent/QLXConfig.xml");
  EXPECT_EQ(settings.port, 38674);
  EXPECT_EQ(settings.file_name, "qlx.log");
  EXPECT_EQ(settings.file_bytes, 10240U * 1024);
}

TEST(LogSettings, AFileNameMayBeOfEitherSystem) {
  EXPECT_EQ(Read("<File_Name>/var/log/x.log</File_Name>").file_name, "x.log");
  EXPECT_EQ(Read("<File_Name>plain.log</File_Name>").file_name, "plain.log");
  EXPECT_EQ(Read("<File_Name>C:\\logs/mixed\\\xC3\xA4.log</File_Name>").file_name, "\xC3\xA4.log");
}

TEST(LogSettings, AFileNameThatNamesNoFileKeepsTheDefault) {
  for (const char* name : {"", "C:\\logs\\", "/tmp/..", "."}) {
    EXPECT_EQ(Read("<File_Name>" + std::string(name) + "</File_Name>").file_name, "qlx.log") << name;
  }
}

TEST(LogSettings, UnusableNumbersKeepTheirDefaults) {
  EXPECT_EQ(Read("<TCP_Port>65536</TCP_Port>").port, 38674);
  EXPECT_EQ(Read("<TCP_Port>abc</TCP_Port>").port, 38674);
  EXPECT_EQ(Read("<File_Size>0</File_Size>").file_bytes, 10240U * 1024);
  EXPECT_EQ(Read("<File_Size>-1</File_Size>").file_bytes, 10240U * 1024);
}

TEST(LogSettings, ADamagedFileKeepsTheDefaultsAndStaysAsItIs) {
  const ScratchDirectory directory;
  const auto path = directory.path() / "QLXConfig.xml";
  std::ofstream(path) << "<MZP><Logging_Con";
  EXPECT_EQ(ReadLogSettings(path).port, 38674);
  EXPECT_EQ(std::filesystem::file_size(path), 17U);
}

}  // namespace
}  // namespace qlx::sim
