#include "ports/port_discovery.h"

#include <gtest/gtest.h>

namespace qlx {
namespace {

TEST(PortName, IsComAndTheNumberUpperCased) {
  EXPECT_EQ(PortName(L"\\\\?\\root#ports#0000#{guid}\\mzp_com7"), L"COM7");
  EXPECT_EQ(PortName(L"\\\\?\\quillon\\MZP_COM12"), L"COM12");
}

TEST(PortName, KeepsWhatFollowsTheNumber) {
  EXPECT_EQ(PortName(L"x\\MZP_COM3#a"), L"COM3#A");
}

TEST(PortName, IsTakenFromTheFirstOccurrence) {
  EXPECT_EQ(PortName(L"\\mzp_com1\\mzp_com2"), L"COM1\\MZP_COM2");
}

TEST(PortName, IsEmptyWithoutTheMarkOrWithoutACharacterBehindIt) {
  EXPECT_EQ(PortName(L"\\\\?\\quillon\\other"), L"");
  EXPECT_EQ(PortName(L"MZP_COM7"), L"");
  EXPECT_EQ(PortName(L"\\MZP_COM"), L"");
  EXPECT_EQ(PortName(L""), L"");
}

class GivenInterfaces : public platform::DeviceInterfaces {
 public:
  std::vector<std::wstring> PresentPaths() const override {
    return {L"\\\\?\\quillon\\MZP_COM10", L"\\\\?\\quillon\\other", L"\\\\?\\quillon\\mzp_com9"};
  }
};

TEST(DiscoveredPorts, KeepTheSystemsOrderAndAnEmptyNameForAnInterfaceOfAnotherKind) {
  EXPECT_EQ(DiscoverPorts(GivenInterfaces()), (std::vector<std::wstring>{L"COM10", L"", L"COM9"}));
}

}  // namespace
}  // namespace qlx
