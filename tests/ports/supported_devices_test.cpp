#include "ports/supported_devices.h"

#include <filesystem>
#include <fstream>
#include <vector>

#include <gmock/gmock.h>

#include "tests/support/TemporaryDirectory.h"

namespace qlx {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr int kIds = 18;

class SupportedDevicesFile : public ::testing::Test {
 protected:
  std::filesystem::path File() const { return directory_.path() / "supported_devices"; }

  SupportedDevices Read() {
    complaints_.clear();
    return ReadSupportedDevices((directory_.path() / "").wstring(),
                                [this](const std::string& complaint) { complaints_.push_back(complaint); });
  }
  SupportedDevices Read(const std::string& content) {
    std::ofstream(File(), std::ios::binary) << content;
    return Read();
  }
  SupportedDevices ReadV1(const std::string& value) {
    return Read("<supported_devices V1=\"" + value + "\"/>");
  }

  test::TemporaryDirectory directory_;
  std::vector<std::string> complaints_;
};

TEST_F(SupportedDevicesFile, WithoutItTheBuiltInIdentifiersStandAndNothingIsComplainedOf) {
  EXPECT_EQ(Read(), kSupportedDevices);
  EXPECT_THAT(complaints_, IsEmpty());
}

TEST_F(SupportedDevicesFile, GivesEveryIdentifier) {
  std::string attributes = " V1=\"0x1A2b\" V2=\"0xffff\"";
  for (int i = 1; i <= 16; ++i) {
    attributes += " P" + std::to_string(i) + "=\"0x20" + std::to_string(10 + i) + "\"";
  }
  const SupportedDevices given = Read("<?xml version=\"1.0\"?>\n<supported_devices" + attributes + "/>\n");
  EXPECT_THAT(given.vendors, ElementsAre(0x1A2B, 0xFFFF));
  EXPECT_THAT(given.products, ElementsAre(0x2011, 0x2012, 0x2013, 0x2014, 0x2015, 0x2016, 0x2017, 0x2018,
                                          0x2019, 0x2020, 0x2021, 0x2022, 0x2023, 0x2024, 0x2025, 0x2026));
  EXPECT_THAT(complaints_, IsEmpty());
}

TEST_F(SupportedDevicesFile, AMissingIdentifierStaysAndIsComplainedOf) {
  SupportedDevices expected = kSupportedDevices;
  expected.products[1] = 0x00AB;
  EXPECT_EQ(Read("<supported_devices P2=\"0x00ab\"/>"), expected);
  EXPECT_THAT(complaints_, SizeIs(kIds - 1));
  EXPECT_THAT(complaints_, Contains("V1 is missing"));
  EXPECT_THAT(complaints_, Contains("P16 is missing"));
}

TEST_F(SupportedDevicesFile, AMalformedIdentifierStaysAndIsComplainedOf) {
  for (const char* value : {"", "0x", "1209", "0x1", "0x12345", "0x12g4", "0X1234", " 0x123", "0x-123",
                            "0x12 4", "0x+123", "0x\xC2\xB2\xC2\xB2\xC2\xB2\xC2\xB2", "4660"}) {
    EXPECT_EQ(ReadV1(value), kSupportedDevices) << value;
    EXPECT_THAT(complaints_, Contains("V1 is no 0x and four digits")) << value;
  }
}

TEST_F(SupportedDevicesFile, TheTwoProductsThatHoldBothDrawersMoveWithIt) {
  const SupportedDevices given = Read("<supported_devices P2=\"0x0102\"/>");
  EXPECT_TRUE(given.HoldsBothDrawers(0x0102));
  EXPECT_TRUE(given.HoldsBothDrawers(0x0004));
  EXPECT_FALSE(given.HoldsBothDrawers(0x0002));
}

TEST_F(SupportedDevicesFile, WhatIsNoSuchXmlGivesNothingAndIsComplainedOfOnce) {
  for (const char* content : {"", "V1=0x1234", "<supported_devices V1=\"0x1234\">", "<other V1=\"0x1234\"/>",
                              "<other><supported_devices V1=\"0x1234\"/></other>", "\xFF\xFE\x00garbage"}) {
    EXPECT_EQ(Read(content), kSupportedDevices) << content;
    EXPECT_THAT(complaints_, ElementsAre("the file is not one XML element of that name")) << content;
  }
}

TEST_F(SupportedDevicesFile, AFileOfMoreThan64KilobytesIsNotRead) {
  EXPECT_EQ(Read("<supported_devices V1=\"0x1234\"/>" + std::string(64 << 10, ' ')), kSupportedDevices);
  EXPECT_THAT(complaints_, ElementsAre("the file cannot be read"));
}

TEST_F(SupportedDevicesFile, ADirectoryInItsPlaceIsNotRead) {
  std::filesystem::create_directory(File());
  EXPECT_EQ(Read(), kSupportedDevices);
  EXPECT_THAT(complaints_, ElementsAre("the file cannot be read"));
}

}  // namespace
}  // namespace qlx
