// Owners of what COM hands out.
#pragma once

#include <memory>
#include <new>
#include <string>
#include <string_view>

#include <windows.h>
#include <oleauto.h>

namespace qlx::platform {

struct ReleaseInterface {
  void operator()(IUnknown* object) const { object->Release(); }
};

template <typename Interface>
using ComPtr = std::unique_ptr<Interface, ReleaseInterface>;

/// The object that `get` puts into the pointer it is given; null when it fails or gives none.
template <typename Interface, typename Get>
ComPtr<Interface> Got(Get get) {
  Interface* object = nullptr;
  const HRESULT result = get(&object);
  return ComPtr<Interface>(SUCCEEDED(result) ? object : nullptr);
}

/// A text in the form that COM takes and gives.
class Bstr {
 public:
  Bstr() = default;
  explicit Bstr(std::wstring_view text)
      : text_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {
    if (text_ == nullptr) throw std::bad_alloc();
  }
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  ~Bstr() { SysFreeString(text_); }

  BSTR get() const { return text_; }
  /// Where a callee may put a text of its own; once only.
  BSTR* out() { return &text_; }
  std::wstring text() const { return {text_, text_ + SysStringLen(text_)}; }

 private:
  BSTR text_ = nullptr;
};

/// `text`, which outlives it and keeps its memory.
inline VARIANT TextVariant(const Bstr& text) {
  VARIANT variant;
  VariantInit(&variant);
  variant.vt = VT_BSTR;
  variant.bstrVal = text.get();
  return variant;
}

/// The calling thread's single-threaded apartment, for as long as the object lives. To be destroyed by the
/// thread that made it, after every object of COM that it uses.
class ComApartment {
 public:
  ComApartment() : entered_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;
  ~ComApartment() {
    if (entered_) CoUninitialize();
  }

 private:
  bool entered_;  ///< false too where the thread is in the other kind of apartment, which serves as well
};

}  // namespace qlx::platform
