/// Read by the sanitizer. Qt 5.15's JSON reader leaks the first of two values that have the same key in one
/// object; what our code makes itself is watched all the same.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions()
{
    return "leak:libQt5Core.so";
}
