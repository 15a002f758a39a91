// What GNUstep and its runtime set up once and keep.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libgnustep\nleak:libobjc\n"; }
