/// A library that says nothing about itself.
extern "C" __attribute__((visibility("default"))) int Nothing() { return 0; }
