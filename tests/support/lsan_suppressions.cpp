// LeakSanitizer's suppressions, built into every test program of the
// sanitizer build. Third-party libraries only: fontconfig keeps its pattern
// caches for the life of Qt's font database, which lasts until the process ends.

extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig.so\n";
}
