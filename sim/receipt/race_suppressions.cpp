// For builds with the thread sanitizer: fontconfig, which is not built with it, works on two threads and
// keeps them apart by atomics that the sanitizer does not see. The name is the sanitizer's.

extern "C" {

const char* __tsan_default_suppressions();  // NOLINT

const char* __tsan_default_suppressions() {  // NOLINT
  return "race:libfontconfig.so.1\n";
}
}
