// For builds with sanitizers: fontconfig keeps until the end what it has looked up once, some of it out of
// the leak check's sight. The names are the sanitizer's.

extern "C" {

const char* __lsan_default_suppressions();  // NOLINT
const char* __lsan_default_options();       // NOLINT

const char* __lsan_default_suppressions() {  // NOLINT
  return "leak:libfontconfig\n";
}

const char* __lsan_default_options() {  // NOLINT
  return "print_suppressions=0";
}
}
