// A library in the form of hid.dll. Every device is the same, and what cannot be read has garbage in its
// place.
#include "tests/platform/windows/stand_in_hid.h"

#include <algorithm>
#include <cstring>

#include <windows.h>

extern "C" {
#include <hidsdi.h>
}

namespace {

qlx::testing::StandInHid state;
char preparsed;

BOOLEAN Text(bool given, PVOID buffer, ULONG size) {
  if (size != 256) state.short_buffer = true;
  std::memset(buffer, 'g', size);
  if (given) std::memcpy(buffer, state.text, std::min<std::size_t>(size, sizeof state.text));
  return given;
}

}  // namespace

qlx::testing::StandInHid* StandInHidState() {
  return &state;
}

void NTAPI HidD_GetHidGuid(LPGUID guid) {
  *guid = {0x11, 0x22, 0x33, {4, 4, 4, 4, 4, 4, 4, 4}};
}

BOOLEAN NTAPI HidD_GetPreparsedData(HANDLE, PHIDP_PREPARSED_DATA* data) {
  *data = reinterpret_cast<PHIDP_PREPARSED_DATA>(&preparsed);
  if (state.gives_preparsed_data) ++state.preparsed_data;
  return state.gives_preparsed_data;
}

BOOLEAN NTAPI HidD_FreePreparsedData(PHIDP_PREPARSED_DATA) {
  --state.preparsed_data;
  return TRUE;
}

BOOLEAN NTAPI HidD_GetAttributes(HANDLE, PHIDD_ATTRIBUTES attributes) {
  attributes->VendorID = 0x1209;
  attributes->ProductID = 0x0001;
  return state.gives_attributes && attributes->Size == sizeof *attributes;
}

BOOLEAN NTAPI HidD_FlushQueue(HANDLE) {
  return TRUE;
}

BOOLEAN NTAPI HidD_SetNumInputBuffers(HANDLE, ULONG) {
  return TRUE;
}

BOOLEAN NTAPI HidD_GetProductString(HANDLE, PVOID buffer, ULONG size) {
  return Text(state.gives_product, buffer, size);
}

BOOLEAN NTAPI HidD_GetSerialNumberString(HANDLE, PVOID buffer, ULONG size) {
  return Text(state.gives_serial_number, buffer, size);
}

BOOLEAN NTAPI HidD_GetFeature(HANDLE, PVOID, ULONG) {
  return TRUE;
}

BOOLEAN NTAPI HidD_SetOutputReport(HANDLE, PVOID, ULONG) {
  return TRUE;
}

NTSTATUS NTAPI HidP_GetCaps(PHIDP_PREPARSED_DATA, PHIDP_CAPS caps) {
  caps->UsagePage = 0xFF45;
  caps->Usage = 0x5400;
  return state.gives_caps ? HIDP_STATUS_SUCCESS : HIDP_STATUS_INVALID_PREPARSED_DATA;
}

NTSTATUS NTAPI HidP_GetValueCaps(HIDP_REPORT_TYPE, PHIDP_VALUE_CAPS, PUSHORT, PHIDP_PREPARSED_DATA) {
  return HIDP_STATUS_SUCCESS;
}
