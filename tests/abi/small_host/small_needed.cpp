// A library that another one needs, for nothing but being there.
extern "C" __attribute__((visibility("default"))) int smallNeeded();

int smallNeeded()
{
    return 0;
}
